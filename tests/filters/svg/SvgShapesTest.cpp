// Shapes and groups as they arrive in the drawing.
#include "SvgFixture.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SvgShapes : public SvgTest {};

TEST_F(SvgShapes, SendsPenAndBrushOnceForAreasOfOneColour) {
  EXPECT_THAT(Delivered("<rect width='10' height='20'/><rect x='5' width='10' height='20'/>"),
              ElementsAre("TrPen 2 00000000 0", "TrBrush 2 000000ff",
                          "TrRectangle 0 -20, 10 0, 0 0", "TrRectangle 5 -20, 15 0, 0 0"));
}

TEST_F(SvgShapes, SendsLinesBehindTheAreaThatTheyBound) {
  EXPECT_THAT(Delivered("<rect width='10' height='20' fill='#123' stroke='red' stroke-width='2'/>"),
              ElementsAre("TrPen 2 00000000 0", "TrBrush 2 112233ff",
                          "TrRectangle 0 -20, 10 0, 0 0", "TrBrush 1 00000000",
                          "TrPen 1 ff0000ff 2 line-cap=butt line-join=miter miter-limit=4",
                          "TrPolyline 0 0 0, 10 0 0, 10 -20 0, 0 -20 0, 0 0 0"));
}

TEST_F(SvgShapes, TellsHowLinesAreDrawn) {
  EXPECT_THAT(Delivered("<path d='M0 0h9' stroke='blue' fill='none' stroke-linecap='round' "
                        "stroke-linejoin='bevel' stroke-miterlimit='1.5' stroke-opacity='.5'/>"),
              ElementsAre("TrBrush 1 00000000",
                          "TrPen 1 0000ff80 1 line-cap=round line-join=bevel miter-limit=1.5",
                          "TrPolyline 0 0 0, 9 0 0"));
}

TEST_F(SvgShapes, MultipliesOpacities) {
  EXPECT_THAT(Delivered("<g opacity='.5'><rect width='1' height='1' opacity='.5' "
                        "fill-opacity='.5'/></g>"),
              testing::Contains("TrBrush 2 00000020"));
}

TEST_F(SvgShapes, LeavesOutWhatCannotBeSeen) {
  EXPECT_THAT(Delivered("<rect width='9' height='9' fill='none'/>"
                        "<rect width='9' height='9' fill-opacity='0'/>"
                        "<rect width='9' height='9' visibility='hidden'/>"
                        "<g display='none'><rect width='9' height='9'/></g>"
                        "<rect width='0' height='9'/><rect width='9' height='-1'/><circle/>"
                        "<path d='M0 0h9' stroke='red' stroke-width='0'/>"
                        "<path d='M0 0h9' stroke='red' transform='scale(0)'/>"
                        "<defs><rect width='9' height='9'/></defs><symbol><circle r='1'/></symbol>"
                        "<title>t</title><metadata/><other xmlns='urn:x'/>"),
              IsEmpty());
  EXPECT_THAT(Remarks(), IsEmpty());
}

TEST_F(SvgShapes, ShowsVisiblePartsOfHiddenGroups) {
  EXPECT_THAT(Drawn("<g visibility='hidden'><rect width='1' height='1' visibility='visible'/></g>"),
              ElementsAre("TrRectangle 0 -1, 1 0, 0 0"));
}

