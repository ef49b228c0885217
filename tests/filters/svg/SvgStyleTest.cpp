#include <string>

#include <pugixml.hpp>
#include <gtest/gtest.h>

#include "filters/svg/SvgComputedStyle.h"
#include "filters/svg/SvgFontStyle.h"
#include "filters/svg/SvgStyleSheet.h"

namespace trovan::filters {
namespace {

using corvel::Color4b;

// The elements of a small document, by their ids.
class SvgStyleTest : public testing::Test {
 protected:
  void Load(const std::string& content) {
    ASSERT_TRUE(document_.load_string(content.c_str())) << content;
  }

  pugi::xml_node Element(const char* id) const {
    return document_.find_node([id](const pugi::xml_node& node) {
      return node.attribute("id").value() == std::string(id);
    });
  }

  // The style of the element of that id, with all that it inherits.
  ComputedStyle Style(const char* id) const {
    const pugi::xml_node node = Element(id);
    return Style(node);
  }

  ComputedStyle Style(const pugi::xml_node& node) const {
    if (node.type() != pugi::node_element) return {};
    return ComputeStyle(node, Style(node.parent()), sheet_, LengthBasis{{100, 100}, 16, 16});
  }

  Color4b Fill(const char* id) const {
    const ComputedStyle style = Style(id);
    return PlainColor(style.fill, style);
  }

