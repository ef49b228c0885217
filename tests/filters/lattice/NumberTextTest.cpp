#include "filters/lattice/NumberText.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "AnyLattice.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

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

TEST(NumberText, WritesTheShortestTextThatComesBack) {
  const auto text = [](double value) {
    std::string written;
    AppendNumber(written, value);
    return written;
  };
  EXPECT_EQ(text(0.1), "0.1");
  EXPECT_EQ(text(-0.0), "-0");
  EXPECT_EQ(text(1e300), "1e+300");
  EXPECT_EQ(text(std::nan("")), "nan");
  const float narrow = 0.1F;
  std::string written = "a ";
  AppendNumber(written, corvel::kFloat, &narrow);
  EXPECT_EQ(written, "a 0.1");
}

TEST(NumberText, GivesEveryElementBack) {
  std::mt19937 random(20240611);
  for (const corvel::PrimType type : test::kElementTypes) {
    const auto size = static_cast<std::size_t>(corvel::CPrimType(type).Size());
    const auto elements = test::AnyElements(random, type, 1000);
    for (std::size_t i = 0; i < 1000; ++i) {
      std::string text;
      AppendNumber(text, type, &elements[i * size]);
      unsigned char back[8] = {};
      ASSERT_EQ(ParseNumber(text, type, back), NumberStatus::kNumber) << text;
      EXPECT_EQ(std::memcmp(back, &elements[i * size], size), 0) << "type " << type << ' ' << text;
    }
  }
}

TEST(NumberText, WritesLongLinesWhole) {
  const test::TempFolder folder;
  corvel::CBufferedFile file;
  file.Open(folder.File(L"line"), "wb", corvel::kFileExclusive, true);
  const std::vector<std::int32_t> numbers(50'000, -1234567);
  WriteLineOfNumbers(file, corvel::kInt32, numbers.data(), numbers.size());
  file.Close();
  std::string expected;
  for (std::size_t i = 0; i < numbers.size(); ++i) expected += i > 0 ? " -1234567" : "-1234567";
  EXPECT_EQ(test::ReadBytes(folder.Path() / "line"), expected + '\n');
}

}  // namespace
}  // namespace trovan::filters