TEST_F(SvgShapes, KeepsTheRadiiOfRectangles) {
  const struct {
    const char* radii;
    const char* expected;
  } cases[] = {
      {"", "0 0"},
      {"rx='3'", "3 3"},
      {"ry='3'", "3 3"},
      {"rx='3' ry='0'", "0 0"},
      {"rx='3' ry='-1'", "3 3"},
      {"rx='90' ry='4'", "5 4"},
      {"rx='90'", "5 10"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(Drawn(std::string("<rect width='10' height='20' ") + c.radii + "/>"),
                ElementsAre(std::string("TrRectangle 0 -20, 10 0, ") + c.expected))
        << c.radii;
  }
}

TEST_F(SvgShapes, KeepsRectanglesUnderQuarterTurnsAndMirrors) {
  EXPECT_THAT(Drawn("<rect width='10' height='20' rx='1' ry='2' transform='rotate(90)'/>"),
              ElementsAre("TrRectangle -20 -10, 0 0, 2 1"));
  EXPECT_THAT(Drawn("<rect width='10' height='20' rx='1' ry='2' transform='scale(-2 3)'/>"),
              ElementsAre("TrRectangle -20 -60, 0 0, 2 6"));
}

TEST_F(SvgShapes, MakesPolygonsOfTurnedRectangles) {
  EXPECT_THAT(Drawn("<rect width='10' height='10' transform='matrix(1 1 -1 1 0 0)'/>"),
              ElementsAre("TrPolygon 0 0 0, 10 -10 0, 0 -20 0, -10 -10 0 (4)"));
}

TEST_F(SvgShapes, KeepsEllipses) {
  EXPECT_THAT(Drawn("<circle cx='5' cy='6' r='2'/>"), ElementsAre("TrEllipse 3 -8, 7 -4, 0"));
  EXPECT_THAT(Drawn("<ellipse cx='5' cy='6' rx='2' ry='1' transform='scale(2 3)'/>"),
              ElementsAre("TrEllipse 6 -21, 14 -15, 0"));
  EXPECT_THAT(Drawn("<ellipse rx='2' ry='1' transform='matrix(1 1 -1 1 0 0)'/>"),
              ElementsAre(HasSubstr(", -0.785398163397448")));
}

TEST_F(SvgShapes, MakesPolygonsOfTurnedEllipsesWhereThereIsARegion) {
  SetRegion(-100, -100, 100, 100);
  EXPECT_THAT(Drawn("<ellipse rx='2' ry='1' transform='rotate(45)'/>"),
              ElementsAre(testing::StartsWith("TrPolygon")));
  EXPECT_THAT(Drawn("<circle r='2' transform='rotate(45)'/>"),
              ElementsAre(testing::StartsWith("TrEllipse")));
}

TEST_F(SvgShapes, ReadsLinesAndPolygons) {
  EXPECT_THAT(Drawn("<g fill='none' stroke='red'><line x1='1' y1='2' x2='3' y2='4'/>"
                    "<polyline points='0,0 4,0 4,4'/><polygon points='0,0 4,0 4,4'/></g>"),
              ElementsAre("TrPolyline 1 -2 0, 3 -4 0", "TrPolyline 0 0 0, 4 0 0, 4 -4 0",
                          "TrPolyline 0 0 0, 4 0 0, 4 -4 0, 0 0 0"));
}

TEST_F(SvgShapes, DrawsListsOfPointsUpToTheFault) {
  EXPECT_THAT(Drawn("<polyline fill='none' stroke='red' points='0,0 4,0 4,4 9'/>"),
              ElementsAre("TrPolyline 0 0 0, 4 0 0, 4 -4 0"));
  EXPECT_THAT(Remarks(), ElementsAre("Line 2: a list of points is drawn up to its fault"));
}

TEST_F(SvgShapes, FillsOpenLines) {
  EXPECT_THAT(Drawn("<polyline points='0,0 4,0 4,4'/><line x2='5'/>"),
              ElementsAre("TrPolygon 0 0 0, 4 0 0, 4 -4 0 (3)"));
}

TEST_F(SvgShapes, SendsRingsOfTheEvenOddRuleAsTheyAre) {
  EXPECT_THAT(Drawn("<path fill-rule='evenodd' d='M0 0h9v9h-9zM1 1h2v2h-2z'/>"),
              ElementsAre("TrPolygon 0 0 0, 9 0 0, 9 -9 0, 0 -9 0, "
                          "1 -1 0, 3 -1 0, 3 -3 0, 1 -3 0 (4 4)"));
}

TEST_F(SvgShapes, ResolvesTheNonzeroRule) {
  // Both rings turn the same way, so that there is no hole.
  EXPECT_THAT(DrawnAreas("<path d='M0 0h9v9h-9zM1 1h2v2h-2z'/>"),
              ElementsAre("TrPolygon 0 -9 0, 9 -9 0, 9 0 0, 0 0 0 (4)"));
  EXPECT_THAT(DrawnAreas("<path d='M0 0h9v9h-9zM1 1v2h2v-2z'/>"),
              ElementsAre("TrPolygon 0 -9 0, 9 -9 0, 9 0 0, 0 0 0, "
                          "1 -3 0, 1 -1 0, 3 -1 0, 3 -3 0 (4 4)"));
}

TEST_F(SvgShapes, AppliesTheLastTransformFirst) {
  EXPECT_THAT(Drawn("<g transform='translate(10 20)'><g transform='scale(2)'>"
                    "<rect width='1' height='1' transform='translate(1)'/></g></g>"),
              ElementsAre("TrRectangle 12 -22, 14 -20, 0 0"));
}

TEST_F(SvgShapes, ScalesThePen) {
  EXPECT_THAT(Delivered("<path transform='scale(2 8)' d='M0 0h9' stroke='red' fill='none'/>"),
              testing::Contains(testing::StartsWith("TrPen 1 ff0000ff 4 ")));
  EXPECT_THAT(Remarks(),
              ElementsAre("Line 2: lines that are stretched to different widths get one width"));
}

TEST_F(SvgShapes, CutsLinesIntoDashes) {
  EXPECT_THAT(
      Drawn("<path d='M0 0h10' stroke='red' stroke-dasharray='4 2' stroke-dashoffset='1'/>"),
      ElementsAre("TrPolyline 0 0 0, 3 0 0", "TrPolyline 5 0 0, 9 0 0"));
}

TEST_F(SvgShapes, MeasuresDashesInTheLengthThatThePathClaims) {
  EXPECT_THAT(Drawn("<path d='M0 0h10' pathLength='5' stroke='red' stroke-dasharray='2 3'/>"),
              ElementsAre("TrPolyline 0 0 0, 4 0 0"));
}

TEST_F(SvgShapes, TakesTheClaimedLengthForThatOfAllLinesOfThePath) {
  EXPECT_THAT(
      Drawn("<path d='M0 0h10M0 5h30' pathLength='4' stroke='red' stroke-dasharray='2 9'/>"),
      ElementsAre("TrPolyline 0 0 0, 10 0 0", "TrPolyline 0 -5 0, 20 -5 0"));
}

TEST_F(SvgShapes, DrawsLinesOfVeryManyDashesWithout) {
  EXPECT_THAT(Drawn("<path d='M0 0h10' stroke='red' stroke-dasharray='0.00001'/>"),
              ElementsAre("TrPolyline 0 0 0, 10 0 0"));
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("lines of very many dashes")));
}

