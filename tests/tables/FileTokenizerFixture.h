// The vocabulary of the tokenizer's tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <trovan/FileTokenizer.h>

#include "support/TempFolder.h"

namespace trovan::test {

using Strings = std::vector<std::string>;

// A tokenizer on a file of its own, and what it answers as text.
class FileTokenizerTest : public testing::Test {
 protected:
  // The counts start anew, the sets stay.
  void Open(std::string_view text) {
    file_.Close();
    WriteBytes(folder_.Path() / "text.txt", text);
    file_.Open(folder_.File(L"text.txt"), "rb", corvel::kFileShareRead, false);
    tokens_.SetSource(&file_);
  }

  // "a|," for the token a that a comma ended, "EMPTY|," for an empty field in front of a comma,
  // "EOF a" for what the end of the file cut off.
  std::string Next(bool useQuotes = false) {
    std::string token = "old";
    switch (tokens_.Parse(token, useQuotes)) {
      case CFileTokenizer::TOKEN_OK:
        return token + "|" + tokens_.LastTokenTermChar();
      case CFileTokenizer::TOKEN_EMPTY:
        EXPECT_EQ(token, "");
        return std::string("EMPTY|") + tokens_.LastTokenTermChar();
      case CFileTokenizer::TOKEN_EOF:
        return "EOF " + token;
      default:
        return "no status of a text";
    }
  }

  // All that the text gives, the end included.
  Strings All(std::string_view text, bool useQuotes = false) {
    Open(text);
    Strings all;
    do all.push_back(Next(useQuotes));
    while (all.back().compare(0, 4, "EOF ") != 0);
    return all;
  }
  Strings AllQuoted(std::string_view text) { return All(text, true); }

  // The first token of the text as a number.
  template <class Value>
  CFileTokenizer::Status Read(std::string_view text, Value& value) {
    Open(text);
    return tokens_.Parse(value);
  }

  TempFolder folder_;
  corvel::CBufferedFile file_;
  CFileTokenizer tokens_;
};

}  // namespace trovan::test
