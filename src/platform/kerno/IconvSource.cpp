#include <bit>
#include <cerrno>
#include <cstring>
#include <iconv.h>
#include <utility>

#include "CharacterSource.h"

namespace kerno {
namespace {

// The names without LE or BE write a byte-order mark.
constexpr const char* kUtf32 = std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";

class Descriptor {
 public:
  Descriptor(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  Descriptor(Descriptor&& other) noexcept : handle_(std::exchange(other.handle_, Closed())) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (IsOpen()) iconv_close(handle_);
  }

  bool IsOpen() const { return handle_ != Closed(); }

  struct Result {
    int error;  // errno, or 0 if all was converted
    std::size_t consumed;
    std::size_t written;
  };

  Result Convert(std::string_view from, char* to, std::size_t room) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    // iconv takes its input as char** but does not write through it.
    char* in = const_cast<char*>(from.data());
    std::size_t left = from.size();
    char* out = to;
    std::size_t outLeft = room;
    const std::size_t replaced = iconv(handle_, &in, &left, &out, &outLeft);
    const int error = replaced == static_cast<std::size_t>(-1) ? errno : 0;
    return {error, from.size() - left, room - outLeft};
  }

 private:
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the mark that iconv_open itself returns.
  static iconv_t Closed() { return reinterpret_cast<iconv_t>(-1); }

  iconv_t handle_;
};

constexpr int kJohab = 1361;

// Second bytes of two-byte codes. Only Johab's can be told from the byte alone; the accents of T.61
// and ISO 6937 go before letters.
bool IsTrail(int codePage, unsigned char byte) {
  return codePage == kJohab && byte >= 0x31 && byte != 0x7F && byte != 0x80 && byte != 0xFF;
}

class IconvSource : public CharacterSource {
 public:
  IconvSource(int codePage, Descriptor decoder, Descriptor encoder)
      : codePage_(codePage), decoder_(std::move(decoder)), encoder_(std::move(encoder)) {}

  DecodedCharacter First(std::string_view bytes) override {
    if (bytes.size() == 1) return Decode(bytes);
    const DecodedCharacter single = Decode(bytes.substr(0, 1));
    if (single.kind != DecodedCharacter::kIncomplete) return single;
    DecodedCharacter pair = Decode(bytes);
    if (pair.kind == DecodedCharacter::kMalformed &&
        IsTrail(codePage_, static_cast<unsigned char>(bytes[1]))) {
      pair.length = 2;
    }
    return pair;
  }

  std::string Encode(char32_t character) override {
    char utf32[sizeof character];
    std::memcpy(utf32, &character, sizeof character);
    char bytes[kMostBytes];
    const auto result =
        encoder_.Convert(std::string_view(utf32, sizeof utf32), bytes, sizeof bytes);
    if (result.error != 0) return {};
    return std::string(bytes, result.written);
  }

 private:
  static constexpr std::size_t kMostBytes = 16;

  DecodedCharacter Decode(std::string_view bytes) {
    char utf32[kMostBytes];
    const auto result = decoder_.Convert(bytes, utf32, sizeof utf32);
    if (result.error == EINVAL) return {DecodedCharacter::kIncomplete, 0, 0};
    char32_t character = 0;
    if (result.error != 0 || result.written != sizeof character) {
      return {DecodedCharacter::kMalformed, 1, 0};
    }
    std::memcpy(&character, utf32, sizeof character);
    return {DecodedCharacter::kCharacter, static_cast<std::uint8_t>(bytes.size()), character};
  }

  int codePage_;
  Descriptor decoder_;
  Descriptor encoder_;
};

}  // namespace

std::unique_ptr<CharacterSource> OpenIconvSource(int codePage, const char* name) {
  Descriptor decoder(kUtf32, name);
  Descriptor encoder(name, kUtf32);
  if (!decoder.IsOpen() || !encoder.IsOpen()) return nullptr;
  return std::make_unique<IconvSource>(codePage, std::move(decoder), std::move(encoder));
}

}  // namespace kerno
