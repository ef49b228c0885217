#include "SvgWriterFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrClipPath.h>
#include <quillon/TrMetafile.h>

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using quillon::TrBrush;
using quillon::TrEllipse;
using quillon::TrMarkerSet;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr Color4b kRed(255, 0, 0, 255);
constexpr Color4b kBlue(0x12, 0x34, 0xAB, 255);

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 100 50\" fill=\"none\" "
    "fill-rule=\"evenodd\">\n";

TEST_F(SvgWriterTest, WritesAnEmptyDocument) {
  EXPECT_EQ(Body(), "");
  EXPECT_EQ(sink_.text, std::string(kHead) + "</svg>\n");
}

TEST_F(SvgWriterTest, WritesTheSizeAsThePageHasIt) {
  page_.width = "21cm";
  page_.height = "9\"";
  Body();
  EXPECT_THAT(sink_.text, HasSubstr(" width=\"21cm\" height=\"9&quot;\" viewBox=\"0 0 100 50\""));
}

TEST_F(SvgWriterTest, WritesHowThePageIsFittedIntoItsSize) {
  page_.aspectRatio = "xMinYMin slice";
  Body();
  EXPECT_THAT(sink_.text,
              HasSubstr(R"( viewBox="0 0 100 50" preserveAspectRatio="xMinYMin slice" fill=)"));
}

TEST_F(SvgWriterTest, DrawsAPolygonWithItsHoles) {
  Brush(kRed);
  Pen(kBlue, 0.5);
  Add(TrPolygon({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {1, 1, 0}, {2, 1, 0}, {2, 2, 0}, {1, 1, 0}},
                {3, 4}));
  EXPECT_EQ(Body(),
            "<path fill=\"#f00\" stroke=\"#1234ab\" stroke-width=\"0.5\" "
            "d=\"M0 0 4 0 4 -4ZM1 -1 2 -1 2 -2Z\"/>\n");
}

TEST_F(SvgWriterTest, APolygonWithoutCountsIsOneRing) {
  Brush(kRed);
  Add(TrPolygon({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}));
  EXPECT_EQ(Body(), "<path fill=\"#f00\" d=\"M0 0 4 0 4 -4Z\"/>\n");
}

TEST_F(SvgWriterTest, PointsThatNoRingHasAreNotDrawn) {
  Brush(kRed);
  Add(TrPolygon({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {9, 9, 0}}, {0, 3}));
  EXPECT_EQ(Body(), "<path fill=\"#f00\" d=\"M0 0 4 0 4 -4Z\"/>\n");
}

TEST_F(SvgWriterTest, DrawsLinesAndClosesThoseThatEndAtTheirStart) {
  Pen(kRed, 1);
  Add(TrPolyline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}));
  Add(TrPolyline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 0, 0}}));
  Add(TrPolyline({{1, 1, 0}}));
  Add(TrPolyline());
  EXPECT_EQ(Body(),
            "<g stroke=\"#f00\">\n"
            "  <path d=\"M0 0 4 0 4 -4\"/>\n"
            "  <path d=\"M0 0 4 0 4 -4Z\"/>\n"
            "  <path d=\"M1 -1 1 -1\"/>\n"
            "</g>\n");
}

TEST_F(SvgWriterTest, TheThinnestPenDoesNotGrowWithTheScale) {
  Pen(kRed, 0);
  Add(TrPolyline({{0, 0, 0}, {4, 0, 0}}));
  EXPECT_EQ(Body(),
            "<path stroke=\"#f00\" vector-effect=\"non-scaling-stroke\" d=\"M0 0 4 0\"/>\n");
}

TEST_F(SvgWriterTest, ElementsOfOneStyleShareAGroup) {
  const TrPolyline line({{0, 0, 0}, {4, 0, 0}});
  Pen(kRed, 1);
  Add(line);
  Add(line);
  Pen(kBlue, 1);
  Add(line);
  Pen(kRed, 1);
  Add(line);
  Pen(kRed, 1);
  Add(line);
  EXPECT_EQ(Body(),
            "<g stroke=\"#f00\">\n"
            "  <path d=\"M0 0 4 0\"/>\n"
            "  <path d=\"M0 0 4 0\"/>\n"
            "</g>\n"
            "<path stroke=\"#1234ab\" d=\"M0 0 4 0\"/>\n"
            "<g stroke=\"#f00\">\n"
            "  <path d=\"M0 0 4 0\"/>\n"
            "  <path d=\"M0 0 4 0\"/>\n"
            "</g>\n");
}

