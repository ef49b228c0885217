#include <filesystem>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <corvel/Path.h>

#include "support/Environment.h"
#include "support/Locale.h"
#include "support/TempFolder.h"

namespace corvel {
namespace {

namespace fs = std::filesystem;
using trovan::test::ReadBytes;
using trovan::test::ScopedLocale;
using trovan::test::ScopedVariable;
using trovan::test::TempFolder;
using trovan::test::WriteBytes;

std::wstring WithNul(const std::wstring& path) { return path + std::wstring(1, L'\0') + L"tail"; }

// Extensions.

// Each path as what stands in front of its extension, and the extension.
const struct {
  const wchar_t* stem;
  const wchar_t* extension;
} kPaths[] = {
    {L"", L""},
    {L"towns", L""},
    {L"towns", L".dbf"},
    {L"towns", L".DBF"},
    {L"data/towns", L".dbf"},
    {L"/data.d/towns", L".dbf"},
    {L"towns.old", L".dbf"},
    {L"towns.", L".dbf"},
    {L"a.b/c", L""},
    {L"a.b/", L""},
    {L"a", L"."},
    {L"a.", L"."},
    {L"", L".dbf"},
    {L"data/", L".dbf"},
    {L"", L".a"},
    {L".", L""},
    {L"..", L""},
    {L"data/.", L""},
    {L"data/..", L""},
    {L"..", L"."},
    {L"..", L".dbf"},
    {L"../towns", L""},
    {L"./towns", L".c p"},
    {L"/", L""},
    {L"Stra\u00DFe.\u6771", L".\u4EAC"},
#if !defined(_WIN32)
    {L"a", L".b\\c"},  // an ordinary character here
    {L"c:a", L".d"},
#endif
};

TEST(CPath, KeepsThePathAsItIsGiven) {
  for (const wchar_t* path : {L"", L"a//b/../c.dbf", L"C:\\a.dbf", L" a "}) {
    EXPECT_EQ(CPath(path).GetPath(), path);
  }
}

TEST(CPath, TellsTheExtensionWithItsPoint) {
  for (const auto& c : kPaths) {
    const std::wstring path = std::wstring(c.stem) + c.extension;
    EXPECT_EQ(CPath(path).GetExtension(), c.extension) << testing::PrintToString(path);
  }
}

TEST(CPath, ReplacesAppendsOrTakesAwayTheExtension) {
  for (const auto& c : kPaths) {
    const std::wstring path = std::wstring(c.stem) + c.extension;
    for (const wchar_t* extension : {L".fpt", L"", L".", L".x.y", L"no point"}) {
      CPath changed(path);
      changed.SetExtension(extension);
      EXPECT_EQ(changed.GetPath(), std::wstring(c.stem) + extension)
          << testing::PrintToString(path);
      EXPECT_EQ(CPath::ChangeExtension(path.c_str(), extension), changed.GetPath());
    }
  }
}

TEST(CPath, TakesNullForEmptyText) {
  EXPECT_EQ(CPath::ChangeExtension(nullptr, L".dbt"), L".dbt");
  EXPECT_EQ(CPath::ChangeExtension(L"a.dbf", nullptr), L"a");
  EXPECT_EQ(CPath::ChangeExtension(nullptr, nullptr), L"");
}

// Full paths.

TEST(CPath, PutsTheWorkingFolderBeforeARelativePath) {
  const std::wstring folder = fs::current_path().wstring();
  for (const wchar_t* path : {L"towns.dbf", L"no such/towns.dbf", L"../towns.dbf", L"./x", L".."}) {
    EXPECT_EQ(CPath(path).GetFullPath(), folder + L"/" + path);
  }
}

TEST(CPath, LeavesAnAbsolutePathAlone) {
  for (const wchar_t* path : {L"/", L"/no such/../a.dbf", L"//a", L"/Stra\u00DFe"}) {
    EXPECT_EQ(CPath(path).GetFullPath(), path);
  }
  EXPECT_EQ(CPath(L"").GetFullPath(), L"");
}

TEST(CPath, KeepsTheBytesOfANameThatIsNoUtf8InItsFullPath) {
  const std::string name =
      "stra\xDF"
      "e.dbf";
  const std::wstring full = CPath(PathFromSystem(name)).GetFullPath();
  EXPECT_EQ(PathToSystem(full), (fs::current_path() / name).native());
}

TEST(CPath, GivesThePathItselfWhenTheWorkingFolderIsGone) {
  const fs::path before = fs::current_path();
  {
    TempFolder folder;
    fs::current_path(folder.Path());
  }
  const std::wstring full = CPath(L"towns.dbf").GetFullPath();
  fs::current_path(before);
  EXPECT_EQ(full, L"towns.dbf");
}

// The folder for temporary files.

TEST(CPath, TakesTheTemporaryFolderFromTheEnvironment) {
  TempFolder folder;
  const ScopedVariable variable("TMPDIR", folder.Path().c_str());
  EXPECT_EQ(CPath::GetTempPath(true), folder.Path().wstring());
}

TEST(CPath, TakesTheSystemsTemporaryFolderWhereTheEnvironmentNamesNone) {
  for (const char* none : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable variable("TMPDIR", none);
    EXPECT_EQ(CPath::GetTempPath(true), L"/tmp");
  }
}

TEST(CPath, HasNoTemporaryFolderWhereTheEnvironmentNamesAnythingElse) {
  TempFolder folder;
  WriteBytes(folder.Path() / "file", "");
  for (const char* name : {"file", "missing", "file/below"}) {
    const ScopedVariable variable("TMPDIR", (folder.Path() / name).c_str());
    EXPECT_EQ(CPath::GetTempPath(true), L"") << name;
    EXPECT_EQ(CPath::GetTempPath(false), (folder.Path() / name).wstring()) << "not asked to exist";
  }
}

TEST(CPath, NamesATemporaryFolderWhoseNameIsNoUtf8) {
  TempFolder folder;
  const fs::path named = folder.Path() / "\xE4\xF6";
  fs::create_directory(named);
  const ScopedVariable variable("TMPDIR", named.c_str());
  EXPECT_EQ(PathToSystem(CPath::GetTempPath(true)), named.native());
}

// Files.

class FilesTest : public testing::Test {
 protected:
  FilesTest() {
    WriteBytes(folder_.Path() / "file", "abc");
    fs::create_directory(folder_.Path() / "folder");
    fs::create_symlink("file", folder_.Path() / "link");
    fs::create_symlink("folder", folder_.Path() / "link to folder");
    fs::create_symlink("missing", folder_.Path() / "broken link");
  }

