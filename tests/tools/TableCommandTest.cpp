// `trovan table` on small files.
#include <filesystem>
#include <string>

#include <unistd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Process.h"
#include "support/DbfImage.h"
#include "support/Environment.h"
#include "support/TempFolder.h"

namespace trovan::test {
namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;
using testing::Not;

class TableCommandTest : public testing::Test {
 protected:
  // Makes a file and gives its path as an argument.
  std::string Save(const std::string& name, const std::string& bytes) {
    WriteBytes(folder_.Path() / name, bytes);
    return Path(name);
  }
  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }

  static std::string Towns() {
    return DbfImage()
        .Language(0x03)
        .Field("NAME", 'C', 10)
        .Field("POP", 'N', 9)
        .Record("Troms\xF8        77095")
        .DeletedRecord("Rome")
        .Record("Bern         134000")
        .Text();
  }

  TempFolder folder_;
};

TEST_F(TableCommandTest, ExplainsItself) {
  const std::vector<std::vector<std::string>> commands = {{"--help"},
                                                          {"table", "--help"},
                                                          {"table", "info", "--help"},
                                                          {"table", "cat", "--help"},
                                                          {"table", "check", "--help"},
                                                          {"table", "cpg", "--help"}};
  for (const auto& arguments : commands) {
    const Outcome outcome = RunTrovan(arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Usage: trovan"));
    EXPECT_EQ(outcome.errors, "");
  }
  EXPECT_THAT(RunTrovan({"--version"}).output, testing::MatchesRegex("trovan [0-9.]+\n"));
}

TEST_F(TableCommandTest, RefusesArgumentsThatMakeNoSense) {
  const std::string towns = Save("t.dbf", Towns());
  const std::vector<std::vector<std::string>> commands = {
      {},
      {"nonsense"},
      {"table"},
      {"table", "nonsense", towns},
      {"table", "cat"},
      {"table", "cat", towns, towns},
      {"table", "cat", towns, "--nonsense"},
      {"table", "cat", towns, "--format", "xml"},
      {"table", "cat", towns, "--limit", "-1"},
      {"table", "cat", towns, "--limit", "many"},
      {"table", "cat", towns, "--skip", "-1"},
      {"table", "cat", towns, "--skip", "1.5"},
      {"table", "cat", towns, "--skip", "18446744073709551616"},
      {"table", "cat", towns, "--code-page", "utf"},
      {"table", "info", towns, "--format", "csv"},
      {"table", "check"},
      {"table", "cpg"},
      {"table", "cpg", towns, "--write", "UTF-8"},
  };
  for (const auto& arguments : commands) {
    const Outcome outcome = RunTrovan(arguments);
    EXPECT_EQ(outcome.code, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "") << testing::PrintToString(arguments);
    EXPECT_NE(outcome.errors, "") << testing::PrintToString(arguments);
  }
}

TEST_F(TableCommandTest, WritesCsv) {
  const Outcome outcome = RunTrovan({"table", "cat", Save("t.dbf", Towns())});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.output, "NAME,POP\r\nTromsø,77095\r\nBern,134000\r\n");
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(TableCommandTest, WritesJson) {
  const std::string towns = Save("t.dbf", Towns());
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--format", "json"}).output,
            "[\n{\"NAME\":\"Tromsø\",\"POP\":77095},\n{\"NAME\":\"Bern\",\"POP\":134000}\n]\n");
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--format", "ndjson"}).output,
            "{\"NAME\":\"Tromsø\",\"POP\":77095}\n{\"NAME\":\"Bern\",\"POP\":134000}\n");
}

TEST_F(TableCommandTest, ObeysTheOptionsOfCat) {
  const std::string towns = Save("t.dbf", Towns());
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--raw", "--limit", "1"}).output,
            "NAME,POP\r\nTromsø    ,    77095\r\n");
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--deleted", "--skip", "1"}).output,
            "_deleted,NAME,POP\r\ntrue,Rome,\r\nfalse,Bern,134000\r\n");
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--code-page", "850", "--limit", "1"}).output,
            "NAME,POP\r\nTroms°,77095\r\n");
  EXPECT_EQ(RunTrovan({"table", "cat", towns, "--skip", "18446744073709551615"}).output,
            "NAME,POP\r\n");
}

