#include "tables/FileTokenizerModel.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace trovan::test {
namespace {

using Status = CFileTokenizer::Status;

constexpr char kLineFeed = 10;
constexpr char kFormFeed = 12;
constexpr int kCarriageReturn = 13;

bool Contains(const std::string& set, char c) { return set.find(c) != std::string::npos; }

// As a text of one character with a NUL behind it, which is no text at all for a NUL.
void AppendText(std::string& token, char c) {
  const char text[] = {c, '\0'};
  token += text;
}

template <class Value>
bool Same(const Value& a, const Value& b) {
  return a == b;
}
// The same bits: 0 and -0 differ, a NaN is itself.
bool Same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

std::string Shown(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%a", value);
  return text;
}
std::string Shown(int value) { return std::to_string(value); }
std::string Shown(bool value) { return value ? "true" : "false"; }
std::string Shown(const std::string& text) { return ShownText(text); }

template <class Value, class... Quotes>
std::string DisagreementOfCall(const Value& before, CFileTokenizer& tokens,
                               FileTokenizerModel& model, Status& status, Quotes... quotes) {
  Value value = before;
  Value expected = before;
  const Status got = tokens.Parse(value, quotes...);
  status = model.Parse(expected, quotes...);
  if (got != status) {
    return "status " + std::to_string(got) + " instead of " + std::to_string(status);
  }
  if (Same(value, expected)) return {};
  return "value " + Shown(value) + " instead of " + Shown(expected);
}

std::string Differs(const char* what, long long is, long long expected) {
  return std::string(what) + " " + std::to_string(is) + " instead of " + std::to_string(expected);
}

std::string DisagreementOfStates(const CFileTokenizer& tokens, const FileTokenizerModel& model) {
  if (tokens.LastTokenQuoted() != model.LastTokenQuoted()) {
    return Differs("quoted", tokens.LastTokenQuoted(), model.LastTokenQuoted());
  }
  if (tokens.LastTokenTermChar() != model.LastTokenTermChar()) {
    return Differs("terminator", tokens.LastTokenTermChar(), model.LastTokenTermChar());
  }
  if (tokens.GetNumLinesParsed() != model.NumLines()) {
    return Differs("lines", tokens.GetNumLinesParsed(), model.NumLines());
  }
  if (tokens.GetNumTokensParsed() != model.NumTokens()) {
    return Differs("tokens", tokens.GetNumTokensParsed(), model.NumTokens());
  }
  const auto position = static_cast<long long>(model.Source().Position());
  if (tokens.GetFilePosition() != position) {
    return Differs("position", tokens.GetFilePosition(), position);
  }
  if (tokens.EndOfFile() != model.Source().EndOfFile()) {
    return Differs("end mark", tokens.EndOfFile(), model.Source().EndOfFile());
  }
  return {};
}

}  // namespace

std::string ShownText(std::string_view text) {
  std::string shown = "\"";
  for (const char c : text) {
    char hex[5];
    std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
    const bool isPlain = c >= ' ' && c <= '~' && c != '\\' && c != '"';
    shown += isPlain ? std::string(1, c) : hex;
  }
  return shown + "\"";
}

int TextSource::Getc() {
  if (pushedBack_ >= 0) {
    ++position_;
    return std::exchange(pushedBack_, -1);
  }
  if (position_ >= bytes_.size()) {
    end_ = true;
    return -1;
  }
  return static_cast<unsigned char>(bytes_[position_++]);
}

int TextSource::UnGetc(int byte) {
  if (byte < 0 || byte > 255 || pushedBack_ >= 0 || position_ == 0) return -1;
  pushedBack_ = byte;
  --position_;
  end_ = false;
  return byte;
}

void TextSource::Seek(std::size_t position) {
  position_ = position;
  pushedBack_ = -1;
  end_ = false;
}

bool FileTokenizerModel::IsWhitespace(char c) const { return Contains(sets_.whitespace, c); }

bool FileTokenizerModel::EndsToken(char c) const {
  return Contains(sets_.delimiters, c) || c == kLineFeed || c == kFormFeed;
}

bool FileTokenizerModel::ReadCharacter(char& c) {
  int byte = kCarriageReturn;
  while (byte == kCarriageReturn) byte = source_.Getc();
  if (byte == -1) return false;
  c = static_cast<char>(byte);
  if (c == kLineFeed) ++lines_;
  return true;
}

