#include "NumberField.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace trovan::filters {
namespace {

constexpr std::string_view kDigits = "0123456789";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string_view TakeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of(kDigits));
  text.remove_prefix(digits.size());
  return digits;
}

void TakeSign(std::string_view& text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
}

// The parts of a number without its sign.
struct Parts {
  std::string_view whole;
  std::string_view fraction;
  std::string_view exponent;  // with its sign
};

bool Split(std::string_view text, char decimal, Parts& parts) {
  parts.whole = TakeDigits(text);
  if (text.starts_with(decimal)) {
    text.remove_prefix(1);
    parts.fraction = TakeDigits(text);
  }
  if (parts.whole.empty() && parts.fraction.empty()) return false;
  if (text.empty()) return true;
  if (text.front() != 'e' && text.front() != 'E') return false;
  text.remove_prefix(1);
  parts.exponent = text;
  TakeSign(text);
  return !TakeDigits(text).empty() && text.empty();
}

// Whether a number that does not fit a double is too small for it, not too large.
bool IsTiny(const Parts& parts) {
  std::string_view exponent = parts.exponent;
  if (exponent.starts_with('+')) exponent.remove_prefix(1);
  long long power = 0;
  const auto parsed = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
  if (parsed.ec == std::errc::result_out_of_range) return exponent.starts_with('-');
  const std::size_t inWhole = parts.whole.find_first_of("123456789");
  if (inWhole != std::string_view::npos) {
    return power < -static_cast<long long>(parts.whole.size() - inWhole);
  }
  return power < static_cast<long long>(parts.fraction.find_first_of("123456789"));
}

}  // namespace

bool ReadNumberField(std::string_view text, char decimal, double& value) {
  std::string_view number = WithoutBlanks(text);
  const bool negative = number.starts_with('-');
  TakeSign(number);
  Parts parts;
  if (!Split(number, decimal, parts)) return false;
  std::string pointed;
  if (decimal != '.') {
    pointed = number;
    std::replace(pointed.begin(), pointed.end(), decimal, '.');
    number = pointed;
  }
  double magnitude = 0.0;
  const auto parsed = std::from_chars(number.data(), number.data() + number.size(), magnitude);
  if (parsed.ec == std::errc::result_out_of_range) {
    if (!IsTiny(parts)) return false;
    magnitude = 0.0;
  }
  value = std::copysign(magnitude, negative ? -1.0 : 1.0);
  return true;
}

}  // namespace trovan::filters
