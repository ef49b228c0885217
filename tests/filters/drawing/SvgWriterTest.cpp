#include "filters/drawing/SvgWriter.h"

#include <cstdint>
#include <limits>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrImage.h>
#include <quillon/TrMetafile.h>

#include "filters/support/FilterError.h"
#include "filters/support/StringSink.h"
#include "support/PngImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::Order;
using quillon::TrBrush;
using quillon::TrEllipse;
using quillon::TrFont;
using quillon::TrMarkerSet;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using quillon::TrText;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr Color4b kRed(255, 0, 0, 255);
constexpr Color4b kBlue(0x12, 0x34, 0xAB, 255);

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 100 50\" fill=\"none\" "
    "fill-rule=\"evenodd\">\n";

// Draws on a page of 100 by 50 on which a user unit is a unit of the drawing, y mirrored.
class SvgWriterTest : public testing::Test {
 protected:
  SvgWriterTest() : SvgWriterTest(SvgWriter::Attributes::kLeaveOut) {}
  explicit SvgWriterTest(SvgWriter::Attributes attributes) : writer_(sink_, attributes) {
    page_.viewBox = Box2d(0, 0, 100, 50);
  }

  template <typename T>
  void Add(T object) {
    if (!begun_) writer_.Begin(page_);
    begun_ = true;
    writer_.ImportObject(object);
  }
  void Pen(Color4b color, double width) { Add(TrPen(TrPen::kSolid, color, width)); }
  void NoPen() { Add(TrPen(TrPen::kNone, {}, 0)); }
  void Brush(Color4b color) { Add(TrBrush(TrBrush::kSolid, color)); }

  // What stands between the tags of the root.
  std::string Body() {
    if (!begun_) writer_.Begin(page_);
    writer_.End();
    const std::string tail = "</svg>\n";
    const std::size_t head = sink_.text.find(">\n", 45) + 2;
    EXPECT_TRUE(sink_.text.ends_with(tail));
    return sink_.text.substr(head, sink_.text.size() - head - tail.size());
  }

  StringSink sink_;
  SvgPage page_;
  SvgWriter writer_;
  bool begun_ = false;
};

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

TEST_F(SvgWriterTest, WritesTexts) {
  TrFont font(L"Deja \"Vu\"");
  font.SetSize(9);
  font.SetFlags(TrFont::kItalic | TrFont::kUnderline | TrFont::kStrikeOut | 7);
  Add(font);
  TrText text(L"A < B & C", {10, 20});
  text.SetAlignment(TrText::kCenter, TrText::kTop);
  Add(text);
  EXPECT_EQ(
      Body(),
      "<text fill=\"#000\" font-family=\"'Deja &quot;Vu&quot;'\" font-size=\"9\" "
      "font-weight=\"700\" font-style=\"italic\" "
      "text-decoration=\"underline line-through\" x=\"10\" y=\"-20\" "
      "text-anchor=\"middle\" dominant-baseline=\"text-before-edge\">A &lt; B &amp; C</text>\n");
}

TEST_F(SvgWriterTest, FacesThatAreNoPlainNamesStandInQuotes) {
  const struct {
    const wchar_t* face;
    const char* family;
  } cases[] = {
      {L"Times New Roman", "Times New Roman"},
      {L"sans-serif", "sans-serif"},
      {L"Caf\u00e9_2", "Caf\u00e9_2"},
      {L"Exo 2", "'Exo 2'"},
      {L"3of9", "'3of9'"},
      {L"A, B", "'A, B'"},
      {L"Tom's \\", "'Tom\\'s \\\\'"},
      {L" ", "' '"},
  };
  for (const auto& c : cases) {
    Add(TrFont(c.face));
    Add(TrText(L"a"));
  }
  const std::string body = Body();
  for (const auto& c : cases) {
    EXPECT_THAT(body, HasSubstr(std::string(" font-family=\"") + c.family + "\" "));
  }
}

TEST_F(SvgWriterTest, TextsKeepTheirBlanksAndOutlines) {
  Pen(kRed, 0);
  Add(TrFont());
  TrText text(L"a  b");
  text.SetOutline(true);
  text.SetAlignment(TrText::kRight, TrText::kBottom);
  Add(text);
  Add(TrText());
  EXPECT_EQ(Body(),
            "<text fill=\"#000\" stroke=\"#f00\" font-size=\"12\" "
            "vector-effect=\"non-scaling-stroke\" x=\"0\" y=\"0\" text-anchor=\"end\" "
            "dominant-baseline=\"text-after-edge\" xml:space=\"preserve\">a  b</text>\n");
}