Status FileTokenizerModel::End(char terminator) {
  ++tokens_;
  terminator_ = terminator;
  return CFileTokenizer::TOKEN_OK;
}

Status FileTokenizerModel::Parse(std::string& token, bool useQuotes) {
  token.clear();
  quoted_ = false;
  for (char c = 0;;) {
    if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
    if (IsWhitespace(c)) continue;
    if (EndsToken(c)) {
      if (c == kLineFeed) continue;
      terminator_ = c;
      return CFileTokenizer::TOKEN_EMPTY;
    }
    if (useQuotes && Contains(sets_.quotes, c)) return ReadQuoted(token, c);
    return ReadPlain(token, c);
  }
}

Status FileTokenizerModel::ReadQuoted(std::string& token, char quote) {
  quoted_ = true;
  char c = 0;
  for (;;) {
    if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
    if (c == quote) {
      if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
      if (c != quote) break;
    }
    AppendText(token, c);
  }
  while (IsWhitespace(c)) {
    if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
  }
  if (!EndsToken(c)) source_.UnGetc(static_cast<unsigned char>(c));
  return End(c);
}

Status FileTokenizerModel::ReadPlain(std::string& token, char c) {
  for (;;) {
    if (EndsToken(c)) return End(c);
    AppendText(token, c);
    if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
    if (!IsWhitespace(c)) continue;
    while (IsWhitespace(c)) {
      if (!ReadCharacter(c)) return CFileTokenizer::TOKEN_EOF;
    }
    if (EndsToken(c)) continue;
    source_.UnGetc(static_cast<unsigned char>(c));
    c = kLineFeed;
  }
}

Status FileTokenizerModel::Parse(int& value) {
  std::string token;
  const Status status = Parse(token, false);
  if (status != CFileTokenizer::TOKEN_OK) return status;
  char* end = nullptr;
  const long number = std::strtol(token.c_str(), &end, 10);
  if (end == token.c_str()) return CFileTokenizer::TOKEN_BAD_VALUE;
  value = static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
  return CFileTokenizer::TOKEN_OK;
}

Status FileTokenizerModel::Parse(double& value) {
  std::string token;
  const Status status = Parse(token, false);
  if (status != CFileTokenizer::TOKEN_OK) return status;
  char* end = nullptr;
  const double number = std::strtod(token.c_str(), &end);
  if (end == token.c_str()) return CFileTokenizer::TOKEN_BAD_VALUE;
  value = number;
  return CFileTokenizer::TOKEN_OK;
}

Status FileTokenizerModel::Parse(bool& value) {
  int number = 0;
  const Status status = Parse(number);
  if (status == CFileTokenizer::TOKEN_OK) value = number != 0;
  return status;
}

void GiveSets(CFileTokenizer& tokens, const FileTokenizerModel::Sets& sets) {
  tokens.SetWhitespace(sets.whitespace.c_str());
  tokens.SetDelimiters(sets.delimiters.c_str());
  tokens.SetQuotes(sets.quotes.c_str());
}

std::string DisagreementAfter(TokenCall call, CFileTokenizer& tokens, FileTokenizerModel& model,
                              Status& status) {
  std::string difference;
  switch (call) {
    case TokenCall::kText:
      difference = DisagreementOfCall<std::string>("old", tokens, model, status, false);
      break;
    case TokenCall::kQuotedText:
      difference = DisagreementOfCall<std::string>("old", tokens, model, status, true);
      break;
    case TokenCall::kInt:
      difference = DisagreementOfCall<int>(-77'777, tokens, model, status);
      break;
    case TokenCall::kDouble:
      difference = DisagreementOfCall<double>(-77.125, tokens, model, status);
      break;
    case TokenCall::kBool:
      // Either may be what stays.
      difference = DisagreementOfCall<bool>(model.NumTokens() % 2 == 0, tokens, model, status);
      break;
  }
  return difference.empty() ? DisagreementOfStates(tokens, model) : difference;
}

std::string DisagreementOfSources(const corvel::CBufferedFile& file, const TextSource& source) {
  const auto position = static_cast<long long>(source.Position());
  if (file.GetPosition() != position) return Differs("position", file.GetPosition(), position);
  if (file.EndOfFile() == source.EndOfFile()) return {};
  return Differs("end mark", file.EndOfFile(), source.EndOfFile());
}

}  // namespace trovan::test
