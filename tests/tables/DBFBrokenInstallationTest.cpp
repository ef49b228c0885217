// The choice of a code page where the list of code pages lacks an entry that it must have. The list
// of this program is the one below: its functions stand in front of those of the library kerno.
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <kerno/CodePageInfo.h>
#include <trovan/DBFCodePages.h>

#include "support/TempFolder.h"

namespace {

int g_orderAskedFor = -1;

}  // namespace

namespace kerno {

CodePageInfo::CodePageInfo(int order) : byName_(order == kByDisplayName) {
  g_orderAskedFor = order;
}
bool CodePageInfo::GetIndexFromName(const std::wstring&, std::size_t&) const { return false; }

}  // namespace kerno

namespace trovan::test {
namespace {

class DBFBrokenInstallationTest : public testing::Test {
 protected:
  TempFolder folder_;
};

TEST_F(DBFBrokenInstallationTest, RaisesAnInternalErrorForTheTableOfAShapefile) {
  WriteBytes(folder_.Path() / "towns.shp", "");
  WriteBytes(folder_.Path() / "towns.cpg", "1252");
  for (const unsigned langID : {0x00U, 0x03U}) {
    try {
      CodePageForDBFTranslation(folder_.File(L"towns.dbf"), static_cast<unsigned char>(langID));
      ADD_FAILURE() << "nothing was raised";
    } catch (const corvel::Exception& error) {
      EXPECT_EQ(error.Module(), "Trovan");
      EXPECT_EQ(error.File(), "DBFReader");
      EXPECT_EQ(error.Line(), 746);
      EXPECT_EQ(std::string_view(error.what()).substr(0, 24), "Trovan::DBFReader(746): ");
    }
  }
}

TEST_F(DBFBrokenInstallationTest, AsksForTheListInTheOrderOfTheNumbers) {
  WriteBytes(folder_.Path() / "towns.shp", "");
  EXPECT_THROW(CodePageForDBFTranslation(folder_.File(L"towns.dbf"), 0x03), corvel::Exception);
  EXPECT_EQ(g_orderAskedFor, 2);
}

TEST_F(DBFBrokenInstallationTest, NeedsNoListForATableThatStandsAlone) {
  EXPECT_EQ(CodePageForDBFTranslation(folder_.File(L"towns.dbf"), 0x03), 1252);
  EXPECT_EQ(CodePageForDBFTranslation(folder_.File(L"towns.dbf"), 0x00), 1);
}

}  // namespace
}  // namespace trovan::test
