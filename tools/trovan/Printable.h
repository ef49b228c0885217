// Texts of files on their way to a terminal.
#pragma once

#include <string>

namespace trovan::tool {

// The text with a question mark for each control character. A file, or its name, may hold anything:
// what steers a terminal must not reach it.
inline std::string Printable(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return text;
}

}  // namespace trovan::tool
