#include "filters/support/NumberText.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using std::string_view_literals::operator""sv;

TEST(NumberText, ReadsRealNumbers) {
  const struct {
    const char* text;
    double expected;
  } cases[] = {
      {"0", 0.0},
      {"12.5", 12.5},
      {"+.500E+02", 50.0},
      {"-99999.", -99999.0},
      {"-.5e-1", -0.05},
      {"1e300", 1e300},
      {"9007199254740993", 9007199254740992.0},
      {"inf", std::numeric_limits<double>::infinity()},
      {"-Infinity", -std::numeric_limits<double>::infinity()},
      {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
  };
  for (const auto& c : cases) {
    double value = 7;
    EXPECT_EQ(ParseNumber(c.text, value), NumberStatus::kNumber) << c.text;
    EXPECT_EQ(value, c.expected) << c.text;
  }
}

TEST(NumberText, ReadsNoNumberInAnyCase) {
  for (const char* text : {"nan", "NaN", "NAN", "-nan"}) {
    double value = 7;
    EXPECT_EQ(ParseNumber(text, value), NumberStatus::kNumber) << text;
    EXPECT_TRUE(std::isnan(value)) << text;
  }
}

TEST(NumberText, TakesWhatIsTooSmallForZeroOfItsSign) {
  for (const char* text : {"1e-400", "0.0001e-320", "1e-99999999999999999999",
                           "0.00000000000000000000000000000000000000000000000001e-300"}) {
    double value = 7;
    EXPECT_EQ(ParseNumber(text, value), NumberStatus::kNumber) << text;
    EXPECT_EQ(value, 0.0) << text;
    EXPECT_EQ(ParseNumber("-" + std::string(text), value), NumberStatus::kNumber) << text;
    EXPECT_TRUE(std::signbit(value)) << text;
  }
  float narrow = 7;
  EXPECT_EQ(ParseNumber("1e-50", narrow), NumberStatus::kNumber);
  EXPECT_EQ(narrow, 0.0F);
}

TEST(NumberText, RefusesWhatIsTooLarge) {
  for (const char* text : {"1e309", "-1e309", "1e99999999999999999999", "+1000000e303"}) {
    double value = 7;
    EXPECT_EQ(ParseNumber(text, value), NumberStatus::kOutOfRange) << text;
    EXPECT_EQ(value, 7) << text;
  }
  float narrow = 0;
  EXPECT_EQ(ParseNumber("1e39", narrow), NumberStatus::kOutOfRange);
  std::uint8_t byte = 0;
  EXPECT_EQ(ParseNumber("256", byte), NumberStatus::kOutOfRange);
  std::int64_t wide = 0;
  EXPECT_EQ(ParseNumber("9223372036854775808", wide), NumberStatus::kOutOfRange);
}

TEST(NumberText, RefusesOtherText) {
  for (const char* text :
       {"", "+", "-", "+-1", "++1", ".", "1,5", "0x10", "1e", "12a", "a", "1.5.5", "-1.#IND"}) {
    double value = 7;
    EXPECT_EQ(ParseNumber(text, value), NumberStatus::kNotANumber) << text;
    EXPECT_EQ(value, 7) << text;
  }
  int whole = 0;
  EXPECT_EQ(ParseNumber("1.0", whole), NumberStatus::kNotANumber);
  unsigned count = 0;
  EXPECT_EQ(ParseNumber("-1", count), NumberStatus::kNotANumber);
}

TEST(NumberText, TellsNumbersFromOtherTexts) {
  const struct {
    std::string_view text;
    bool number;
  } cases[] = {
      {"0", true},     {"007", true},      {"-1", true},     {"+007.", true},  {".5", true},
      {"-.5e3", true}, {"1.25E-10", true}, {"1e+2", true},   {"", false},      {"-", false},
      {"+", false},    {".", false},       {"-.", false},    {"e5", false},    {".e5", false},
      {"1e", false},   {"1e+", false},     {"1e5.", false},  {"1,5", false},   {"nan", false},
      {"inf", false},  {"***", false},     {" 1", false},    {"1 ", false},    {"1 2", false},
      {"--1", false},  {"0x10", false},    {"1.2.3", false}, {"1\0"sv, false},
  };
  for (const auto& c : cases) EXPECT_EQ(IsNumber(c.text), c.number) << '"' << c.text << '"';
}

TEST(NumberText, WritesTheShortestTextOfARealThatReadsBack) {
  const struct {
    double value;
    std::string_view text;
  } cases[] = {
      {0.0, "0"},
      {-0.0, "-0"},
      {0.1, "0.1"},
      {1.0 / 3.0, "0.3333333333333333"},
      {1e22, "1e+22"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {-std::numeric_limits<double>::denorm_min(), "-5e-324"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::nan(""), "nan"},
  };
  for (const auto& c : cases) {
    std::string out;
    AppendNumber(out, c.value);
    EXPECT_EQ(out, c.text);
  }
}

TEST(NumberText, WritesFewerDigitsOfAFloat) {
  std::string written = "a ";
  AppendNumber(written, 0.1F);
  EXPECT_EQ(written, "a 0.1");
  EXPECT_EQ(ShortestText(1e300), "1e+300");
}

}  // namespace
}  // namespace trovan::filters
