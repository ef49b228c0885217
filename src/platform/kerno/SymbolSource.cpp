#include "CharacterSource.h"

namespace kerno {
namespace {

constexpr char32_t kSymbolBase = 0xF000;
constexpr unsigned char kFirstSymbol = 0x20;

class SymbolSource : public CharacterSource {
 public:
  DecodedCharacter First(std::string_view bytes) override {
    const auto byte = static_cast<unsigned char>(bytes.front());
    return {DecodedCharacter::kCharacter, 1, byte < kFirstSymbol ? byte : kSymbolBase + byte};
  }

  std::string Encode(char32_t character) override {
    const bool symbol = character >= kSymbolBase + kFirstSymbol && character <= kSymbolBase + 0xFF;
    if (!symbol && character >= kFirstSymbol) return {};
    return std::string(1, static_cast<char>(character & 0xFFU));
  }
};

}  // namespace

std::unique_ptr<CharacterSource> OpenSymbolSource() { return std::make_unique<SymbolSource>(); }

}  // namespace kerno
