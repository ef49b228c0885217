// `trovan text columns` on small files.
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TextCommandFixture.h"

namespace trovan::test {
namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;
using testing::Not;

class TextColumnsCommandTest : public TextCommandFixture {
 protected:
  std::string Towns() const {
    return Save("t.csv", "x;y;name\n10,75;59,91;\"Oslo\"\n12,5;41,9;Rome\n");
  }
};

nlohmann::ordered_json Parsed(const Outcome& outcome) {
  return nlohmann::ordered_json::parse(outcome.output);
}

TEST_F(TextColumnsCommandTest, ExplainsItself) {
  const Outcome outcome = Columns({"--help"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.output, HasSubstr("Usage: trovan text columns"));
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(TextColumnsCommandTest, WritesCsvOfWhatItSniffs) {
  const Outcome outcome = Columns({Towns()});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output, "x,y,name\r\n\"10,75\",\"59,91\",Oslo\r\n\"12,5\",\"41,9\",Rome\r\n");
}

TEST_F(TextColumnsCommandTest, WritesJson) {
  const std::string towns = Towns();
  const std::string rows =
      R"([{"x":10.75,"y":59.91,"name":"Oslo"},{"x":12.5,"y":41.9,"name":"Rome"}])";
  EXPECT_EQ(Parsed(Columns({towns, "--to", "json", "--numbers", "x,y"})).dump(), rows);
  const Outcome lines = Columns({towns, "--to", "ndjson", "--numbers", "x,2", "--limit", "1"});
  EXPECT_EQ(lines.output, "{\"x\":10.75,\"y\":59.91,\"name\":\"Oslo\"}\n");
}

TEST_F(TextColumnsCommandTest, WritesPoints) {
  const auto json = Parsed(Columns({Towns(), "--points", "x,y"}));
  EXPECT_EQ(json["type"], "FeatureCollection");
  ASSERT_EQ(json["features"].size(), 2U);
  EXPECT_EQ(json["features"][1]["geometry"]["coordinates"].dump(), "[12.5,41.9]");
  EXPECT_EQ(json["features"][1]["properties"].dump(), R"({"name":"Rome"})");
}

TEST_F(TextColumnsCommandTest, WritesPointsWithHeights) {
  const std::string file = Save("t.xyz", "1 2 3\n4 5 -6.5\n");
  const auto json = Parsed(Columns({file, "--points", "1,2,3"}));
  EXPECT_EQ(json["features"][1]["geometry"]["coordinates"].dump(), "[4,5,-6.5]");
}

TEST_F(TextColumnsCommandTest, TakesEachOptionInsteadOfItsGuess) {
  const struct {
    const char* text;
    std::vector<std::string> options;
    const char* csv;
  } cases[] = {
      {"a,b;c\n1,2;3\n", {"--delimiter", ";"}, "\"a,b\",c\r\n\"1,2\",3\r\n"},
      {"a,b;c\n1,2;3\n", {"--delimiter", "semicolon"}, "\"a,b\",c\r\n\"1,2\",3\r\n"},
      {"a;b,c\n1;2,3\n", {"--delimiter", "comma"}, "a;b,c\r\n1;2,3\r\n"},
      {"a|b,c\n1|2,3\n", {"--delimiter", "pipe"}, "a,\"b,c\"\r\n1,\"2,3\"\r\n"},
      {"a\tb,c\n1\t2,3\n", {"--delimiter", "tab"}, "a,\"b,c\"\r\n1,\"2,3\"\r\n"},
      {"a\tb,c\n1\t2,3\n", {"--delimiter", "\\t"}, "a,\"b,c\"\r\n1,\"2,3\"\r\n"},
      {"a\tb,c\n1\t2,3\n", {"--delimiter", "\\x09"}, "a,\"b,c\"\r\n1,\"2,3\"\r\n"},
      {"a,1  b\nc,1 d\n",
       {"--delimiter", "blanks", "--no-header"},
       "column_1,column_2\r\n\"a,1\",b\r\n\"c,1\",d\r\n"},
      {"a,b\n\"1\",2\n", {"--quote", "none"}, "a,b\r\n\"\"\"1\"\"\",2\r\n"},
      {"a,b\n'1,5',2\n", {"--quote", "'"}, "a,b\r\n\"1,5\",2\r\n"},
      {"a,b\nc,d\n", {"--no-header"}, "column_1,column_2\r\na,b\r\nc,d\r\n"},
      {"1,2\n3,4\n", {"--header"}, "1,2\r\n3,4\r\n"},
      {"a;n\nx;1.234\n", {"--decimal", ".", "--numbers", "n"}, "a,n\r\nx,1.234\r\n"},
      {"a;n\nx;1,234\n", {"--decimal", ",", "--numbers", "n"}, "a,n\r\nx,1.234\r\n"},
      {"a,b,c\n1,2,3\n", {"--columns", "c,1"}, "c,a\r\n3,1\r\n"},
      {"a,b\n1,2\n3,4\n", {"--limit", "1"}, "a,b\r\n1,2\r\n"},
      {"a,b\n1,2\n3,4\n", {"--limit", "0"}, "a,b\r\n"},
      {"by hand;\na,b\n1,2\n3,4\n", {"--skip-lines", "1"}, "a,b\r\n1,2\r\n3,4\r\n"},
      {"a,b\n1,2\n%3,4\n5,6\n", {"--comment", "%"}, "a,b\r\n1,2\r\n5,6\r\n"},
      {"#a,b\n#1,2\n#3,4\n", {"--comment", "none"}, "#a,b\r\n#1,2\r\n#3,4\r\n"},
      {"a,b\nx,\xE4\n", {"--code-page", "1252"}, "a,b\r\nx,ä\r\n"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = {Save("t.csv", c.text)};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const Outcome outcome = Columns(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, c.csv) << testing::PrintToString(c.options);
    EXPECT_EQ(outcome.errors, "");
  }
}

TEST_F(TextColumnsCommandTest, TellsHowItReadsOnlyWhenAsked) {
  const Outcome outcome = Columns({Towns(), "--verbose"});
  EXPECT_EQ(outcome.errors, "trovan: " + Path("t.csv") +
                                ": delimiter ';', quote '\"', decimal character ',', a line of "
                                "names, 0 lines skipped at the start\n");
  EXPECT_THAT(outcome.output, HasSubstr("Oslo"));
  const std::string blanks = Save("b.txt", "1 2\n3 4\n");
  EXPECT_THAT(Columns({blanks, "--verbose"}).errors, HasSubstr("delimiter blanks, "));
  const std::string lines = Save("l.txt", "one\ntwo\nthree\n");
  EXPECT_THAT(Columns({lines, "--verbose"}).errors, HasSubstr("delimiter none, "));
}

TEST_F(TextColumnsCommandTest, WarnsOfWhatIsNotAsItShouldBe) {
  const struct {
    std::string text;
    std::vector<std::string> options;
    const char* warning;
  } cases[] = {
      {"a,b\n1,2\n3\n4,5\n",
       {},
       "1 row with fewer values than there are columns: filled up; the "
       "first is on line 3\n"},
      {"a,b\n1,2\n3,4,5\n6,7\n8,9,0\n",
       {},
       "2 rows with more values than there are columns: "
       "written all the same; the first is on line 3\n"},
      {"a,b\n1,2\n3,4,5\n",
       {"--columns", "a"},
       "1 row with more values than there are columns: "
       "left out by --columns; the first is on line 3\n"},
      {"a,b\n1,2\n,\n",
       {"--points", "a,b"},
       "1 row without coordinates: features without "
       "geometry; the first is on line 3\n"},
      {"a,b\n1\r2,3\n4,5\n", {}, "1 carriage return within lines: dropped\n"},
      {"a,b\n1,\xFFz\n",
       {"--code-page", "65001"},
       "1 part of texts unknown to the code page: "
       "written as U+FFFD; --code-page can ask"},
      {"a,b\n\"1\"2,3\n4,5\n",
       {"--quote", "\""},
       "line 2, column 1: text follows the closing "
       "quote\n"},
      {"# ours\na,b\n1,2\n", {}, "1 line at the start with '#' in front: skipped; --comment none"},
      {"# ours\n# mine\na,b\n1,2\n", {"--skip-lines", "1"}, "1 line at the start with '#'"},
      {"a,b\n1,\"x\n2,y\n", {}, "quotes are read as ordinary characters; --quote '\"'"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = {Save("t.csv", c.text)};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const Outcome outcome = Columns(arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.errors, HasSubstr(c.warning));
    EXPECT_THAT(outcome.errors, HasSubstr(Path("t.csv")));
  }
}

TEST_F(TextColumnsCommandTest, AsksHowToReadRowsThatAreLongerThanItsSample) {
  const std::string file = Save("t.csv", "a," + std::string(1024 * 1024, 'x') + "\n1,2\n");
  const std::vector<std::vector<std::string>> tooLittle = {
      {file}, {file, "--delimiter", ","}, {file, "--header"}};
  for (const auto& arguments : tooLittle) {
    const Outcome outcome = Columns(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr("t.csv: no row ends within 1 MiB"),
                                      HasSubstr("--header or --no-header")));
  }
  const std::vector<std::string> enough = {file, "--delimiter", ",", "--header", "--columns", "a"};
  const Outcome outcome = Columns(enough);
  EXPECT_EQ(outcome.output, "a\r\n1\r\n");
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
}

TEST_F(TextColumnsCommandTest, FailsOnABadNumber) {
  const std::string file = Save("t.csv", "a,b,lat\nx,y,1\nx,y,abc\n");
  const Outcome outcome = Columns({file, "--numbers", "lat"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.errors,
            "trovan: " + file + ", line 3, column 3 (\"lat\"): \"abc\" is no number\n");
}

TEST_F(TextColumnsCommandTest, ListsTheRowsThatItLeavesOut) {
  std::string text = "a,lat\n";
  for (int i = 0; i < 12; ++i) text += "x,abc\n";
  const std::string file = Save("t.csv", text + "y,5\n");
  const Outcome outcome =
      Columns({file, "--numbers", "lat", "--keep-going", "--to", "json", "--out", Path("o")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(nlohmann::json::parse(Bytes("o")).dump(), R"([{"a":"y","lat":5}])");
  EXPECT_THAT(outcome.errors, HasSubstr("line 2, column 2 (\"lat\"): \"abc\" is no number\n"));
  EXPECT_THAT(outcome.errors, HasSubstr("line 11, column 2"));
  EXPECT_THAT(outcome.errors, Not(HasSubstr("line 12,")));
  EXPECT_THAT(outcome.errors, HasSubstr("and 2 more of the kind\n"));
  EXPECT_THAT(outcome.errors, HasSubstr(": 12 rows with bad numbers: left out\n"));
}

TEST_F(TextColumnsCommandTest, FailsOnFilesThatAreNoText) {
  const struct {
    std::string bytes;
    const char* reason;
  } cases[] = {
      {"a,b\n1,\0\n"s, "the byte at offset 6 is NUL"},
      {"\xFF\xFE"
       "a\0\n\0"s,
       "convert it first: iconv -f UTF-16 -t UTF-8"},
      {"a,b\r1,2\r", "the lines end with carriage returns alone"},
      {"a,b\n1,\xE4\n", "line 2, column 2 (\"b\"): the byte 0xE4 is no UTF-8; --code-page"},
      {"a,b\n1,\"2\n", "the quote that opens here is never closed"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Columns({Save("t.csv", c.bytes), "--quote", "\"", "--out", Path("o")});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, HasSubstr(c.reason));
    EXPECT_FALSE(std::filesystem::exists(Path("o")));
  }
}

TEST_F(TextColumnsCommandTest, FailsOnWhatCannotBeRead) {
  EXPECT_EQ(Columns({Path("missing.csv")}).code, 1);
  EXPECT_THAT(Columns({Path("missing.csv")}).errors, HasSubstr("No such file or directory"));
  EXPECT_THAT(Columns({folder_.Path().string()}).errors, HasSubstr("Is a directory"));
  EXPECT_THAT(Columns({"/dev/null"}).errors, HasSubstr("a device or a pipe"));
  const Outcome column = Columns({Towns(), "--columns", "town"});
  EXPECT_EQ(column.code, 1);
  EXPECT_THAT(column.errors, HasSubstr("there is no column \"town\"; there are: x, y, name"));
  EXPECT_EQ(Columns({Towns(), "--code-page", "4711"}).code, 1);
}

TEST_F(TextColumnsCommandTest, SaysThatAFileMayNotBeRead) {
  const std::string towns = Towns();
  std::filesystem::permissions(towns, std::filesystem::perms::none);
  if (::access(towns.c_str(), R_OK) == 0) GTEST_SKIP() << "this user may read everything";
  const Outcome outcome = Columns({towns});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("t.csv"));
}

TEST_F(TextColumnsCommandTest, RefusesWrongArguments) {
  const std::string towns = Towns();
  const std::vector<std::vector<std::string>> cases = {
      {},
      {towns, "--to", "xml"},
      {towns, "--points", "x"},
      {towns, "--points", "1,2,3,4"},
      {towns, "--points", "x,y", "--to", "json"},
      {towns, "--delimiter", "ab"},
      {towns, "--delimiter", "\\n"},
      {towns, "--delimiter", ""},
      {towns, "--delimiter", "\\q"},
      {towns, "--quote", "\"\""},
      {towns, "--comment", "\\x00"},
      {towns, "--decimal", ";"},
      {towns, "--header", "--no-header"},
      {towns, "--columns", ""},
      {towns, "--columns", "x,"},
      {towns, "--numbers", ",x"},
      {towns, "--limit", "-1"},
      {towns, "--skip-lines", "many"},
      {towns, "--code-page", "utf8"},
      {towns, "--out", ""},
      {towns, "--nonsense"},
      {towns, towns},
  };
  for (const auto& arguments : cases) {
    const Outcome outcome = Columns(arguments);
    EXPECT_EQ(outcome.code, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors, "");
  }
}

TEST_F(TextColumnsCommandTest, KeepsControlCharactersFromTheTerminal) {
  const std::string file = Save("t.csv", "\x1B[2J,b\nx,y\n");
  const Outcome outcome = Columns({file, "--numbers", "1", "--header"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, Not(HasSubstr("\x1B")));
}

}  // namespace
}  // namespace trovan::test
