#include <win32/WinApi.h>

#include <sys/stat.h>

#include <cerrno>
#include <clocale>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <win32/Utf8.h>

#include "support/MadeLocale.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

// The locale of the process's character set, as long as the object lives.
class ScopedCharacterSet {
 public:
  explicit ScopedCharacterSet(const char* locale) : old_(std::setlocale(LC_CTYPE, nullptr)) {
    if (std::setlocale(LC_CTYPE, locale) == nullptr) {
      throw std::runtime_error(std::string("no locale ") + locale);
    }
  }
  ~ScopedCharacterSet() { std::setlocale(LC_CTYPE, old_.c_str()); }
  ScopedCharacterSet(const ScopedCharacterSet&) = delete;
  ScopedCharacterSet& operator=(const ScopedCharacterSet&) = delete;

 private:
  std::string old_;
};

TEST(GetACP, IsWesternEuropeanWhereTheLocaleSaysNothing) {
  for (const char* name : {"C", "POSIX"}) {
    const ScopedCharacterSet locale(name);
    EXPECT_EQ(GetACP(), 1252U) << name;
  }
}

TEST(GetACP, IsUtf8InAUtf8Locale) {
  const ScopedCharacterSet locale("C.UTF-8");
  EXPECT_EQ(GetACP(), 65001U);
}

TEST(GetACP, IsThePageOfTheLocalesCharacterSet) {
  const struct {
    const char* characterSet;
    UINT page;
  } cases[] = {
      {"UTF-8", 65001},
      {"ISO-8859-1", 28591},
      {"ISO-8859-2", 28592},
      {"ISO-8859-3", 28593},
      {"ISO-8859-4", 28594},
      {"ISO-8859-5", 28595},
      {"ISO-8859-6", 28596},
      {"ISO-8859-7", 28597},
      {"ISO-8859-8", 28598},
      {"ISO-8859-9", 28599},
      {"ISO-8859-13", 28603},
      {"ISO-8859-15", 28605},
      {"KOI8-R", 20866},
      {"KOI8-U", 21866},
      {"CP1250", 1250},
      {"CP1251", 1251},
      {"CP1252", 1252},
      {"CP1253", 1253},
      {"CP1254", 1254},
      {"CP1255", 1255},
      {"CP1256", 1256},
      {"CP1257", 1257},
      {"CP1258", 1258},
      {"TIS-620", 874},
      {"SHIFT_JIS", 932},
      {"GBK", 936},
      {"GB2312", 936},
      {"EUC-KR", 51949},
      {"BIG5", 950},
      {"EUC-JP", 51932},
      {"GB18030", 54936},
      {"JOHAB", 1361},
      {"ISO-8859-14", 1252},
      {"ARMSCII-8", 1252},
      {"ANSI_X3.4-1968", 1252},
  };
  const trovan::test::MadeLocales locales;
  for (const auto& c : cases) {
    const std::string name = "page" + std::to_string(&c - cases);
    locales.Make(name, c.characterSet, ".");
    const ScopedCharacterSet locale(name.c_str());
    EXPECT_EQ(GetACP(), c.page) << c.characterSet;
  }
}

class GetTempFileNameTest : public testing::Test {
 protected:
  std::wstring Folder() const { return folder_.Path().wstring(); }

  // Calls it with the test's own folder.
  UINT Make(const wchar_t* prefix, UINT unique = 0) {
    return GetTempFileNameW(Folder().c_str(), prefix, unique, name_);
  }

  fs::path Made() const { return fs::path(win32::FileNameFromWide(name_)); }
  std::string FileName() const { return Made().filename().string(); }

  std::size_t CountFiles() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator()));
  }

  trovan::test::TempFolder folder_;
  wchar_t name_[MAX_PATH] = {};
};

std::string Hexadecimal(UINT number) {
  char text[9];
  (void)std::snprintf(text, sizeof text, "%x", static_cast<unsigned>(number));
  return text;
}

