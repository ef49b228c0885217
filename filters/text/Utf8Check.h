// Finds the first byte of a text that is no UTF-8 (RFC 3629), piece by piece.
#pragma once

#include <cstddef>
#include <span>

namespace trovan::filters {

class Utf8Check {
 public:
  static constexpr long long kNowhere = -1;

  // Takes the next bytes of the text.
  void Take(std::span<const unsigned char> bytes);

  // Ends the text: a character that is not complete is a fault.
  void Finish();

  // The offset of the first byte that belongs to no character, or of the first byte of a character
  // that is cut off.
  long long FirstBad() const { return firstBad_; }

 private:
  void TakeByte(unsigned char byte, long long offset);
  void StartCharacter(unsigned char byte, long long offset);

  long long offset_ = 0;       // of the next byte
  long long characterAt_ = 0;  // of the character that is not complete yet
  unsigned missing_ = 0;       // its bytes
  // What its next byte may be: fewer than all continuation bytes where the character would be
  // overlong, a surrogate, or beyond U+10FFFF.
  unsigned char lowest_ = 0;
  unsigned char highest_ = 0;
  long long firstBad_ = kNowhere;
};

}  // namespace trovan::filters
