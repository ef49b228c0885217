// Clip paths of documents, and the region around them.
#include "SvgFixture.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SvgClipping : public SvgTest {
 protected:
  // The area that is left of a square of 100 by 100 under the attributes.
  Texts Left(const std::string& definitions, const std::string& attributes) {
    return DrawnAreas(definitions + "<path d='M0 0v100h100v-100z' " + attributes + "/>");
  }
  static std::string Box(int xMin, int yMin, int xMax, int yMax) {
    const std::string x0 = std::to_string(xMin) + " ";
    const std::string x1 = std::to_string(xMax) + " ";
    const std::string y0 = std::to_string(-yMin) + " 0";
    const std::string y1 = std::to_string(-yMax) + " 0";
    return "TrPolygon " + x0 + y1 + ", " + x1 + y1 + ", " + x1 + y0 + ", " + x0 + y0 + " (4)";
  }
};

TEST_F(SvgClipping, CutsToTheShapesOfAClipPath) {
  EXPECT_THAT(Left("<clipPath id='c'><rect x='10' y='20' width='30' height='40'/></clipPath>",
                   "clip-path='url(#c)'"),
              ElementsAre(Box(10, 20, 40, 60)));
}

TEST_F(SvgClipping, UnitesTheShapesOfAClipPath) {
  EXPECT_THAT(Left("<clipPath id='c'><rect x='10' y='20' width='30' height='40'/>"
                   "<rect x='20' y='20' width='30' height='40'/></clipPath>",
                   "clip-path='url(#c)'"),
              ElementsAre(Box(10, 20, 50, 60)));
}

TEST_F(SvgClipping, FollowsTheRuleOfEachShape) {
  const std::string frame = "d='M10 10h30v30h-30zM20 20h10v10h-10z'/></clipPath>";
  EXPECT_THAT(Left("<clipPath id='c'><path " + frame, "clip-path='url(#c)'"),
              ElementsAre(Box(10, 10, 40, 40)));
  EXPECT_THAT(Left("<clipPath id='c' clip-rule='evenodd'><path " + frame, "clip-path='url(#c)'"),
              ElementsAre("TrPolygon 10 -40 0, 40 -40 0, 40 -10 0, 10 -10 0, "
                          "20 -30 0, 20 -20 0, 30 -20 0, 30 -30 0 (4 4)"));
}

TEST_F(SvgClipping, AppliesTheTransformsOfUserClipPathAndShape) {
  EXPECT_THAT(Left("<clipPath id='c' transform='translate(10)'><rect width='5' height='5' "
                   "transform='translate(0 3)'/></clipPath>",
                   "clip-path='url(#c)' transform='scale(2)'"),
              ElementsAre(Box(20, 6, 30, 16)));
}

TEST_F(SvgClipping, TakesPartsOfTheBoxOfTheElement) {
  EXPECT_THAT(DrawnAreas("<clipPath id='c' clipPathUnits='objectBoundingBox'>"
                         "<rect x='.25' y='.5' width='.5' height='.5'/></clipPath>"
                         "<g clip-path='url(#c)'><path d='M100 100h50v100h-50z'/>"
                         "<path d='M150 100h50v100h-50z'/></g>"),
              ElementsAre(Box(125, 150, 150, 200), Box(150, 150, 175, 200)));
}

TEST_F(SvgClipping, IntersectsGroupsWithinGroups) {
  EXPECT_THAT(Left("<clipPath id='a'><rect width='30' height='30'/></clipPath>"
                   "<clipPath id='b'><rect x='20' y='10' width='30' height='30'/></clipPath>"
                   "<g clip-path='url(#a)'><g clip-path='url(#b)'>"
                   "<path d='M0 0h100v100h-100z'/></g><path d='M5 5h100v100h-100z'/></g>",
                   ""),
              ElementsAre(Box(20, 10, 30, 30), Box(5, 5, 30, 30), Box(0, 0, 100, 100)));
}

TEST_F(SvgClipping, ClipsClipPathsAndTheirShapes) {
  EXPECT_THAT(Left("<clipPath id='a'><rect width='30' height='30'/></clipPath>"
                   "<clipPath id='b' clip-path='url(#a)'>"
                   "<rect x='20' y='10' width='30' height='30'/></clipPath>",
                   "clip-path='url(#b)'"),
              ElementsAre(Box(20, 10, 30, 30)));
  EXPECT_THAT(Left("<clipPath id='a'><rect width='30' height='30'/></clipPath><clipPath id='b'>"
                   "<rect x='20' y='10' width='30' height='30' clip-path='url(#a)'/></clipPath>",
                   "clip-path='url(#b)'"),
              ElementsAre(Box(20, 10, 30, 30)));
}

