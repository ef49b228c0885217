#include "filters/text/TextSniffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/Exception.h>

#include "TextFixture.h"

namespace trovan::test {
namespace {

using filters::SniffHints;
using filters::SniffText;
using filters::TextReport;
using testing::ElementsAre;
using testing::HasSubstr;

class TextSnifferTest : public TextFixture {
 protected:
  TextReport Sniff(std::string_view bytes, const SniffHints& hints = {}) const {
    WriteBytes(folder_.Path() / "towns.csv", bytes);
    return SniffText(folder_.File(L"towns.csv"), hints);
  }
};

TEST_F(TextSnifferTest, TellsTheEncoding) {
  const struct {
    std::string bytes;
    const char* encoding;
    bool binary;
  } cases[] = {
      {"", "ASCII", false},
      {"a,b\n", "ASCII", false},
      {"\xC3\xA9,b\n", "UTF-8", false},
      {"\xEF\xBB\xBF"
       "a,b\n",
       "UTF-8 with BOM", false},
      {"\xE9,b\n", "8-bit", false},
      {"\xEF\xBB\xBF"
       "a,\xE9\n",
       "8-bit", false},
      {std::string("a\0b", 3), "unknown", true},
      {std::string("\xFF\xFE"
                   "a\0",
                   4),
       "UTF-16 LE", true},
      {std::string("\xFE\xFF\0a", 4), "UTF-16 BE", true},
      {"\xFF\xFE\x41\x42", "UTF-16 LE", false},
      {std::string("\xFF\xFE\0\0a\0\0\0", 8), "UTF-32 LE", true},
      {std::string("\0\0\xFE\xFF\0\0\0a", 8), "UTF-32 BE", true},
  };
  for (const auto& c : cases) {
    const TextReport report = Sniff(c.bytes);
    EXPECT_EQ(report.encoding, c.encoding) << testing::PrintToString(c.bytes);
    EXPECT_EQ(report.binary, c.binary) << testing::PrintToString(c.bytes);
  }
}

TEST_F(TextSnifferTest, LooksForNoRowsInBinaryAndWideText) {
  EXPECT_EQ(Sniff(std::string("a,b\nc,d\n\0", 9)).rows, 0U);
  EXPECT_EQ(Sniff("\xFF\xFE"
                  "a,b\nc,d\n")
                .rows,
            0U);
}

TEST_F(TextSnifferTest, TellsTheLineEnds) {
  EXPECT_EQ(Sniff("a").lineEnds, "none");
  EXPECT_EQ(Sniff("a\nb\n").lineEnds, "LF");
  EXPECT_EQ(Sniff("a\r\nb\r\n").lineEnds, "CR LF");
  EXPECT_EQ(Sniff("a\r\nb\n").lineEnds, "mixed");
  const TextReport report = Sniff("a\rb\r");
  EXPECT_EQ(report.lineEnds, "CR");
  EXPECT_THAT(report.problem, HasSubstr("all lines end with a carriage return alone"));
}

TEST_F(TextSnifferTest, FindsWhatSetsTheValuesApart) {
  const struct {
    const char* name;
    std::string bytes;
    bool delimited;
    std::string delimiters;
    std::size_t columns;
    char decimal;
  } cases[] = {
      {"commas", "a,b\n1,2\n", true, ",", 2, 0},
      {"semicolons", "a;b\n1;2\n", true, ";", 2, 0},
      {"tabs", "a\tb\n1\t2\n", true, "\t", 2, 0},
      {"bars", "a|b\n1|2\n", true, "|", 2, 0},
      {"blanks", "1.5 2.5\n3.5  4.5\n", true, "", 2, '.'},
      {"semicolons with decimal commas", "1,5;2,5\n3,5;4,5\n", true, ";", 2, ','},
      {"the same in one row", "1,5;2,5\n", true, ";", 2, ','},
      {"blanks with decimal commas", "1,5 2,5\n3,5 4,5\n", true, "", 2, ','},
      {"the same in one row", "1,5 2,5\n", true, "", 2, ','},
      {"tabs before commas in all rows", "a, b\tc\nd, e\tf\n", true, "\t", 2, 0},
      {"the commonest width counts", "a,b;c\n1,5;2\n3,5;4\n5;6\n", true, ";", 2, ','},
      {"commas inside quotes", "x;y\n\"1,2,3\";4\n\"5,6,7\";8\n", true, ";", 2, 0},
      {"one column", "a\n1.5\n2\n", false, "", 1, '.'},
      {"a text", "one two three\nfour\nfive, six\nseven\n", false, "", 1, 0},
      {"no rows", "\n\n", false, "", 0, 0},
      {"lists in quotes make no decimal commas", "a,b\n\"840,997\",1\n2,3\n4,5\n6,7\n8,9\n10,11\n",
       true, ",", 2, 0},
      {"decimal commas in quotes", "a,b\n\"8,9\",1\n\"2,5\",5\n", true, ",", 2, ','},
  };
  for (const auto& c : cases) {
    const TextReport report = Sniff(c.bytes);
    EXPECT_EQ(report.delimited, c.delimited) << c.name;
    EXPECT_EQ(report.format.delimiters, c.delimiters) << c.name;
    EXPECT_EQ(report.format.whitespace, c.delimited && c.delimiters.empty() ? " \t" : "") << c.name;
    EXPECT_EQ(report.columns, c.columns) << c.name;
    EXPECT_EQ(report.decimal, c.decimal) << c.name;
  }
}

TEST_F(TextSnifferTest, TakesTheQuotesThatCloseInFrontOfDelimiters) {
  const struct {
    const char* name;
    std::string bytes;
    const char* quotes;
  } cases[] = {
      {"none are used", "a,b\n1,2\n", "\""},
      {"double quotes", "\"a\",b\n1,\"2\"\n", "\""},
      {"single quotes", "'a','b, c'\n'1','2'\n", "'"},
      {"inches and feet", "size,b\n\"x\" y,2\n\"z\" u,3\n", ""},
      {"a quote that is never closed", "a,b\n\"x,2\ny,3\n", ""},
      {"double quotes that fail beside single ones", "'a',\"b\n'c',\"d\n", "'"},
      {"one fault in twelve",
       "\"a\",\"a\"\n\"a\",\"a\"\n\"a\",\"a\"\n\"a\",\"a\"\n\"a\",\"a\"\n\"a\" x,\"a\"\n", "\""},
      {"one fault in six", "\"a\",\"a\"\n\"a\",\"a\"\n\"a\" x,\"a\"\n", ""},
      {"among blanks", "\"a b\" c\n\"d e\" f\n", "\""},
      {"faults among blanks", "\"a\"b c\n\"d\"e f\n", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Sniff(c.bytes).format.quotes, c.quotes) << c.name;
}

TEST_F(TextSnifferTest, TellsAHeaderFromARow) {
  const struct {
    const char* name;
    std::string bytes;
    bool header;
  } cases[] = {
      {"a number below", "a,b\n1,x\n", true},
      {"a number in the first row", "a,2\n1,x\n", false},
      {"only texts, different ones", "a,b\nx,y\n", true},
      {"only texts, equal ones", "a,a\nx,y\n", false},
      {"an empty name among texts", "a,\nx,y\n", false},
      {"equal and empty names above numbers", "a,a,\n1,2,3\n", true},
      {"the first row alone", "a,b\n", true},
      {"a number alone", "1,2\n", false},
      {"a number with a decimal comma", "a;1,5\nb;2,5\n", false},
  };
  for (const auto& c : cases) {
    const TextReport report = Sniff(c.bytes);
    EXPECT_EQ(report.header, c.header) << c.name;
    EXPECT_EQ(report.names.empty(), !c.header) << c.name;
  }
  EXPECT_THAT(Sniff("\xEF\xBB\xBF\"the id\",b\n1,2\n").names, ElementsAre("the id", "b"));
}

TEST_F(TextSnifferTest, CountsRowsAndTheirWidths) {
  const TextReport report = Sniff("a,b\n\n1,2\n\"3\n\"\n4,5,6\n7,8");
  EXPECT_EQ(report.rows, 5U);
  EXPECT_TRUE(report.allRows);
  EXPECT_EQ(report.columns, 2U);
  EXPECT_EQ(report.rowsOfThatWidth, 3U);
  EXPECT_EQ(report.firstOtherLine, 4U);
  EXPECT_EQ(Sniff("a,b\n1,2\n").firstOtherLine, std::nullopt);
}

TEST_F(TextSnifferTest, LeavesOutCommentsInFrontOfTheRows) {
  const TextReport report = Sniff("# made by hand, in parts\n\n#; more\n# \na;b\n#1;2\n");
  EXPECT_EQ(report.commentLines, 1U);
  EXPECT_EQ(report.leadingLines, 2U);  // "#;" is a row: a column may be named so
  const TextReport all = Sniff("# made by hand, in parts\n\n# \na;b\n#1;2\n3;4\n");
  EXPECT_EQ(all.commentLines, 2U);
  EXPECT_EQ(all.leadingLines, 3U);
  EXPECT_EQ(all.rows, 3U);
  EXPECT_THAT(all.names, ElementsAre("a", "b"));
}

TEST_F(TextSnifferTest, GoesByWhatIsKnownBeforehand) {
  SniffHints hints;
  hints.skipLines = 1;
  EXPECT_THAT(Sniff("title; of, it\na,b\n1,2\n", hints).names, ElementsAre("a", "b"));
  hints = {};
  hints.delimiters = ",";
  EXPECT_EQ(Sniff("a;b,c;d\n", hints).columns, 2U);
  hints.delimiters = "";
  EXPECT_EQ(Sniff("a,b c,d\n", hints).format.whitespace, " \t");
  hints = {};
  hints.quotes = "";
  EXPECT_EQ(Sniff("\"a,b\"\n", hints).columns, 2U);
  hints = {};
  hints.comment = '%';
  EXPECT_EQ(Sniff("% x\na,b\n% y, z, u\n1,2\n", hints).rows, 2U);
  hints.comment = '\0';
  EXPECT_EQ(Sniff("#a,b\n1,2\n", hints).rows, 2U);
}

TEST_F(TextSnifferTest, LooksAtAThousandRows) {
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes += "1,2\n";
  EXPECT_EQ(Sniff(bytes).rows, 1000U);
  const TextReport report = Sniff(bytes + "1,2\n");
  EXPECT_EQ(report.rows, 1000U);
  EXPECT_FALSE(report.allRows);
}

TEST_F(TextSnifferTest, LooksAtAMebibyte) {
  std::string bytes;
  while (bytes.size() < 2 * 1024 * 1024) bytes += std::string(5000, 'x') + ",\"1\n2\"\n";
  const TextReport report = Sniff(bytes);
  EXPECT_EQ(report.survey.bytes, 1024 * 1024);
  EXPECT_EQ(report.rows, 1024U * 1024 / 5007);
  EXPECT_FALSE(report.allRows);
  EXPECT_EQ(report.problem, "");
  EXPECT_EQ(report.format.quotes, "\"");
}

TEST_F(TextSnifferTest, TellsWhyRowsEndEarly) {
  SniffHints hints;
  hints.quotes = "\"";
  const TextReport report = Sniff("a,b\n1,\"x\n2,y\n", hints);
  EXPECT_EQ(report.rows, 1U);
  EXPECT_FALSE(report.allRows);
  EXPECT_THAT(report.problem, HasSubstr("towns.csv, line 2, column 2: the quote"));
}

TEST_F(TextSnifferTest, TellsThatQuotesDoNotFit) {
  EXPECT_TRUE(Sniff("a,b\n1,\"x\n2,y\n").oddQuotes);
  EXPECT_TRUE(Sniff("\"one\"of;many\n").oddQuotes);
  EXPECT_FALSE(Sniff("a,b\n1,\"x\"\n2,y\n").oddQuotes);
  EXPECT_FALSE(Sniff("a,b\n1,x 7\"\n2,y\n").oddQuotes);
  SniffHints hints;
  hints.quotes = "";
  EXPECT_FALSE(Sniff("a,b\n1,\"x\n2,y\n", hints).oddQuotes);
}

TEST_F(TextSnifferTest, TellsThatNoRowIsInTheSample) {
  const std::string wide(1024 * 1024, 'x');
  const TextReport report = Sniff("a," + wide + "\n1,2\n");
  EXPECT_TRUE(report.noWholeRow);
  EXPECT_EQ(report.rows, 0U);
  EXPECT_THAT(report.problem, HasSubstr("towns.csv: no row ends within 1 MiB"));
  EXPECT_FALSE(Sniff("a,b\n1," + wide).noWholeRow);
  EXPECT_FALSE(Sniff("").noWholeRow);
}

TEST_F(TextSnifferTest, TakesItsSampleBehindTheLinesToSkip) {
  SniffHints hints;
  hints.skipLines = 2;
  const std::string preamble = "#" + std::string(3 * 1024 * 1024, 'x') + "\n#\n";
  const TextReport report = Sniff(preamble + "# of ours\na;b\n1,5;2\n1;2;3\n", hints);
  EXPECT_EQ(report.format.delimiters, ";");
  EXPECT_EQ(report.decimal, ',');
  EXPECT_THAT(report.names, ElementsAre("a", "b"));
  EXPECT_EQ(report.rows, 3U);
  EXPECT_TRUE(report.allRows);
  EXPECT_EQ(report.leadingLines, 3U);
  EXPECT_EQ(report.commentLines, 1U);
  EXPECT_EQ(report.firstOtherLine, 6U);
  EXPECT_FALSE(Sniff(preamble, hints).noWholeRow);
}

TEST_F(TextSnifferTest, RaisesForAFileThatIsNotThere) {
  EXPECT_THROW(SniffText(folder_.File(L"missing.csv")), corvel::Exception);
}

}  // namespace
}  // namespace trovan::test
