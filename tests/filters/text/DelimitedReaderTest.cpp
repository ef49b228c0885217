#include "filters/text/DelimitedReader.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TextFixture.h"

namespace trovan::test {
namespace {

using filters::DelimitedFormat;
using filters::DelimitedReader;
using filters::FilterError;
using testing::ElementsAre;
using testing::HasSubstr;

class DelimitedReaderTest : public TextFixture {};

constexpr const char* kOpenQuote =
    ": the quote that opens here is never closed (--quote none reads quotes as ordinary "
    "characters)";

TEST_F(DelimitedReaderTest, ReadsRowsOfDelimitedValues) {
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"no bytes", "", {}},
      {"one value", "a", {"1: a"}},
      {"a line", "a\n", {"1: a"}},
      {"two lines", "a,b\nc,d\n", {"1: a|b", "2: c|d"}},
      {"no last line end", "a,b\nc,d", {"1: a|b", "2: c|d"}},
      {"nothing between delimiters", "a,,b\n", {"1: a||b"}},
      {"a delimiter first", ",a\n", {"1: |a"}},
      {"a delimiter last", "a,b,\nc\n", {"1: a|b|", "2: c"}},
      {"a delimiter last in the file", "a,b,", {"1: a|b|"}},
      {"a delimiter alone", ",", {"1: |"}},
      {"a delimiter alone on its line", ",\na\n", {"1: |", "2: a"}},
      {"delimiters only", ",,\n,,", {"1: ||", "2: ||"}},
      {"blanks are part of values", " a , b \n \n", {"1:  a | b ", "2:  "}},
      {"several delimiters in a row of lines", "a,\n\n,b\n", {"1: a|", "3: |b"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, EndsRowsAtLineFeedsWithAndWithoutCarriageReturns) {
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"pairs", "a,b\r\nc,d\r\n", {"1: a|b", "2: c|d"}},
      {"a pair behind a delimiter", "a,\r\nb,\r\n", {"1: a|", "2: b|"}},
      {"a pair behind a quote", "\"a\"\r\n\"b\",\r\n", {"1: [a]", "2: [b]|"}},
      {"a last return without a line feed", "a,b\r", {"1: a|b"}},
      {"a return behind the last delimiter", "a,\r", {"1: a|"}},
      {"a return behind the last quote", "a,\"b\"\r", {"1: a|[b]"}},
      {"returns alone end nothing", "a\rb,c\rd\n", {"1: ab|cd"}},
      {"several returns", "a\r\r\nb", {"1: a", "2: b"}},
      {"returns only", "\r\r\r", {}},
      {"a return in front of a value", "\ra,\rb\n", {"1: a|b"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, SkipsBlankLinesAndCountsThem) {
  EXPECT_THAT(Read("\n\na\n\r\n\nb\n\n"), ElementsAre("3: a", "6: b"));
  EXPECT_THAT(Read("\n\r\n\n"), ElementsAre());
}

TEST_F(DelimitedReaderTest, EndsRowsAtFormFeeds) {
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"page breaks in front of rows", "\fa\n\f\fb\n\f", {"1: a", "2: b"}},
      {"behind a plain value", "a\fb\n", {"1: a", "1: b"}},
      {"behind a quoted value", "\"a\"\f\"b\"\n", {"1: [a]", "1: [b]"}},
      {"behind a delimiter", "a,\fb\n", {"1: a|", "1: b"}},
      {"inside quotes it is a character", "\"a\fb\"\n", {"1: [a\fb]"}},
      {"behind text behind a quote", "\"a\"b\fc", {"1: [ab]", "1: c"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, ReadsQuotedValues) {
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"with a delimiter", "\"a,b\",c\n", {"1: [a,b]|c"}},
      {"with doubled quotes", "\"a \"\"b\"\"\",c\n", {"1: [a \"b\"]|c"}},
      {"of a quote alone", "\"\"\"\"\n", {"1: [\"]"}},
      {"empty", "\"\",\"\"\n", {"1: []|[]"}},
      {"empty at the end of the file", "a,\"\"", {"1: a|[]"}},
      {"the whole file", "\"\"", {"1: []"}},
      {"at the end of the file", "a,\"b\"", {"1: a|[b]"}},
      {"doubled quotes at the end of the file", "\"b\"\"\"", {"1: [b\"]"}},
      {"a quote inside a plain value", "a\"b\",c\n", {"1: a\"b\"|c"}},
      {"blanks in front make it plain", " \"b\",c\n", {"1:  \"b\"|c"}},
      {"the other quote is ordinary", "'a,b'\n", {"1: 'a|b'"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, ReadsLineEndsInsideQuotesAsLineFeeds) {
  EXPECT_THAT(Read("\"a\r\nb\",c\r\nd\r\n"), ElementsAre("1: [a\nb]|c", "3: d"));
  EXPECT_THAT(Read("\"a\rb\"\n"), ElementsAre("1: [ab]"));
}

TEST_F(DelimitedReaderTest, TakesAReturnBetweenQuotesForNothing) {
  EXPECT_THAT(Read("\"a\"\r\"b\"\n"), ElementsAre("1: [a\"b]"));  // a doubled quote
  EXPECT_THAT(Read("\"a\"\r\"b\""), ElementsAre("1: [a\"b]"));
}

TEST_F(DelimitedReaderTest, TellsLinesBehindQuotedValuesOfSeveralLines) {
  EXPECT_THAT(Read("\"a\n\nb\",\"\n\"\nc\n\"d\n\"\n\ne"),
              ElementsAre("1: [a\n\nb]|[\n]", "5: c", "6: [d\n]", "9: e"));
}

TEST_F(DelimitedReaderTest, JoinsTextBehindTheClosingQuoteToTheValue) {
  DelimitedReader reader = Reader("a\nb,\"x\ny\" and z,\"c\"\"\"d\n\"e\" \"f\"");
  EXPECT_TRUE(reader.ReadRow());
  EXPECT_EQ(reader.Remarks().Count(), 0U);
  EXPECT_TRUE(reader.ReadRow());
  EXPECT_EQ(Show(reader), "2: b|[x\ny and z]|[c\"d]");
  EXPECT_TRUE(reader.ReadRow());
  EXPECT_EQ(Show(reader), "4: [e \"f\"]");
  EXPECT_FALSE(reader.ReadRow());
  EXPECT_THAT(reader.Remarks().First(),
              ElementsAre("line 3, column 2: text follows the closing quote",
                          "line 3, column 3: text follows the closing quote",
                          "line 4, column 1: text follows the closing quote"));
}

TEST_F(DelimitedReaderTest, RefusesAQuoteThatIsNeverClosed) {
  const struct {
    const char* name;
    std::string bytes;
    std::string place;
  } cases[] = {
      {"with text", "a\nb,\"c\nd", "line 2, column 2"},
      {"with nothing", "a,b,\"", "line 1, column 3"},
      {"doubled quotes last", "\"a\"\"", "line 1, column 1"},
      {"quotes doubled around a return", "\"a\"\r\"", "line 1, column 1"},
      {"a quoted value of two lines before", "\"a\nb\",\"c", "line 2, column 2"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.bytes).back(), "towns.csv, " + c.place + kOpenQuote) << c.name;
  }
}

TEST_F(DelimitedReaderTest, EndsAfterAnError) {
  DelimitedReader reader = Reader("\"a\nb\n");
  EXPECT_THROW(reader.ReadRow(), FilterError);
  EXPECT_FALSE(reader.ReadRow());
}

TEST_F(DelimitedReaderTest, ReadsQuotesAsOrdinaryCharactersWhereNoneAreSet) {
  EXPECT_THAT(Read("\"a,b\"\n\"\n", {",", "", ""}), ElementsAre("1: \"a|b\"", "2: \""));
}

TEST_F(DelimitedReaderTest, TakesEachCharacterOfItsSets) {
  EXPECT_THAT(Read("a;b|'c;d'\n", {";|", "", "'\""}), ElementsAre("1: a|b|[c;d]"));
  EXPECT_THAT(Read("a\tb,c\n", Delimited("\t")), ElementsAre("1: a|b,c"));
  EXPECT_THAT(Read("a\xA7"
                   "b\n",
                   Delimited("\xA7")),
              ElementsAre("1: a|b"));
}

TEST_F(DelimitedReaderTest, ReadsColumnsBetweenBlanks) {
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"runs of blanks", "a  b\t\tc\nd e\n", {"1: a|b|c", "2: d|e"}},
      {"blanks around rows", "  a b  \n\t c d \n", {"1: a|b", "2: c|d"}},
      {"blanks at the end of the file", "a b  ", {"1: a|b"}},
      {"returns among blanks", " \r a \r b \r\n c", {"1: a|b", "2: c"}},
      {"blank lines", "a\n  \t\n\n b\n   ", {"1: a", "4: b"}},
      {"quoted values", "\"a b\" c \"d\"\n", {"1: [a b]|c|[d]"}},
      {"a quoted value last", "a \"b c\"", {"1: a|[b c]"}},
      {"a quoted value last and blanks", "a \"b c\" \t", {"1: a|[b c]"}},
      {"a quoted value of two lines", "\"a\nb\" c\nd", {"1: [a\nb]|c", "3: d"}},
      {"text behind a quote is the next value", "\"a\"b c\n", {"1: [a]|b|c"}},
      {"quotes without blanks between", "\"a\" 'b'\n", {"1: [a]|'b'"}},
      {"form feeds", "a b\fc \f d", {"1: a|b", "1: c", "1: d"}},
      {"a comma is ordinary", "1,5 2,5\n", {"1: 1,5|2,5"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes, Blanks()), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, TrimsWhiteSpaceAroundDelimitersWhereBothAreSet) {
  const DelimitedFormat format = {",", " ", "\""};
  EXPECT_THAT(Read(" a , b ,\n, \"c\" , \nd , ", format),
              ElementsAre("1: a|b|", "2: |[c]|", "3: d|"));
}

TEST_F(DelimitedReaderTest, SkipsLinesThatStartWithTheCommentCharacter) {
  DelimitedReader reader = Reader("# one, \"two\n\n#\na,#b\n#c\n\"d\n#e\"\n#f", {}, '#');
  EXPECT_TRUE(reader.ReadRow());
  EXPECT_EQ(Show(reader), "4: a|#b");
  EXPECT_TRUE(reader.ReadRow());
  EXPECT_EQ(Show(reader), "6: [d\n#e]");
  EXPECT_FALSE(reader.ReadRow());
  EXPECT_EQ(reader.CommentLines(), 4U);
}

TEST_F(DelimitedReaderTest, FindsCommentsBehindWhiteSpaceOfTheFormat) {
  EXPECT_THAT(Read("  # a\nb\n", Blanks(), '#'), ElementsAre("2: b"));
  EXPECT_THAT(Read("  # a\nb\n", Commas(), '#'), ElementsAre("1:   # a", "2: b"));
}

TEST_F(DelimitedReaderTest, SkipsWholeLines) {
  DelimitedReader reader = Reader("a \"title\r\n\"b\nc,d\ne,f");
  reader.SkipLines(2);
  EXPECT_THAT(All(std::move(reader)), ElementsAre("3: c|d", "4: e|f"));
  DelimitedReader none = Reader("a\nb");
  none.SkipLines(7);
  EXPECT_FALSE(none.ReadRow());
}

TEST_F(DelimitedReaderTest, DropsNulBytes) {
  EXPECT_THAT(Read(std::string("a\0b,\0,c\n", 8)), ElementsAre("1: ab||c"));
}

TEST_F(DelimitedReaderTest, TellsNothingFromEmptyQuotes) {
  DelimitedReader reader = Reader(",\"\",a\n");
  ASSERT_TRUE(reader.ReadRow());
  EXPECT_TRUE(reader.Row()[0].IsMissing());
  EXPECT_FALSE(reader.Row()[1].IsMissing());
  EXPECT_FALSE(reader.Row()[2].IsMissing());
}

TEST_F(DelimitedReaderTest, StartsWhereTheFileStands) {
  Open(
      "\xEF\xBB\xBF"
      "a,b\n")
      .Seek(3, corvel::kFileBegin);
  EXPECT_THAT(All({file_, "towns.csv", {}}), ElementsAre("1: a|b"));
}

TEST_F(DelimitedReaderTest, RefusesLineEndsInItsSets) {
  Open("a");
  const DelimitedFormat formats[] = {
      {"\n", "", ""}, {",", "\r", ""}, {",", "", "\f"}, {std::string(1, '\0'), "", ""}};
  for (const DelimitedFormat& format : formats) {
    EXPECT_THROW(DelimitedReader(file_, "towns.csv", format), FilterError);
  }
  EXPECT_THROW(DelimitedReader(file_, "towns.csv", {}, '\n'), FilterError);
}

// --- limits --------------------------------------------------------------------------------------

TEST_F(DelimitedReaderTest, RefusesARowBeyondTheLimit) {
  const std::string tooLong =
      ": the row is longer than 8 bytes; is a quote never closed? (--quote none reads quotes as "
      "ordinary characters)";
  const struct {
    const char* name;
    std::string bytes;
    Rows expected;
  } cases[] = {
      {"as long as the limit, line end included", "a,b,c,d\n1,3\n", {"1: a|b|c|d", "2: 1|3"}},
      {"as long as the limit at the end of the file", "ab,c,d,e", {"1: ab|c|d|e"}},
      {"one byte more", "x\nab,c,d,e\n", {"1: x", "towns.csv, line 2" + tooLong}},
      {"an empty value would be behind it", "ab,cd,e,\n", {"towns.csv, line 1" + tooLong}},
      {"a pair behind it", "abcdefg\r\n", {"towns.csv, line 1" + tooLong}},
      {"inside quotes", "\"a\nb\nc\nd\nef\"\n", {"towns.csv, line 1" + tooLong}},
      {"at a closing quote", "\"abcdef\"\n", {"towns.csv, line 1" + tooLong}},
      {"blank lines are no part of it", std::string(100, '\n') + "a\n", {"101: a"}},
  };
  filters::ReadLimits limits;
  limits.longestRow = 8;
  for (const auto& c : cases) EXPECT_EQ(Read(c.bytes, {}, 0, limits), c.expected) << c.name;
}

TEST_F(DelimitedReaderTest, TellsTheLimitInMebibytes) {
  filters::ReadLimits limits;
  limits.longestRow = 2LL * 1024 * 1024;
  EXPECT_THAT(Read(std::string(3 * 1024 * 1024, 'x'), {}, 0, limits).front(),
              HasSubstr("the row is longer than 2 MiB; "));
}

// The quote opens a row that would be the rest of the file: a hole of 8 GiB.
TEST_F(DelimitedReaderTest, StopsAtTheLimitOfItsOwnAccord) {
  WriteBytes(folder_.Path() / "large.csv", "a,b\n\"");
  std::filesystem::resize_file(folder_.Path() / "large.csv", 8ULL << 30);
  file_.Open(folder_.File(L"large.csv"), "rb", corvel::kFileShareRead, false);
  EXPECT_THAT(All({file_, "large.csv", {}}),
              ElementsAre("1: a|b", HasSubstr("line 2: the row is longer than 64 MiB")));
}

TEST_F(DelimitedReaderTest, RefusesARowOfTooManyValues) {
  filters::ReadLimits limits;
  limits.mostFields = 3;
  EXPECT_THAT(Read("a,b,c\nd,e,\nf,g,h,\n", {}, 0, limits),
              ElementsAre("1: a|b|c", "2: d|e|",
                          "towns.csv, line 3: the row has more than 3 values; is this the right "
                          "delimiter?"));
}

TEST_F(DelimitedReaderTest, LeavesOutTheRowThatReachesBeyondItsEnd) {
  const std::string bytes = "a,b\n\"c\",d\ne";
  for (std::size_t end = 0; end <= bytes.size(); ++end) {
    filters::ReadLimits limits;
    limits.end = static_cast<long long>(end);
    Rows expected;
    if (end >= 4) expected.emplace_back("1: a|b");
    if (end >= 10) expected.emplace_back("2: [c]|d");
    if (end >= 11) expected.emplace_back("3: e");
    EXPECT_EQ(Read(bytes, {}, 0, limits), expected) << end;
  }
}

TEST_F(DelimitedReaderTest, TakesNoCutQuoteForAnOpenOne) {
  filters::ReadLimits limits;
  limits.end = 6;
  EXPECT_THAT(Read("a\nb,\"c\",d\n", {}, 0, limits), ElementsAre("1: a"));
}

// Values across the ends of the file's buffer, wherever those lie.
TEST_F(DelimitedReaderTest, ReadsAcrossBuffers) {
  std::string bytes;
  Rows expected;
  for (unsigned line = 1; bytes.size() < 600'000; line += 2) {
    const std::string number = std::to_string(line);
    bytes += number + ",\"" + number + "\"\"\r\n" + std::string(line % 97, 'x') + "\",\r\n";
    expected.push_back(number + ": " + number + "|[" + number + "\"\n" +
                       std::string(line % 97, 'x') + "]|");
  }
  EXPECT_EQ(Read(bytes), expected);
}

// --- progress ------------------------------------------------------------------------------------

class Watcher : public corvel::IProgress {
 public:
  bool Update(double fraction) override {
    EXPECT_GE(fraction, last_);
    EXPECT_LE(fraction, 1.0);
    last_ = fraction;
    return ++updates_ < mostUpdates_;
  }

  int updates_ = 0;
  int mostUpdates_ = 1 << 30;
  double last_ = 0.0;
};

TEST_F(DelimitedReaderTest, ReportsHowMuchOfTheFileWasRead) {
  std::string bytes;
  while (bytes.size() < 2 * 1024 * 1024) bytes += "some,values\n";
  Watcher watcher;
  DelimitedReader reader = Reader(bytes);
  reader.ReportTo(watcher);
  while (reader.ReadRow()) {
  }
  EXPECT_GE(watcher.updates_, 8);
  EXPECT_GT(watcher.last_, 0.8);
  EXPECT_FALSE(reader.WasStopped());
}

TEST_F(DelimitedReaderTest, StopsWhenAskedTo) {
  const std::string rows[] = {std::string(3 * 1024 * 1024, '\n'),
                              std::string(3 * 1024 * 1024, '#')};
  for (const std::string& skipped : rows) {
    Watcher watcher;
    watcher.mostUpdates_ = 2;
    DelimitedReader reader = Reader("a\n" + skipped + "\nb\n", {}, '#');
    reader.ReportTo(watcher);
    EXPECT_TRUE(reader.ReadRow());
    EXPECT_FALSE(reader.ReadRow());
    EXPECT_TRUE(reader.WasStopped());
    EXPECT_FALSE(reader.ReadRow());
    EXPECT_EQ(watcher.updates_, 2);
  }
}

}  // namespace
}  // namespace trovan::test
