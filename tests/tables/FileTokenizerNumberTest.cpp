// Tokens as numbers.
#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <trovan/FileTokenizer.h>

#include "tables/FileTokenizerFixture.h"

namespace trovan::test {
namespace {

using Status = CFileTokenizer::Status;

class FileTokenizerNumberTest : public FileTokenizerTest {};

// Integers.

TEST_F(FileTokenizerNumberTest, ReadsIntegers) {
  const struct {
    const char* text;
    int value;
  } cases[] = {
      {"12,", 12},
      {"-12\n", -12},
      {"+7 ", 7},
      {"0,", 0},
      {"007,", 7},
      {"12abc,", 12},
      {"12.9,", 12},
      {"1e3,", 1},
      {"0x1F,", 0},
      {"-0,", 0},
      {"5-3,", 5},
      {"\v12,", 12},
      {"1\"2\",", 1},
      {"2147483647,", INT_MAX},
      {"-2147483648,", INT_MIN},
  };
  for (const auto& c : cases) {
    int value = -77;
    EXPECT_EQ(Read(std::string(c.text) + "x", value), CFileTokenizer::TOKEN_OK) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
  }
}

TEST_F(FileTokenizerNumberTest, ClampsIntegersToTheirRange) {
  for (const char* text : {"2147483648,", "4294967296,", "4294967297,", "9223372036854775807,",
                           "9223372036854775808,", "99999999999999999999999,"}) {
    int value = 0;
    EXPECT_EQ(Read(text, value), CFileTokenizer::TOKEN_OK) << text;
    EXPECT_EQ(value, INT_MAX) << text;
    EXPECT_EQ(Read(std::string("-") + text, value), CFileTokenizer::TOKEN_OK) << text;
    EXPECT_EQ(value, INT_MIN) << text;
  }
  int value = 0;
  EXPECT_EQ(Read("-2147483649,", value), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(value, INT_MIN);
}

TEST_F(FileTokenizerNumberTest, LeavesTheValueWhereNoNumberBegins) {
  for (const char* text : {"abc,", "\"12\",", "-,", "+-1,", "true,", ".,", "e5,", "'1',", "--1,"}) {
    int integer = -77;
    double real = -77;
    bool flag = true;
    EXPECT_EQ(Read(text, integer), CFileTokenizer::TOKEN_BAD_VALUE) << text;
    EXPECT_EQ(Read(text, real), CFileTokenizer::TOKEN_BAD_VALUE) << text;
    EXPECT_EQ(Read(text, flag), CFileTokenizer::TOKEN_BAD_VALUE) << text;
    EXPECT_EQ(tokens_.LastTokenTermChar(), ',');
    EXPECT_EQ(tokens_.GetNumTokensParsed(), 1U);
    EXPECT_EQ(integer, -77);
    EXPECT_EQ(real, -77);
    EXPECT_TRUE(flag);
  }
}

TEST_F(FileTokenizerNumberTest, LeavesTheValueAtEmptyFieldsAndAtTheEnd) {
  const struct {
    const char* text;
    Status status;
  } cases[] = {
      {",1", CFileTokenizer::TOKEN_EMPTY}, {"\f1", CFileTokenizer::TOKEN_EMPTY},
      {"", CFileTokenizer::TOKEN_EOF},     {"12", CFileTokenizer::TOKEN_EOF},
      {"12 ", CFileTokenizer::TOKEN_EOF},  {"1", CFileTokenizer::TOKEN_EOF},
  };
  for (const auto& c : cases) {
    int integer = -77;
    double real = -77;
    bool flag = true;
    EXPECT_EQ(Read(c.text, integer), c.status) << c.text;
    EXPECT_EQ(Read(c.text, real), c.status) << c.text;
    EXPECT_EQ(Read(c.text, flag), c.status) << c.text;
    EXPECT_EQ(integer, -77);
    EXPECT_EQ(real, -77);
    EXPECT_TRUE(flag);
  }
}

TEST_F(FileTokenizerNumberTest, ReadsNoNumberOfATokenWithoutText) {
  int value = -77;
  EXPECT_EQ(Read(std::string_view("\0,", 2), value), CFileTokenizer::TOKEN_BAD_VALUE);
  EXPECT_EQ(value, -77);
}

TEST_F(FileTokenizerNumberTest, ReadsABooleanAsAnInteger) {
  const struct {
    const char* text;
    bool value;
  } cases[] = {{"0,", false},   {"1,", true},    {"-1,", true},        {"2,", true},
               {"0.5,", false}, {"00x,", false}, {"4294967296,", true}};
  for (const auto& c : cases) {
    bool value = !c.value;
    EXPECT_EQ(Read(c.text, value), CFileTokenizer::TOKEN_OK) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
  }
}

TEST_F(FileTokenizerNumberTest, ReadsNumbersOneAfterAnother) {
  Open("1 2.5,0\n7,");
  int integer = 0;
  double real = 0;
  bool flag = true;
  EXPECT_EQ(tokens_.Parse(integer), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(tokens_.LastTokenTermChar(), '\n');
  EXPECT_EQ(tokens_.Parse(real), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(tokens_.LastTokenTermChar(), ',');
  EXPECT_EQ(tokens_.Parse(flag), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(integer, 1);
  EXPECT_EQ(real, 2.5);
  EXPECT_FALSE(flag);
  EXPECT_EQ(tokens_.GetNumTokensParsed(), 3U);
  EXPECT_EQ(Next(), "7|,");
}

// Real numbers.

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::string_view kLong =
    "3.14159265358979323846264338327950288419716939937510582097494459";

TEST_F(FileTokenizerNumberTest, ReadsRealNumbers) {
  const struct {
    std::string text;
    double value;
  } cases[] = {
      {"1.5", 1.5},
      {"-1.5e3", -1500},
      {"+1", 1},
      {"+.5", 0.5},
      {".5", 0.5},
      {"-.5", -0.5},
      {"5.", 5},
      {"5.e1", 50},
      {"1e", 1},
      {"1e+", 1},
      {"1ex", 1},
      {"1d5", 1},
      {"1.2.3", 1.2},
      {"12abc", 12},
      {"-0", -0.0},
      {"-0.0e99", -0.0},
      {"0x1.8p3", 12},
      {"-0x10", -16},
      {"0x", 0},
      {"-0xg", -0.0},
      {"00012.50", 12.5},
      {"\v7.5", 7.5},
      {"inf", kInfinity},
      {"-INFINITY", -kInfinity},
      {"infinite", kInfinity},
      {"1e400", kInfinity},
      {"-1e400", -kInfinity},
      {"1e-400", 0},
      {"-1e-400", -0.0},
      {"1e99999999999999999999", kInfinity},
      {"1e-99999999999999999999", 0},
      {"0e99999999999999999999", 0},
      {"4.9e-324", 0x1p-1074},
      {"2.4703282292062327e-324", 0},
      {"2.4703282292062328e-324", 0x1p-1074},
      {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022},
      {"2.2250738585072014e-308", DBL_MIN},
      {"1.7976931348623157e308", DBL_MAX},
      {"1.7976931348623158079e308", DBL_MAX},
      {"1.797693134862315808e308", kInfinity},
      {"0.1", 0x1.999999999999ap-4},
      {"9007199254740993", 0x1p53},
      {"9007199254740993.0000000000000000000000000000000001", 0x1.0000000000001p53},
      {std::string(kLong), 0x1.921fb54442d18p1},
      {std::string(400, '9'), kInfinity},
      {"0." + std::string(400, '0') + "1", 0},
      {"1" + std::string(400, '0') + "e-400", 1},
      {"0." + std::string(400, '0') + "1e401", 1},
  };
  for (const auto& c : cases) {
    double value = -77;
    EXPECT_EQ(Read(c.text + ",", value), CFileTokenizer::TOKEN_OK) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(std::signbit(value), std::signbit(c.value)) << c.text;
  }
}

TEST_F(FileTokenizerNumberTest, SkipsTheBlanksOfATokenInFrontOfANumber) {
  tokens_.SetWhitespace("");
  int integer = 0;
  double real = 0;
  EXPECT_EQ(Read(" \t\v 12 3,", integer), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(integer, 12);
  EXPECT_EQ(Read(" \t\v 12.5 3,", real), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(real, 12.5);
  EXPECT_EQ(Read("  ,", real), CFileTokenizer::TOKEN_BAD_VALUE);
  EXPECT_EQ(Read("- 1,", real), CFileTokenizer::TOKEN_BAD_VALUE);
}

}  // namespace
}  // namespace trovan::test
