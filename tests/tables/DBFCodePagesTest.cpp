#include <cctype>
#include <clocale>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <trovan/DBFCodePages.h>
#include <win32/WinApi.h>

#include "support/TempFolder.h"

namespace trovan::test {
namespace {

using namespace std::string_view_literals;

// The names of the ".cpg" format, with their pages.
constexpr struct {
  const char* name;
  int page;
} kNames[] = {
    {"ISO 88591", 28591}, {"ISO 88592", 28592},  {"ISO 88593", 28593},  {"ISO 88594", 28594},
    {"ISO 88595", 28595}, {"ISO 88596", 28596},  {"ISO 88597", 28597},  {"ISO 88598", 28598},
    {"ISO 88599", 28599}, {"ISO 885910", 28600}, {"ISO 885913", 28603}, {"ISO 885915", 28605},
    {"UTF-8", 65001},     {"UTF-7", 65000},      {"US-ASCII", 20127},   {"ANSI 874", 874},
    {"ANSI 1250", 1250},  {"ANSI 1251", 1251},   {"ANSI 1252", 1252},   {"ANSI 1253", 1253},
    {"ANSI 1254", 1254},  {"ANSI 1255", 1255},   {"ANSI 1256", 1256},   {"ANSI 1257", 1257},
    {"ANSI 1258", 1258},  {"OEM 437", 437},      {"OEM 720", 720},      {"OEM 737", 737},
    {"OEM 775", 775},     {"OEM 819", 819},      {"OEM 850", 850},      {"OEM 852", 852},
    {"OEM 855", 855},     {"OEM 857", 857},      {"OEM 858", 858},      {"OEM 860", 860},
    {"OEM 861", 861},     {"OEM 862", 862},      {"OEM 863", 863},      {"OEM 864", 864},
    {"OEM 865", 865},     {"OEM 866", 866},      {"OEM 869", 869},      {"OEM 874", 874},
};
static_assert(std::size(kNames) == 44);

std::string InCase(std::string text, int (*convert)(int)) {
  for (char& c : text) c = static_cast<char>(convert(static_cast<unsigned char>(c)));
  return text;
}

class CPGFileTest : public testing::Test {
 protected:
  // What is read from a ".cpg" file that holds `text`.
  int Read(std::string_view text) {
    WriteBytes(folder_.Path() / "towns.cpg", text);
    return CPGFileRead(folder_.File(L"towns.dbf"));
  }
  // What a ".cpg" file holds after `page` was written.
  std::string Written(int page) {
    CPGFileWrite(folder_.File(L"towns.dbf"), page);
    return ReadBytes(folder_.Path() / "towns.cpg");
  }

  TempFolder folder_;
};

using CPGFileReadTest = CPGFileTest;
using CPGFileWriteTest = CPGFileTest;

TEST_F(CPGFileReadTest, KnowsEveryNameInAnyCaseOfLetters) {
  for (const auto& known : kNames) {
    EXPECT_EQ(Read(known.name), known.page) << known.name;
    EXPECT_EQ(Read(InCase(known.name, std::tolower)), known.page) << known.name;
    EXPECT_EQ(Read(InCase(known.name, std::toupper)), known.page) << known.name;
  }
  EXPECT_EQ(Read("uTf-8"), 65001);
}

TEST_F(CPGFileReadTest, WantsTheWholeNameAndNothingElse) {
  for (const auto& known : kNames) {
    const std::string name = known.name;
    for (const std::string& wrong :
         {name + " ", " " + name, name + "9", "x" + name, name.substr(0, name.size() - 1) + "!",
          name + "\t", name + "\r ", "\"" + name + "\""}) {
      EXPECT_EQ(Read(wrong), 0) << testing::PrintToString(wrong);
    }
  }
}

TEST_F(CPGFileReadTest, DoesNotKnowOtherSpellings) {
  for (const char* wrong :
       {"ISO 8859-1", "ISO-8859-1", "ISO8859-1",    "ISO88591", "ISO  88591", "ISO_88591",
        "ISO 885911", "ISO 885914", "ISO 885916",   "ISO 8859", "UTF8",       "UTF 8",
        "UTF_8",      "UTF-16",     "UTF",          "ASCII",    "ANSI1252",   "ANSI-1252",
        "ANSI 1249",  "ANSI 1259",  "ANSI",         "OEM437",   "OEM 436",    "OEM 874.",
        "OEM",        "CP1252",     "windows-1252", "Big5",     "x",          "-",
        "+",          "- 5",        "+-5",          "\x80",     "."}) {
    EXPECT_EQ(Read(wrong), 0) << wrong;
  }
}

// No locale has a say in the case of letters: in Turkish ones "i" and "I" are no pair.
TEST_F(CPGFileReadTest, FoldsCaseWithoutTheLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"tr_TR.UTF-8", "tr_TR.ISO-8859-9", "C.UTF-8", "C"}) {
    if (std::setlocale(LC_ALL, locale) == nullptr) continue;  // "C" is there everywhere
    EXPECT_EQ(Read("iso 88591"), 28591) << locale;
    EXPECT_EQ(Read("ansi 1252"), 1252) << locale;
    EXPECT_EQ(Read("us-ascii"), 20127) << locale;
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST_F(CPGFileReadTest, ReadsANumberAsTheCLibraryDoes) {
  const struct {
    std::string_view text;
    int page;
  } cases[] = {
      {"1252", 1252},
      {"1252 ", 1252},
      {" 1252", 1252},
      {" \t\v\f\r1252", 1252},
      {"0001252", 1252},
      {"+1252", 1252},
      {"  +1252", 1252},
      {"1252 and more", 1252},
      {"1252,1250", 1252},
      {"1252-1250", 1252},
      {"12 52", 12},
      {"0", 0},
      {"-0", 0},
      {"0x4E4", 0},
      {"-1252", -1252},
      {"-1", -1},
      {"+0", 0},
      {"3.9", 3},
      {"1e3", 1},
      {"65001", 65001},
      {"65536", 65536},
      {"100000", 100000},
      {"2147483646", 2147483646},
      {"2147483647", 2147483647},
      {"-2147483647", -2147483647},
      {"-2147483648", -2147483647 - 1},
      {"000000000000000000000000000065001", 65001},
      {"437 OEM 850", 437},
      {"1252\0junk"sv, 1252},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.text), c.page) << testing::PrintToString(std::string(c.text));
  }
}

