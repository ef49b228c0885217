// A page's conversion one character at a time, as a converter library does it: slow, and asked only
// to fill the tables of the fast road.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kerno {

// What stands at the start of some bytes.
struct DecodedCharacter {
  enum Kind : std::uint8_t {
    kCharacter,
    kMalformed,
    kIncomplete,  // the bytes only begin a character
  };
  Kind kind;
  std::uint8_t length;  // bytes of the page; 0 if incomplete
  char32_t character;   // if kCharacter
};

class CharacterSource {
 public:
  CharacterSource() = default;
  CharacterSource(const CharacterSource&) = delete;
  CharacterSource& operator=(const CharacterSource&) = delete;
  virtual ~CharacterSource() = default;

  // REQUIRES: one or two bytes.
  virtual DecodedCharacter First(std::string_view bytes) = 0;

  // The character's bytes, empty if the page lacks it.
  virtual std::string Encode(char32_t character) = 0;
};

// Null if the library does not know the name.
std::unique_ptr<CharacterSource> OpenIcuSource(const char* name);
std::unique_ptr<CharacterSource> OpenIconvSource(int codePage, const char* name);

// The coding of symbol fonts (page 42).
std::unique_ptr<CharacterSource> OpenSymbolSource();

}  // namespace kerno