TEST_F(SvgWriterTest, TextsAreTransformedAsInTheDrawing) {
  TrText text(L"up", {10, 0});
  corvel::Mat4d quarter;
  quarter.RotateZ(std::numbers::pi / 2, Order::kAppend);
  quarter(0, 0) = quarter(1, 1) = 0.0;  // not just nearly
  quarter.Translate(0, 5, 0, Order::kAppend);
  text.SetTransform(quarter);
  Add(text);
  TrText moved(L"moved", {10, 0});
  corvel::Mat4d shift;
  shift.Translate(1, 2, 0, Order::kAppend);
  moved.SetTransform(shift);
  Add(moved);
  // Upward in the drawing is upward on the page: (10, 0) goes to (0, 15), which is (0, -15) there.
  EXPECT_EQ(Body(),
            "<g fill=\"#000\" font-size=\"12\">\n"
            "  <text transform=\"matrix(0 -1 1 0 0 -5)\" x=\"10\" y=\"0\">up</text>\n"
            "  <text x=\"11\" y=\"-2\">moved</text>\n"
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

// What the data address of the only image holds.
std::string PngOf(const std::string& body) {
  const std::string start = "data:image/png;base64,";
  const std::size_t at = body.find(start) + start.size();
  std::string bytes;
  unsigned bits = 0;
  unsigned count = 0;
  for (const char c : body.substr(at, body.find('"', at) - at)) {
    if (c == '=') break;
    const std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    bits = bits << 6 | static_cast<unsigned>(digits.find(c));
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  return bytes;
}

TEST_F(SvgWriterTest, PicturesStandInTheDocument) {
  const unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const struct {
    corvel::ColorFormat format;
    unsigned width;
    std::vector<std::uint8_t> expected;
  } cases[] = {
      {corvel::kColorFormatBgra32, 3, {3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12}},
      {corvel::kColorFormatBgr24, 2, {3, 2, 1, 255, 6, 5, 4, 255}},
      {corvel::kColorFormat8, 2, {10, 20, 30, 40, 2, 2, 2, 255}},
  };
  writer_.Begin(page_);
  begun_ = true;
  for (const auto& test : cases) {
    brindle::MemoryBitmap bitmap(test.width, 1, test.format);
    bitmap.StoreRegion(pixels, 12, 0, 0, static_cast<int>(test.width), 1);
    if (test.format == corvel::kColorFormat8) bitmap.SetPalette({{}, {10, 20, 30, 40}});
    quillon::TrImage image(&bitmap, false);
    image.SetPlacement(Box2d(1, 2, 5, 4));
    sink_.text.clear();
    Add(image);
    writer_.End();
    EXPECT_THAT(sink_.text, HasSubstr("<image x=\"1\" y=\"-4\" width=\"4\" height=\"2\" "
                                      "preserveAspectRatio=\"none\" href=\""));
    const test::TempFolder folder;
    test::WriteBytes(folder.Path() / "p.png", PngOf(sink_.text));
    EXPECT_EQ(test::ReadPng(folder.Path() / "p.png").pixels, test.expected);
  }
}

TEST_F(SvgWriterTest, PicturesAreTurnedAndMirroredAsInTheDrawing) {
  brindle::MemoryBitmap bitmap(2, 1, corvel::kColorFormatBgr24);
  quillon::TrImage image(&bitmap, false);
  image.SetPlacement(Box2d(5, 2, 1, 4));  // mirrored
  Add(image);
  EXPECT_THAT(Body(), testing::StartsWith(
                          "<image width=\"1\" height=\"1\" transform=\"matrix(-4 0 0 2 5 -4)\" "));
}

TEST_F(SvgWriterTest, PicturesOfOtherFormatsAreLeftOut) {
  brindle::MemoryBitmap bitmap(2, 1, corvel::kColorFormatBgr48);
  quillon::TrImage image(&bitmap, false);
  image.SetPlacement(Box2d(1, 2, 5, 4));
  Add(image);
  Add(quillon::TrImage());
  EXPECT_EQ(Body(), "");
  EXPECT_EQ(writer_.Remarks().Count(), 1U);
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

// --- Pages ---------------------------------------------------------------------------------------

TEST(MapPage, IsAThousandUnitsWideOrHigh) {
  EXPECT_EQ(MapPage(Box2d(0, 0, 980, 490)).viewBox, Box2d(0, 0, 1000, 510));
  EXPECT_EQ(MapPage(Box2d(0, 0, 1, 2)).viewBox, Box2d(0, 0, 510, 1000));
}

TEST(MapPage, TakesExtentsThatAreAPointOrALine) {
  EXPECT_EQ(MapPage(Box2d(5, 5, 5, 5)).viewBox, Box2d(0, 0, 20, 20));
  EXPECT_EQ(MapPage(Box2d(5, 5, 9, 5)).viewBox, Box2d(0, 0, 1000, 20));
  EXPECT_EQ(MapPage(Box2d(0, 0, 5e-324, 0)).scale, 1.0);
  EXPECT_EQ(MapPage(Box2d()).viewBox, Box2d(0, 0, 0, 0));
}

TEST(MapPage, RefusesExtentsWhosePageIsBeyondNumbers) {
  EXPECT_GT(MapPage(Box2d(-1e300, 0, 1e300, 1e300)).scale, 1e297);
  for (const double far : {2e300, 1.7e308, std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(MapPage(Box2d(-far, 0, 0, 0)), FilterError);
    EXPECT_THROW(MapPage(Box2d(0, 0, far, 0)), FilterError);
    EXPECT_THROW(MapPage(Box2d(0, -far, 0, far)), FilterError);
  }
}

}  // namespace
}  // namespace trovan::filters
