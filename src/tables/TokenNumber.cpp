#include "TokenNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>

#include <corvel/SystemInfo.h>

namespace trovan {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Whether a number that starts so is read alike by from_chars and by strtod, which also takes a
// plus sign, blanks in front, hexadecimal digits, and words such as "nan(7)".
bool IsPlainDecimal(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && IsDigit(text[0]) && !text.starts_with("0x") && !text.starts_with("0X");
}

// Whether the processor rounds to the nearest. Asking it for its mode (fegetround) takes longer
// than to see what it does.
bool RoundsToNearest() {
  volatile double hidden = std::numeric_limits<double>::min();  // from the compiler
  const double tiny = hidden;
  return 1.0 + tiny == 1.0 - tiny;
}

}  // namespace

bool ReadNumber(const char* text, std::size_t, int& value) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  if (end == text) return false;
  value = static_cast<int>(
      std::clamp<long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
  return true;
}

// from_chars is several times as fast as strtod and rounds alike, to the nearest. It knows no
// locale, and gives no value for what is too large or too small.
std::size_t ReadPlainNumber(const char* text, std::size_t size, double& value) {
  const bool readsAlike =
      IsPlainDecimal({text, size}) && corvel::LocaleDecimalIsPoint() && RoundsToNearest();
  if (!readsAlike) return 0;
  const auto parsed = std::from_chars(text, text + size, value);
  return parsed.ec == std::errc() ? static_cast<std::size_t>(parsed.ptr - text) : 0;
}

bool ReadNumber(const char* text, std::size_t length, double& value) {
  if (ReadPlainNumber(text, length, value) > 0) return true;
  char* end = nullptr;
  const double number = std::strtod(text, &end);
  if (end == text) return false;
  value = number;
  return true;
}

}  // namespace trovan