  bool IsThere(const char* name) const {
    return fs::exists(fs::symlink_status(folder_.Path() / name));
  }

  TempFolder folder_;
};

TEST_F(FilesTest, ExistWhereAFileIs) {
  EXPECT_TRUE(FileExists(folder_.File(L"file")));
  EXPECT_TRUE(FileExists(folder_.File(L"link")));
  EXPECT_TRUE(FileExists(L"/dev/null"));
}

TEST_F(FilesTest, DoNotExistElsewhere) {
  for (const wchar_t* name : {L"missing", L"missing/file", L"file/below", L"folder", L"folder/",
                              L"link to folder", L"broken link", L"file/"}) {
    EXPECT_FALSE(FileExists(folder_.File(name))) << testing::PrintToString(std::wstring(name));
  }
  EXPECT_FALSE(FileExists(L""));
  EXPECT_FALSE(FileExists(L"/"));
  EXPECT_FALSE(FileExists(folder_.File(std::wstring(100'000, L'x'))));
}

TEST_F(FilesTest, DoNotExistUnderANameThatHoldsANul) {
  EXPECT_FALSE(FileExists(WithNul(folder_.File(L"file"))));
}

TEST_F(FilesTest, ExistUnderNamesOfAnyLetters) {
  for (const std::string name : {"Gr\xC3\xB6\xC3\x9F"
                                 "e",
                                 "\xE6\x9D\xB1", "\xFF\xC3"}) {
    WriteBytes(folder_.Path() / name, "");
    const std::wstring path = PathFromSystem((folder_.Path() / name).native());
    EXPECT_TRUE(FileExists(path)) << name;
    EXPECT_TRUE(RemoveFile(path)) << name;
    EXPECT_FALSE(FileExists(path)) << name;
  }
}

TEST_F(FilesTest, AreRemoved) {
  EXPECT_TRUE(RemoveFile(folder_.File(L"file")));
  EXPECT_FALSE(IsThere("file"));
  EXPECT_FALSE(RemoveFile(folder_.File(L"file"))) << "there is none any more";
}

TEST_F(FilesTest, AreKeptWhenALinkToThemIsRemoved) {
  EXPECT_TRUE(RemoveFile(folder_.File(L"link")));
  EXPECT_TRUE(RemoveFile(folder_.File(L"broken link")));
  EXPECT_FALSE(IsThere("link"));
  EXPECT_FALSE(IsThere("broken link"));
  EXPECT_TRUE(IsThere("file"));
}

TEST_F(FilesTest, AreNotRemovedUnderANameThatHoldsANul) {
  EXPECT_FALSE(RemoveFile(WithNul(folder_.File(L"file"))));
  EXPECT_TRUE(IsThere("file"));
}

TEST_F(FilesTest, AreNoFolders) {
  EXPECT_FALSE(RemoveFile(folder_.File(L"folder")));
  EXPECT_TRUE(IsThere("folder"));
  EXPECT_FALSE(RemoveFile(L""));
}

// Lower case.

void ExpectLowerCase() {
  const struct {
    const wchar_t* text;
    const wchar_t* lower;
  } cases[] = {
      {L"", L""},
      {L"ABCXYZ.DBF", L"abcxyz.dbf"},
      {L"abc 0123 @[`{", L"abc 0123 @[`{"},
      {L"STRA\u00DFE \u00C4\u00D6\u00DC", L"stra\u00DFe \u00E4\u00F6\u00FC"},
      {L"\u1E9E", L"\u00DF"},
      {L"\u0395\u039B\u039B\u0386\u03A3", L"\u03B5\u03BB\u03BB\u03AC\u03C3"},
      {L"\u041C\u041E\u0421\u041A\u0412\u0410 \u0401",
       L"\u043C\u043E\u0441\u043A\u0432\u0430 \u0451"},
      {L"I\u0130i\u0131", L"iii\u0131"},  // the dotted and the dotless I
      {L"\u6771\u4EAC", L"\u6771\u4EAC"},
      {L"\U00010400", sizeof(wchar_t) == 2 ? L"\U00010400" : L"\U00010428"},
  };
  for (const auto& c : cases) EXPECT_EQ(ToLower(c.text), c.lower) << testing::PrintToString(c.text);
}

TEST(ToLower, FoldsEveryScript) { ExpectLowerCase(); }

TEST(ToLower, DoesNotDependOnTheLocale) {
  for (const char* name : {"C", "C.UTF-8", "tr_TR.UTF-8", "tr_TR", "de_DE.ISO-8859-1"}) {
    const ScopedLocale locale(name);
    if (locale.IsSet()) ExpectLowerCase();
  }
}

TEST(ToLower, LeavesWhatIsNoTextAlone) {
  std::wstring odd(1, L'\0');
  odd += L'A';
  odd += static_cast<wchar_t>(0xDC80);
  if constexpr (sizeof(wchar_t) == 4) {
    odd += static_cast<wchar_t>(0x110000);
    odd += static_cast<wchar_t>(-1);
  }
  std::wstring expected = odd;
  expected[1] = L'a';
  EXPECT_EQ(ToLower(odd), expected);
}

// Names of the system.

TEST(PathFromSystem, ReadsUtf8WhateverTheLocale) {
  const ScopedLocale locale("C");
  EXPECT_EQ(PathFromSystem("Gr\xC3\xB6\xC3\x9F"
                           "e"),
            L"Gr\u00F6\u00DFe");
  EXPECT_EQ(PathToSystem(L"Gr\u00F6\u00DFe \u6771 \U0001F5FA"),
            "Gr\xC3\xB6\xC3\x9F"
            "e \xE6\x9D\xB1 \xF0\x9F\x97\xBA");
}

TEST(PathFromSystem, LosesNoByteThereAndBack) {
  for (unsigned first = 0; first < 256; ++first) {
    for (unsigned second = 0; second < 256; ++second) {
      const std::string name{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(PathToSystem(PathFromSystem(name)), name) << first << ' ' << second;
    }
  }
  // Cut, overlong and wrong sequences of more bytes.
  std::mt19937 random(20240611);
  const unsigned char parts[] = {'a',  '/',  0x80, 0xBF, 0xC0, 0xC3, 0xA4, 0xE0, 0xED,
                                 0xB2, 0xEF, 0xF0, 0x9F, 0xF4, 0x90, 0xF8, 0xFF};
  for (int round = 0; round < 20'000; ++round) {
    std::string name(random() % 9, '\0');
    for (char& byte : name) byte = static_cast<char>(parts[random() % std::size(parts)]);
    ASSERT_EQ(PathToSystem(PathFromSystem(name)), name) << testing::PrintToString(name);
  }
}

TEST(PathToSystem, ReplacesWhatStandsForNothing) {
  EXPECT_EQ(PathToSystem(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
  EXPECT_EQ(PathToSystem(std::wstring(1, static_cast<wchar_t>(0xDC7F))), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace corvel