TEST_F(TableCommandTest, WarnsOfMalformedTexts) {
  const Outcome outcome =
      RunTrovan({"table", "cat", Save("t.dbf", Towns()), "--code-page", "65001"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.output, HasSubstr("Troms\xEF\xBF\xBD,"));
  EXPECT_THAT(outcome.errors, HasSubstr("1 places are no text of code page 65001"));
}

TEST_F(TableCommandTest, ShowsWhatIsThereOfADamagedTableAndFails) {
  const std::string whole = Towns();
  const std::string table = Save("t.dbf", whole.substr(0, whole.size() - 10));
  const Outcome outcome = RunTrovan({"table", "cat", table});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, "NAME,POP\r\nTromsø,77095\r\nBern,\r\n");
  EXPECT_THAT(outcome.errors, HasSubstr("record 3 is cut off"));
}

TEST_F(TableCommandTest, RefusesAPageThatCannotBeRead) {
  const Outcome outcome =
      RunTrovan({"table", "cat", Save("t.dbf", Towns()), "--code-page", "12345"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr("code page 12345"));
}

TEST_F(TableCommandTest, DescribesATable) {
  const Outcome outcome = RunTrovan({"table", "info", Save("t.dbf", Towns())});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.output, HasSubstr("Records        3, 1 of them deleted\n"));
  EXPECT_THAT(outcome.output, HasSubstr("language byte 0x03 stands for it\n"));
  EXPECT_THAT(outcome.output, HasSubstr("NAME  C  10      text\n"));
  EXPECT_THAT(outcome.output, Not(HasSubstr("Odd")));
}

TEST_F(TableCommandTest, DescribesATableInJson) {
  const std::string towns = Save("t.dbf", Towns());
  const auto json =
      nlohmann::json::parse(RunTrovan({"table", "info", towns, "--format", "json"}).output);
  EXPECT_EQ(json["file"], towns);
  EXPECT_EQ(json["records"], 3);
  EXPECT_EQ(json["deleted_records"], 1);
  EXPECT_EQ(json["code_page"]["number"], 1252);
  EXPECT_EQ(json["memo"], nullptr);
  EXPECT_EQ(json["fields"][1]["type"], "N");
  EXPECT_TRUE(json["oddities"].empty());
}

TEST_F(TableCommandTest, DescribesStrangeBytesWithoutPassingThemOn) {
  const std::string table = Save("t.dbf", DbfImage()
                                              .Field("\x1B[2J", '\x07', 1)
                                              .Field("\xFF", '\0', 1)
                                              .Field("A\nB", '\xE9', 1)
                                              .Record("xyz")
                                              .Text());
  const Outcome text = RunTrovan({"table", "info", table});
  EXPECT_EQ(text.code, 0);
  EXPECT_THAT(text.output, HasSubstr("0x07"));
  EXPECT_THAT(text.output, HasSubstr("0x00  1"));
  EXPECT_THAT(text.output, HasSubstr("0xE9"));
  for (const char control : {'\x1B', '\x07', '\0'}) {
    EXPECT_EQ(text.output.find(control), std::string::npos) << int{control};
  }
  const Outcome json = RunTrovan({"table", "info", table, "--format", "json"});
  EXPECT_EQ(nlohmann::json::parse(json.output)["fields"][0]["type"], "\x07");
}

