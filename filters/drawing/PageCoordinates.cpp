#include "PageCoordinates.h"

#include <charconv>
#include <cmath>

#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

constexpr int kSafeDigits = 15;  // every number of 15 digits survives the way through a double

}  // namespace

corvel::Mat3d PageCoordinates::ToPage(const corvel::Mat4d& matrix) const {
  const corvel::Vec2d moved = ToPage(corvel::Vec2d(matrix(3, 0), matrix(3, 1)));
  return {matrix(0, 0), -matrix(0, 1), -matrix(1, 0), matrix(1, 1), moved.x, moved.y};
}

void PageCoordinates::AppendPlace(std::string& text, double value) const {
  if (page_.decimals) return AppendRounded(text, value, *page_.decimals);
  AppendNumber(text, value == 0.0 ? 0.0 : value);
}

void PageCoordinates::AppendDerived(std::string& text, double value) const {
  if (page_.decimals) return AppendRounded(text, value, *page_.decimals);
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, value == 0.0 ? 0.0 : value,
                                 std::chars_format::general, kSafeDigits);
  text.append(digits, end.ptr);
}

void AppendRounded(std::string& text, double value, int decimals) {
  constexpr double kHasNoFractions = 1e15;
  if (std::fabs(value) >= kHasNoFractions) return AppendNumber(text, value);
  char digits[64];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  const char* last = end.ptr;
  if (decimals > 0) {
    while (last[-1] == '0') --last;
    if (last[-1] == '.') --last;
  }
  const std::string_view number(digits, static_cast<std::size_t>(last - digits));
  text += number == "-0" ? "0" : number;
}

}  // namespace trovan::filters