TEST_F(SvgShapes, ShowsLinesWithoutLengthByTheirCaps) {
  EXPECT_THAT(Drawn("<path d='M5 5z' stroke='red'/><path d='M5 5' stroke='red' "
                    "stroke-linecap='round'/>"),
              IsEmpty());
  EXPECT_THAT(Drawn("<path d='M5 5z' stroke='red' stroke-linecap='round'/>"),
              ElementsAre("TrPolyline 5 -5 0, 5.0625 -5 0"));
}

TEST_F(SvgShapes, StartsClosedLinesThatMayBeCutBesideTheirCorners) {
  SetRegion(-100, -100, 4, 100);
  EXPECT_THAT(Drawn("<path fill='none' stroke='red' d='M0 0h10v4h-10z'/>"),
              ElementsAre("TrPolyline 4 -4 0, 0 -4 0, 0 0 0, 4 0 0"));
}

TEST_F(SvgShapes, UsesElementsFromElsewhere) {
  EXPECT_THAT(Drawn("<defs><rect id='r' width='1' height='1'/></defs>"
                    "<use href='#r' x='5' y='6'/><use xlink:href='#r' transform='scale(2)'/>"),
              ElementsAre("TrRectangle 5 -7, 6 -6, 0 0", "TrRectangle 0 -2, 2 0, 0 0"));
}

TEST_F(SvgShapes, GivesUsedElementsTheStyleOfTheirPlace) {
  EXPECT_THAT(Delivered("<defs fill='blue'><rect id='r' width='1' height='1'/></defs>"
                        "<use href='#r' fill='red'/>"),
              testing::Contains("TrBrush 2 ff0000ff"));
}