TEST_F(TableCommandTest, ChecksFiles) {
  const std::string good = Save("good.dbf", Towns());
  const std::string empty = Save("empty.dbf", "");
  const std::string text = Save("text.dbf", "no table at all");
  const std::string other = Save("other.txt", Towns());
  EXPECT_EQ(RunTrovan({"table", "check", good}).code, 0);
  const Outcome outcome = RunTrovan({"table", "check", good, empty, text, other, Path("none.dbf")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, good + ": a table\n" + empty + ": an empty file\n" + text +
                                ": not a table: it cannot be opened, or its header does not fit "
                                "its size\n" +
                                other + ": not a table: its name does not end in .dbf\n" +
                                Path("none.dbf") +
                                ": not a table: there is no file of this name\n");
}

TEST_F(TableCommandTest, WritesAndShowsTheSideFile) {
  const std::string table = Path("t.dbf");
  EXPECT_EQ(RunTrovan({"table", "cpg", table, "--write", "65001"}).code, 0);
  EXPECT_EQ(ReadBytes(folder_.Path() / "t.cpg"), "UTF-8\r\n");
  EXPECT_THAT(RunTrovan({"table", "cpg", table}).output, HasSubstr("65001 "));
  EXPECT_EQ(RunTrovan({"table", "cpg", table, "--write", "1251"}).code, 0);
  EXPECT_EQ(ReadBytes(folder_.Path() / "t.cpg"), "1251\r\n");
  EXPECT_EQ(RunTrovan({"table", "cpg", table, "--write", "12345"}).code, 1);
  EXPECT_EQ(ReadBytes(folder_.Path() / "t.cpg"), "1251\r\n");
}

TEST_F(TableCommandTest, WritesTheCodePageOfTheUsersLocaleForZero) {
  const std::string table = Path("t.dbf");
  const struct {
    const char* locale;
    const char* line;
  } cases[] = {{"C.UTF-8", "65001\r\n"}, {"C", "1252\r\n"}};
  for (const auto& c : cases) {
    const ScopedVariable locale("LC_ALL", c.locale);
    EXPECT_EQ(RunTrovan({"table", "cpg", table, "--write", "0"}).code, 0) << c.locale;
    EXPECT_EQ(ReadBytes(folder_.Path() / "t.cpg"), c.line) << c.locale;
  }
}

TEST_F(TableCommandTest, SaysWhatASideFileLacks) {
  const Outcome none = RunTrovan({"table", "cpg", Path("t.dbf")});
  EXPECT_EQ(none.code, 1);
  EXPECT_THAT(none.errors, HasSubstr("there is no .cpg file"));
  Save("t.CPG", "1252");
  EXPECT_THAT(RunTrovan({"table", "cpg", Path("t.dbf")}).errors, HasSubstr("rename it"));
  Save("t.cpg", "nonsense");
  EXPECT_THAT(RunTrovan({"table", "cpg", Path("t.dbf")}).errors,
              HasSubstr("names no known code page"));
  Save("t.cpg", "12345");
  EXPECT_EQ(RunTrovan({"table", "cpg", Path("t.dbf")}).code, 1);
}

TEST_F(TableCommandTest, SaysThatAFileIsMissingOrAFolder) {
  std::filesystem::create_directory(folder_.Path() / "folder.dbf");
  const struct {
    const char* name;
    const char* reason;
  } cases[] = {{"none.dbf", "No such file or directory"}, {"folder.dbf", "Is a directory"}};
  for (const auto& c : cases) {
    for (const char* command : {"cat", "info"}) {
      const Outcome outcome = RunTrovan({"table", command, Path(c.name)});
      EXPECT_EQ(outcome.code, 1) << c.name;
      EXPECT_EQ(outcome.output, "") << c.name;
      // The reason alone: which source file raised it is no news to a user.
      EXPECT_EQ(outcome.errors, "trovan: Cannot open \"" + Path(c.name) + "\": " + c.reason + "\n");
    }
  }
}

TEST_F(TableCommandTest, SaysThatAFileMayNotBeRead) {
  const std::string towns = Save("t.dbf", Towns());
  std::filesystem::permissions(towns, std::filesystem::perms::none);
  if (::access(towns.c_str(), R_OK) == 0) GTEST_SKIP() << "this user may read everything";
  const Outcome outcome = RunTrovan({"table", "cat", towns});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("t.dbf"));
}

TEST_F(TableCommandTest, TakesNamesOfAnyBytes) {
  for (const char* name : {"two words.dbf", "\xC3\xA5.dbf", "\xE5\xFF.dbf", "line\nend.dbf",
                           "-dash.dbf", "CAPITAL.DBF"}) {
    const std::string path = Save(name, Towns());
    EXPECT_EQ(RunTrovan({"table", "cat", path}).code, 0) << name;
    const Outcome info = RunTrovan({"table", "info", path, "--format", "json"});
    EXPECT_EQ(info.code, 0) << name;
    EXPECT_TRUE(nlohmann::json::accept(info.output)) << name;
    EXPECT_EQ(RunTrovan({"table", "check", path}).code, 0) << name;
  }
}

}  // namespace
}  // namespace trovan::test
