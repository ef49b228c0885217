// What CFileTokenizer makes of a file, call by call.
//
//   TokenLister lister(L"towns.txt", {});  // Oslo, "New Town"\n
//   lister.Next();  // true: Oslo, TOKEN_OK, ended by ','
//   lister.Next();  // true: New Town, quoted, TOKEN_OK, ended by a line feed
//   lister.Next();  // true: TOKEN_EOF
//   lister.Next();  // false
#pragma once

#include <optional>
#include <string>

#include <corvel/BufferedFile.h>
#include <corvel/Progress.h>
#include <trovan/FileTokenizer.h>

#include "filters/text/ReadProgress.h"

namespace trovan::filters {

// Which of the tokenizer's ways of reading is used. Quotes are honoured for texts only.
enum class TokenKind { kText, kInteger, kNumber, kBoolean };

// Sets that are not given are the tokenizer's own.
struct TokenOptions {
  std::optional<std::string> whitespace;
  std::optional<std::string> delimiters;
  std::optional<std::string> quotes;
  bool useQuotes = true;
  TokenKind kind = TokenKind::kText;
  long long longestToken = 64LL * 1024 * 1024;  // bytes of the file; what bounds the memory
};

struct ListedToken {
  unsigned long long number = 0;  // of the call, from 1
  unsigned long long line = 0;    // on which the token begins, from 1
  CFileTokenizer::Status status = CFileTokenizer::TOKEN_OK;
  std::optional<char> terminator;  // nothing for a token that did not end, or was no number
  bool quoted = false;
  std::string text;
  std::string value;  // as a number, or "true" and "false"; empty unless one was asked for and read
};

class TokenLister {
 public:
  // Raises FilterError when a set holds a NUL byte and for a device or a pipe, and
  // corvel::Exception when the file cannot be opened. `progress` may be null; once it asks to stop,
  // there are no more tokens.
  TokenLister(const std::wstring& path, const TokenOptions& options,
              corvel::IProgress* progress = nullptr);

  // Makes the next call; false behind the one that gave TOKEN_EOF.
  //
  // Raises FilterError, naming the line, for a token beyond the limit.
  bool Next();
  bool WasStopped() const { return progress_.WasStopped(); }

  const ListedToken& Token() const { return token_; }

 private:
  bool FindToken();
  bool IsWhitespace(int byte) const;
  void ParseToken(long long start);
  CFileTokenizer::Status ParseValue();
  void RequireEndOfFile();

  TokenOptions options_;
  corvel::CBufferedFile file_;
  CFileTokenizer tokens_;
  ListedToken token_;
  unsigned long long line_ = 1;  // of the next byte
  bool finished_ = false;
  ReadProgress progress_;
};

// "TOKEN_OK" and its like.
const char* StatusName(CFileTokenizer::Status status);

}  // namespace trovan::filters