  pugi::xml_document document_;
  SvgStyleSheet sheet_;
};

constexpr Color4b kRed(255, 0, 0, 255);
constexpr Color4b kBlue(0, 0, 255, 255);
constexpr Color4b kBlack(0, 0, 0, 255);

TEST_F(SvgStyleTest, FindsElementsBySelectors) {
  Load("<svg><g class='a b' id='g'><path id='p' class='b' name='x y'/></g></svg>");
  const struct {
    const char* selector;
    bool isMatch;  // of the path
  } cases[] = {
      {"path", true},        {"rect", false},      {"*", true},
      {"#p", true},          {"#g", false},        {".b", true},
      {".a", false},         {"path.b", true},     {"path.a", false},
      {"path.b#p", true},    {"g path", true},     {"svg path", true},
      {"svg > path", false}, {"g > path", true},   {"svg g > path", true},
      {"svg>g>path", true},  {"g.a.b path", true}, {"rect path", false},
      {"path path", false},  {"rect, path", true}, {"path, rect", true},
      {"[name]", true},      {"[other]", false},   {"[name='x y']", true},
      {"[name=x]", false},   {"[name~=y]", true},  {"path[id=\"p\"]", true},
      {"[id]", true},        {"[class]", true},    {"[id~=p]", true},
      {"[class=b]", true},   {"[class=a]", false}, {"g[class='a b'] path", true},
      {"path:hover", false}, {"g + path", false},  {"path::after", false},
      {"", false},           {">path", false},     {"g >", false},
  };
  for (const auto& c : cases) {
    sheet_ = SvgStyleSheet();
    sheet_.Add(std::string(c.selector) + " { stop-color: red }");
    EXPECT_EQ(Style("p").stopColor == kRed, c.isMatch) << c.selector;
  }
}

TEST_F(SvgStyleTest, FindsElementsByAllOfTheirClasses) {
  Load("<svg><path id='p' class='a b'/></svg>");
  sheet_.Add("[class='a b'] { fill: red }");
  EXPECT_EQ(Fill("p"), kRed);
}

TEST_F(SvgStyleTest, PrefersTheMoreSpecificRule) {
  Load("<svg><path id='p' class='c'/></svg>");
  sheet_.Add("#p { fill: red } .c { fill: blue } path { fill: lime }");
  EXPECT_EQ(Fill("p"), kRed);
}

TEST_F(SvgStyleTest, PrefersTheLaterRuleOfTheSameWeight) {
  Load("<svg><path id='p' class='c d'/></svg>");
  sheet_.Add(".d { fill: blue }");
  sheet_.Add(".c { fill: red }");
  EXPECT_EQ(Fill("p"), kRed);
}

TEST_F(SvgStyleTest, OrdersAttributesSheetsAndStyles) {
  Load(
      "<svg><path id='a' fill='blue'/><path id='b' class='c' fill='blue'/>"
      "<path id='d' class='c' style='fill: lime'/></svg>");
  sheet_.Add(".c { fill: red }");
  EXPECT_EQ(Fill("a"), kBlue);
  EXPECT_EQ(Fill("b"), kRed);
  EXPECT_EQ(Fill("d"), Color4b(0, 255, 0, 255));
}

TEST_F(SvgStyleTest, FallsBackToTheNextWeakerValueThatMakesSense) {
  Load(
      "<svg><path id='a' style='fill: red; fill: color(display-p3 1 0 0)'/>"
      "<path id='b' fill='red' stroke-width='3' visibility='hidden' "
      "style='fill: new(1); stroke-width: wide; visibility: maybe'/>"
      "<path id='c' class='c' style='fill: new(1)'/>"
      "<path id='d' class='d' fill='red'/>"
      "<path id='e' class='e' style='fill: red'/></svg>");
  sheet_.Add(".c, .d { fill: red } .d { fill: redish !important } .e { fill: none!important }");
  sheet_.Add(".e { fill: blue !important; fill: bluish !important }");
  EXPECT_EQ(Fill("a"), kRed);
  EXPECT_EQ(Fill("b"), kRed);
  EXPECT_EQ(Style("b").strokeWidth, 3.0);
  EXPECT_FALSE(Style("b").isVisible);
  EXPECT_EQ(Fill("c"), kRed);
  EXPECT_EQ(Fill("d"), kRed);
  EXPECT_EQ(Fill("e"), kBlue);
}

TEST_F(SvgStyleTest, LetsImportantRulesWin) {
  Load(
      "<svg><path id='p' class='c' style='fill: lime'/>"
      "<path id='q' class='c' style='fill: blue ! important'/></svg>");
  sheet_.Add(".c { fill: red !important } #p { fill: blue }");
  EXPECT_EQ(Fill("p"), kRed);
  EXPECT_EQ(Fill("q"), kBlue);
}

TEST_F(SvgStyleTest, PassesOverCommentsAndRulesForMedia) {
  Load("<svg><path id='p'/></svg>");
  sheet_.Add(
      "<!-- @import url('a;b.css'); /* path {fill:blue} */ "
      "@media print { path { fill: blue } } path { /* ; */ fill /**/ : red } -->");
  EXPECT_EQ(Fill("p"), kRed);
  EXPECT_EQ(sheet_.LeftOut(), 2U);
}

TEST_F(SvgStyleTest, SurvivesSheetsThatEndTooEarly) {
  Load("<svg><path id='p'/></svg>");
  const std::string whole = "@media x { a { b: c } } path.c, g > #p[a='}'] { fill: red; x: 'y;z' }";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SvgStyleSheet sheet;
    sheet.Add(whole.substr(0, size));
    (void)sheet.Matches(Element("p"));
  }
}

TEST_F(SvgStyleTest, InheritsWhatIsInherited) {
  Load("<svg><g fill='red' opacity='0.5' stroke-width='3' font-size='20'><path id='p'/></g></svg>");
  const ComputedStyle style = Style("p");
  EXPECT_EQ(PlainColor(style.fill, style), kRed);
  EXPECT_EQ(style.opacity, 1.0);
  EXPECT_EQ(style.strokeWidth, 3.0);
  EXPECT_EQ(style.fontSize, 20.0);
}

TEST_F(SvgStyleTest, KnowsTheWordsForInheritance) {
  Load(
      "<svg><g fill='red' opacity='0.5'><path id='a' opacity='inherit'/>"
      "<path id='b' fill='initial'/><path id='c' fill='unset' opacity='unset'/>"
      "<g fill='blue'><path id='d' style='fill: inherit'/></g></g></svg>");
  EXPECT_EQ(Style("a").opacity, 0.5);
  EXPECT_EQ(Fill("b"), kBlack);
  EXPECT_EQ(Fill("c"), kRed);
  EXPECT_EQ(Style("c").opacity, 1.0);
  EXPECT_EQ(Fill("d"), kBlue);
}

TEST_F(SvgStyleTest, ResolvesTheCurrentColourWhereItIsUsed) {
  Load(
      "<svg color='red'><g fill='currentColor'><path id='a'/><path id='b' "
      "color='blue'/></g></svg>");
  EXPECT_EQ(Fill("a"), kRed);
  EXPECT_EQ(Fill("b"), kBlue);
}

TEST_F(SvgStyleTest, KeepsWhatWasWhereAValueMakesNoSense) {
  Load(
      "<svg><g fill='red' stroke-width='3'><path id='p' fill='redish' stroke-width='-1' "
      "stroke-linecap='flat' stroke-miterlimit='0.5' fill-opacity='x'/></g></svg>");
  const ComputedStyle style = Style("p");
  EXPECT_EQ(PlainColor(style.fill, style), kRed);
  EXPECT_EQ(style.strokeWidth, 3.0);
  EXPECT_EQ(style.lineCap, "butt");
  EXPECT_EQ(style.miterLimit, 4.0);
  EXPECT_EQ(style.fillOpacity, 1.0);
}

TEST_F(SvgStyleTest, ReadsDashes) {
  Load(
      "<svg font-size='10'><path id='a' stroke-dasharray='1 2,3'/><path id='b' "
      "stroke-dasharray='1em 10%'/>"
      "<g stroke-dasharray='7'><path id='c' stroke-dasharray='1 -2'/><path id='d' "
      "stroke-dasharray='0 0'/>"
      "<path id='e' stroke-dasharray='none'/></g></svg>");
  using Dashes = std::vector<double>;
  EXPECT_EQ(Style("a").dashes, (Dashes{1, 2, 3}));
  EXPECT_EQ(Style("b").dashes.at(0), 10);
  EXPECT_DOUBLE_EQ(Style("b").dashes.at(1), 10);
  EXPECT_EQ(Style("c").dashes, (Dashes{7}));
  EXPECT_TRUE(Style("d").dashes.empty());
  EXPECT_TRUE(Style("e").dashes.empty());
}

TEST_F(SvgStyleTest, KeepsSemicolonsWithinQuotesAndParentheses) {
  const auto declarations = ParseDeclarations("a: url(x;y); b: 'p;q' ;; c ; d:e!important");
  ASSERT_EQ(declarations.size(), 3U);
  EXPECT_EQ(declarations[0].value, "url(x;y)");
  EXPECT_EQ(declarations[1].value, "'p;q'");
  EXPECT_EQ(declarations[2].value, "e");
  EXPECT_TRUE(declarations[2].isImportant);
}

TEST_F(SvgStyleTest, ReadsTheShorthandOfFonts) {
  Load(
      "<svg font-size='10'><text id='t' style=\"font: italic bold 200%/1.2 'Deja Vu', serif\"/>"
      "<text id='u' style='font: caption'/></svg>");
  const ComputedStyle style = Style("t");
  EXPECT_EQ(style.fontSize, 20);
  EXPECT_EQ(style.fontWeight, 700);
  EXPECT_TRUE(style.isItalic);
  EXPECT_EQ(FirstFamily(style.fontFamily), "Deja Vu");
  EXPECT_EQ(Style("u").fontSize, 10);
}

TEST(SvgFontStyle, ReadsSizesAndWeights) {
  const LengthBasis basis;
  EXPECT_EQ(ParseFontSize("medium", 10, basis), 16);
  EXPECT_EQ(ParseFontSize("2em", 10, basis), 20);
  EXPECT_EQ(ParseFontSize("50%", 10, basis), 5);
  EXPECT_EQ(ParseFontSize("larger", 10, basis), 12);
  EXPECT_FALSE(ParseFontSize("-3", 10, basis));
  EXPECT_EQ(ParseFontWeight("bold", 400), 700);
  EXPECT_EQ(ParseFontWeight("bolder", 700), 900);
  EXPECT_EQ(ParseFontWeight("lighter", 700), 400);
  EXPECT_EQ(ParseFontWeight("350", 400), 350);
  EXPECT_FALSE(ParseFontWeight("0", 400));
  EXPECT_FALSE(ParseFontWeight("1001", 400));
}

TEST(SvgFontStyle, FindsTheFirstFamily) {
  EXPECT_EQ(FirstFamily("Arial, sans-serif"), "Arial");
  EXPECT_EQ(FirstFamily("'A, B', C"), "A, B");
  EXPECT_EQ(FirstFamily(" \"Noto Sans\" "), "Noto Sans");
  EXPECT_EQ(FirstFamily("'open"), "open");
  EXPECT_EQ(FirstFamily(""), "");
}

}  // namespace
}  // namespace trovan::filters
