#include "FieldText.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace trovan::filters {
namespace {

constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
// Julian day numbers of 31 December of the year 0 and of 1 January 1970.
constexpr std::int64_t kDayZero = 1'721'425;
constexpr std::int64_t kUnixEpoch = 2'440'588;

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsPadding(char c) { return c == ' ' || c == '\0'; }

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

// Appends `value` with at least `width` digits, zeros in front.
void AppendPadded(std::uint64_t value, std::size_t width, std::string& out) {
  char digits[20];
  const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const auto length = static_cast<std::size_t>(end - digits);
  if (length < width) out.append(width - length, '0');
  out.append(digits, length);
}

void AppendDay(int year, unsigned month, unsigned day, std::string& out) {
  AppendPadded(static_cast<std::uint64_t>(year), 4, out);
  out += '-';
  AppendPadded(month, 2, out);
  out += '-';
  AppendPadded(day, 2, out);
}

}  // namespace

std::string_view TrimEnd(std::string_view text) {
  while (!text.empty() && IsPadding(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view TrimBoth(std::string_view text) {
  text = TrimEnd(text);
  while (!text.empty() && IsPadding(text.front())) text.remove_prefix(1);
  return text;
}

bool AppendIsoDate(std::string_view digits, std::string& out) {
  if (digits.size() != 8 || SkipDigits(digits, 0) != 8) return false;
  const auto number = [&](std::size_t from, std::size_t count) {
    int value = 0;
    for (const char digit : digits.substr(from, count)) value = value * 10 + (digit - '0');
    return value;
  };
  const int year = number(0, 4);
  const auto month = static_cast<unsigned>(number(4, 2));
  const auto day = static_cast<unsigned>(number(6, 2));
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                         std::chrono::day{day}};
  if (!date.ok()) return false;
  AppendDay(year, month, day, out);
  return true;
}

bool AppendDateTime(std::int64_t julianDay, std::int64_t milliseconds, std::string& out) {
  constexpr std::int64_t kLastDay = 5'373'484;  // 31 December 9999
  if (julianDay <= kDayZero || julianDay > kLastDay) return false;
  if (milliseconds < 0 || milliseconds >= kMillisecondsPerDay) return false;
  const std::chrono::year_month_day date{
      std::chrono::sys_days{std::chrono::days{julianDay - kUnixEpoch}}};
  AppendDay(static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
            static_cast<unsigned>(date.day()), out);
  const auto time = static_cast<std::uint64_t>(milliseconds);
  out += 'T';
  AppendPadded(time / 3'600'000, 2, out);
  out += ':';
  AppendPadded(time / 60'000 % 60, 2, out);
  out += ':';
  AppendPadded(time / 1000 % 60, 2, out);
  if (time % 1000 != 0) {
    out += '.';
    AppendPadded(time % 1000, 3, out);
  }
  return true;
}

bool AppendTimestamp(double milliseconds, std::string& out) {
  constexpr double kLargest = 1e15;  // far beyond the year 9999, and exact
  if (!(milliseconds >= 0 && milliseconds < kLargest)) return false;
  const auto whole = static_cast<std::int64_t>(std::floor(milliseconds + 0.5));
  return AppendDateTime(kDayZero + whole / kMillisecondsPerDay, whole % kMillisecondsPerDay, out);
}

void AppendCurrency(std::int64_t tenThousandths, std::string& out) {
  // The magnitude of the most negative number has no signed form.
  const auto bits = static_cast<std::uint64_t>(tenThousandths);
  const std::uint64_t magnitude = tenThousandths < 0 ? 0 - bits : bits;
  if (tenThousandths < 0) out += '-';
  AppendPadded(magnitude / 10'000, 1, out);
  out += '.';
  AppendPadded(magnitude % 10'000, 4, out);
}

void AppendHex(std::string_view bytes, std::string& out) {
  constexpr char kDigits[] = "0123456789abcdef";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    out += kDigits[value >> 4];
    out += kDigits[value & 0xF];
  }
}

}  // namespace trovan::filters
