#include <trovan/FileTokenizer.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "NumberToken.h"
#include "RunScanner.h"
#include "TokenNumber.h"

namespace trovan {
namespace {

constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';
constexpr char kFormFeed = '\f';
constexpr char kNul = '\0';

constexpr const char* kDefaultWhitespace = " \t";
constexpr const char* kDefaultDelimiters = ",";
constexpr const char* kDefaultQuotes = "\"";

// A NUL byte of the file never reaches a token.
template <class Text>
void Append(Text& token, char character) {
  if (character != kNul) token.append(&character, 1);
}

}  // namespace

CFileTokenizer::CFileTokenizer() : CFileTokenizer(nullptr) {}

CFileTokenizer::CFileTokenizer(corvel::CBufferedFile* source) : source_(source) { SetDefaults(); }

CFileTokenizer::CFileTokenizer(const CFileTokenizer& other) = default;
CFileTokenizer& CFileTokenizer::operator=(const CFileTokenizer& other) = default;
CFileTokenizer::~CFileTokenizer() = default;

CFileTokenizer::CFileTokenizer(CFileTokenizer&& other) noexcept { *this = std::move(other); }

CFileTokenizer& CFileTokenizer::operator=(CFileTokenizer&& other) noexcept {
  if (this == &other) return *this;
  source_ = other.source_;
  lastTokenQuoted_ = other.lastTokenQuoted_;
  lastTokenTermChar_ = other.lastTokenTermChar_;
  numTokensParsed_ = other.numTokensParsed_;
  numLinesParsed_ = other.numLinesParsed_;
  whitespace_ = std::exchange(other.whitespace_, {});
  delimiters_ = std::exchange(other.delimiters_, {});
  quotes_ = std::exchange(other.quotes_, {});
  NoteClasses();
  other.NoteClasses();
  return *this;
}

void CFileTokenizer::SetSource(corvel::CBufferedFile* source) {
  source_ = source;
  lastTokenQuoted_ = false;
  lastTokenTermChar_ = 0;
  numTokensParsed_ = 0;
  numLinesParsed_ = 0;
}

std::wstring CFileTokenizer::GetSource() const { return source_->GetPath(); }

void CFileTokenizer::SetDefaults() {
  SetWhitespace(kDefaultWhitespace);
  SetDelimiters(kDefaultDelimiters);
  SetQuotes(kDefaultQuotes);
}

void CFileTokenizer::SetWhitespace(const char* characters) {
  whitespace_ = characters;
  NoteClasses();
}

void CFileTokenizer::SetDelimiters(const char* characters) {
  delimiters_ = characters;
  NoteClasses();
}

void CFileTokenizer::SetQuotes(const char* characters) {
  quotes_ = characters;
  NoteClasses();
}

// To be called after each change of a set.
void CFileTokenizer::NoteClasses() {
  classes_.fill(0);
  const auto note = [this](char character, Class is) {
    classes_[static_cast<unsigned char>(character)] |= is;
  };
  for (const char character : whitespace_) note(character, kWhitespace);
  for (const char character : delimiters_) note(character, kDelimiter);
  for (const char character : quotes_) note(character, kQuote);
  note(kLineFeed, kLineEnd);
  note(kFormFeed, kLineEnd);
  note(kCarriageReturn, kDropped);
  note(kNul, kDropped);
  plainEnds_ = EndsOf(kWhitespace | kDelimiter | kLineEnd | kDropped);
  quotedEnds_ = EndsOf(kQuote | kLineEnd | kDropped);
  const std::string_view ofNumbers = "+-.0123456789Ee";
  numbersAreOrdinary_ = std::none_of(ofNumbers.begin(), ofNumbers.end(),
                                     [this](char c) { return Is(plainEnds_.classes, c); });
}

CFileTokenizer::RunEnds CFileTokenizer::EndsOf(unsigned classes) const {
  RunEnds ends{classes, {}, true};
  std::size_t count = 0;
  for (unsigned byte = ' ' + 1U; byte < classes_.size(); ++byte) {
    if ((classes_[byte] & classes) == 0) continue;
    ends.isFew = count < ends.rare.size();
    if (!ends.isFew) break;
    ends.rare[count++] = static_cast<unsigned char>(byte);
  }
  return ends;
}

bool CFileTokenizer::EndOfFile() const { return source_ == nullptr || source_->EndOfFile(); }

long long CFileTokenizer::GetFilePosition() const {
  return source_ == nullptr ? 0 : source_->GetPosition();
}

bool CFileTokenizer::GetNextChar(char& character) {
  int byte = source_->Getc();
  while (byte == kCarriageReturn) byte = source_->Getc();
  if (byte < 0) return false;
  character = static_cast<char>(byte);
  if (character == kLineFeed) ++numLinesParsed_;
  return true;
}

CFileTokenizer::Status CFileTokenizer::Parse(std::string& token, bool useQuotes) {
  return ParseText(token, useQuotes);
}

template <class Text>
CFileTokenizer::Status CFileTokenizer::ParseText(Text& token, bool useQuotes) {
  if (ParseBuffered(token, useQuotes)) return TOKEN_OK;
  token.clear();
  lastTokenQuoted_ = false;
  char character = 0;
  do {
    if (!GetNextChar(character)) return TOKEN_EOF;
    if (!SkipWhitespace(character)) return TOKEN_EOF;
  } while (character == kLineFeed);
  if (IsDelimiter(character)) {
    lastTokenTermChar_ = character;
    return TOKEN_EMPTY;
  }
  if (useQuotes && IsQuote(character)) return ParseQuoted(token, character);
  return ParsePlain(token, character);
}

// The short road for a plain token that lies in the file's buffer as a whole, with what ends it.
// Changes nothing where the next token is another.
template <class Text>
bool CFileTokenizer::ParseBuffered(Text& token, bool useQuotes) {
  const auto bytes = source_->Buffered();
  if (bytes.empty()) return false;
  const unsigned notFirst = plainEnds_.classes | (useQuotes ? unsigned{kQuote} : 0U);
  if ((classes_[bytes[0]] & notFirst) != 0) return false;
  const std::size_t length = FindEnd(bytes, 1, plainEnds_);
  const std::size_t last = FindLast(bytes, length);
  if (last == bytes.size()) return false;
  token.assign(reinterpret_cast<const char*>(bytes.data()), length);
  TakePlain(bytes[last], last + 1);
  return true;
}

// The same for a token that is a number from its first character to its last.
bool CFileTokenizer::ParseBufferedNumber(double& value) {
  const auto bytes = source_->Buffered();
  if (!numbersAreOrdinary_ || bytes.empty()) return false;
  double number = 0.0;
  const std::size_t length =
      ReadPlainNumber(reinterpret_cast<const char*>(bytes.data()), bytes.size(), number);
  if (length == 0) return false;
  const std::size_t last = FindLast(bytes, length);
  if (last == bytes.size()) return false;
  value = number;
  TakePlain(bytes[last], last + 1);
  return true;
}

// The place of the character that ends a plain token of this length at the start of `bytes`, or of
// the one behind its white space. The number of bytes where the token goes on, or only the long
// road can tell.
std::size_t CFileTokenizer::FindLast(std::span<const unsigned char> bytes,
                                     std::size_t length) const {
  // Of what is skipped behind a token, line feeds would have to be counted. A carriage return is
  // not even white space, whatever the set holds.
  bool isAfterWhitespace = false;
  std::size_t at = length;
  for (; at < bytes.size() && bytes[at] != kLineFeed; ++at) {
    if (bytes[at] == kCarriageReturn) continue;
    if ((classes_[bytes[at]] & kWhitespace) == 0) break;
    isAfterWhitespace = true;
  }
  if (at == bytes.size()) return at;
  const auto next = static_cast<char>(bytes[at]);
  const bool isEnd = !IsWhitespace(next) && (IsDelimiter(next) || isAfterWhitespace);
  return isEnd ? at : bytes.size();
}

// Takes a plain token of `count` bytes out of the buffer, with what ends it: `last`.
void CFileTokenizer::TakePlain(unsigned char last, std::size_t count) {
  source_->SkipBuffered(count);
  lastTokenQuoted_ = false;
  if (last == kLineFeed) ++numLinesParsed_;
  EndPlain(static_cast<char>(last));
}

template <class Text>
CFileTokenizer::Status CFileTokenizer::ParsePlain(Text& token, char first) {
  char character = first;
  while (!IsDelimiter(character)) {
    Append(token, character);
    TakeRun(token, plainEnds_);
    if (!GetNextChar(character)) return TOKEN_EOF;
    if (!IsWhitespace(character)) continue;
    if (!SkipWhitespace(character)) return TOKEN_EOF;
    if (!IsDelimiter(character)) break;
  }
  return EndPlain(character);
}

// Ends a token with the delimiter that was read, or with another character, which stands behind
// white space and is to begin the next token.
CFileTokenizer::Status CFileTokenizer::EndPlain(char next) {
  if (IsDelimiter(next)) return Finish(next);
  source_->UnGetc(static_cast<unsigned char>(next));
  return Finish(kLineFeed);
}

template <class Text>
CFileTokenizer::Status CFileTokenizer::ParseQuoted(Text& token, char quote) {
  lastTokenQuoted_ = true;
  char character = 0;
  for (;;) {
    TakeRun(token, quotedEnds_);
    if (!GetNextChar(character)) return TOKEN_EOF;
    if (character == quote) {
      if (!GetNextChar(character)) return TOKEN_EOF;
      if (character != quote) break;
    }
    Append(token, character);
  }
  if (!SkipWhitespace(character)) return TOKEN_EOF;
  if (!IsDelimiter(character)) source_->UnGetc(static_cast<unsigned char>(character));
  return Finish(character);
}

// Appends what lies in the file's buffer up to the first of the ends.
template <class Text>
void CFileTokenizer::TakeRun(Text& token, const RunEnds& ends) {
  const auto bytes = source_->Buffered();
  if (bytes.empty()) return;  // then it has no address that could be copied from
  const std::size_t length = FindEnd(bytes, 0, ends);
  token.append(reinterpret_cast<const char*>(bytes.data()), length);
  source_->SkipBuffered(length);
}

// The place of the first such end from `at` on; the number of bytes without one.
std::size_t CFileTokenizer::FindEnd(std::span<const unsigned char> bytes, std::size_t at,
                                    const RunEnds& ends) const {
  const auto isEnd = [&](unsigned char byte) { return (classes_[byte] & ends.classes) != 0; };
  if (ends.isFew) return FindRunEnd(bytes, at, ends.rare, isEnd);
  while (at < bytes.size() && !isEnd(bytes[at])) ++at;
  return at;
}

// Goes on to the first character that is no white space; false at the end of the source.
bool CFileTokenizer::SkipWhitespace(char& character) {
  while (IsWhitespace(character)) {
    if (!GetNextChar(character)) return false;
  }
  return true;
}

CFileTokenizer::Status CFileTokenizer::Finish(char terminator) {
  ++numTokensParsed_;
  lastTokenTermChar_ = terminator;
  return TOKEN_OK;
}

CFileTokenizer::Status CFileTokenizer::Parse(int& value) {
  NumberToken token;
  const Status status = ParseText(token, false);
  if (status != TOKEN_OK) return status;
  return ReadNumber(token.c_str(), token.size(), value) ? TOKEN_OK : TOKEN_BAD_VALUE;
}

CFileTokenizer::Status CFileTokenizer::Parse(double& value) {
  if (ParseBufferedNumber(value)) return TOKEN_OK;
  NumberToken token;
  const Status status = ParseText(token, false);
  if (status != TOKEN_OK) return status;
  return ReadNumber(token.c_str(), token.size(), value) ? TOKEN_OK : TOKEN_BAD_VALUE;
}

CFileTokenizer::Status CFileTokenizer::Parse(bool& value) {
  int number = 0;
  const Status status = Parse(number);
  if (status == TOKEN_OK) value = number != 0;
  return status;
}

}  // namespace trovan
