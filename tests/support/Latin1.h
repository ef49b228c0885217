// Texts of bytes in the form that JSON has.
#pragma once

#include <string>
#include <string_view>

namespace trovan::test {

// Each byte as the character of the same number.
inline std::string Utf8FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | byte >> 6);
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

}  // namespace trovan::test
