#include "TokenNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <system_error>

#include <corvel/SystemInfo.h>

namespace trovan {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Whether a number that starts so is read alike by from_chars and by strtod, which also takes a
// plus sign, blanks in front, hexadecimal digits, and words such as "nan(7)".
bool IsPlainDecimal(const char* text) {
  if (*text == '-') ++text;
  if (*text == '.') return IsDigit(text[1]);
  return IsDigit(*text) && !(*text == '0' && (text[1] == 'x' || text[1] == 'X'));
}

// Whether the processor rounds to the nearest. Asking it for its mode (fegetround) takes longer than
// to see what it does.
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
bool ReadNumber(const char* text, std::size_t length, double& value) {
  if (IsPlainDecimal(text) && corvel::LocaleDecimalIsPoint() && RoundsToNearest()) {
    const auto parsed = std::from_chars(text, text + length, value);
    if (parsed.ec == std::errc()) return true;
  }
  char* end = nullptr;
  const double number = std::strtod(text, &end);
  if (end == text) return false;
  value = number;
  return true;
}

}  // namespace trovan
