// Real numbers beside those of strtod, bit for bit, in every locale and rounding mode.
#include <bit>
#include <cfenv>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <trovan/FileTokenizer.h>

#include "support/Locale.h"
#include "support/MadeLocale.h"
#include "support/Random.h"
#include "tables/FileTokenizerFixture.h"

// The C library never frees the list that it makes of LOCPATH when it looks for a locale.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:__argz_add_sep\n"; }

namespace trovan::test {
namespace {

const std::vector<std::string>& OddTexts() {
  static const std::vector<std::string> texts = {
      "nan",    "-nan",   "NaN",     "nan(7)", "nan(0x12)", "nan()",  "nan(7",    "nanx",
      "inf",    "-inf",   "infin",   "i",      "n",         "0x.8",   "0x.p1",    "0x1p-1080",
      "0X1P+5", "0x1p",   "1e-5000", "1e5000", "-.e1",      "..5",    "+-5",      "-+5",
      "1_000",  "1,5",    "1;5",     ",5",     "1'000",     "\u066B", "1\u066B5", "5.\u066B",
      "1.5,5",  "-1,5e2", "1e1,5",   "0,1",    "0.1",       "5,",     "-,5",
  };
  return texts;
}

std::string Digits(std::mt19937& random, unsigned count) {
  std::string digits;
  for (unsigned i = 0; i < count; ++i) digits += static_cast<char>('0' + Below(random, 10));
  return digits;
}

std::string RandomNumber(std::mt19937& random, char decimal) {
  char text[64];
  switch (Below(random, 4)) {
    case 0: {  // any double, to as many digits as tell it from its neighbours, or fewer
      const std::uint64_t bits = std::uint64_t{AnyUnsigned(random)} << 32 | AnyUnsigned(random);
      const auto value = std::bit_cast<double>(bits);
      std::snprintf(text, sizeof text, "%.*g", static_cast<int>(1 + Below(random, 19)), value);
      return text;
    }
    case 1:  // as in tables of measurements
      return (OneIn(random, 3) ? "-" : "") + Digits(random, 1 + Below(random, 6)) + decimal +
             Digits(random, Below(random, 8));
    case 2:
      return Digits(random, Below(random, 30)) + decimal + Digits(random, 1 + Below(random, 30)) +
             (OneIn(random, 2) ? "e" : "E-") + Digits(random, 1 + Below(random, 3));
    default: {  // halfway between two neighbours, or nearly so
      const std::uint64_t bits = std::uint64_t{AnyUnsigned(random)} << 20 | Below(random, 1U << 20);
      const std::uint64_t odd = std::uint64_t{1} << 53 | bits << 1 | 1;  // of 54 bits
      std::string halfway = std::to_string(odd);
      if (OneIn(random, 2)) halfway += decimal + std::string(Below(random, 30), '0') + "1";
      if (OneIn(random, 2)) return halfway;
      return halfway + "e" + std::to_string(static_cast<int>(Below(random, 40)) - 20);
    }
  }
}

class FileTokenizerStrtodTest : public FileTokenizerTest {
 protected:
  // Reads each text as a line and compares the bits with those of strtod under the same locale and
  // rounding mode.
  void ExpectAsStrtod(const std::vector<std::string>& texts) {
    tokens_.SetDelimiters("");
    std::string lines;
    for (const std::string& text : texts) lines += text + "\n";
    Open(lines);
    for (const std::string& text : texts) {
      double value = -77;
      const CFileTokenizer::Status status = tokens_.Parse(value);
      char* end = nullptr;
      const double expected = std::strtod(text.c_str(), &end);
      if (end == text.c_str()) {
        ASSERT_EQ(status, CFileTokenizer::TOKEN_BAD_VALUE) << text;
        continue;
      }
      ASSERT_EQ(status, CFileTokenizer::TOKEN_OK) << text;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected))
          << text << ": " << value << " instead of " << expected;
    }
  }

  static std::vector<std::string> RandomNumbers(unsigned seed, int count, char decimal) {
    std::mt19937 random(seed);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) texts.push_back(RandomNumber(random, decimal));
    return texts;
  }
};

