#include "filters/lattice/EnviFiles.h"

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
      {L"out.hdr", L"out.hdr", L"out.img"}, {L"out.HDR", L"out.HDR", L"out.img"},
      {L"out.img", L"out.hdr", L"out.img"}, {L"a.b/out", L"a.b/out.hdr", L"a.b/out"},
      {L"out.bil", L"out.hdr", L"out.bil"},
  };
  for (const auto& c : cases) {
    const EnviFiles files = NewEnviFiles(c.path);
    EXPECT_EQ(files.header, c.header);
    EXPECT_EQ(files.raw, c.raw);
  }
}

}  // namespace
}  // namespace trovan::filters
