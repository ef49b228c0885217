#include "filters/text/TokenLister.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TextFixture.h"
#include "filters/text/EscapedText.h"

namespace trovan::test {
namespace {

using filters::Escaped;
using filters::FilterError;
using filters::TokenKind;
using filters::TokenLister;
using filters::TokenOptions;
using testing::ElementsAre;

class TokenListerTest : public TextFixture {
 protected:
  std::wstring Save(std::string_view bytes) const {
    WriteBytes(folder_.Path() / "tokens.txt", bytes);
    return folder_.File(L"tokens.txt");
  }

  // Each token as `number line STATUS 'end' text = value`, quoted texts in brackets.
  Rows List(std::string_view bytes, const TokenOptions& options = {}) const {
    Rows rows;
    TokenLister lister(Save(bytes), options);
    while (lister.Next()) {
      const filters::ListedToken& token = lister.Token();
      std::string row = std::to_string(token.number) + ' ' + std::to_string(token.line) + ' ' +
                        std::string(filters::StatusName(token.status)).substr(6);
      if (token.terminator) row += " '" + Escaped({&*token.terminator, 1}) + "'";
      const std::string text = Escaped(token.text);
      if (!text.empty() || token.quoted) row += ' ' + (token.quoted ? "[" + text + "]" : text);
      if (!token.value.empty()) row += " = " + token.value;
      rows.push_back(row);
    }
    return rows;
  }

  static TokenOptions As(TokenKind kind) {
    TokenOptions options;
    options.kind = kind;
    return options;
  }
};

TEST_F(TokenListerTest, ListsEveryCallWithItsLine) {
  EXPECT_THAT(List("a,,b c\n\n \"d,\n\"\"e\"\r\n\f x"),
              ElementsAre("1 1 OK ',' a", "2 1 EMPTY ','", R"(3 1 OK '\n' b)", R"(4 1 OK '\n' c)",
                          R"(5 3 OK '\n' [d,\n"e])", R"(6 5 EMPTY '\f')", "7 5 EOF x"));
}

TEST_F(TokenListerTest, EndsWithTheCallThatFindsTheEnd) {
  EXPECT_THAT(List(""), ElementsAre("1 1 EOF"));
  EXPECT_THAT(List("a\n"), ElementsAre(R"(1 1 OK '\n' a)", "2 2 EOF"));
  EXPECT_THAT(List("\"a\n"), ElementsAre(R"(1 1 EOF [a\n])"));
}

TEST_F(TokenListerTest, ShowsWhatFollowsAClosingQuoteAsATokenOfItsOwn) {
  EXPECT_THAT(List("\"a\"xy,\n"), ElementsAre("1 1 OK 'x' [a]", "2 1 OK ',' xy", "3 2 EOF"));
}

TEST_F(TokenListerTest, TakesOtherSets) {
  TokenOptions options;
  options.delimiters = ";|";
  options.whitespace = "";
  options.quotes = "'";
  EXPECT_THAT(List(" a;'b;c'|\"d", options),
              ElementsAre("1 1 OK ';'  a", "2 1 OK '|' [b;c]", "3 1 EOF \"d"));
  options.useQuotes = false;
  EXPECT_THAT(List("'b;c'", options), ElementsAre("1 1 OK ';' 'b", "2 1 EOF c'"));
}

TEST_F(TokenListerTest, RefusesNulBytesInSets) {
  TokenOptions options;
  options.delimiters = std::string(1, '\0');
  EXPECT_THROW(TokenLister(Save("a"), options), FilterError);
}

TEST_F(TokenListerTest, ReadsNumbersAsTheTokenizerDoes) {
  EXPECT_THAT(List("12x,\"3\",abc,,-5,9", As(TokenKind::kInteger)),
              ElementsAre("1 1 OK ',' 12x = 12", "2 1 BAD_VALUE ',' \"3\"", "3 1 BAD_VALUE ',' abc",
                          "4 1 EMPTY ','", "5 1 OK ',' -5 = -5", "6 1 EOF 9"));
  EXPECT_THAT(List("1.5e1 x\n-inf\n", As(TokenKind::kNumber)),
              ElementsAre(R"(1 1 OK '\n' 1.5e1 = 15)", R"(2 1 BAD_VALUE '\n' x)",
                          R"(3 2 OK '\n' -inf = -inf)", "4 3 EOF"));
  EXPECT_THAT(List("0,2,yes\n", As(TokenKind::kBoolean)),
              ElementsAre("1 1 OK ',' 0 = false", "2 1 OK ',' 2 = true",
                          R"(3 1 BAD_VALUE '\n' yes)", "4 2 EOF"));
}

TEST_F(TokenListerTest, RefusesATokenBeyondTheLimit) {
  TokenOptions options;
  options.longestToken = 8;
  EXPECT_EQ(List("1234567,12345678", options).size(), 2U);
  TokenLister lister(Save("a,\n\"1234567\",b"), options);
  EXPECT_TRUE(lister.Next());
  try {
    lister.Next();
    FAIL();
  } catch (const FilterError& error) {
    EXPECT_THAT(error.what(),
                testing::HasSubstr("tokens.txt, line 2: the token is longer than 8 bytes; "));
  }
  EXPECT_FALSE(lister.Next());
}

class StopSecond : public corvel::IProgress {
 public:
  bool Update(double) override { return ++updates_ < 2; }
  int updates_ = 0;
};

TEST_F(TokenListerTest, StopsWhenAskedTo) {
  StopSecond progress;
  TokenLister lister(Save("a" + std::string(2 * 1024 * 1024, '\n')), {}, &progress);
  EXPECT_TRUE(lister.Next());
  EXPECT_FALSE(lister.Next());
  EXPECT_TRUE(lister.WasStopped());
  EXPECT_EQ(progress.updates_, 2);
}

}  // namespace
}  // namespace trovan::test
