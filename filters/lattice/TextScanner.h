// Reads a file as words between white space, and as runs of bytes among them: what the headers and
// the numbers of lattice files need. Memory does not grow with the file.
//
//   TextScanner scanner(file);
//   if (!scanner.NextIs("ncols")) scanner.FailExpected("\"ncols\"");
//   const auto columns = scanner.ReadNumber<unsigned>("the number of columns");
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <corvel/BufferedFile.h>
#include <corvel/PrimType.h>

#include "filters/lattice/ElementText.h"
#include "filters/support/QuotedText.h"

namespace trovan::filters {

// A place to which a scanner can return.
struct TextPlace {
  long long offset = 0;  // of the next byte
  long long line = 1;    // that it stands on
};

// White space is blank, tab, line feed, carriage return, vertical tab and form feed. A line ends
// with a line feed, a carriage return, or both.
//
// All errors are FilterErrors that name the file, the line (after SkipBytes: the byte) and what was
// expected: `towns.asc, line 3: expected a number, found "abc"`.
class TextScanner {
 public:
  // A longer word or line is an error.
  static constexpr std::size_t kLongestWord = 4096;

  // Starts where the file stands, which must be its first byte. The file must outlive the scanner,
  // and only it may move the file.
  explicit TextScanner(corvel::CBufferedFile& file) : file_(file) {}

  // The next word, which lives until the next call; empty at the end of the file.
  std::string_view NextWord();

  // The next word of this line; empty at its end, which is then still ahead.
  std::string_view NextWordOnLine();

  // The last word again. REQUIRES: the last call was NextWord or NextWordOnLine.
  std::string_view Word() const { return {word_.data(), size_}; }

  // The next word, which must be there.
  std::string_view ExpectWord(std::string_view expected);

  // The next word as a number.
  template <typename T>
  T ReadNumber(std::string_view expected) {
    T value{};
    ExpectWord(expected);
    CheckNumber(ParseNumber(Word(), value), expected);
    return value;
  }
  void ReadNumber(corvel::PrimType type, void* element, std::string_view expected) {
    ExpectWord(expected);
    CheckNumber(ParseNumber(Word(), type, element), expected);
  }

  // Raises unless the word read last was a number.
  void CheckNumber(NumberStatus status, std::string_view expected) const;

  // The rest of the line without its end. At the end of the file there is nothing.
  std::string NextLine();

  // Moves behind the line feed that ends this line, where nothing may stand before it: a carriage
  // return alone does not end a line here, since any byte may follow.
  void FinishLine(std::string_view expected);

  // Skips lines up to and including the first that is empty or blank, or to the end of the file.
  // The rest of this line counts as one.
  void SkipToBlankLine();

  // Moves on; from now on errors tell the byte. REQUIRES: BytesLeft() >= count.
  void SkipBytes(std::uint64_t count);

  // Reads bytes as they are; fewer than `count` only at the end of the file.
  std::size_t ReadBytes(void* bytes, std::size_t count);

  std::uint64_t BytesLeft();

  // Where the next byte stands.
  TextPlace Place() const;
  void Return(const TextPlace& place);

  // Raises a FilterError for the word read last, or for the end of the file.
  [[noreturn]] void FailExpected(std::string_view expected) const;

  // Raises a FilterError for the place of that word, or for the next byte.
  [[noreturn]] void Fail(std::string_view problem) const;
  [[noreturn]] void FailHere(std::string_view problem);

 private:
  static constexpr int kEnd = -1;
  static constexpr int kNone = -2;

  int Take() {
    const int byte = ahead_ == kNone ? file_.Getc() : ahead_;
    ahead_ = kNone;
    return byte;
  }
  int Peek() { return ahead_ = Take(); }
  void CountLineEnd(int byte);
  void NoteWordStart();
  void GatherWord(int first);

  corvel::CBufferedFile& file_;
  std::array<char, kLongestWord> word_{};
  std::size_t size_ = 0;
  int ahead_ = kNone;  // a byte that was read and is not taken yet
  bool afterReturn_ = false;
  long long line_ = 1;
  long long wordLine_ = 1;
  long long wordOffset_ = 0;
  bool tellsBytes_ = false;
};

}  // namespace trovan::filters
