#include "TextScanner.h"

#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr bool IsLineEnd(int byte) { return byte == '\n' || byte == '\r'; }
constexpr bool IsSpace(int byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

}  // namespace

void TextScanner::CountLineEnd(int byte) {
  if (byte == '\r' || (byte == '\n' && !afterReturn_)) ++line_;
  afterReturn_ = byte == '\r';
}

void TextScanner::NoteWordStart() {
  wordLine_ = line_;
  wordOffset_ = Place().offset;
}

void TextScanner::GatherWord(int first) {
  afterReturn_ = false;
  int byte = first;
  do {
    if (size_ == kLongestWord) {
      FailExpected("a word of no more than " + std::to_string(kLongestWord) + " bytes");
    }
    word_[size_++] = static_cast<char>(byte);
    byte = file_.Getc();
  } while (byte != kEnd && !IsSpace(byte));
  ahead_ = byte;
}

std::string_view TextScanner::NextWord() {
  size_ = 0;
  int byte = Take();
  while (IsSpace(byte)) {
    CountLineEnd(byte);
    byte = file_.Getc();
  }
  ahead_ = byte;
  NoteWordStart();
  if (byte != kEnd) GatherWord(byte);
  return Word();
}

std::string_view TextScanner::NextWordOnLine() {
  size_ = 0;
  while (IsSpace(Peek()) && !IsLineEnd(ahead_)) {
    Take();
    afterReturn_ = false;
  }
  NoteWordStart();
  if (ahead_ != kEnd && !IsLineEnd(ahead_)) GatherWord(ahead_);
  return Word();
}

std::string_view TextScanner::ExpectWord(std::string_view expected) {
  if (NextWord().empty()) FailExpected(expected);
  return Word();
}

void TextScanner::CheckNumber(NumberStatus status, std::string_view expected) const {
  if (status == NumberStatus::kNumber) return;
  if (status == NumberStatus::kNotANumber) FailExpected(expected);
  Fail("expected " + std::string(expected) + ", found " + Quoted(Word()) +
       ", which is beyond the range of its type");
}

std::string TextScanner::NextLine() {
  NoteWordStart();
  std::string line;
  size_ = 0;
  for (int byte = Take(); byte != kEnd; byte = Take()) {
    const bool endsOldLine = byte == '\n' && afterReturn_;
    CountLineEnd(byte);
    if (endsOldLine) continue;
    if (IsLineEnd(byte)) return line;
    if (line.size() == kLongestWord) {
      Fail("expected a line of no more than " + std::to_string(kLongestWord) + " bytes");
    }
    line += static_cast<char>(byte);
  }
  ahead_ = kEnd;
  return line;
}

void TextScanner::FinishLine(std::string_view expected) {
  if (!NextWordOnLine().empty()) FailExpected(expected);
  int byte = Take();
  if (byte == '\r') {
    CountLineEnd(byte);
    byte = Take();
  }
  if (byte == kEnd) FailExpected(expected);
  if (byte != '\n') Fail("expected a line feed behind the carriage return");
  CountLineEnd(byte);
  afterReturn_ = false;  // a line feed that follows is one of the bytes
}

void TextScanner::SkipToBlankLine() {
  bool isBlank = true;
  for (int byte = Take(); byte != kEnd; byte = Take()) {
    const bool endsOldLine = byte == '\n' && afterReturn_;
    CountLineEnd(byte);
    if (endsOldLine) continue;
    if (IsLineEnd(byte)) {
      if (isBlank) return;
      isBlank = true;
    } else if (!IsSpace(byte)) {
      isBlank = false;
    }
  }
  ahead_ = kEnd;
}

void TextScanner::SkipBytes(std::uint64_t count) {
  const long long offset = Place().offset + static_cast<long long>(count);
  ahead_ = kNone;
  afterReturn_ = false;
  tellsBytes_ = true;
  file_.Seek(offset, corvel::kFileBegin);
}

std::size_t TextScanner::ReadBytes(void* bytes, std::size_t count) {
  NoteWordStart();
  if (ahead_ != kNone) Return(Place());
  return file_.Read(bytes, count);
}

std::uint64_t TextScanner::BytesLeft() {
  const long long length = file_.GetLength();
  const long long offset = Place().offset;
  return length > offset ? static_cast<std::uint64_t>(length - offset) : 0;
}

TextPlace TextScanner::Place() const {
  return {file_.GetPosition() - (ahead_ >= 0 ? 1 : 0), line_};
}

void TextScanner::Return(const TextPlace& place) {
  ahead_ = kNone;
  afterReturn_ = false;
  line_ = place.line;
  file_.Seek(place.offset, corvel::kFileBegin);
}

void TextScanner::FailExpected(std::string_view expected) const {
  Fail("expected " + std::string(expected) + ", found " +
       (size_ > 0           ? Quoted(Word())
        : IsLineEnd(ahead_) ? "the end of the line"
                            : "the end of the file"));
}

void TextScanner::Fail(std::string_view problem) const {
  const std::string place =
      tellsBytes_ ? ", byte " + std::to_string(wordOffset_) : ", line " + std::to_string(wordLine_);
  throw FilterError(corvel::Utf8FromWide(file_.GetPath()) + place + ": " + std::string(problem));
}

void TextScanner::FailHere(std::string_view problem) {
  NoteWordStart();
  Fail(problem);
}

}  // namespace trovan::filters