TEST_F(FileTokenizerStrtodTest, GivesTheBitsOfStrtod) {
  ExpectAsStrtod(OddTexts());
  ExpectAsStrtod(RandomNumbers(1, 300'000, '.'));
}

TEST_F(FileTokenizerStrtodTest, GivesTheBitsOfStrtodInLocalesWithADecimalComma) {
  const MadeLocales locales;
  locales.Make("comma", "ISO-8859-1", ",");
  const ScopedLocale locale("comma");
  ASSERT_TRUE(locale.IsSet());
  double value = 0;
  tokens_.SetDelimiters(";");
  EXPECT_EQ(Read("1,5;", value), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(Read("1.5;", value), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(Read(".5;", value), CFileTokenizer::TOKEN_BAD_VALUE);
  ExpectAsStrtod(OddTexts());
  ExpectAsStrtod(RandomNumbers(2, 20'000, ','));
  ExpectAsStrtod(RandomNumbers(3, 20'000, '.'));
}

TEST_F(FileTokenizerStrtodTest, GivesTheBitsOfStrtodInALocaleWithADecimalCharacterOfTwoBytes) {
  const MadeLocales locales;
  locales.Make("arabic", "UTF-8", "<U066B>", "<U066B> /xd9/xab");
  const ScopedLocale locale("arabic");
  ASSERT_TRUE(locale.IsSet());
  double value = 0;
  EXPECT_EQ(Read("1\u066B5,", value), CFileTokenizer::TOKEN_OK);
  EXPECT_EQ(value, 1.5);
  ExpectAsStrtod(OddTexts());
  ExpectAsStrtod(RandomNumbers(4, 20'000, '.'));
}

TEST_F(FileTokenizerStrtodTest, ReadsEachNumberInTheLocaleOfTheMoment) {
  const MadeLocales locales;
  locales.Make("moment", "ISO-8859-1", ",");
  tokens_.SetDelimiters(";");
  Open("1,5;1,5;1,5;");
  double value = 0;
  tokens_.Parse(value);
  EXPECT_EQ(value, 1);
  {
    const ScopedLocale locale("moment");
    ASSERT_TRUE(locale.IsSet());
    tokens_.Parse(value);
    EXPECT_EQ(value, 1.5);
  }
  tokens_.Parse(value);
  EXPECT_EQ(value, 1);
}

// A locale that is one thread's alone goes before that of the program.
TEST_F(FileTokenizerStrtodTest, ReadsEachNumberInTheLocaleOfTheThread) {
  const MadeLocales locales;
  locales.Make("thread", "ISO-8859-1", ",");
  const locale_t comma = ::newlocale(LC_NUMERIC_MASK, "thread", nullptr);
  ASSERT_NE(comma, nullptr);
  tokens_.SetDelimiters(";");
  Open("1,5;1.5;");
  double value = 0;
  const locale_t before = ::uselocale(comma);
  tokens_.Parse(value);
  ::uselocale(before);
  ::freelocale(comma);
  EXPECT_EQ(value, 1.5);
  tokens_.Parse(value);
  EXPECT_EQ(value, 1.5);
}

class ScopedRounding {
 public:
  explicit ScopedRounding(int mode) : before_(std::fegetround()) { std::fesetround(mode); }
  ~ScopedRounding() { std::fesetround(before_); }
  ScopedRounding(const ScopedRounding&) = delete;
  ScopedRounding& operator=(const ScopedRounding&) = delete;

 private:
  int before_;
};

TEST_F(FileTokenizerStrtodTest, GivesTheBitsOfStrtodInEachRoundingMode) {
  const auto texts = RandomNumbers(5, 50'000, '.');
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    const ScopedRounding rounding(mode);
    ExpectAsStrtod(texts);
    ExpectAsStrtod(OddTexts());
  }
}

// Of more digits than can be converted by one division, which would follow the mode by itself.
TEST_F(FileTokenizerStrtodTest, RoundsAsTheModeSays) {
  double value = 0;
  {
    const ScopedRounding rounding(FE_DOWNWARD);
    Read("0.10000000000000000001,", value);
  }
  EXPECT_EQ(value, 0x1.9999999999999p-4);
  {
    const ScopedRounding rounding(FE_UPWARD);
    Read("0.30000000000000000001,", value);
  }
  EXPECT_EQ(value, 0x1.3333333333334p-2);
}

}  // namespace
}  // namespace trovan::test
