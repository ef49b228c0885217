// Text of any Windows code page, to Unicode and back.
//
//   TextCodec russian(866);
//   std::string utf8;
//   russian.AppendUtf8("\x8C\xA8\xE0", utf8);  // utf8 is now "Мир"
//   russian.Encode(L"Мир");                    // "\x8C\xA8\xE0"
//
// Bytes mean what Windows takes them for, also where the converters underneath differ. Bad bytes
// never stop a read: each maximal malformed part becomes one U+FFFD and is counted. A malformed
// part is the longest start of a character that the next byte cannot continue; a whole code that is
// well formed but means no character; or else a single byte. What begins a character that never
// comes is one part at the end of the text.
//
// Nothing is special about NUL bytes or byte-order marks: EF BB BF at the start of page 65001 is
// the character U+FEFF. Pages with states (UTF-7, ISO-2022, HZ, ISCII) begin each text in their
// first state.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <kerno/Export.h>

namespace kerno {

class PageCodec;

// One codec serves one thread at a time. To make one costs some microseconds for a single-byte
// page: one for each table or file is fine, one for each field is waste.
class KERNO_API TextCodec {
 public:
  // `codePage` is a number of CodePageInfo's list or one of Windows' special numbers: 0 and 3 stand
  // for the process's ANSI page (GetACP), 1 (the system's OEM page) for 437, 2 (the Macintosh page)
  // for 10000. 42 is the coding of symbol fonts: byte b from 0x20 on is U+F000 + b.
  //
  // Raises corvel::Exception if the page is unknown or no converter for it is installed.
  explicit TextCodec(int codePage);
  TextCodec(TextCodec&&) noexcept;
  TextCodec& operator=(TextCodec&&) noexcept;
  ~TextCodec();

  // Whether a codec can be made. False for the listed pages that no converter knows.
  static bool IsConvertible(int codePage);

  // The page in use: never 0 to 3, but what they stand for.
  int CodePage() const { return codePage_; }

  // Decodes a whole text. The result is UTF-32 or UTF-16, as wchar_t is wide, without lone
  // surrogates. Adds the number of malformed parts to `*malformed` if given.
  std::wstring Decode(std::string_view bytes, std::size_t* malformed = nullptr);

  // Encodes a whole text. A character that the page lacks becomes the page's question mark and is
  // counted into `*unmappable` (added) if given. So does what is no character (a lone surrogate, a
  // value above U+10FFFF), except that pages with all of Unicode write U+FFFD for it. Where several
  // bytes mean one character, a page of single bytes writes the lowest.
  std::string Encode(std::wstring_view text, std::size_t* unmappable = nullptr);

  // Decodes a whole text and appends it to `utf8`. Returns the number of malformed parts. This is
  // the fast road; Decode takes it too and widens the result.
  std::size_t AppendUtf8(std::string_view bytes, std::string& utf8);

  // Decodes the next piece of a text that comes in pieces of any size. A character that is cut by
  // the end of a piece is held back and completed by the next one; `last` says that none follows.
  // The pieces together give exactly what AppendUtf8 gives for the whole. Returns the number of
  // malformed parts that this piece settled.
  //
  // A call of Decode or AppendUtf8 between two pieces ends the text: what was held back is dropped.
  std::size_t AppendPiece(std::string_view bytes, bool last, std::string& utf8);

 private:
  int codePage_;
  std::unique_ptr<PageCodec> page_;
};

}  // namespace kerno