TEST_F(SvgClipping, UsesShapesInClipPaths) {
  EXPECT_THAT(Left("<defs><rect id='r' width='5' height='5'/></defs>"
                   "<clipPath id='c'><use href='#r' x='3'/></clipPath>",
                   "clip-path='url(#c)'"),
              ElementsAre(Box(3, 0, 8, 5)));
}

TEST_F(SvgClipping, LeavesNothingWhereTheClipPathIsEmpty) {
  EXPECT_THAT(Left("<clipPath id='c'/>", "clip-path='url(#c)' stroke='red'"), IsEmpty());
  EXPECT_THAT(Drawn("<clipPath id='c'><g><rect width='9' height='9'/></g>"
                    "<rect width='9' height='9' display='none'/></clipPath>"
                    "<g clip-path='url(#c)'><path d='M0 0h9' stroke='red'/><circle r='5'/></g>"),
              IsEmpty());
}

TEST_F(SvgClipping, KeepsTextsWhoseBoxIsNotKnown) {
  const std::string clipPath =
      "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1'/></clipPath>";
  EXPECT_THAT(Drawn(clipPath + "<text x='5' y='5' clip-path='url(#c)'>a</text>"),
              ElementsAre(testing::StartsWith("TrText")));
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("texts are not clipped to parts of their boxes")));
}

TEST_F(SvgClipping, IgnoresReferencesToNothing) {
  EXPECT_THAT(Left("<rect id='r'/>", "clip-path='url(#none)'"), ElementsAre(Box(0, 0, 100, 100)));
  EXPECT_THAT(Left("<g id='c'/>", "clip-path='url(#c)'"), ElementsAre(Box(0, 0, 100, 100)));
}

TEST_F(SvgClipping, EndsClippingBehindTheGroup) {
  SetRegion(-1000, -1000, 1000, 1000);
  EXPECT_THAT(Left("<clipPath id='c'><rect width='9' height='9'/></clipPath>"
                   "<g clip-path='url(#c)'><path d='M0 0h100v100h-100z'/></g>",
                   ""),
              ElementsAre(Box(0, 0, 9, 9), Box(0, 0, 100, 100)));
}

TEST_F(SvgClipping, IntersectsWithTheRegion) {
  SetRegion(0, -1000, 20, 0);
  EXPECT_THAT(Left("<clipPath id='c'><rect x='10' width='50' height='50'/></clipPath>",
                   "clip-path='url(#c)'"),
              ElementsAre(Box(10, 0, 20, 50)));
  EXPECT_THAT(Left("<clipPath id='c'><rect x='30' width='50' height='50'/></clipPath>",
                   "clip-path='url(#c)'"),
              IsEmpty());
}

TEST_F(SvgClipping, LeavesTheRegionForTheNextImport) {
  SetRegion(0, -1000, 20, 0);
  (void)Left("<clipPath id='c'><rect width='5' height='5'/></clipPath>", "clip-path='url(#c)'");
  EXPECT_THAT(Left("", ""), ElementsAre(Box(0, 0, 20, 100)));
}

TEST_F(SvgClipping, ClipsAllAwayForARegionWithoutArea) {
  filter_.SetRegion({{{0, 0}, {0, 0}, {0, 0}}, {3}});
  EXPECT_THAT(Left("", "stroke='red'"), IsEmpty());
}

// The pen of a line has a width, which a clip path cuts as well.
TEST_F(SvgClipping, CutsStrokesInTheirWidth) {
  EXPECT_THAT(DrawnAreas("<clipPath id='c'><rect x='10' y='10' width='20' height='20'/></clipPath>"
                         "<path d='M0 10h100' stroke='red' stroke-width='6' "
                         "clip-path='url(#c)'/>"),
              ElementsAre(Box(10, 10, 30, 13)));
}

TEST_F(SvgClipping, KeepsStrokesThatNoClipPathReachesAsLines) {
  EXPECT_THAT(Drawn("<clipPath id='c'><rect width='99' height='99'/></clipPath>"
                    "<path d='M40 40h9' stroke='red' clip-path='url(#c)'/>"),
              ElementsAre("TrPolyline 40 -40 0, 49 -40 0"));
}

TEST_F(SvgClipping, IgnoresClipPathsThatClipThemselves) {
  EXPECT_THAT(Left("<clipPath id='c' clip-path='url(#c)'><rect width='9' height='9'/></clipPath>",
                   "clip-path='url(#c)'"),
              ElementsAre(Box(0, 0, 9, 9)));
}

}  // namespace
}  // namespace trovan::filters
