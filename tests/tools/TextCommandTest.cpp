// `trovan text sniff` and `trovan text tokens` on small files.
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TextCommandFixture.h"

namespace trovan::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class TextCommandTest : public TextCommandFixture {
 protected:
  static Outcome Run(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"text"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunTrovan(all);
  }
};

TEST_F(TextCommandTest, ExplainsItself) {
  const struct {
    std::vector<std::string> arguments;
    std::vector<const char*> told;
  } cases[] = {
      {{"--help"}, {"sniff", "tokens", "columns"}},
      {{"sniff", "--help"}, {"files", "--format"}},
      {{"tokens", "--help"},
       {"--delimiters", "--whitespace", "--quotes", "--no-quotes", "--as", "--format", "--limit"}},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Run(c.arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr("Usage: trovan text"));
    for (const char* word : c.told) EXPECT_THAT(outcome.output, HasSubstr(word));
  }
}

TEST_F(TextCommandTest, RefusesArgumentsThatMakeNoSense) {
  const std::string file = Save("a.csv", "a,b\n");
  const std::vector<std::vector<std::string>> commands = {
      {},
      {"nonsense"},
      {"sniff"},
      {"sniff", file, "--format", "csv"},
      {"tokens"},
      {"tokens", file, file},
      {"tokens", file, "--format", "json"},
      {"tokens", file, "--as", "date"},
      {"tokens", file, "--limit", "-1"},
      {"tokens", file, "--limit", "many"},
      {"tokens", file, "--delimiters", "\\q"},
      {"tokens", file, "--whitespace", "\\x00"},
      {"tokens", file, "--quotes", "\\"},
  };
  for (const auto& arguments : commands) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "") << testing::PrintToString(arguments);
    EXPECT_NE(outcome.errors, "") << testing::PrintToString(arguments);
  }
}

// --- sniff ---------------------------------------------------------------------------------------

TEST_F(TextCommandTest, SniffTellsWhatATextFileIs) {
  const std::string file = Save("towns.csv", "# by hand\nNAME;AREA\nOslo;454,03\nRome;1285\n;;\n");
  const Outcome outcome = Run({"sniff", file});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output, file +
                                "\n"
                                "  Kind           text\n"
                                "  Encoding       ASCII\n"
                                "  Line ends      LF\n"
                                "  Delimiter      ;\n"
                                "  Quote          \"\n"
                                "  Decimal        ,\n"
                                "  Comments       1 line in front of the first row\n"
                                "  Rows           4 rows in the file\n"
                                "  Columns        2 in 3 of 4 rows; the first other one is on line "
                                "5\n"
                                "  Header         NAME, AREA\n");
}

TEST_F(TextCommandTest, SniffNamesWhatCannotBeShown) {
  EXPECT_THAT(Run({"sniff", Save("a.tsv", "a\x1B\tb\xE9\n1\t2\n")}).output,
              AllOf(HasSubstr("8-bit (not UTF-8 at byte 4)"), HasSubstr("Delimiter      tab\n"),
                    HasSubstr("Header         a\\x1B, b\\xE9\n")));
  EXPECT_THAT(Run({"sniff", Save("a.txt", "1.5 2\n3 4\n")}).output,
              AllOf(HasSubstr("Delimiter      blanks\n"), HasSubstr("Header         none")));
  EXPECT_THAT(Run({"sniff", Save("b.txt", "1\n2\n")}).output, HasSubstr("Delimiter      none\n"));
  EXPECT_THAT(Run({"sniff", Save("c.txt", "a\nb\r\nc\rd\n")}).output,
              HasSubstr("mixed: 2 LF, 1 CR LF, 1 CR\n"));
  EXPECT_THAT(Run({"sniff", Save("d.bin", std::string("a,b\n\0", 5))}).output,
              AllOf(HasSubstr("Kind           binary (first NUL byte at 4)\n"),
                    HasSubstr("Encoding       unknown\n"), Not(HasSubstr("Line ends")),
                    Not(HasSubstr("Rows"))));
}

