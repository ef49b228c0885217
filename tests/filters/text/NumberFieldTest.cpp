#include "filters/text/NumberField.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace trovan::test {
namespace {

using filters::ReadNumberField;

TEST(ReadNumberField, ReadsTheWholeField) {
  const struct {
    const char* text;
    char decimal;
    double expected;
  } cases[] = {{"0", '.', 0.0},
               {"1", ',', 1.0},
               {"-12.5", '.', -12.5},
               {"-12,5", ',', -12.5},
               {"+7", '.', 7.0},
               {" \t1.5 \t", '.', 1.5},
               {"1.", '.', 1.0},
               {".5", '.', 0.5},
               {"1,", ',', 1.0},
               {",5", ',', 0.5},
               {"1e3", '.', 1000.0},
               {"1,5E-2", ',', 0.015},
               {"-.5e+1", '.', -5.0},
               {"00012", '.', 12.0},
               {"1e-999", '.', 0.0},
               {"0e999", '.', 0.0},
               {"1,7976931348623157e308", ',', 1.7976931348623157e308},
               {"123456789012345678901234567890", '.', 123456789012345678901234567890.0}};
  for (const auto& c : cases) {
    double value = 99.0;
    EXPECT_TRUE(ReadNumberField(c.text, c.decimal, value)) << c.text;
    EXPECT_EQ(value, c.expected) << c.text;
  }
}

TEST(ReadNumberField, KeepsTheSignOfZero) {
  double value = 1.0;
  EXPECT_TRUE(ReadNumberField("-0", '.', value));
  EXPECT_TRUE(std::signbit(value));
  EXPECT_TRUE(ReadNumberField("-1e-999", '.', value));
  EXPECT_TRUE(std::signbit(value));
}

TEST(ReadNumberField, RefusesAllElse) {
  for (const char decimal : {'.', ','}) {
    const std::string one = std::string("1") + decimal;
    const std::string cases[] = {
        "",      " ",    "-",         "+",        "e5",    ".",
        ",",     "1 2",  "1x",        "x1",       "0x10",  "nan",
        "inf",   "-inf", "1e",        "1e+",      "1e5.5", "--1",
        "+-1",   "- 1",  "1..2",      "1,,2",     "1e999", "-1e999",
        "1'000", "1\n",  "1\xC2\xA0", "infinity", "NaN",   one + "5" + decimal + "5"};
    for (const std::string& text : cases) {
      double value = 99.0;
      EXPECT_FALSE(ReadNumberField(text, decimal, value)) << text << " with " << decimal;
      EXPECT_EQ(value, 99.0);
    }
  }
}

TEST(ReadNumberField, RefusesTheOtherDecimalCharacter) {
  double value = 99.0;
  EXPECT_FALSE(ReadNumberField("1,5", '.', value));
  EXPECT_FALSE(ReadNumberField("1.5", ',', value));
  EXPECT_FALSE(ReadNumberField("1.000,5", ',', value));
  EXPECT_FALSE(ReadNumberField("1,000.5", '.', value));
}

}  // namespace
}  // namespace trovan::test
