#include "filters/lattice/EnviFiles.h"

#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include <corvel/Exception.h>
#include <corvel/Path.h>

#include "EnviFixture.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class EnviFilesTest : public RasterTest {
 protected:
  std::string Partner(const std::wstring& name) const {
    const EnviFiles files = FindEnviFiles(File(name));
    const std::wstring other = files.raw == File(name) ? files.header : files.raw;
    return std::filesystem::path(corvel::PathToSystem(other)).filename().string();
  }
};

TEST_F(EnviFilesTest, FindsTheOtherFileByItsName) {
  const struct {
    const char* header;
    const char* raw;
  } pairs[] = {
      {"scan.hdr", "scan"},           {"scan.hdr", "scan.img"},     {"scan.hdr", "scan.dat"},
      {"scan.hdr", "scan.raw"},       {"scan.hdr", "scan.bsq"},     {"scan.hdr", "scan.bil"},
      {"scan.hdr", "scan.bip"},       {"scan.hdr", "scan.bin"},     {"scan.HDR", "scan.IMG"},
      {"scan.Hdr", "scan.bIl"},       {"scan.img.hdr", "scan.img"}, {"scan.xyz.hdr", "scan.xyz"},
      {"scan.2020.hdr", "scan.2020"},
  };
  for (const auto& pair : pairs) {
    SCOPED_TRACE(testing::Message() << pair.header << " and " << pair.raw);
    Put(pair.header, "");
    Put(pair.raw, "");
    EXPECT_EQ(Partner(corvel::PathFromSystem(pair.header)), pair.raw);
    EXPECT_EQ(Partner(corvel::PathFromSystem(pair.raw)), pair.header);
    std::filesystem::remove(Folder() / pair.header);
    std::filesystem::remove(Folder() / pair.raw);
  }
}

TEST_F(EnviFilesTest, PrefersTheHeaderWithTheWholeNameOfTheRawFile) {
  Put("scan.img", "");
  Put("scan.hdr", "");
  Put("scan.img.hdr", "");
  EXPECT_EQ(Partner(L"scan.img"), "scan.img.hdr");
}

TEST_F(EnviFilesTest, TakesNoFolderForTheRawFile) {
  std::filesystem::create_directory(Folder() / "scan");
  Put("scan.hdr", "");
  Put("scan.dat", "");
  EXPECT_EQ(Partner(L"scan.hdr"), "scan.dat");
}

TEST_F(EnviFilesTest, NamesWhatItLookedFor) {
  Put("scan.hdr", "");
  EXPECT_THAT(ErrorOf([&] { FindEnviFiles(File(L"scan.hdr")); }),
              AllOf(HasSubstr("scan.hdr has no raw file"), HasSubstr("/scan, "),
                    HasSubstr("/scan.img, "), HasSubstr(" and "), HasSubstr("/scan.bin")));
  Put("alone.img", "");
  EXPECT_THAT(ErrorOf([&] { FindEnviFiles(File(L"alone.img")); }),
              AllOf(HasSubstr("alone.img has no ENVI header"), HasSubstr("/alone.img.hdr and "),
                    HasSubstr("/alone.hdr")));
}

TEST_F(EnviFilesTest, TellsFirstThatTheFileItselfIsMissing) {
  Put("scan.hdr", "");
  EXPECT_THROW(FindEnviFiles(File(L"none.hdr")), corvel::Exception);
  EXPECT_THROW(FindEnviFiles(File(L"scan.img")), corvel::Exception);
}

TEST_F(EnviFilesTest, NamesTheFilesToWrite) {
  const struct {
    const wchar_t* path;
    const wchar_t* header;
    const wchar_t* raw;
  } cases[] = {
      {L"out.hdr", L"out.hdr", L"out.img"},
      {L"out.HDR", L"out.HDR", L"out.img"},
      {L"out.img", L"out.hdr", L"out.img"},
      {L"a.b/out", L"a.b/out.hdr", L"a.b/out"},
      {L"out.bil", L"out.hdr", L"out.bil"},
      {L"t.IMG.hdr", L"t.IMG.hdr", L"t.IMG"},
      {L"t.v2.hdr", L"t.v2.hdr", L"t.v2.img"},
      {L"t.v2", L"t.v2.hdr", L"t.v2"},
      {L"a.b/out.BSQ", L"a.b/out.hdr", L"a.b/out.BSQ"},
  };
  for (const auto& c : cases) {
    const EnviFiles files = NewEnviFiles(c.path);
    EXPECT_EQ(files.header, c.header);
    EXPECT_EQ(files.raw, c.raw);
  }
}

// --- Names of new files beside older ones --------------------------------------------------------

class EnviNamesTest : public EnviFilesTest {
 protected:
  std::string Refusal(const std::wstring& name) const {
    return ErrorOf([&] { RequireOwnNames(NewEnviFiles(File(name))); });
  }
};

