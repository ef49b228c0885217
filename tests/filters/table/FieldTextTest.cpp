#include "filters/table/FieldText.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::int64_t kMillisecondsPerDay = 86'400'000;

TEST(FieldText, TrimsBlanksAndNulBytesButNothingElse) {
  EXPECT_EQ(TrimEnd(" a b \0 \0"sv), " a b");
  EXPECT_EQ(TrimBoth("\0 a b \0 "sv), "a b");
  EXPECT_EQ(TrimEnd("a\t\n"), "a\t\n");
  EXPECT_EQ(TrimEnd("  \0"sv), "");
  EXPECT_EQ(TrimBoth(" "), "");
  EXPECT_EQ(TrimBoth(""), "");
}

TEST(FieldText, WritesDatesOfTheCalendarAndNoOthers) {
  const struct {
    std::string_view digits;
    std::string_view date;  // empty: no date
  } cases[] = {
      {"20240229", "2024-02-29"},
      {"20230229", ""},
      {"19000229", ""},
      {"20000229", "2000-02-29"},
      {"19991231", "1999-12-31"},
      {"99991231", "9999-12-31"},
      {"00010101", "0001-01-01"},
      {"20240431", ""},
      {"20241301", ""},
      {"20240001", ""},
      {"20240100", ""},
      {"20240132", ""},
      {"2024010", ""},
      {"202401011", ""},
      {"2024 101", ""},
      {"-2024101", ""},
      {"", ""},
      {"2024-1-1", ""},
  };
  for (const auto& c : cases) {
    std::string out = "x";
    EXPECT_EQ(AppendIsoDate(c.digits, out), !c.date.empty()) << c.digits;
    EXPECT_EQ(out, "x" + std::string(c.date)) << c.digits;
  }
}

TEST(FieldText, WritesDayNumbersAsDates) {
  const struct {
    std::int64_t day;
    std::int64_t milliseconds;
    std::string_view text;  // empty: none
  } cases[] = {
      {2'440'588, 0, "1970-01-01T00:00:00"},
      {2'451'545, 43'200'000, "2000-01-01T12:00:00"},
      {2'451'545, kMillisecondsPerDay - 1, "2000-01-01T23:59:59.999"},
      {2'451'545, 1, "2000-01-01T00:00:00.001"},
      {2'451'545, 3'723'040, "2000-01-01T01:02:03.040"},
      {1'721'426, 0, "0001-01-01T00:00:00"},
      {5'373'484, 0, "9999-12-31T00:00:00"},
      {1'721'425, 0, ""},
      {5'373'485, 0, ""},
      {0, 0, ""},
      {-1, 0, ""},
      {std::numeric_limits<std::int64_t>::min(), 0, ""},
      {std::numeric_limits<std::int64_t>::max(), 0, ""},
      {2'451'545, -1, ""},
      {2'451'545, kMillisecondsPerDay, ""},
  };
  for (const auto& c : cases) {
    std::string out;
    EXPECT_EQ(AppendDateTime(c.day, c.milliseconds, out), !c.text.empty()) << c.day;
    EXPECT_EQ(out, c.text) << c.day << ' ' << c.milliseconds;
  }
}

TEST(FieldText, CountsTimestampsFromTheDayBeforeTheYearOne) {
  const struct {
    double milliseconds;
    std::string_view text;  // empty: none
  } cases[] = {
      {62'135'683'200'000, "1970-01-01T00:00:00"},
      {static_cast<double>(kMillisecondsPerDay), "0001-01-01T00:00:00"},
      {62'135'683'200'000.4, "1970-01-01T00:00:00"},
      {62'135'683'199'999.6, "1970-01-01T00:00:00"},
      {62'135'683'200'001, "1970-01-01T00:00:00.001"},
      {315'537'983'999'999, "9999-12-31T23:59:59.999"},
      {315'537'984'000'000, ""},
      {0, ""},
      {-1, ""},
      {1e300, ""},
      {std::numeric_limits<double>::infinity(), ""},
      {-std::numeric_limits<double>::infinity(), ""},
      {std::nan(""), ""},
  };
  for (const auto& c : cases) {
    std::string out;
    EXPECT_EQ(AppendTimestamp(c.milliseconds, out), !c.text.empty()) << c.milliseconds;
    EXPECT_EQ(out, c.text) << c.milliseconds;
  }
}

TEST(FieldText, WritesCurrencyWithFourDecimals) {
  const struct {
    std::int64_t value;
    std::string_view text;
  } cases[] = {
      {0, "0.0000"},
      {1, "0.0001"},
      {-1, "-0.0001"},
      {12'000, "1.2000"},
      {-123'456'789, "-12345.6789"},
      {std::numeric_limits<std::int64_t>::max(), "922337203685477.5807"},
      {std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"},
  };
  for (const auto& c : cases) {
    std::string out;
    AppendCurrency(c.value, out);
    EXPECT_EQ(out, c.text);
  }
}

TEST(FieldText, WritesTwoHexadecimalDigitsForEachByte) {
  std::string out;
  AppendHex("\x00\x0F\x7F\x80\xFF"sv, out);
  EXPECT_EQ(out, "000f7f80ff");
}

}  // namespace
}  // namespace trovan::filters
