#include "filters/svg/SvgColor.h"

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using corvel::Color4b;

TEST(SvgColor, ReadsEveryNotation) {
  const struct {
    const char* text;
    Color4b color;
  } cases[] = {
      {"black", {0, 0, 0, 255}},
      {"AliceBlue", {240, 248, 255, 255}},
      {"yellowgreen", {154, 205, 50, 255}},
      {"lightgoldenrodyellow", {250, 250, 210, 255}},
      {"rebeccapurple", {102, 51, 153, 255}},
      {" grey ", {128, 128, 128, 255}},
      {"transparent", {0, 0, 0, 0}},
      {"currentColor", {1, 2, 3, 4}},
      {"#f80", {255, 136, 0, 255}},
      {"#F80C", {255, 136, 0, 204}},
      {"#ff8001", {255, 128, 1, 255}},
      {"#ff800180", {255, 128, 1, 128}},
      {"rgb(1,2,3)", {1, 2, 3, 255}},
      {"rgb( 1 , 2 , 3 )", {1, 2, 3, 255}},
      {"RGB(100%, 50%, 0%)", {255, 128, 0, 255}},
      {"rgb(300, -5, 2.4)", {255, 0, 2, 255}},
      {"rgba(1, 2, 3, 0.5)", {1, 2, 3, 128}},
      {"rgb(1 2 3 / 50%)", {1, 2, 3, 128}},
      {"hsl(0, 100%, 50%)", {255, 0, 0, 255}},
      {"hsl(120, 100%, 25%)", {0, 128, 0, 255}},
      {"hsl(-120deg, 100%, 50%)", {0, 0, 255, 255}},
      {"hsl(0.5turn, 100%, 50%)", {0, 255, 255, 255}},
      {"hsl(400grad 100% 50% / 0.5)", {255, 0, 0, 128}},
      {"hsl(4.1887902rad, 100%, 50%)", {0, 0, 255, 255}},
      {"hsla(60, 100%, 50%, 0)", {255, 255, 0, 0}},
      {"hsl(0, 0%, 50%)", {128, 128, 128, 255}},
  };
  for (const auto& c : cases) EXPECT_EQ(ParseColor(c.text, {1, 2, 3, 4}), c.color) << c.text;
}

TEST(SvgColor, RefusesWhatIsNoColour) {
  for (const char* text :
       {"", "#", "#12", "#12345", "#1234567", "#ggg", "#+12", "blackish", "none", "rgb(1,2)",
        "rgb(1,2,3,4,5)", "rgb(1,2,3", "rgb 1,2,3", "rgb()", "rgb(a,b,c)", "cmyk(1,2,3,4)",
        "rgb(1e999,0,0)", "hsl(1mm,100%,50%)", "averylongnamethatisnocolouratall"}) {
    EXPECT_FALSE(ParseColor(text)) << text;
  }
}

TEST(SvgColor, MultipliesTheOpacity) {
  EXPECT_EQ(WithOpacity({1, 2, 3, 255}, 0.5), Color4b(1, 2, 3, 128));
  EXPECT_EQ(WithOpacity({1, 2, 3, 128}, 0.5), Color4b(1, 2, 3, 64));
  EXPECT_EQ(WithOpacity({1, 2, 3, 255}, 0.0), Color4b(1, 2, 3, 0));
}

TEST(SvgPaint, ReadsReferencesWithWhatStandsInForThem) {
  const auto plain = ParsePaint("url(#shade)");
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->kind, SvgPaint::Kind::kReference);
  EXPECT_EQ(plain->reference, "shade");
  EXPECT_FALSE(plain->hasFallback);

  const auto withColor = ParsePaint("url( '#shade' ) red");
  ASSERT_TRUE(withColor);
  EXPECT_EQ(withColor->reference, "shade");
  EXPECT_TRUE(withColor->hasFallback);
  EXPECT_EQ(withColor->color, Color4b(255, 0, 0, 255));

  const auto withNone = ParsePaint("url(#shade) none");
  ASSERT_TRUE(withNone);
  EXPECT_FALSE(withNone->hasFallback);
}

TEST(SvgPaint, KeepsTheCurrentColourAsAWord) {
  const auto paint = ParsePaint("currentColor");
  ASSERT_TRUE(paint);
  EXPECT_EQ(paint->kind, SvgPaint::Kind::kColor);
  EXPECT_TRUE(paint->isCurrentColor);
}

TEST(SvgPaint, TakesThePlainColourOfAProfile) {
  const auto paint = ParsePaint("#CD853F icc-color(acmecmyk, 0.11, 0.48)");
  ASSERT_TRUE(paint);
  EXPECT_EQ(paint->color, Color4b(205, 133, 63, 255));
}

TEST(SvgPaint, RefusesWhatIsNoPaint) {
  for (const char* text : {"", "url(#a) nonsense", "context-fill", "12"}) {
    EXPECT_FALSE(ParsePaint(text)) << text;
  }
}

TEST(SvgPaint, FindsTheNameInAReference) {
  EXPECT_EQ(ParseReference("url(#a)"), "a");
  EXPECT_EQ(ParseReference("  url(  #lg1   )  "), "lg1");
  EXPECT_EQ(ParseReference("url(\"#a b\")"), "a b");
  for (const char* text : {"", "none", "#a", "url(a)", "url(other.svg#a)", "url(#a", "url()"}) {
    EXPECT_EQ(ParseReference(text), "") << text;
  }
}

}  // namespace
}  // namespace trovan::filters