TEST_F(SvgWriterTest, LeavesOutWhatCannotBeSeen) {
  const TrPolygon triangle({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}});
  Add(triangle);  // the first pen is transparent, the first brush fills nothing
  NoPen();
  Brush(Color4b(255, 255, 255, 0));
  Add(triangle);
  Add(TrPolyline({{0, 0, 0}, {4, 0, 0}}));
  Add(TrRectangle(Box2d(0, 0, 1, 1)));
  Add(TrEllipse(Box2d(0, 0, 1, 1)));
  Add(TrMarkerSet({{1, 1, 0}}));
  EXPECT_EQ(Body(), "");
}

TEST_F(SvgWriterTest, OpacityStandsBesideColors) {
  Brush(Color4b(255, 0, 0, 128));
  Pen(Color4b(0, 0, 0, 1), 1);
  Add(TrPolygon({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}));
  EXPECT_EQ(Body(),
            "<path fill=\"#f00\" fill-opacity=\"0.502\" stroke=\"#000\" stroke-opacity=\"0.004\" "
            "d=\"M0 0 4 0 4 -4Z\"/>\n");
}

TEST_F(SvgWriterTest, PensBringCapsAndJoins) {
  TrPen pen(TrPen::kSolid, kRed, -2);
  pen.Params().Set(L"line-cap", L"round");
  pen.Params().Set(L"line-join", L"bevel");
  pen.Params().Set(L"miter-limit", L"4");
  Add(pen);
  Add(TrPolyline({{0, 0, 0}, {4, 0, 0}}));
  EXPECT_EQ(Body(),
            "<path stroke=\"#f00\" stroke-width=\"2\" stroke-linecap=\"round\" "
            "stroke-linejoin=\"bevel\" d=\"M0 0 4 0\"/>\n");
}

TEST_F(SvgWriterTest, DrawsRectangles) {
  Brush(kRed);
  Add(TrRectangle(Box2d(1, 2, 5, 4)));
  Add(TrRectangle(Box2d(5, 4, 1, 2), 1, 0.5));
  Add(TrRectangle(Box2d(1, 2, 5, 4), 1, 1));
  Add(TrRectangle(Box2d(1, 2, 5, 4), 0, 1));  // without one radius no corner is round
  Add(TrRectangle());
  EXPECT_EQ(Body(),
            "<g fill=\"#f00\">\n"
            "  <rect x=\"1\" y=\"-4\" width=\"4\" height=\"2\"/>\n"
            "  <rect x=\"1\" y=\"-4\" width=\"4\" height=\"2\" rx=\"1\" ry=\"0.5\"/>\n"
            "  <rect x=\"1\" y=\"-4\" width=\"4\" height=\"2\" rx=\"1\"/>\n"
            "  <rect x=\"1\" y=\"-4\" width=\"4\" height=\"2\"/>\n"
            "</g>\n");
}

TEST_F(SvgWriterTest, DrawsEllipsesTurnedTheOtherWay) {
  Brush(kRed);
  Add(TrEllipse(Box2d(1, 2, 5, 4), std::numbers::pi / 6));
  Add(TrEllipse(Box2d(1, 2, 5, 4)));
  Add(TrEllipse(Box2d(0.1 - 0.3, 0.7 - 0.3, 0.1 + 0.3, 0.7 + 0.3), 1));
  EXPECT_EQ(Body(),
            "<g fill=\"#f00\">\n"
            "  <ellipse cx=\"3\" cy=\"-3\" rx=\"2\" ry=\"1\" transform=\"rotate(-30 3 -3)\"/>\n"
            "  <ellipse cx=\"3\" cy=\"-3\" rx=\"2\" ry=\"1\"/>\n"
            "  <circle cx=\"0.1\" cy=\"-0.7\" r=\"0.3\"/>\n"
            "</g>\n");
}

TEST_F(SvgWriterTest, ShapesWithoutWidthOrHeightAreLines) {
  Brush(kBlue);
  Pen(kRed, 1);
  Add(TrRectangle(Box2d(1, 2, 5, 2)));
  Add(TrEllipse(Box2d(1, 2, 1, 4), std::numbers::pi / 2));
  EXPECT_EQ(Body(),
            "<g stroke=\"#f00\">\n"
            "  <path d=\"M1 -2 5 -2\"/>\n"
            "  <path transform=\"rotate(-90 1 -3)\" d=\"M1 -2 1 -4\"/>\n"
            "</g>\n");
}