TEST_F(CPGFileReadTest, LooksUpANumberOfMoreThanThirtyTwoBitsAsAName) {
  for (const char* text :
       {"2147483648", "-2147483649", "4294967296", "4294968548", "-4294966044",
        "9223372036854775807", "9223372036854775808", "-9223372036854775809",
        "18446744073709552868", "99999999999999999999999999999999999999", "+2147483648 UTF-8"}) {
    EXPECT_EQ(Read(text), 0) << text;
  }
}

TEST_F(CPGFileReadTest, ReadsTheFirstLineOnly) {
  EXPECT_EQ(Read("1252\n1250\n"), 1252);
  EXPECT_EQ(Read("UTF-8\nANSI 1250\n"), 65001);
  EXPECT_EQ(Read("\n1252\n"), 0);
  EXPECT_EQ(Read("\r\nUTF-8\r\n"), 0);
  EXPECT_EQ(Read("nothing\n1252"), 0);
}

TEST_F(CPGFileReadTest, TakesTheLineEndOff) {
  EXPECT_EQ(Read("UTF-8\r\n"), 65001);
  EXPECT_EQ(Read("utf-8\r\n"), 65001);
  EXPECT_EQ(Read("UTF-8\n"), 65001);
  EXPECT_EQ(Read("UTF-8\r"), 65001);
  EXPECT_EQ(Read("UTF-8\r\r\r\n"), 65001);
  EXPECT_EQ(Read("UTF-8"), 65001);
  EXPECT_EQ(Read("UTF-8 \r\n"), 0);
  EXPECT_EQ(Read("UTF-8\rx\r\n"), 0);
  EXPECT_EQ(Read("\rUTF-8\r\n"), 0);
}

// Narrow text ends at a NUL, for a name as for a number.
TEST_F(CPGFileReadTest, EndsTheTextAtANul) {
  EXPECT_EQ(Read("UTF-8\0junk"sv), 65001);
  EXPECT_EQ(Read("1252\0junk"sv), 1252);
  EXPECT_EQ(Read("UTF\0-8"sv), 0);
}

TEST_F(CPGFileReadTest, DoesNotSkipAByteOrderMark) {
  EXPECT_EQ(Read("\xEF\xBB\xBFUTF-8"), 0);
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "1252"),
            0);
}

TEST_F(CPGFileReadTest, FindsNothingInAFileWithoutText) {
  for (const std::string_view text : {""sv, "\r"sv, "\n"sv, "\r\n"sv, " "sv, "\0"sv, "\0UTF-8"sv}) {
    EXPECT_EQ(Read(text), 0) << testing::PrintToString(std::string(text));
  }
}

