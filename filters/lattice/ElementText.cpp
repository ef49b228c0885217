#include "ElementText.h"

#include <cstring>

#include "filters/lattice/NodeTypes.h"

namespace trovan::filters {

NumberStatus ParseNumber(std::string_view text, corvel::PrimType type, void* element) {
  return VisitElementType(type, [&](auto value) {
    const NumberStatus status = ParseNumber(text, value);
    if (status == NumberStatus::kNumber) std::memcpy(element, &value, sizeof value);
    return status;
  });
}

void AppendNumber(std::string& text, corvel::PrimType type, const void* element) {
  VisitElementType(type, [&](auto value) {
    std::memcpy(&value, element, sizeof value);
    AppendNumber(text, value);
  });
}

void WriteLineOfNumbers(corvel::CBufferedFile& file, corvel::PrimType type, const void* elements,
                        std::size_t count) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
  const auto* element = static_cast<const unsigned char*>(elements);
  std::string text;
  text.reserve(kPiece + 64);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    AppendNumber(text, type, element + i * size);
    if (text.size() >= kPiece) {
      file.Write(text.data(), text.size());
      text.clear();
    }
  }
  text += '\n';
  file.Write(text.data(), text.size());
}

}  // namespace trovan::filters
