// The small steps that every decoder of this library shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kerno {

inline constexpr std::size_t kWordSize = sizeof(std::uint64_t);
inline constexpr std::string_view kReplacementUtf8 = "\xEF\xBF\xBD";  // U+FFFD

// Whether the next 8 bytes are ASCII. REQUIRES: 8 readable bytes.
inline bool IsAsciiWord(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWordSize);
  return (word & 0x8080808080808080U) == 0;
}

inline const char* SkipAscii(const char* bytes, const char* end) {
  while (static_cast<std::size_t>(end - bytes) >= kWordSize && IsAsciiWord(bytes)) {
    bytes += kWordSize;
  }
  while (bytes != end && static_cast<unsigned char>(*bytes) < 0x80) ++bytes;
  return bytes;
}

// Writes the character's 1 to 4 bytes and returns their number.
//
// REQUIRES: `character` is a scalar value; room for 4 bytes.
inline std::size_t WriteUtf8(char32_t character, char* utf8) {
  const auto tail = [character](int shift) {
    return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    utf8[0] = static_cast<char>(character);
    return 1;
  }
  if (character < 0x800) {
    utf8[0] = static_cast<char>(0xC0U | (character >> 6));
    utf8[1] = tail(0);
    return 2;
  }
  if (character < 0x10000) {
    utf8[0] = static_cast<char>(0xE0U | (character >> 12));
    utf8[1] = tail(6);
    utf8[2] = tail(0);
    return 3;
  }
  utf8[0] = static_cast<char>(0xF0U | (character >> 18));
  utf8[1] = tail(12);
  utf8[2] = tail(6);
  utf8[3] = tail(0);
  return 4;
}

inline void AppendUtf8(char32_t character, std::string& utf8) {
  char bytes[4];
  utf8.append(bytes, WriteUtf8(character, bytes));
}

}  // namespace kerno