TEST_F(TextCommandTest, SniffAsJson) {
  const std::string file = Save("towns.csv", "\xEF\xBB\xBFNAME,AREA\r\nOslo,454.03\r\n");
  const Outcome outcome = Run({"sniff", file, "--format", "json"});
  EXPECT_EQ(outcome.code, 0);
  const json report = json::parse(outcome.output);
  EXPECT_EQ(report["file"], file);
  EXPECT_EQ(report["binary"], false);
  EXPECT_EQ(report["encoding"], "UTF-8 with BOM");
  EXPECT_EQ(report["line_ends"], "CR LF");
  EXPECT_EQ(report["sample"]["bytes"], 27);
  EXPECT_EQ(report["sample"]["whole_file"], true);
  EXPECT_EQ(report["sample"]["cr_lf_pairs"], 2);
  EXPECT_EQ(report["sample"]["first_nul_byte"], nullptr);
  EXPECT_EQ(report["delimited"], true);
  EXPECT_EQ(report["delimiter"], ",");
  EXPECT_EQ(report["quote"], "\"");
  EXPECT_EQ(report["decimal"], ".");
  EXPECT_EQ(report["rows"], 2);
  EXPECT_EQ(report["columns"], 2);
  EXPECT_EQ(report["first_other_line"], nullptr);
  EXPECT_EQ(report["names"], json({"NAME", "AREA"}));
  EXPECT_EQ(report["problem"], nullptr);
}

TEST_F(TextCommandTest, SniffGoesOnBehindFilesThatItCannotRead) {
  const std::string first = Save("a.csv", "a,b\n1,2\n");
  const std::string last = Save("b.csv", "a;b\n1;2\n");
  const Outcome outcome = Run({"sniff", first, Path("missing.csv"), folder_.Path().string(), last});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.output, AllOf(StartsWith(first + "\n"), HasSubstr("\n\n" + last + "\n")));
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr("missing.csv"), HasSubstr(folder_.Path().string())));
  const Outcome asJson = Run({"sniff", first, Path("missing.csv"), last, "--format", "json"});
  EXPECT_EQ(asJson.code, 1);
  const auto lineEnd = asJson.output.find('\n');
  EXPECT_EQ(json::parse(asJson.output.substr(0, lineEnd))["file"], first);
  EXPECT_EQ(json::parse(asJson.output.substr(lineEnd))["file"], last);
}

TEST_F(TextCommandTest, SaysThatAPipeIsNoFile) {
  const std::string pipe = Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string last = Save("b.csv", "a;b\n1;2\n");
  const Outcome sniffed = Run({"sniff", pipe, last});
  EXPECT_EQ(sniffed.code, 1);
  EXPECT_EQ(sniffed.errors, "trovan: " + pipe + ": this is a device or a pipe, no file\n");
  EXPECT_THAT(sniffed.output, StartsWith(last + "\n"));
  const Outcome listed = Run({"tokens", pipe});
  EXPECT_EQ(listed.code, 1);
  EXPECT_EQ(listed.errors, "trovan: " + pipe + ": this is a device or a pipe, no file\n");
}

TEST_F(TextCommandTest, SniffNamesQuotesThatDoNotFit) {
  const std::string file = Save("a.csv", "a,b\n1,\"x\n2,y\n");
  EXPECT_THAT(Run({"sniff", file}).output, HasSubstr("Quote          none: what starts with \""));
  const json report = json::parse(Run({"sniff", file, "--format", "json"}).output);
  EXPECT_EQ(report["quote"], nullptr);
  EXPECT_EQ(report["odd_quotes"], true);
}

TEST_F(TextCommandTest, SniffTakesLittleMemoryForALargeFile) {
  const std::string file = Save("large.csv", "a,b\n1,2\n\"");
  std::filesystem::resize_file(file, 4ULL << 30);
  const Outcome outcome = Run({"sniff", file});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.output, HasSubstr("binary"));
}

// --- tokens --------------------------------------------------------------------------------------

TEST_F(TextCommandTest, TokensListsWhatTheTokenizerReads) {
  const Outcome outcome =
      Run({"tokens", Save("a.txt", "Oslo,,\"New \"\"Old\"\"\tTown\"\r\n\n x y")});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            " number    line  status           end    quoted  text\n"
            "      1       1  TOKEN_OK         ','    no      Oslo\n"
            "      2       1  TOKEN_EMPTY      ','    no\n"
            "      3       1  TOKEN_OK         '\\n'   yes     New \"Old\"\\tTown\n"
            "      4       3  TOKEN_OK         '\\n'   no      x\n"
            "      5       3  TOKEN_EOF        -      no      y\n");
}