TEST_F(GetTempFileNameTest, CreatesAnEmptyFileThatOnlyItsOwnerReads) {
  const UINT number = Make(L"QVC");
  ASSERT_NE(number, 0U);
  EXPECT_LE(number, 0xFFFFU);
  EXPECT_EQ(Made().parent_path(), folder_.Path());
  EXPECT_EQ(FileName(), "QVC" + Hexadecimal(number) + ".tmp");
  struct stat status = {};
  ASSERT_EQ(::stat(Made().c_str(), &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));
  EXPECT_EQ(status.st_mode & 0777, 0600U);
  EXPECT_EQ(status.st_size, 0);
  EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(GetTempFileNameTest, UsesTheFirstThreeCharactersOfThePrefix) {
  const struct {
    const wchar_t* prefix;
    const char* used;
  } cases[] = {{L"", ""},
               {L"a", "a"},
               {L"ab", "ab"},
               {L"abc", "abc"},
               {L"abcd", "abc"},
               {L"prefix", "pre"},
               {nullptr, ""},
               {L"\u00E4\u20AC"
                L"zq",
                "\xC3\xA4\xE2\x82\xACz"}};
  for (const auto& c : cases) {
    const UINT number = Make(c.prefix);
    ASSERT_NE(number, 0U) << c.used;
    EXPECT_EQ(FileName(), c.used + Hexadecimal(number) + ".tmp");
    EXPECT_TRUE(fs::exists(Made()));
  }
}

TEST_F(GetTempFileNameTest, GivesManyCallsManyNames) {
  std::set<std::string> names;
  for (int call = 0; call < 2'000; ++call) {
    ASSERT_NE(Make(L"many"), 0U);
    ASSERT_TRUE(names.insert(FileName()).second) << FileName() << " came twice";
  }
  EXPECT_EQ(CountFiles(), 2'000U);
}

TEST_F(GetTempFileNameTest, GivesCallersOfManyThreadsManyNames) {
  const std::wstring folder = Folder();
  std::vector<std::thread> callers;
  for (int i = 0; i < 4; ++i) {
    callers.emplace_back([&folder] {
      wchar_t name[MAX_PATH];
      for (int call = 0; call < 200; ++call) {
        EXPECT_NE(GetTempFileNameW(folder.c_str(), L"par", 0, name), 0U);
      }
    });
  }
  for (std::thread& caller : callers) caller.join();
  EXPECT_EQ(CountFiles(), 800U);  // each call made a file of its own
}

TEST_F(GetTempFileNameTest, SkipsNamesThatAreTakenUntilNoneIsLeft) {
  constexpr UINT kLeft = 0x3A5;
  const std::string start = (folder_.Path() / "fil").string();
  // Links to one file: tens of thousands of files are slow on some systems.
  const fs::path taken = folder_.Path() / "taken";
  std::ofstream(taken) << "kept";
  for (UINT number = 1; number <= 0xFFFF; ++number) {
    if (number != kLeft) fs::create_symlink(taken, start + Hexadecimal(number) + ".tmp");
  }
  EXPECT_EQ(Make(L"fil"), kLeft);
  EXPECT_EQ(FileName(), "fil3a5.tmp");
  EXPECT_EQ(Make(L"fil"), 0U);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_NE(Make(L"fix"), 0U);  // each prefix has numbers of its own
  std::string content;
  std::ifstream(taken) >> content;
  EXPECT_EQ(content, "kept");
}

TEST_F(GetTempFileNameTest, MakesOnlyTheNameFromANumberThatIsGiven) {
  const struct {
    UINT unique;
    const char* file;
  } cases[] = {{1, "abc1.tmp"},          {0x1F, "abc1f.tmp"},       {0xFFFF, "abcffff.tmp"},
               {0x12345, "abc2345.tmp"}, {0xABCD0010, "abc10.tmp"}, {0x10000, "abc0.tmp"}};
  for (const auto& c : cases) {
    EXPECT_EQ(Make(L"abcd", c.unique), c.unique);
    EXPECT_EQ(FileName(), c.file);
  }
  EXPECT_EQ(CountFiles(), 0U);
}

TEST_F(GetTempFileNameTest, TestsNothingWhenTheNumberIsGiven) {
  std::ofstream(folder_.Path() / "abc7.tmp") << "there";
  EXPECT_EQ(Make(L"abc", 7), 7U);
  EXPECT_EQ(GetTempFileNameW(L"/nowhere/at/all", L"abc", 7, name_), 7U);
  EXPECT_STREQ(name_, L"/nowhere/at/all/abc7.tmp");
}

TEST_F(GetTempFileNameTest, AddsNoSecondSeparator) {
  EXPECT_EQ(GetTempFileNameW(L"folder", L"a", 1, name_), 1U);
  EXPECT_STREQ(name_, L"folder/a1.tmp");
  EXPECT_EQ(GetTempFileNameW(L"folder/", L"a", 1, name_), 1U);
  EXPECT_STREQ(name_, L"folder/a1.tmp");
  EXPECT_EQ(GetTempFileNameW(L".", L"a", 1, name_), 1U);
  EXPECT_STREQ(name_, L"./a1.tmp");
  EXPECT_EQ(GetTempFileNameW(L"/", L"a", 1, name_), 1U);
  EXPECT_STREQ(name_, L"/a1.tmp");
}

TEST_F(GetTempFileNameTest, RefusesNull) {
  EXPECT_EQ(GetTempFileNameW(nullptr, L"abc", 0, name_), 0U);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(GetTempFileNameW(nullptr, L"abc", 5, name_), 0U);
  EXPECT_EQ(GetTempFileNameW(Folder().c_str(), L"abc", 0, nullptr), 0U);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(CountFiles(), 0U);
}

// An empty path is what a caller has that found no folder for temporary files. It must not come to
// mean the root of the file system.
TEST_F(GetTempFileNameTest, RefusesAnEmptyPath) {
  for (const UINT unique : {0U, 5U}) {
    errno = 0;
    EXPECT_EQ(GetTempFileNameW(L"", L"abc", unique, name_), 0U);
    EXPECT_EQ(errno, ENOENT);
  }
}

TEST_F(GetTempFileNameTest, RefusesAFolderThatIsNotThere) {
  EXPECT_EQ(GetTempFileNameW((Folder() + L"/missing").c_str(), L"abc", 0, name_), 0U);
  EXPECT_EQ(errno, ENOENT);
  std::ofstream(folder_.Path() / "file") << "";
  EXPECT_EQ(GetTempFileNameW((Folder() + L"/file").c_str(), L"abc", 0, name_), 0U);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST_F(GetTempFileNameTest, LeavesTheBufferWhenItFails) {
  std::wcscpy(name_, L"untouched");
  EXPECT_EQ(GetTempFileNameW((Folder() + L"/missing").c_str(), L"abc", 0, name_), 0U);
  EXPECT_STREQ(name_, L"untouched");
}

TEST_F(GetTempFileNameTest, TakesAFolderOfUpTo246Characters) {
  std::wstring folder = Folder() + L'/';
  const std::size_t room = 246 - folder.size();
  ASSERT_LE(room, 255U) << "the scratch folder's own path is too short for this test";
  folder.append(room, L'd');
  fs::create_directory(fs::path(win32::FileNameFromWide(folder)));
  const UINT number = GetTempFileNameW(folder.c_str(), L"abc", 0, name_);
  ASSERT_NE(number, 0U);
  EXPECT_TRUE(fs::exists(Made()));
  EXPECT_EQ(GetTempFileNameW(folder.c_str(), L"abc", 0xFFFF, name_), 0xFFFFU);
  EXPECT_EQ(std::wcslen(name_), 246U + 12);  // with its NUL within MAX_PATH

  folder += L'd';
  fs::create_directory(fs::path(win32::FileNameFromWide(folder)));
  EXPECT_EQ(GetTempFileNameW(folder.c_str(), L"abc", 0, name_), 0U);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ(GetTempFileNameW(folder.c_str(), L"abc", 1, name_), 0U);
}

TEST_F(GetTempFileNameTest, TakesFoldersWhoseNamesAreNoUtf8) {
  const fs::path folder = folder_.Path() / "caf\xE9";
  fs::create_directory(folder);
  const std::wstring wide = win32::WideFromFileName(folder.string());
  ASSERT_NE(GetTempFileNameW(wide.c_str(), L"abc", 0, name_), 0U);
  EXPECT_EQ(Made().parent_path(), folder);
  EXPECT_TRUE(fs::exists(Made()));
}

}  // namespace
