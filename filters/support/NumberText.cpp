#include "NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>
#include <type_traits>

namespace trovan::filters {
namespace {

// Whether a decimal number that does not fit its real type is too small, not too large: tells the
// power of ten of its first digit.
bool IsTiny(std::string_view number) {
  const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, exponentAt);
  int exponent = 0;
  if (exponentAt < number.size()) {
    std::string_view text = number.substr(exponentAt + 1);
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (parsed.ec == std::errc::result_out_of_range) return text.starts_with('-');
  }
  const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
  const auto digit = static_cast<long long>(mantissa.find_first_of("123456789"));
  return exponent + point - digit < 0;
}

constexpr std::size_t kLongestNumber = 32;  // a 64-bit integer takes 20, a double 24

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

}  // namespace

template <typename T>
NumberStatus ParseNumber(std::string_view text, T& value) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return NumberStatus::kNotANumber;
  }
  T parsed{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, parsed);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) {
    return NumberStatus::kNotANumber;
  }
  if (result.ec == std::errc::result_out_of_range) {
    if constexpr (std::is_floating_point_v<T>) {
      if (IsTiny(text)) {
        value = std::copysign(T{0}, text.starts_with('-') ? T{-1} : T{1});
        return NumberStatus::kNumber;
      }
    }
    return NumberStatus::kOutOfRange;
  }
  value = parsed;
  return NumberStatus::kNumber;
}

template NumberStatus ParseNumber(std::string_view, std::int8_t&);
template NumberStatus ParseNumber(std::string_view, std::uint8_t&);
template NumberStatus ParseNumber(std::string_view, std::int16_t&);
template NumberStatus ParseNumber(std::string_view, std::uint16_t&);
template NumberStatus ParseNumber(std::string_view, std::int32_t&);
template NumberStatus ParseNumber(std::string_view, std::uint32_t&);
template NumberStatus ParseNumber(std::string_view, std::int64_t&);
template NumberStatus ParseNumber(std::string_view, std::uint64_t&);
template NumberStatus ParseNumber(std::string_view, float&);
template NumberStatus ParseNumber(std::string_view, double&);

bool IsNumber(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  const std::size_t whole = at;
  at = SkipDigits(text, at);
  std::size_t digits = at - whole;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = ++at;
    at = SkipDigits(text, at);
    digits += at - fraction;
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    const std::size_t exponent = at;
    at = SkipDigits(text, at);
    if (at == exponent) return false;
  }
  return at == text.size();
}

template <typename T>
void AppendNumber(std::string& text, T value) {
  char number[kLongestNumber];
  const auto result = std::to_chars(number, number + sizeof number, value);
  text.append(number, result.ptr);
}

template void AppendNumber(std::string&, std::int8_t);
template void AppendNumber(std::string&, std::uint8_t);
template void AppendNumber(std::string&, std::int16_t);
template void AppendNumber(std::string&, std::uint16_t);
template void AppendNumber(std::string&, std::int32_t);
template void AppendNumber(std::string&, std::uint32_t);
template void AppendNumber(std::string&, std::int64_t);
template void AppendNumber(std::string&, std::uint64_t);
template void AppendNumber(std::string&, float);
template void AppendNumber(std::string&, double);

std::string ShortestText(double value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

}  // namespace trovan::filters