TEST_F(TextCommandTest, TokensTakesSetsWithEscapes) {
  const std::string file = Save("a.txt", "a b\t'c;d';e\n");
  const Outcome outcome = Run({"tokens", file, "--delimiters", "\\t\\x3B", "--whitespace", "",
                               "--quotes", "'", "--format", "csv"});
  EXPECT_EQ(outcome.output,
            "number,line,status,end,quoted,text\r\n"
            "1,1,TOKEN_OK,\\t,false,a b\r\n"
            "2,1,TOKEN_OK,;,true,c;d\r\n"
            "3,1,TOKEN_OK,\\n,false,e\r\n"
            "4,2,TOKEN_EOF,,false,\r\n");
  EXPECT_THAT(Run({"tokens", file, "--no-quotes", "--delimiters", ";"}).output,
              HasSubstr("no      'c\n"));
}

TEST_F(TextCommandTest, TokensAsNumbersAsLinesOfJson) {
  const std::string file = Save("a.txt", "12x,abc,,1e999,2\n");
  const auto lines = [&](const char* kind) {
    return Run({"tokens", file, "--as", kind, "--format", "ndjson", "--limit", "4"}).output;
  };
  EXPECT_EQ(lines("integer"),
            "{\"number\":1,\"line\":1,\"status\":\"TOKEN_OK\",\"end\":\",\",\"quoted\":false,"
            "\"text\":\"12x\",\"value\":12}\n"
            "{\"number\":2,\"line\":1,\"status\":\"TOKEN_BAD_VALUE\",\"end\":\",\",\"quoted\":"
            "false,\"text\":\"abc\",\"value\":null}\n"
            "{\"number\":3,\"line\":1,\"status\":\"TOKEN_EMPTY\",\"end\":\",\",\"quoted\":false,"
            "\"text\":\"\",\"value\":null}\n"
            "{\"number\":4,\"line\":1,\"status\":\"TOKEN_OK\",\"end\":\",\",\"quoted\":false,"
            "\"text\":\"1e999\",\"value\":1}\n");
  EXPECT_THAT(lines("number"), HasSubstr("\"value\":\"inf\"}"));
  EXPECT_THAT(lines("boolean"), HasSubstr("\"value\":true}"));
}

TEST_F(TextCommandTest, TokensStopsAtItsLimit) {
  const std::string file = Save("a.txt", "a,b,c\n");
  EXPECT_THAT(Run({"tokens", file, "--limit", "2"}).output,
              AllOf(HasSubstr(" b\n"), Not(HasSubstr(" c\n"))));
  EXPECT_EQ(Run({"tokens", file, "--limit", "0", "--format", "ndjson"}).output, "");
}

TEST_F(TextCommandTest, TokensNamesAFileThatIsNotThere) {
  const Outcome outcome = Run({"tokens", Path("missing.txt")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr("missing.txt"));
}

TEST_F(TextCommandTest, TokensRefusesATokenLargerThanMemoryShouldBe) {
  const std::string file = Save("large.txt", "a,\"" + std::string(1024 * 1024, 'x'));
  std::filesystem::resize_file(file, 4ULL << 30);
  const Outcome outcome = Run({"tokens", file, "--format", "ndjson"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.output, AllOf(StartsWith("{\"number\":1,"), HasSubstr("\"text\":\"a\"}\n")));
  EXPECT_THAT(outcome.errors, HasSubstr("line 1: the token is longer than 67108864 bytes; "));
}

TEST_F(TextCommandTest, TokensStopsForCtrlC) {
  std::string bytes;
  while (bytes.size() < 4 * 1024 * 1024) bytes += "some,tokens\n";
  Process process({"text", "tokens", Save("a.txt", bytes), "--format", "ndjson"});
  std::string output = process.ReadOutput(1);
  process.Signal(SIGINT);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.code, 130);
  output += outcome.output;
  ASSERT_FALSE(output.empty());
  EXPECT_EQ(output.back(), '\n');
  const std::size_t lastLine = output.rfind('\n', output.size() - 2) + 1;
  EXPECT_TRUE(json::accept(output.substr(lastLine)));
}

TEST_F(TextCommandTest, TokensEndsQuietlyWhenNobodyReadsOn) {
  std::string bytes;
  while (bytes.size() < 4 * 1024 * 1024) bytes += "some,tokens\n";
  Process process({"text", "tokens", Save("a.txt", bytes)});
  process.ReadOutput(10);
  process.CloseOutput();
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
}

}  // namespace
}  // namespace trovan::test
