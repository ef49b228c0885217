// What each way of converting a page offers to TextCodec.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kerno {

// Stands in a UTF-32 text for a unit that is no character. It is outside Unicode.
inline constexpr char32_t kNoCharacter = 0x110000;

class PageCodec {
 public:
  PageCodec() = default;
  PageCodec(const PageCodec&) = delete;
  PageCodec& operator=(const PageCodec&) = delete;
  virtual ~PageCodec() = default;

  // Forgets what the last piece held back.
  virtual void Reset() = 0;

  // As TextCodec::AppendPiece. After the last piece the codec is as new.
  virtual std::size_t AppendPiece(std::string_view bytes, bool last, std::string& utf8) = 0;

  // Appends a whole text of scalar values and kNoCharacter to `bytes`. Returns the number of
  // characters that were replaced.
  virtual std::size_t Encode(std::u32string_view text, std::string& bytes) = 0;
};

}  // namespace kerno
