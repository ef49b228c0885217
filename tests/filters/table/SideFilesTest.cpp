#include "filters/table/SideFiles.h"

#include "TableFixture.h"

namespace trovan::filters {
namespace {

class SideFilesTest : public TableFixture {};

TEST_F(SideFilesTest, FindsNothingWhereNothingIs) {
  EXPECT_FALSE(FindSideFile(Path(), L".cpg"));
  std::filesystem::create_directory(folder_.Path() / "t.cpg");
  EXPECT_FALSE(FindSideFile(Path(), L".cpg"));
}

TEST_F(SideFilesTest, FindsAnySpellingOfTheExtension) {
  for (const char* name :
       {"t.cpg", "t.Cpg", "t.cPg", "t.CPg", "t.cpG", "t.CpG", "t.cPG", "t.CPG"}) {
    Save(name, "1252");
    const auto side = FindSideFile(Path(), L".cpg");
    ASSERT_TRUE(side) << name;
    EXPECT_EQ(side->path, (folder_.Path() / name).wstring());
    EXPECT_EQ(side->foundInSmallLetters, std::string(name) == "t.cpg") << name;
    std::filesystem::remove(folder_.Path() / name);
  }
}

TEST_F(SideFilesTest, PrefersSmallLetters) {
  Save("t.CPG", "1250");
  Save("t.cpg", "1252");
  const auto side = FindSideFile(Path(), L".cpg");
  ASSERT_TRUE(side);
  EXPECT_TRUE(side->foundInSmallLetters);
}

TEST_F(SideFilesTest, LeavesTheNameItselfAsItIs) {
  Save("T.cpg", "1250");
  EXPECT_FALSE(FindSideFile(Path(), L".cpg"));
}

TEST_F(SideFilesTest, ReplacesCapitalExtensionsOfTheTable) {
  Save("t.cpg", "1250");
  EXPECT_TRUE(FindSideFile(folder_.File(L"t.DBF"), L".cpg"));
}

}  // namespace
}  // namespace trovan::filters
