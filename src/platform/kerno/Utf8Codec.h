// Page 65001: UTF-8 that is checked and copied.
#pragma once

#include "PageCodec.h"

namespace kerno {

// Well formed is what the Unicode Standard's table 3-7 allows: no overlong form, no surrogate,
// nothing above U+10FFFF.
class Utf8Codec : public PageCodec {
 public:
  void Reset() override;
  std::size_t AppendPiece(std::string_view bytes, bool last, std::string& utf8) override;
  std::size_t Encode(std::u32string_view text, std::string& bytes) override;

 private:
  std::size_t CompleteHeld(std::string_view& bytes, std::string& utf8);

  std::string held_;  // the start of a character that the last piece cut; at most 3 bytes
};

}  // namespace kerno