TEST_F(SvgWriterTest, MarkersAreCirclesInTheColorOfThePen) {
  Brush(kBlue);
  Pen(kRed, 0);
  Add(TrMarkerSet({{1, 2, 9}}));
  Add(TrMarkerSet({{1, 2, 9}, {3, 4, 9}}));
  Add(TrMarkerSet());
  EXPECT_EQ(
      Body(),
      "<g fill=\"#f00\">\n"
      "  <circle cx=\"1\" cy=\"-2\" r=\"0.3\"/>\n"
      "  <g><circle cx=\"1\" cy=\"-2\" r=\"0.3\"/><circle cx=\"3\" cy=\"-4\" r=\"0.3\"/></g>\n"
      "</g>\n");
}

TEST_F(SvgWriterTest, CoordinatesReadBackAsTheSame) {
  page_.scale = 0.25;
  Pen(kRed, 0.25);
  const double third = 1.0 / 3;
  Add(TrPolyline({{third / 4, -0.1 / 4, 0}, {1e-300, 1e300, 0}}));
  EXPECT_EQ(Body(), "<path stroke=\"#f00\" d=\"M0.3333333333333333 0.1 4e-300 -4e+300\"/>\n");
}

TEST_F(SvgWriterTest, PagesOfMapsHaveRoundedPlaces) {
  page_ = MapPage(Box2d(10, 50, 20, 55));
  EXPECT_EQ(page_.viewBox, Box2d(0, 0, 1000, 510));
  Pen(kRed, 0);
  Brush(kRed);
  Add(TrPolyline({{10, 55, 0}, {10.0000001, 55, 0}, {20, 50, 0}, {10 + 10.0 / 3, 50, 0}}));
  Add(TrMarkerSet({{15, 52.5, 0}}));
  EXPECT_EQ(Body(),
            "<path stroke=\"#f00\" vector-effect=\"non-scaling-stroke\" "
            "d=\"M10 10 990 500 336.667 500\"/>\n"
            "<circle fill=\"#f00\" cx=\"500\" cy=\"255\" r=\"3\"/>\n");
  EXPECT_THAT(sink_.text, HasSubstr("width=\"1000\" height=\"510\" viewBox=\"0 0 1000 510\""));
}

TEST_F(SvgWriterTest, RemarksOnceOnWhatSvgCannotHold) {
  Add(quillon::TrMetafile());
  Add(quillon::TrMetafile());
  Add(quillon::TrClipPath());
  EXPECT_EQ(Body(), "");
  EXPECT_EQ(writer_.Remarks().Count(), 2U);
  EXPECT_THAT(writer_.Remarks().First().front(), HasSubstr("Metafile"));
}

TEST_F(SvgWriterTest, RefusesAnObjectThatContradictsItself) {
  EXPECT_THROW(Add(TrPolygon({{0, 0, 0}}, {2})), quillon::InvalidObject);
}

TEST_F(SvgWriterTest, LeavesParametersOutUnlessAskedFor) {
  Pen(kRed, 1);
  TrPolyline line({{0, 0, 0}, {4, 0, 0}});
  line.Params().Set(L"NAME", L"Oslo");
  Add(line);
  EXPECT_EQ(Body(), "<path stroke=\"#f00\" d=\"M0 0 4 0\"/>\n");
}

class SvgWriterDataTest : public SvgWriterTest {
 protected:
  SvgWriterDataTest() : SvgWriterTest(SvgWriter::Attributes::kKeep) {}
};

TEST_F(SvgWriterDataTest, WritesParametersAsDataAttributes) {
  Pen(kRed, 1);
  TrPolyline line({{0, 0, 0}, {4, 0, 0}});
  line.Params().Set(L"NAME", L"S\u00f8r \"<1>\"\n\x01");
  line.Params().Set(L"a b", L"1");
  line.Params().Set(L"a:b", L"2");
  line.Params().Set(L"\u00e5r", L"");
  Add(line);
  TrMarkerSet markers({{1, 1, 0}, {2, 2, 0}});
  markers.Params().Set(L"N", L"2");
  Add(markers);
  EXPECT_EQ(Body(),
            "<path stroke=\"#f00\" data-NAME=\"S\xC3\xB8r &quot;&lt;1&gt;&quot;&#10;\xEF\xBF\xBD\" "
            "data-a_b=\"1\" data-a_b_2=\"2\" data-\xC3\xA5r=\"\" d=\"M0 0 4 0\"/>\n"
            "<g fill=\"#f00\" data-N=\"2\"><circle cx=\"1\" cy=\"-1\" r=\"0.3\"/>"
            "<circle cx=\"2\" cy=\"-2\" r=\"0.3\"/></g>\n");
}

}  // namespace
}  // namespace trovan::filters