TEST_F(EnviNamesTest, AreRefusedWhereARasterWouldBeMixedUpWithAnother) {
  const struct {
    std::set<std::string> there;
    const wchar_t* given;
    const char* inTheWay;
  } cases[] = {
      // The header is that of another raw file.
      {{"s.hdr", "s.img"}, L"s.bip", "s.img"},
      {{"s.hdr", "s.bip"}, L"s.img", "s.bip"},
      {{"s.hdr", "s.dat"}, L"s.hdr", "s.dat"},
      {{"dark.hdr", "dark"}, L"dark.hdr", "dark"},
      // A new header would be taken for that of another raw file.
      {{"notes"}, L"notes.hdr", "notes"},
      {{"s.img"}, L"s.bip", "s.img"},
      {{"s.HDR", "s.dat"}, L"s.bip", "s.dat"},
      // The raw file has another header.
      {{"t.img.hdr", "t.img"}, L"t.img", "t.img.hdr"},
      {{"t.img.hdr"}, L"t.img", "t.img.hdr"},
      {{"t.HDR", "t.img"}, L"t.img", "t.HDR"},
      {{"t.hdr", "t.img"}, L"t.HDR", "t.hdr"},
      {{"t.hdr", "t.img"}, L"t.img.hdr", "t.hdr"},
      // The new raw file would come before that of another header.
      {{"t.hdr", "t.dat"}, L"t.img.hdr", "t.hdr"},
      {{"t.HDR", "t.dat"}, L"t.img", "t.HDR"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << testing::PrintToString(c.there) << " and a new "
                                    << std::filesystem::path(c.given));
    for (const std::string& name : c.there) Put(name.c_str(), "");
    EXPECT_THAT(Refusal(c.given), AllOf(HasSubstr((Folder() / c.inTheWay).string() + " is in the"),
                                        HasSubstr("choose another name")));
    for (const std::string& name : c.there) std::filesystem::remove(Folder() / name);
  }
}

TEST_F(EnviNamesTest, MayReplaceThemselvesAndStandBesideOthers) {
  const struct {
    std::set<std::string> there;
    const wchar_t* given;
  } cases[] = {
      {{}, L"s.hdr"},
      {{"s.hdr", "s.img"}, L"s.hdr"},
      {{"s.hdr", "s.img"}, L"s.img"},
      {{"s.HDR", "s.img"}, L"s.HDR"},
      {{"s.hdr", "s.bip"}, L"s.bip"},
      {{"dark.hdr", "dark"}, L"dark"},
      {{"t.img.hdr", "t.img"}, L"t.img.hdr"},
      {{"s.hdr"}, L"s.bip"},  // a header of nothing
      {{"s.img"}, L"s.img"},  // a raw file without a header
      {{"s.bin"}, L"s.img"},
      {{"s.vtk", "s.asc", "s.hdr.txt"}, L"s.hdr"},
      {{"t.hdr", "t"}, L"t.img.hdr"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << testing::PrintToString(c.there) << " and a new "
                                    << std::filesystem::path(c.given));
    for (const std::string& name : c.there) Put(name.c_str(), "");
    EXPECT_EQ(Refusal(c.given), "");
    for (const std::string& name : c.there) std::filesystem::remove(Folder() / name);
  }
}

// Every folder of a few names and every new name: where it is not refused, the pair is found by
// both its names, and every other pair is still the one that it was.
TEST_F(EnviNamesTest, ThatAreNotRefusedKeepAllPairsApart) {
  const std::string names[] = {"t", "t.img", "t.dat", "t.hdr", "t.HDR", "t.img.hdr", "t.dat.hdr"};
  constexpr unsigned kCount = std::size(names);
  const auto pairs = [&] {
    std::map<std::string, std::string> found;
    for (const std::string& name : names) {
      try {
        found[name] = Partner(corvel::PathFromSystem(name));
      } catch (const std::runtime_error&) {
        continue;  // it is alone or not there
      }
    }
    return found;
  };
  unsigned allowed = 0;
  for (unsigned there = 0; there < 1U << kCount; ++there) {
    for (const std::string& given : names) {
      for (unsigned i = 0; i < kCount; ++i) {
        std::filesystem::remove(Folder() / names[i]);
        if ((there >> i & 1U) != 0) Put(names[i].c_str(), "");
      }
      const std::wstring name = corvel::PathFromSystem(given);
      if (!Refusal(name).empty()) continue;
      ++allowed;
      const auto before = pairs();
      const EnviFiles files = NewEnviFiles(File(name));
      for (const std::wstring& file : {files.header, files.raw}) {
        test::WriteBytes(corvel::PathToSystem(file), "");
      }
      SCOPED_TRACE(testing::Message() << "folder " << there << ", new " << given);
      EXPECT_EQ(FindEnviFiles(files.header).raw, files.raw);
      EXPECT_EQ(FindEnviFiles(files.raw).header, files.header);
      const auto after = pairs();
      for (const auto& [one, other] : before) {
        // Of a pair that is one by both names, neither or both are written.
        if (before.count(other) == 0 || before.at(other) != one) continue;
        EXPECT_EQ(after.at(one), other);
      }
    }
  }
  EXPECT_GT(allowed, 50U);
}

TEST_F(EnviNamesTest, AreRefusedWhereTheyLeadToAnotherRaster) {
  std::filesystem::create_directory(Folder() / "disk");
  const auto link = [&](const char* target, const char* name) {
    std::filesystem::remove(Folder() / name);
    std::filesystem::create_symlink(target, Folder() / name);
  };
  link("disk/a.img", "s.img");
  link("disk/a.hdr", "s.hdr");
  EXPECT_EQ(Refusal(L"s.img"), "");  // makes both
  Put("disk/a.img", "");
  Put("disk/a.hdr", "");
  EXPECT_EQ(Refusal(L"s.img"), "");  // replaces both
  link("disk/b.hdr", "s.hdr");
  EXPECT_THAT(Refusal(L"s.img"), HasSubstr("disk/a.hdr is in the way"));
  link("disk/a.hdr", "s.hdr");
  link("disk/b.img", "s.img");
  EXPECT_THAT(Refusal(L"s.img"), HasSubstr("disk/a.img is in the way"));
  link("disk/b.img", "s.hdr");
  EXPECT_THAT(Refusal(L"s.img"), HasSubstr("disk/b.img is in the way"));
}

}  // namespace
}  // namespace trovan::filters
