#include <trovan/TrHelpers.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace trovan {
namespace {

using corvel::Vec3d;
using quillon::TrFont;
using quillon::TrPolygon;
using quillon::TrPolyline;
using Counts = std::vector<unsigned int>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr LONG kLeastLong = std::numeric_limits<LONG>::min();

// --- TrFont2LogFont

LOGFONTW LogFontOf(const TrFont& font, bool useSize = true) {
  LOGFONTW logFont;
  std::memset(&logFont, 0xAB, sizeof logFont);
  TrFont2LogFont(font, logFont, useSize);
  return logFont;
}

TrFont FontOf(double size, double aspect = 0.0) {
  TrFont font;
  font.SetSize(size);
  font.SetAspect(aspect);
  return font;
}

TrFont FontWithFlags(std::uint16_t flags, std::uint16_t pitchAndFamily = 0) {
  TrFont font;
  font.SetFlags(flags);
  font.SetPitchAndFamily(pitchAndFamily);
  return font;
}

TEST(TrFont2LogFont, RoundsTheSizeHalfAwayFromZero) {
  const struct {
    double size;
    LONG height;
  } cases[] = {
      {12.5, 13},
      {-12.5, -13},
      {12.4, 12},
      {-12.4, -12},
      {0.0, 0},
      {-0.0, 0},
      {0.49999999999999994, 1},  // adding a half rounds up to 1
      {-0.49999999999999994, -1},
      {2147483646.4, 2147483646},
      {2147483647.4, 2147483647},
      {2147483647.5, kLeastLong},  // beyond the range: as the processor converts
      {-2147483648.4, kLeastLong},
      {1e300, kLeastLong},
      {kInfinity, kLeastLong},
      {std::numeric_limits<double>::quiet_NaN(), kLeastLong},
  };
  for (const auto& c : cases) EXPECT_EQ(LogFontOf(FontOf(c.size)).lfHeight, c.height) << c.size;
}

TEST(TrFont2LogFont, TakesAFixedHeightWhereTheSizeDoesNotCount) {
  for (const double size : {12.5, -3.0, 0.0}) {
    EXPECT_EQ(LogFontOf(FontOf(size), false).lfHeight, -1000);
  }
}

TEST(TrFont2LogFont, DividesTheHeightByTheAspect) {
  const struct {
    double size;
    double aspect;
    bool useSize;
    LONG width;
  } cases[] = {
      {13.0, 2.0, true, 7},  // 6.5
      {-13.0, 2.0, true, -7},   {13.0, -2.0, true, -7},
      {12.6, 2.0, true, 7},  // of the rounded height, 13
      {13.0, 0.0, true, 0},     {13.0, -0.0, true, 0},
      {13.0, 3.0, false, -333}, {13.0, 1e-300, true, kLeastLong},
      {0.0, 2.0, true, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LogFontOf(FontOf(c.size, c.aspect), c.useSize).lfWidth, c.width)
        << c.size << " / " << c.aspect;
  }
}

BYTE ExpectedCharSet(unsigned flags) {
  constexpr BYTE kByCode[] = {1, 0, 2, 128, 255, 0, 0, 0};
  return kByCode[flags >> 8 & 7U];
}

TEST(TrFont2LogFont, ReadsEveryWordOfFlags) {
  for (unsigned flags = 0; flags <= 0xFFFF; ++flags) {
    const LOGFONTW logFont = LogFontOf(FontWithFlags(static_cast<std::uint16_t>(flags)));
    ASSERT_EQ(logFont.lfWeight, static_cast<LONG>(flags % 16 * 100)) << flags;
    ASSERT_EQ(logFont.lfItalic, flags >> 4 & 1U) << flags;
    ASSERT_EQ(logFont.lfUnderline, flags >> 5 & 1U) << flags;
    ASSERT_EQ(logFont.lfStrikeOut, flags >> 6 & 1U) << flags;
    ASSERT_EQ(logFont.lfCharSet, ExpectedCharSet(flags)) << flags;
  }
}

BYTE ExpectedPitchAndFamily(unsigned word) {
  constexpr unsigned kPitches[] = {0, 1, 2, 0};
  const unsigned family = word & 0xF0U;
  return static_cast<BYTE>(kPitches[word & 3U] | (family <= 0x50 ? family : 0));
}

TEST(TrFont2LogFont, ReadsEveryWordOfPitchAndFamily) {
  for (unsigned word = 0; word <= 0xFFFF; ++word) {
    const LOGFONTW logFont = LogFontOf(FontWithFlags(4, static_cast<std::uint16_t>(word)));
    ASSERT_EQ(logFont.lfPitchAndFamily, ExpectedPitchAndFamily(word)) << word;
  }
}

TEST(TrFont2LogFont, SetsAllElseAlike) {
  const LOGFONTW logFont = LogFontOf(TrFont(L"Arial"));
  EXPECT_EQ(logFont.lfEscapement, 0);
  EXPECT_EQ(logFont.lfOrientation, 0);
  EXPECT_EQ(logFont.lfOutPrecision, 7);
  EXPECT_EQ(logFont.lfClipPrecision, 0);
  EXPECT_EQ(logFont.lfQuality, 0);
}

TEST(TrFont2LogFont, CutsTheNameToThirtyOneCharacters) {
  for (const std::size_t length : {0U, 1U, 30U, 31U, 32U, 40U}) {
    const std::wstring name(length, L'n');
    const LOGFONTW logFont = LogFontOf(TrFont(name));
    const std::size_t kept = std::min<std::size_t>(length, 31);
    for (std::size_t i = 0; i < 32; ++i) {
      EXPECT_EQ(logFont.lfFaceName[i], i < kept ? L'n' : L'\0') << length << ": " << i;
    }
  }
}

// --- MatchToGDIPenStyle

unsigned int StyleOf(const std::vector<float>& dashes) {
  return MatchToGDIPenStyle(dashes.data(), static_cast<unsigned int>(dashes.size()));
}

TEST(MatchToGDIPenStyle, KnowsFourPatterns) {
  const struct {
    std::vector<float> dashes;
    unsigned int style;
  } cases[] = {
      {{0.1F, 0.1F}, 1},
      {{0.03F, 0.03F}, 2},
      {{0.2F, 0.2F, 0.03F, 0.2F}, 3},
      {{0.35F, 0.2F, 0.05F, 0.2F, 0.05F, 0.2F}, 4},
      {{0.1009F, 0.1F}, 1},
      {{0.0991F, 0.1F}, 1},
      {{0.102F, 0.1F}, 0},
      {{0.1F, 0.102F}, 0},
      {{0.0309F, 0.0291F}, 2},
      {{0.032F, 0.03F}, 0},
      {{0.03F, 0.1F}, 0},
      {{}, 0},
      {{0.1F}, 0},
      {{0.1F, 0.1F, 0.1F}, 0},
      {{0.2F, 0.2F, 0.03F, 0.2F, 0.03F}, 0},
      {{0.35F, 0.2F, 0.05F, 0.2F, 0.05F, 0.2F, 0.05F}, 0},
      {{0.1F, 0.1F, 0.1F, 0.1F}, 0},
      {{0.2F, 0.2F, 0.03F, 0.2F, 0.03F, 0.2F}, 0},
      {{kNan, 0.1F}, 0},
      {{0.1F, kNan}, 0},
      {{kNan, kNan}, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(StyleOf(c.dashes), c.style) << testing::PrintToString(c.dashes);
  }
}

TEST(MatchToGDIPenStyle, LooksAtEveryLength) {
  const struct {
    std::vector<float> dashes;
    unsigned int style;
  } patterns[] = {{{0.1F, 0.1F}, 1},
                  {{0.03F, 0.03F}, 2},
                  {{0.2F, 0.2F, 0.03F, 0.2F}, 3},
                  {{0.35F, 0.2F, 0.05F, 0.2F, 0.05F, 0.2F}, 4}};
  for (const auto& pattern : patterns) {
    for (std::size_t i = 0; i < pattern.dashes.size(); ++i) {
      for (const float shift : {0.002F, -0.002F}) {
        std::vector<float> shifted = pattern.dashes;
        shifted[i] += shift;
        EXPECT_EQ(StyleOf(shifted), 0U) << "style " << pattern.style << ", length " << i;
      }
      for (const float shift : {0.0009F, -0.0009F}) {
        std::vector<float> shifted = pattern.dashes;
        shifted[i] += shift;
        EXPECT_EQ(StyleOf(shifted), pattern.style) << "length " << i;
      }
    }
  }
}

TEST(MatchToGDIPenStyle, TakesANullPointerForASolidLine) {
  for (const unsigned int count : {0U, 2U, 4U, 6U}) {
    EXPECT_EQ(MatchToGDIPenStyle(nullptr, count), 0U);
  }
}

TEST(DashPatterns, HaveTheirExactLengths) {
  EXPECT_EQ(g_LS_Dash[0], 0.1F);
  EXPECT_EQ(g_LS_Dash[1], 0.1F);
  EXPECT_EQ(g_LS_Dot[0], 0.03F);
  EXPECT_EQ(g_LS_Dot[1], 0.03F);
  const float dashDot[] = {0.2F, 0.2F, 0.03F, 0.2F};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(g_LS_DashDot[i], dashDot[i]);
  const float dashDotDot[] = {0.35F, 0.2F, 0.05F, 0.2F, 0.05F, 0.2F};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(g_LS_DashDotDot[i], dashDotDot[i]);
  EXPECT_EQ(g_LS_Epsilon, 0.001F);
}

// --- NormalizeTrPolyline

TEST(NormalizeTrPolyline, RefusesALineWithoutPoints) {
  TrPolyline line;
  EXPECT_FALSE(NormalizeTrPolyline(line));
  EXPECT_TRUE(line.Points().empty());
}

TEST(NormalizeTrPolyline, GivesASinglePointASecondOne) {
  TrPolyline line({{1.0, -2.0, 3.0}});
  line.Params().Set(L"name", L"well");
  EXPECT_TRUE(NormalizeTrPolyline(line));
  constexpr double kStep = 1.1920928955078125e-7;
  EXPECT_EQ(line.Points(), (std::vector<Vec3d>{{1, -2, 3}, {1 + kStep, -2 + kStep, 3}}));
  EXPECT_EQ(line.Params().Get(L"name"), L"well");
}

TEST(NormalizeTrPolyline, LeavesLongerLines) {
  const std::vector<Vec3d> points = {{1, 2, 3}, {1, 2, 3}};
  TrPolyline line(points);
  EXPECT_TRUE(NormalizeTrPolyline(line));
  EXPECT_EQ(line.Points(), points);
}

// --- NormalizeTrPolygon

// Points that tell their places.
TrPolygon PolygonOf(const Counts& counts, std::size_t points) {
  TrPolygon polygon({}, counts);
  for (std::size_t i = 0; i < points; ++i) {
    polygon.Points().emplace_back(static_cast<double>(i), 0.5, -1.0);
  }
  polygon.Params().Set(L"name", L"lake");
  return polygon;
}

std::vector<double> PlacesOf(const TrPolygon& polygon) {
  std::vector<double> places;
  for (const Vec3d& point : polygon.Points()) places.push_back(point.x);
  return places;
}

void ExpectUnchanged(const TrPolygon& polygon, const TrPolygon& before) {
  EXPECT_EQ(polygon.Points(), before.Points());
  EXPECT_EQ(polygon.Counts(), before.Counts());
  EXPECT_EQ(polygon.Params(), before.Params());
}

TEST(NormalizeTrPolygon, RefusesWhatCannotBeDrawn) {
  for (const TrPolygon& before :
       {PolygonOf({}, 0), PolygonOf({}, 5), PolygonOf({3}, 0), PolygonOf({1, 2}, 3),
        PolygonOf({0}, 3), PolygonOf({2, 2, 2}, 6)}) {
    TrPolygon polygon = before;
    EXPECT_FALSE(NormalizeTrPolygon(polygon)) << testing::PrintToString(before.Counts());
    ExpectUnchanged(polygon, before);
  }
}

TEST(NormalizeTrPolygon, LeavesAPolygonOfLargeRings) {
  for (const TrPolygon& before : {PolygonOf({3}, 3), PolygonOf({4, 5}, 9), PolygonOf({3}, 7)}) {
    TrPolygon polygon = before;
    EXPECT_TRUE(NormalizeTrPolygon(polygon));
    ExpectUnchanged(polygon, before);
  }
}

TEST(NormalizeTrPolygon, TakesOutTheSmallRings) {
  const struct {
    Counts counts;
    std::size_t points;
    Counts kept;
    std::vector<double> places;
  } cases[] = {
      {{4, 2, 5}, 11, {4, 5}, {0, 1, 2, 3, 6, 7, 8, 9, 10}},
      {{2, 3}, 5, {3}, {2, 3, 4}},
      {{3, 1}, 4, {3}, {0, 1, 2}},
      {{0, 3}, 3, {3}, {0, 1, 2}},
      {{1, 3}, 9, {3}, {1, 2, 3}},              // points that no ring has are left out
      {{2, 3, 9}, 7, {3, 2}, {2, 3, 4, 5, 6}},  // more in rings than there are: what there is
      {{2, 3, 1, 9}, 5, {3}, {2, 3, 4}},
  };
  for (const auto& c : cases) {
    TrPolygon polygon = PolygonOf(c.counts, c.points);
    EXPECT_TRUE(NormalizeTrPolygon(polygon)) << testing::PrintToString(c.counts);
    EXPECT_EQ(polygon.Counts(), c.kept) << testing::PrintToString(c.counts);
    EXPECT_EQ(PlacesOf(polygon), c.places) << testing::PrintToString(c.counts);
    EXPECT_EQ(polygon.Points().front().z, -1.0);
    EXPECT_TRUE(polygon.Params().IsEmpty()) << "it is a new polygon";
  }
}

TEST(NormalizeTrPolygon, RefusesLargeRingsWithoutPoints) {
  TrPolygon polygon = PolygonOf({2, 9}, 2);
  EXPECT_FALSE(NormalizeTrPolygon(polygon));
  EXPECT_EQ(polygon.Counts(), (Counts{2, 9}));
}

}  // namespace
}  // namespace trovan