TEST_F(CPGFileReadTest, ReadsALongLine) {
  EXPECT_EQ(Read(std::string(200'000, ' ') + "1252"), 1252);
  EXPECT_EQ(Read(std::string(200'000, '0') + "1252"), 1252);
  EXPECT_EQ(Read(std::string(200'000, '9')), 0);
  EXPECT_EQ(Read("UTF-8" + std::string(200'000, '\r')), 65001);
}

TEST_F(CPGFileReadTest, FindsNothingWhereThereIsNoFile) {
  EXPECT_EQ(CPGFileRead(folder_.File(L"missing.dbf")), 0);
  EXPECT_EQ(CPGFileRead(folder_.File(L"no such folder/missing.dbf")), 0);
  std::filesystem::create_directory(folder_.Path() / "folder.cpg");
  EXPECT_EQ(CPGFileRead(folder_.File(L"folder.dbf")), 0);
  EXPECT_EQ(CPGFileRead(L""), 0);
}

TEST_F(CPGFileReadTest, ReplacesTheExtensionOfThePath) {
  WriteBytes(folder_.Path() / "towns.cpg", "1250");
  WriteBytes(folder_.Path() / "a.b.cpg", "1251");
  WriteBytes(folder_.Path() / ".cpg", "1253");
  for (const wchar_t* name : {L"towns", L"towns.dbf", L"towns.DBF", L"towns.shp", L"towns.cpg",
                              L"towns.", L"towns.longer"}) {
    EXPECT_EQ(CPGFileRead(folder_.File(name)), 1250) << testing::PrintToString(std::wstring(name));
  }
  EXPECT_EQ(CPGFileRead(folder_.File(L"a.b.dbf")), 1251);
  EXPECT_EQ(CPGFileRead(folder_.File(L".dbf")), 1253);
}

TEST_F(CPGFileWriteTest, WritesTheNumberInOneLine) {
  EXPECT_EQ(Written(1252), "1252\r\n");
  EXPECT_EQ(Written(1), "1\r\n");
  EXPECT_EQ(Written(65000), "65000\r\n");
  EXPECT_EQ(Written(65002), "65002\r\n");
  EXPECT_EQ(Written(-1), "-1\r\n");
  EXPECT_EQ(Written(-1252), "-1252\r\n");
  EXPECT_EQ(Written(2147483647), "2147483647\r\n");
  EXPECT_EQ(Written(-2147483647 - 1), "-2147483648\r\n");
}

TEST_F(CPGFileWriteTest, WritesUtf8ByItsName) { EXPECT_EQ(Written(65001), "UTF-8\r\n"); }

TEST_F(CPGFileWriteTest, WritesTheAnsiPageOfTheProcessForZero) {
  EXPECT_EQ(Written(0), std::to_string(GetACP()) + "\r\n");
}

// Deliberate: that page is written as a number even where it is UTF-8.
TEST_F(CPGFileWriteTest, WritesTheAnsiPageAsANumberEvenIfItIsUtf8) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
    GTEST_SKIP() << "this system has no locale C.UTF-8";
  }
  const std::string written = GetACP() == 65001 ? Written(0) : "";
  std::setlocale(LC_CTYPE, before.c_str());
  EXPECT_EQ(written, "65001\r\n");
}

TEST_F(CPGFileWriteTest, ReplacesTheFileThatIsThere) {
  WriteBytes(folder_.Path() / "towns.cpg", "a longer text\r\nof two lines\r\n");
  EXPECT_EQ(Written(437), "437\r\n");
}

TEST_F(CPGFileWriteTest, ReplacesTheExtensionOfThePath) {
  CPGFileWrite(folder_.File(L"a"), 1250);
  CPGFileWrite(folder_.File(L"b.SHP"), 1251);
  CPGFileWrite(folder_.File(L"c.d.dbf"), 1252);
  EXPECT_EQ(ReadBytes(folder_.Path() / "a.cpg"), "1250\r\n");
  EXPECT_EQ(ReadBytes(folder_.Path() / "b.cpg"), "1251\r\n");
  EXPECT_EQ(ReadBytes(folder_.Path() / "c.d.cpg"), "1252\r\n");
}

TEST_F(CPGFileWriteTest, RaisesWhereTheFileCannotBeMade) {
  EXPECT_THROW(CPGFileWrite(folder_.File(L"no such folder/towns.dbf"), 1252), corvel::Exception);
  std::filesystem::create_directory(folder_.Path() / "folder.cpg");
  EXPECT_THROW(CPGFileWrite(folder_.File(L"folder.dbf"), 1252), corvel::Exception);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "no such folder"));
}

TEST_F(CPGFileWriteTest, WritesWhatIsReadAgain) {
  for (const int page : {1, 437, 850, 1252, 28591, 65000, 65001, 65536, -5}) {
    CPGFileWrite(folder_.File(L"towns.dbf"), page);
    EXPECT_EQ(CPGFileRead(folder_.File(L"towns.dbf")), page);
  }
}

// Language bytes of the dBASE list.
constexpr unsigned char kRussianWindows = 0xC9;  // 1251
constexpr unsigned char kRussianDos = 0x65;      // 866
constexpr unsigned char kUnknown = 0x00;
constexpr unsigned char kMazovia = 0x69;  // a page that Windows does not have

class CodePageForDBFTranslationTest : public testing::Test {
 protected:
  void PutShapefile() { WriteBytes(folder_.Path() / "towns.shp", ""); }
  void PutCpg(std::string_view text) { WriteBytes(folder_.Path() / "towns.cpg", text); }
  int Page(unsigned char language) const {
    return CodePageForDBFTranslation(folder_.File(L"towns.dbf"), language);
  }

  TempFolder folder_;
};

TEST_F(CodePageForDBFTranslationTest, GoesByTheLanguageOfATableThatStandsAlone) {
  EXPECT_EQ(Page(kRussianWindows), 1251);
  EXPECT_EQ(Page(kRussianDos), 866);
  EXPECT_EQ(Page(0x03), 1252);
}

TEST_F(CodePageForDBFTranslationTest, GivesOneForATableThatStandsAloneAndSaysNothing) {
  EXPECT_EQ(Page(kUnknown), 1);
  EXPECT_EQ(Page(kMazovia), 1);
  EXPECT_EQ(Page(0xFF), 1);
}

TEST_F(CodePageForDBFTranslationTest, DoesNotReadTheCpgFileOfATableThatStandsAlone) {
  PutCpg("UTF-8");
  EXPECT_EQ(Page(kRussianWindows), 1251);
  EXPECT_EQ(Page(kUnknown), 1);
}

TEST_F(CodePageForDBFTranslationTest, DoesNotTakeAFolderForAShapefile) {
  std::filesystem::create_directory(folder_.Path() / "towns.shp");
  PutCpg("UTF-8");
  EXPECT_EQ(Page(kRussianWindows), 1251);
  EXPECT_EQ(Page(kUnknown), 1);
}

TEST_F(CodePageForDBFTranslationTest, PrefersTheCpgFileOfAShapefile) {
  PutShapefile();
  PutCpg("UTF-8\r\n");
  EXPECT_EQ(Page(kRussianWindows), 65001);
  EXPECT_EQ(Page(kUnknown), 65001);
  PutCpg("1250");
  EXPECT_EQ(Page(kRussianWindows), 1250);
  PutCpg("OEM 866");
  EXPECT_EQ(Page(kUnknown), 866);
}

TEST_F(CodePageForDBFTranslationTest, GoesByTheLanguageOfAShapefileWithoutACpgFile) {
  PutShapefile();
  EXPECT_EQ(Page(kRussianWindows), 1251);
  EXPECT_EQ(Page(kRussianDos), 866);
}

TEST_F(CodePageForDBFTranslationTest, TakesWesternEuropeanForAShapefileThatSaysNothing) {
  PutShapefile();
  EXPECT_EQ(Page(kUnknown), 1252);
  EXPECT_EQ(Page(kMazovia), 1252);
}

TEST_F(CodePageForDBFTranslationTest, PassesOverACpgFileThatNamesNoKnownPage) {
  PutShapefile();
  for (const char* text :
       {"", "0", "nonsense", "ISO 8859-1", "UTF-8 ", "9999", "65535", "65536", "66788",
        "2147483647", "2147483648", "-1", "-1252", "-2147483648", "1", "OEM 819"}) {
    PutCpg(text);
    EXPECT_EQ(Page(kRussianWindows), 1251) << text;
    EXPECT_EQ(Page(kUnknown), 1252) << text;
  }
}

TEST_F(CodePageForDBFTranslationTest, FindsTheSetByAnyOfItsFiles) {
  PutShapefile();
  PutCpg("1250");
  for (const wchar_t* name : {L"towns", L"towns.dbf", L"towns.DBF", L"towns.shp", L"towns.prj"}) {
    EXPECT_EQ(CodePageForDBFTranslation(folder_.File(name), kRussianWindows), 1250)
        << testing::PrintToString(std::wstring(name));
  }
}

TEST_F(CodePageForDBFTranslationTest, NeedsNoTable) {
  PutShapefile();
  EXPECT_EQ(Page(kRussianDos), 866);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "towns.dbf"));
}

TEST_F(CodePageForDBFTranslationTest, FindsAShapefileByARelativePath) {
  PutShapefile();
  PutCpg("1250");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  const int page = CodePageForDBFTranslation(L"towns.dbf", kRussianWindows);
  std::filesystem::current_path(before);
  EXPECT_EQ(page, 1250);
}

}  // namespace
}  // namespace trovan::test
