#include "DelimitedReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr int kEnd = -1;
constexpr std::string_view kLineEnds("\r\n\f\0", 4);
constexpr long long kMiB = 1024LL * 1024;
constexpr const char* kQuoteHint = " (--quote none reads quotes as ordinary characters)";

void RequireNoLineEnds(const std::string& characters) {
  if (characters.find_first_of(kLineEnds) == std::string::npos) return;
  throw FilterError(
      "carriage return, line feed, form feed and NUL end lines or are dropped: they cannot be "
      "delimiters, white space, quotes or the start of comments");
}

std::string SizeText(long long bytes) {
  if (bytes % kMiB == 0) return std::to_string(bytes / kMiB) + " MiB";
  return std::to_string(bytes) + " bytes";
}

}  // namespace

DelimitedReader::DelimitedReader(corvel::CBufferedFile& file, std::string name,
                                 const DelimitedFormat& format, char comment,
                                 const ReadLimits& limits)
    : file_(file),
      name_(std::move(name)),
      format_(format),
      comment_(comment),
      limits_(limits),
      tokens_(&file) {
  RequireNoLineEnds(format_.delimiters + format_.whitespace + format_.quotes);
  if (comment_ != 0) RequireNoLineEnds(std::string(1, comment_));
  tokens_.SetDelimiters(format_.delimiters.c_str());
  tokens_.SetWhitespace(format_.whitespace.c_str());
  tokens_.SetQuotes(format_.quotes.c_str());
  file_.SetReadEnd(limits_.end);
}

void DelimitedReader::ReportTo(corvel::IProgress& progress) {
  progress_ = ReadProgress(&progress, std::min(file_.GetLength(), limits_.end));
}

void DelimitedReader::SkipLines(unsigned long long count) {
  while (count > 0 && SkipLine()) --count;
}

// Moves behind the next line feed; false when there is none.
bool DelimitedReader::SkipLine() {
  while (progress_.GoOn(file_)) {
    const auto bytes = file_.Buffered();
    const void* feed = bytes.empty() ? nullptr : std::memchr(bytes.data(), '\n', bytes.size());
    if (feed != nullptr) {
      const auto length = static_cast<const unsigned char*>(feed) - bytes.data();
      file_.SkipBuffered(static_cast<std::size_t>(length) + 1);
      ++line_;
      return true;
    }
    file_.SkipBuffered(bytes.size());
    const int byte = file_.Getc();
    if (byte == kEnd) return false;
    if (byte != '\n') continue;
    ++line_;
    return true;
  }
  return false;
}

bool DelimitedReader::IsWhitespace(int byte) const {
  return format_.whitespace.find(static_cast<char>(byte)) != std::string::npos;
}

bool DelimitedReader::ReadRow() {
  text_.clear();
  ends_.clear();
  fields_.clear();
  if (std::exchange(finished_, true) || !FindRow()) return false;
  const long long start = file_.GetPosition();
  file_.SetReadEnd(start + std::min(limits_.longestRow, limits_.end - start));
  End end = End::kField;
  while (end == End::kField) end = ReadField();
  finished_ = end == End::kReads;
  return FinishRow(end);
}

// Goes to the first byte of the next row: past blank lines, comments and page breaks.
bool DelimitedReader::FindRow() {
  file_.SetReadEnd(limits_.end);
  while (progress_.GoOn(file_)) {
    const int byte = file_.Getc();
    if (byte == kEnd) return false;
    if (byte == '\n') {
      ++line_;
    } else if (comment_ != 0 && static_cast<char>(byte) == comment_) {
      ++commentLines_;
      SkipLine();
    } else if (byte != '\r' && byte != '\f' && !IsWhitespace(byte)) {
      file_.UnGetc(byte);
      rowLine_ = line_;
      return true;
    }
  }
  return false;
}

// Takes the first byte of a field; past what the tokenizer skips in front of a token, but for the
// line feed that it would skip, too: here it ends the row.
int DelimitedReader::FirstInField() {
  int byte = file_.Getc();
  while (byte == '\r' || (byte != kEnd && IsWhitespace(byte))) byte = file_.Getc();
  return byte;
}

DelimitedReader::End DelimitedReader::ReadField() {
  const int byte = FirstInField();
  if (byte != kEnd && byte != '\n' && byte != '\f') {
    file_.UnGetc(byte);
    return ParseField();
  }
  // A delimiter was the last of its row: behind it is a field in which nothing stands.
  AddField({}, false);
  if (byte == '\n') ++line_;
  return byte == kEnd ? End::kReads : End::kRow;
}

