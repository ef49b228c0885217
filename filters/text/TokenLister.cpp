#include "TokenLister.h"

#include <corvel/Text.h>

#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

constexpr int kEnd = -1;

const char* Set(const std::optional<std::string>& characters) {
  if (characters->find('\0') != std::string::npos) {
    throw FilterError("a NUL byte can be no white space, delimiter or quote");
  }
  return characters->c_str();
}

}  // namespace

TokenLister::TokenLister(const std::wstring& path, const TokenOptions& options,
                         corvel::IProgress* progress)
    : options_(options) {
  RequireFile(path);
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  tokens_.SetSource(&file_);
  if (options_.whitespace) tokens_.SetWhitespace(Set(options_.whitespace));
  if (options_.delimiters) tokens_.SetDelimiters(Set(options_.delimiters));
  if (options_.quotes) tokens_.SetQuotes(Set(options_.quotes));
  progress_ = ReadProgress(progress, file_.GetLength());
}

bool TokenLister::IsWhitespace(int byte) const {
  return tokens_.GetWhitespace().find(static_cast<char>(byte)) != std::string::npos;
}

// Goes past what the next call would skip, so that the line of the token is known, and the place
// from which its length counts.
bool TokenLister::FindToken() {
  file_.SetReadEnd(corvel::CBufferedFile::kNoReadEnd);
  while (progress_.GoOn(file_)) {
    const int byte = file_.Getc();
    if (byte == kEnd) return true;
    if (byte == '\n') {
      ++line_;
    } else if (byte != '\r' && !IsWhitespace(byte)) {
      file_.UnGetc(byte);
      return true;
    }
  }
  return false;
}

bool TokenLister::Next() {
  if (finished_ || !FindToken()) return false;
  finished_ = true;  // should the call raise
  ++token_.number;
  token_.line = line_;
  const long long start = file_.GetPosition();
  file_.SetReadEnd(start + options_.longestToken);
  ParseToken(start);
  if (token_.status == CFileTokenizer::TOKEN_EOF) RequireEndOfFile();
  finished_ = token_.status == CFileTokenizer::TOKEN_EOF;
  return true;
}

void TokenLister::ParseToken(long long start) {
  token_.value.clear();
  const bool asText = options_.kind == TokenKind::kText;
  tokens_.SetNumLinesParsed(0);
  token_.status = tokens_.Parse(token_.text, asText && options_.useQuotes);
  line_ += tokens_.GetNumLinesParsed();
  token_.quoted = tokens_.LastTokenQuoted();
  token_.terminator.reset();
  if (token_.status != CFileTokenizer::TOKEN_EOF) token_.terminator = tokens_.LastTokenTermChar();
  if (asText) return;
  // Once more, as what was asked for.
  file_.Seek(start, corvel::kFileBegin);
  token_.status = ParseValue();
}

CFileTokenizer::Status TokenLister::ParseValue() {
  const auto show = [this](CFileTokenizer::Status status, const std::string& value) {
    if (status == CFileTokenizer::TOKEN_OK) token_.value = value;
    return status;
  };
  if (options_.kind == TokenKind::kNumber) {
    double number = 0.0;
    const auto status = tokens_.Parse(number);
    return show(status, ShortestText(number));
  }
  if (options_.kind == TokenKind::kBoolean) {
    bool truth = false;
    const auto status = tokens_.Parse(truth);
    return show(status, truth ? "true" : "false");
  }
  int integer = 0;
  const auto status = tokens_.Parse(integer);
  return show(status, std::to_string(integer));
}

// The end that was found may be that of the longest token.
void TokenLister::RequireEndOfFile() {
  file_.SetReadEnd(corvel::CBufferedFile::kNoReadEnd);
  if (file_.Getc() == kEnd) return;
  throw FilterError(corvel::Utf8FromWide(file_.GetPath()) + ", line " +
                    std::to_string(token_.line) + ": the token is longer than " +
                    std::to_string(options_.longestToken) +
                    " bytes; is a quote never closed? (--no-quotes reads quotes as ordinary "
                    "characters)");
}

const char* StatusName(CFileTokenizer::Status status) {
  switch (status) {
    case CFileTokenizer::TOKEN_OK:
      return "TOKEN_OK";
    case CFileTokenizer::TOKEN_EMPTY:
      return "TOKEN_EMPTY";
    case CFileTokenizer::TOKEN_EOF:
      return "TOKEN_EOF";
    case CFileTokenizer::TOKEN_BAD_VALUE:
      return "TOKEN_BAD_VALUE";
  }
  return "";
}

}  // namespace trovan::filters
