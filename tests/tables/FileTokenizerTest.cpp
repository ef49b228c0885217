// Texts and their tokens.
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <trovan/FileTokenizer.h>

#include "tables/FileTokenizerFixture.h"

namespace trovan::test {
namespace {

using std::string_view_literals::operator""sv;

TEST(CFileTokenizerStatus, HasTheNumbersThatCallersKnow) {
  EXPECT_EQ(static_cast<int>(CFileTokenizer::TOKEN_OK), 0);
  EXPECT_EQ(static_cast<int>(CFileTokenizer::TOKEN_EMPTY), 1);
  EXPECT_EQ(static_cast<int>(CFileTokenizer::TOKEN_EOF), 2);
  EXPECT_EQ(static_cast<int>(CFileTokenizer::TOKEN_BAD_VALUE), 3);
}

// Fields and lines.

TEST_F(FileTokenizerTest, SplitsALineAtItsDelimiters) {
  EXPECT_EQ(All("a,b,d\n"), (Strings{"a|,", "b|,", "d|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReportsAnEmptyFieldBetweenTwoDelimiters) {
  EXPECT_EQ(All("a,,b\n"), (Strings{"a|,", "EMPTY|,", "b|\n", "EOF "}));
  EXPECT_EQ(All("a, \t ,b\n"), (Strings{"a|,", "EMPTY|,", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReportsAnEmptyFieldInFrontOfTheFirstDelimiter) {
  EXPECT_EQ(All(",a\n"), (Strings{"EMPTY|,", "a|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReportsNoEmptyFieldBehindTheLastDelimiterOfALine) {
  EXPECT_EQ(All("a,\nb\n"), (Strings{"a|,", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, NeverMakesFieldsOfLineEnds) {
  EXPECT_EQ(All("\n\n \n\t\na\n\n\nb\n\n"), (Strings{"a|\n", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, TakesALineFeedInTheDelimitersForALineEnd) {
  tokens_.SetDelimiters(",\n");
  EXPECT_EQ(All("\n\na,\nb\n"), (Strings{"a|,", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReportsAnEmptyFieldInFrontOfAFormFeed) {
  EXPECT_EQ(All("\fa\f\f \fb\n\f"),
            (Strings{"EMPTY|\f", "a|\f", "EMPTY|\f", "EMPTY|\f", "b|\n", "EMPTY|\f", "EOF "}));
}

TEST_F(FileTokenizerTest, GivesTheTokenThatTheEndOfTheFileCutOff) {
  EXPECT_EQ(All("a,bc"), (Strings{"a|,", "EOF bc"}));
  EXPECT_EQ(All("a,bc  "), (Strings{"a|,", "EOF bc"}));
  EXPECT_EQ(All("a,bc\r"), (Strings{"a|,", "EOF bc"}));
  EXPECT_EQ(All(""), (Strings{"EOF "}));
  EXPECT_EQ(All(" \t "), (Strings{"EOF "}));
}

TEST_F(FileTokenizerTest, StaysAtTheEnd) {
  All("a");
  EXPECT_EQ(Next(), "EOF ");
  EXPECT_EQ(Next(true), "EOF ");
}

// White space.

TEST_F(FileTokenizerTest, DropsWhiteSpaceInFrontOfTokensDelimitersAndLineEnds) {
  EXPECT_EQ(All("  a \t ,\t b \n\tc\t\f"), (Strings{"a|,", "b|\n", "c|\f", "EOF "}));
  EXPECT_EQ(All("  a   ,"), (Strings{"a|,", "EOF "}));
}

TEST_F(FileTokenizerTest, SeparatesTokensByWhiteSpaceAndReportsALineFeedForIt) {
  Open("a b\n");
  EXPECT_EQ(Next(), "a|\n");
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 0U) << "no line feed was read";
  EXPECT_EQ(tokens_.GetFilePosition(), 2) << "the b was pushed back";
  EXPECT_EQ(Next(), "b|\n");
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 1U);
}

TEST_F(FileTokenizerTest, MakesBlanksPartOfTokensWhereThereIsNoWhiteSpace) {
  tokens_.SetWhitespace("");
  EXPECT_EQ(All(" a b ,\t\n"), (Strings{" a b |,", "\t|\n", "EOF "}));
}

// Carriage returns and NUL bytes.

TEST_F(FileTokenizerTest, ReadsLinesOfWindowsAsThoseOfUnix) {
  for (const std::string_view text : {"a,b\nc d\n\n,e\n"sv, "a,\nb"sv, "\"x\ny\" ,z\n"sv}) {
    std::string windows;
    for (const char c : text) windows += c == '\n' ? "\r\n" : std::string(1, c);
    EXPECT_EQ(All(windows), All(text));
    EXPECT_EQ(AllQuoted(windows), AllQuoted(text));
  }
}

TEST_F(FileTokenizerTest, DropsCarriageReturnsWhereverTheyStand) {
  EXPECT_EQ(All("\ra\r\rb\r ,\r,\r"), (Strings{"ab|,", "EMPTY|,", "EOF "}));
  EXPECT_EQ(AllQuoted("\r\"a\r\nb\r\"\r\"\r\"\r,"), (Strings{"a\nb\"|,", "EOF "}));
}

TEST_F(FileTokenizerTest, DropsCarriageReturnsThoughASetHasThem) {
  tokens_.SetWhitespace("\r");
  EXPECT_EQ(All("a\rb,"), (Strings{"ab|,", "EOF "}));
  tokens_.SetDelimiters("\r,");
  EXPECT_EQ(All("\ra\rb,"), (Strings{"ab|,", "EOF "}));
  tokens_.SetQuotes("\r");
  EXPECT_EQ(AllQuoted("\ra\rb,"), (Strings{"ab|,", "EOF "}));
}

TEST_F(FileTokenizerTest, DropsNulBytes) {
  EXPECT_EQ(All("a\0b,\0c\0\n"sv), (Strings{"ab|,", "c|\n", "EOF "}));
  EXPECT_EQ(AllQuoted("\"a\0b\"\n"sv), (Strings{"ab|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, TakesANulByteForATokenWithoutText) {
  EXPECT_EQ(All("\0,\0\n"sv), (Strings{"|,", "|\n", "EOF "}));
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 2U);
}

TEST_F(FileTokenizerTest, KnowsBytesOnly) {
  EXPECT_EQ(All("\xC3\xA9\x80,\xFF\n"), (Strings{"\xC3\xA9\x80|,", "\xFF|\n", "EOF "}));
  tokens_.SetDelimiters("\xFF");
  tokens_.SetWhitespace("\x80");
  tokens_.SetQuotes("\xC3");
  EXPECT_EQ(AllQuoted("a\x80\xFF\xC3,\xFF\xC3\xC3\xC3\xFF"),
            (Strings{"a|\xFF", ",\xFF\xC3|\xFF", "EOF "}));
}

TEST_F(FileTokenizerTest, PushesBackBytesOfEveryValue) {
  tokens_.SetQuotes("");
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (std::string_view(" \t,\r\n\f").find(c) != std::string_view::npos) continue;
    EXPECT_EQ(All(std::string("a ") + c + ","),
              (Strings{"a|\n", std::string(1, c) + "|,", "EOF "}));
  }
}

// Runs of more bytes than a word has, and sets of few and of many members.
TEST_F(FileTokenizerTest, TakesEachByteIntoEachSet) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string c(1, static_cast<char>(byte));
    if (std::string_view(" \t,\r\n\f").find(c) != std::string_view::npos) continue;
    const std::string run(11, c == "x" ? 'y' : 'x');
    for (const std::string others : {"", "!", "!~", "\xFF!~"}) {
      SCOPED_TRACE(testing::Message() << byte << " and " << others.size() << " others");
      const std::string set = others + c;
      Open(run + c + run + c + "\n" + run + c + run + "," + c + run + c + c + run + c + ",");
      tokens_.SetDelimiters(set.c_str());
      EXPECT_EQ(Next(), run + "|" + c);
      EXPECT_EQ(Next(), run + "|" + c);
      tokens_.SetDefaults();
      tokens_.SetWhitespace(set.c_str());
      EXPECT_EQ(Next(), run + "|\n");
      EXPECT_EQ(Next(), run + "|,");
      tokens_.SetDefaults();
      tokens_.SetQuotes(set.c_str());
      EXPECT_EQ(Next(true), run + c + run + "|,");
      tokens_.SetDefaults();
    }
  }
}

// Quotes.

TEST_F(FileTokenizerTest, TakesAnythingBetweenQuotes) {
  Open("\"a, b\"\" \n\f'\t\",c\n");
  EXPECT_EQ(Next(true), "a, b\" \n\f'\t|,");
  EXPECT_TRUE(tokens_.LastTokenQuoted());
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 1U) << "lines in quotes count";
  EXPECT_EQ(Next(true), "c|\n");
  EXPECT_FALSE(tokens_.LastTokenQuoted());
}

TEST_F(FileTokenizerTest, LeavesWhatFollowsTheClosingQuoteToTheNextToken) {
  EXPECT_EQ(AllQuoted("\"a\"xy,"), (Strings{"a|x", "xy|,", "EOF "}));
  EXPECT_EQ(AllQuoted("\"a\" \t xy,"), (Strings{"a|x", "xy|,", "EOF "}));
  tokens_.SetQuotes("\"'");
  EXPECT_EQ(AllQuoted("\"a\"'b'\n"), (Strings{"a|'", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ConsumesTheDelimiterBehindTheClosingQuote) {
  EXPECT_EQ(AllQuoted("\"a\" ,\"b\"\t\n\"c\"\f\"d\","),
            (Strings{"a|,", "b|\n", "c|\f", "d|,", "EOF "}));
}

TEST_F(FileTokenizerTest, GivesAnEmptyQuotedTokenAsAToken) {
  EXPECT_EQ(AllQuoted("\"\",\"\"\n"), (Strings{"|,", "|\n", "EOF "}));
  EXPECT_EQ(AllQuoted("\"\"\"\"\n"), (Strings{"\"|\n", "EOF "}));
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 1U);
}

TEST_F(FileTokenizerTest, EndsAQuotedTokenAtItsOwnQuoteOnly) {
  tokens_.SetQuotes("'\"");
  EXPECT_EQ(AllQuoted("'a\"\"b''c',\"d''e\"\n"), (Strings{"a\"\"b'c|,", "d''e|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, HonoursQuotesOnlyWhenAsked) {
  Open("\"a\",");
  EXPECT_EQ(Next(false), "\"a\"|,");
  EXPECT_FALSE(tokens_.LastTokenQuoted());
}

TEST_F(FileTokenizerTest, TakesAQuoteInsideAPlainTokenForAnOrdinaryCharacter) {
  EXPECT_EQ(AllQuoted("a\"b\"c,"), (Strings{"a\"b\"c|,", "EOF "}));
}

TEST_F(FileTokenizerTest, SkipsWhiteSpaceInFrontOfAQuote) {
  EXPECT_EQ(AllQuoted(" \t\"a\","), (Strings{"a|,", "EOF "}));
}

TEST_F(FileTokenizerTest, MeetsTheEndOfTheFileAnywhereInAQuotedToken) {
  for (const char* text : {"\"a", "\"a\"", "\"a\" ", "\"a\"\t\r "}) {
    Open(text);
    EXPECT_EQ(Next(true), "EOF a") << text;
    EXPECT_TRUE(tokens_.LastTokenQuoted());
    EXPECT_EQ(tokens_.GetNumTokensParsed(), 0U);
  }
  EXPECT_EQ(AllQuoted("\"a\"\""), (Strings{"EOF a\""}));
  EXPECT_EQ(AllQuoted("\""), (Strings{"EOF "}));
}

// What stands in two sets.

TEST_F(FileTokenizerTest, TakesWhiteSpaceThatIsADelimiterForWhiteSpace) {
  tokens_.SetDelimiters(" ,");
  EXPECT_EQ(AllQuoted("  a , b \"c\" ,"), (Strings{"a|,", "b|\n", "c|,", "EOF "}));
}

TEST_F(FileTokenizerTest, TakesLineAndFormFeedsInTheWhiteSpaceForWhiteSpace) {
  tokens_.SetWhitespace(" \n\f");
  EXPECT_EQ(AllQuoted("\n\fa\n\fb\f,\"c\"\n,\n"), (Strings{"a|\n", "b|,", "c|,", "EOF "}));
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 4U) << "they count all the same";
}

TEST_F(FileTokenizerTest, TakesADelimiterThatIsAQuoteForADelimiter) {
  tokens_.SetDelimiters("\"");
  EXPECT_EQ(AllQuoted("\"a\"b\n"), (Strings{"EMPTY|\"", "a|\"", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, NeverOpensATokenByAQuoteThatIsWhiteSpace) {
  tokens_.SetWhitespace(" '");
  tokens_.SetQuotes("'");
  EXPECT_EQ(AllQuoted("'a b',"), (Strings{"a|\n", "b|,", "EOF "}));
}

TEST_F(FileTokenizerTest, NeverOpensATokenByALineFeedOrAFormFeed) {
  tokens_.SetQuotes("\n\f");
  EXPECT_EQ(AllQuoted("\na\n\fb\n"), (Strings{"a|\n", "EMPTY|\f", "b|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReadsWithEmptySets) {
  tokens_.SetWhitespace("");
  tokens_.SetDelimiters("");
  tokens_.SetQuotes("");
  EXPECT_EQ(AllQuoted("\"a, b\"\n\n,\f"), (Strings{"\"a, b\"|\n", ",|\f", "EOF "}));
}

TEST_F(FileTokenizerTest, ReadsEachCallWithTheSetsOfTheMoment) {
  Open("a,b;c,d;e\n");
  EXPECT_EQ(Next(), "a|,");
  tokens_.SetDelimiters(";");
  EXPECT_EQ(Next(), "b|;");
  EXPECT_EQ(Next(), "c,d|;");
  tokens_.SetDefaults();
  EXPECT_EQ(Next(), "e|\n");
}

TEST_F(FileTokenizerTest, TakesSetsInAnyOrderAndWithRepetitions) {
  tokens_.SetDelimiters(";,;;,");
  EXPECT_EQ(tokens_.GetDelimiters(), ";,;;,");
  EXPECT_EQ(All("a;b,c\n"), (Strings{"a|;", "b|,", "c|\n", "EOF "}));
}

TEST_F(FileTokenizerTest, ReadsLongTokensAcrossTheFilesBuffer) {
  const std::string plain(300'000, 'x');
  std::string quoted(200'000, '\n');
  EXPECT_TRUE(AllQuoted(plain + ",\"" + quoted + "\"\n") ==
              (Strings{plain + "|,", quoted + "|\n", "EOF "}));
  EXPECT_EQ(tokens_.GetNumLinesParsed(), 200'001U);
}

}  // namespace
}  // namespace trovan::test
