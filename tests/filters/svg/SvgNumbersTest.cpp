#include "filters/svg/SvgNumbers.h"

#include <gtest/gtest.h>

#include "filters/svg/SvgScanner.h"

namespace trovan::filters {
namespace {

using Numbers = std::vector<double>;

TEST(SvgNumbers, ReadsListsUpToTheFirstFault) {
  const struct {
    const char* text;
    Numbers numbers;
    bool isWhole;
  } cases[] = {
      {"", {}, true},
      {"  ", {}, true},
      {"1", {1}, true},
      {"1 2,3 , 4", {1, 2, 3, 4}, true},
      {"\t1\r\n2\n", {1, 2}, true},
      {"-1-2+3", {-1, -2, 3}, true},
      {".5.25", {0.5, 0.25}, true},
      {"1.", {1}, true},
      {"1e2 1E-2 1e+2", {100, 0.01, 100}, true},
      {"1em", {1}, false},
      {"1,,2", {1}, false},
      {"1,", {1}, false},
      {",1", {}, false},
      {"1;2", {1}, false},
      {"- 1", {}, false},
      {"e5", {}, false},
  };
  for (const auto& c : cases) {
    bool isWhole = false;
    EXPECT_EQ(ParseNumbers(c.text, &isWhole), c.numbers) << c.text;
    EXPECT_EQ(isWhole, c.isWhole) << c.text;
  }
}

TEST(SvgNumbers, RefusesNumbersThatAreNotFinite) {
  EXPECT_EQ(ParseSvgNumber(" -2.5 "), -2.5);
  for (const char* text : {"", "1e999", "nan", "inf", "1 2", "0x10", "1px"}) {
    EXPECT_FALSE(ParseSvgNumber(text)) << text;
  }
}

TEST(SvgNumbers, CutsOpacitiesToTheirRange) {
  const struct {
    const char* text;
    double opacity;
  } cases[] = {{"0.25", 0.25}, {"25%", 0.25}, {"-1", 0.0}, {"7", 1.0}, {" 100% ", 1.0}};
  for (const auto& c : cases) EXPECT_EQ(ParseOpacity(c.text), c.opacity) << c.text;
  EXPECT_FALSE(ParseOpacity("half"));
  EXPECT_FALSE(ParseOpacity("%"));
}

TEST(SvgNumbers, ConvertsLengthsToPixels) {
  const LengthBasis basis{{300, 400}, 10, 20};
  const struct {
    const char* text;
    double pixels;
  } cases[] = {
      {"7", 7},       {"7px", 7},     {"7PX", 7},
      {" 7 ", 7},     {"3pt", 4},     {"1pc", 16},
      {"1in", 96},    {"2.54cm", 96}, {"25.4mm", 96},
      {"101.6Q", 96}, {"2em", 20},    {"2ex", 10},
      {"2rem", 40},   {"50%", 150},   {"10vw", 30},
      {"10vh", 40},   {"-3", -3},     {"1e1mm", 960 / 25.4},
      {".5in", 48},
  };
  for (const auto& c : cases) {
    const auto length = ParseLength(c.text);
    ASSERT_TRUE(length) << c.text;
    EXPECT_DOUBLE_EQ(InPixels(*length, basis, Axis::kHorizontal), c.pixels) << c.text;
  }
}

TEST(SvgNumbers, TakesPercentagesOfTheAxis) {
  const LengthBasis basis{{300, 400}, 16, 16};
  const auto half = ParseLength("50%");
  EXPECT_DOUBLE_EQ(InPixels(*half, basis, Axis::kVertical), 200);
  EXPECT_DOUBLE_EQ(InPixels(*half, basis, Axis::kDiagonal), 250 / 1.4142135623730951);
}

TEST(SvgNumbers, RefusesWhatIsNoLength) {
  for (const char* text : {"", "px", "7 px", "7furlong", "auto", "1e999", "7px7"}) {
    EXPECT_FALSE(ParseLength(text)) << text;
  }
}

TEST(SvgScanner, ReadsFlagsOfOneDigit) {
  SvgScanner scanner("0110");
  bool first = true;
  bool second = false;
  double number = 0;
  EXPECT_TRUE(scanner.ReadFlag(first));
  EXPECT_TRUE(scanner.ReadFlag(second));
  EXPECT_TRUE(scanner.ReadNumber(number));
  EXPECT_FALSE(first);
  EXPECT_TRUE(second);
  EXPECT_EQ(number, 10);
  EXPECT_FALSE(SvgScanner("2").ReadFlag(first));
  EXPECT_FALSE(SvgScanner("").ReadFlag(first));
}

}  // namespace
}  // namespace trovan::filters