TEST_F(SvgShapes, FitsSymbolsIntoTheirUse) {
  EXPECT_THAT(Drawn("<symbol id='s' viewBox='0 0 10 10'><rect width='10' height='10'/></symbol>"
                    "<use href='#s' x='100' width='50' height='50'/>"),
              ElementsAre("TrRectangle 100 -50, 150 0, 0 0"));
}

TEST_F(SvgShapes, ClipsNestedDrawingsToTheirSpace) {
  EXPECT_THAT(DrawnAreas("<svg x='10' y='10' width='20' height='20'>"
                         "<rect width='100%' height='200%'/></svg>"),
              ElementsAre("TrPolygon 10 -30 0, 30 -30 0, 30 -10 0, 10 -10 0 (4)"));
  EXPECT_THAT(Drawn("<svg x='10' y='10' width='20' height='20' overflow='visible'>"
                    "<rect width='100%' height='200%'/></svg>"),
              ElementsAre("TrRectangle 10 -50, 30 -10, 0 0"));
}

TEST_F(SvgShapes, DrawsTheFirstFittingChildOfASwitch) {
  EXPECT_THAT(Drawn("<switch><rect width='1' height='1' requiredExtensions='urn:x'/>"
                    "<rect width='2' height='2' systemLanguage='de, fr'/>"
                    "<rect width='3' height='3' systemLanguage='de, en-US'/>"
                    "<rect width='4' height='4'/></switch>"),
              ElementsAre("TrRectangle 0 -3, 3 0, 0 0"));
}

TEST_F(SvgShapes, DrawsWhatASwitchOffersInsteadOfForeignObjects) {
  EXPECT_THAT(Drawn("<switch><foreignObject width='1' height='1'/><rect width='2' height='2'/>"
                    "</switch>"),
              ElementsAre("TrRectangle 0 -2, 2 0, 0 0"));
}

TEST_F(SvgShapes, FollowsPrefixesOfTheNamespace) {
  ImportDocument(
      "<s:svg xmlns:s='http://www.w3.org/2000/svg' viewBox='0 0 1000 1000'>"
      "<s:rect width='1' height='1'/><rect width='2' height='2' xmlns='urn:x'/></s:svg>");
  EXPECT_EQ(manager_.Texts().back(), "TrRectangle 0 -1, 1 0, 0 0");
}

TEST_F(SvgShapes, MakesOneColourOfGradients) {
  EXPECT_THAT(Delivered("<linearGradient id='a'><stop stop-color='#f00'/>"
                        "<stop stop-color='#00f'/></linearGradient>"
                        "<radialGradient id='b' xlink:href='#a'/>"
                        "<rect width='1' height='1' fill='url(#b)'/>"),
              testing::Contains("TrBrush 2 800080ff"));
  EXPECT_THAT(Remarks(), ElementsAre("Line 2: gradients become one colour"));
}

TEST_F(SvgShapes, PaintsWithTheColourThatStandsInForAReference) {
  EXPECT_THAT(Drawn("<rect width='1' height='1' fill='url(#none)'/>"), IsEmpty());
  EXPECT_THAT(Delivered("<pattern id='p'/><rect width='1' height='1' fill='url(#p) lime'/>"),
              testing::Contains("TrBrush 2 00ff00ff"));
  EXPECT_THAT(Remarks(), ElementsAre("Line 2: patterns are left out"));
}

TEST_F(SvgShapes, RemarksEachKindOfOmissionOnce) {
  (void)Delivered(
      "<g mask='url(#m)' filter='url(#f)'><foreignObject/>\n<foreignObject/>"
      "<path marker-end='url(#x)' d='M0 0h9'/></g>");
  EXPECT_THAT(Remarks(), ElementsAre("Line 2: masks are left out", "Line 2: filters are left out",
                                     "Line 2: elements \"foreignObject\" are left out",
                                     "Line 3: markers are left out"));
}

}  // namespace
}  // namespace trovan::filters