// REQUIRES: the next byte is the first of a token, or a delimiter.
DelimitedReader::End DelimitedReader::ParseField() {
  tokenStart_ = file_.GetPosition();
  tokenLine_ = line_;
  tokens_.SetNumLinesParsed(0);
  const auto status = tokens_.Parse(token_, true);
  const unsigned lines = tokens_.GetNumLinesParsed();
  const bool quoted = tokens_.LastTokenQuoted();
  line_ += lines;
  AddField(token_, quoted);
  if (status == CFileTokenizer::TOKEN_EOF) return End::kReads;
  const char terminator = tokens_.LastTokenTermChar();
  if (terminator == '\f') return End::kRow;
  // White space behind a plain token reports a line feed, too; then no line has ended.
  if (terminator == '\n') return quoted || lines > 0 ? End::kRow : End::kField;
  const bool delimited = format_.delimiters.find(terminator) != std::string::npos;
  if (delimited) return End::kField;
  // What follows is the rest of the value, or, where white space sets values apart, the next one.
  if (format_.whitespace.empty()) return TakeRest();
  if (!IsWhitespace(LastByte())) NoteTextBehindQuote();
  return End::kField;
}

// The byte in front of the next one, carriage returns left out.
int DelimitedReader::LastByte() {
  const long long position = file_.GetPosition();
  int byte = '\r';
  for (long long at = position - 1; byte == '\r'; --at) {
    file_.Seek(at, corvel::kFileBegin);
    byte = file_.Getc();
  }
  file_.Seek(position, corvel::kFileBegin);
  return byte;
}

void DelimitedReader::NoteTextBehindQuote() {
  remarks_.Add("line " + std::to_string(line_) + ", column " + std::to_string(fields_.size()) +
               ": text follows the closing quote");
}

// Text behind a closing quote belongs to the same field, up to the delimiter.
DelimitedReader::End DelimitedReader::TakeRest() {
  NoteTextBehindQuote();
  tokens_.SetNumLinesParsed(0);
  const auto status = tokens_.Parse(token_, false);
  line_ += tokens_.GetNumLinesParsed();
  text_ += token_;
  ends_.back() = text_.size();
  if (status == CFileTokenizer::TOKEN_EOF) return End::kReads;
  const char terminator = tokens_.LastTokenTermChar();
  return terminator == '\n' || terminator == '\f' ? End::kRow : End::kField;
}

void DelimitedReader::AddField(std::string_view text, bool quoted) {
  if (fields_.size() == limits_.mostFields) {
    Fail(rowLine_, "the row has more than " + std::to_string(limits_.mostFields) +
                       " values; is this the right delimiter?");
  }
  text_ += text;
  ends_.push_back(text_.size());
  fields_.push_back({{}, quoted});
}

// False when the row is none: it reaches beyond what may be read.
bool DelimitedReader::FinishRow(End end) {
  if (end == End::kReads) {
    if (HasMore()) {
      if (file_.GetPosition() <= limits_.end) FailTooLong();
      fields_.clear();
      return false;
    }
    if (IsOpenQuote()) {
      Fail(tokenLine_, "column " + std::to_string(fields_.size()) +
                           ": the quote that opens here is never closed" + kQuoteHint);
    }
  }
  const std::string_view text = text_;
  std::size_t start = 0;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    fields_[i].text = text.substr(start, ends_[i] - start);
    start = ends_[i];
  }
  return true;
}

// Whether reads found an end in front of that of the file. Takes the byte that follows.
bool DelimitedReader::HasMore() {
  file_.SetReadEnd(corvel::CBufferedFile::kNoReadEnd);
  return file_.Getc() != kEnd;
}

// The tokenizer does not tell whether the file ended behind a closing quote or in front of it.
bool DelimitedReader::IsOpenQuote() {
  if (!fields_.back().quoted) return false;
  const auto next = [this] {
    int byte = file_.Getc();
    while (byte == '\r') byte = file_.Getc();
    return byte;
  };
  file_.Seek(tokenStart_, corvel::kFileBegin);
  const int quote = file_.Getc();
  for (int byte = next(); byte != kEnd; byte = next()) {
    if (byte == quote && next() != quote) return false;
  }
  return true;
}

void DelimitedReader::FailTooLong() const {
  Fail(rowLine_, "the row is longer than " + SizeText(limits_.longestRow) +
                     "; is a quote never closed?" + kQuoteHint);
}

void DelimitedReader::Fail(unsigned long long line, const std::string& problem) const {
  throw FilterError(name_ + ", line " + std::to_string(line) +
                    (problem.starts_with("column ") ? ", " : ": ") + problem);
}

}  // namespace trovan::filters
