#include "filters/table/CodePageChoice.h"

#include "TableFixture.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CodePageChoiceTest : public TableFixture {
 protected:
  CodePageChoice Choose(std::uint8_t languageByte, std::optional<int> asked = std::nullopt) {
    TableLayout layout;
    layout.languageByte = languageByte;
    return ChooseCodePage(Path(), layout, asked);
  }
};

TEST_F(CodePageChoiceTest, GoesByTheLanguageByte) {
  const CodePageChoice choice = Choose(0x65);
  EXPECT_EQ(choice.number, 866);
  EXPECT_NE(choice.name, "");
  EXPECT_EQ(choice.reason, "language byte 0x65 stands for it");
  EXPECT_THAT(choice.remarks, IsEmpty());
}

TEST_F(CodePageChoiceTest, TakesTheOemPageForAnUnknownByteWithoutShapefile) {
  const CodePageChoice choice = Choose(0x00);
  EXPECT_EQ(choice.number, 1);
  EXPECT_THAT(choice.name, HasSubstr("437"));
  EXPECT_THAT(choice.reason, HasSubstr("language byte 0x00 stands for no code page"));
}

TEST_F(CodePageChoiceTest, TakesWesternEuropeanForAnUnknownByteWithShapefile) {
  Save("t.shp", "");
  const CodePageChoice choice = Choose(0x00);
  EXPECT_EQ(choice.number, 1252);
  EXPECT_THAT(choice.reason, HasSubstr("shapefiles are read in by default"));
}

TEST_F(CodePageChoiceTest, GoesByTheSideFileOfAShapefile) {
  Save("t.shp", "");
  Save("t.cpg", "UTF-8");
  const CodePageChoice choice = Choose(0x65);
  EXPECT_EQ(choice.number, 65001);
  EXPECT_EQ(choice.reason, "t.cpg names it");
  EXPECT_THAT(choice.remarks, IsEmpty());
}

TEST_F(CodePageChoiceTest, SaysThatASideFileWithoutShapefileHasNoSay) {
  Save("t.cpg", "UTF-8");
  const CodePageChoice choice = Choose(0x65);
  EXPECT_EQ(choice.number, 866);
  EXPECT_THAT(choice.remarks, ElementsAre(HasSubstr("t.cpg has no say")));
}

TEST_F(CodePageChoiceTest, SaysThatASideFileNamesNothing) {
  Save("t.shp", "");
  for (const char* text : {"", "nonsense", "0", "99999", "-1", "4294968548"}) {
    Save("t.cpg", text);
    const CodePageChoice choice = Choose(0x65);
    EXPECT_EQ(choice.number, 866) << text;
    EXPECT_EQ(choice.reason, "language byte 0x65 stands for it") << text;
    EXPECT_THAT(choice.remarks, ElementsAre("t.cpg names no known code page")) << text;
  }
}

TEST_F(CodePageChoiceTest, SaysThatCapitalExtensionsAreNotLookedAt) {
  Save("t.SHP", "");
  Save("t.CPG", "UTF-8");
  const CodePageChoice choice = Choose(0x65);
  EXPECT_EQ(choice.number, 866);
  EXPECT_THAT(choice.remarks,
              testing::Contains(HasSubstr("t.SHP is not looked at: its extension has to be .shp")));
  EXPECT_THAT(choice.remarks,
              testing::Contains(HasSubstr("t.CPG is not looked at: its extension has to be .cpg")));
}

TEST_F(CodePageChoiceTest, LetsTheUserOverrule) {
  Save("t.shp", "");
  Save("t.cpg", "UTF-8");
  const CodePageChoice choice = Choose(0x65, 1250);
  EXPECT_EQ(choice.number, 1250);
  EXPECT_EQ(choice.reason, "asked for");
  EXPECT_EQ(Choose(0x65, -7).number, -7);
  EXPECT_EQ(Choose(0x65, -7).name, "");
}

}  // namespace
}  // namespace trovan::filters
