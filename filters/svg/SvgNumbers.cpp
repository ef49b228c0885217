#include "SvgNumbers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "SvgScanner.h"

namespace trovan::filters {
namespace {

constexpr double kPixelsPerInch = 96.0;

struct UnitName {
  std::string_view name;
  LengthUnit unit;
  double factor;
};

constexpr UnitName kUnits[] = {
    {"", LengthUnit::kPixel, 1.0},
    {"px", LengthUnit::kPixel, 1.0},
    {"pt", LengthUnit::kPixel, kPixelsPerInch / 72.0},
    {"pc", LengthUnit::kPixel, kPixelsPerInch / 6.0},
    {"mm", LengthUnit::kPixel, kPixelsPerInch / 25.4},
    {"cm", LengthUnit::kPixel, kPixelsPerInch / 2.54},
    {"Q", LengthUnit::kPixel, kPixelsPerInch / 101.6},
    {"in", LengthUnit::kPixel, kPixelsPerInch},
    {"%", LengthUnit::kPercent, 1.0},
    {"em", LengthUnit::kEm, 1.0},
    {"ex", LengthUnit::kEm, 0.5},
    {"rem", LengthUnit::kRootEm, 1.0},
    {"vw", LengthUnit::kViewportWidth, 1.0},
    {"vh", LengthUnit::kViewportHeight, 1.0},
};

double Extent(const corvel::Vec2d& viewport, Axis axis) {
  if (axis == Axis::kHorizontal) return viewport.x;
  if (axis == Axis::kVertical) return viewport.y;
  return std::hypot(viewport.x, viewport.y) / std::numbers::sqrt2;
}

}  // namespace

std::vector<double> ParseNumbers(std::string_view text, bool* isWhole) {
  std::vector<double> numbers;
  SvgScanner scanner(text);
  scanner.SkipSpace();
  double number = 0.0;
  bool comma = false;
  while (scanner.ReadNumber(number)) {
    numbers.push_back(number);
    comma = scanner.SkipComma();
  }
  if (isWhole != nullptr) *isWhole = scanner.AtEnd() && !comma;
  return numbers;
}

std::optional<double> ParseSvgNumber(std::string_view text) {
  SvgScanner scanner(TrimSpace(text));
  double number = 0.0;
  if (!scanner.ReadNumber(number) || !scanner.AtEnd() || !std::isfinite(number)) return {};
  return number;
}

std::optional<double> ParseOpacity(std::string_view text) {
  text = TrimSpace(text);
  const bool isPercentage = text.ends_with('%');
  if (isPercentage) text.remove_suffix(1);
  const auto number = ParseSvgNumber(text);
  if (!number) return {};
  return std::clamp(isPercentage ? *number / 100.0 : *number, 0.0, 1.0);
}

std::optional<SvgLength> ParseLength(std::string_view text) {
  SvgScanner scanner(TrimSpace(text));
  double number = 0.0;
  if (!scanner.ReadNumber(number)) return {};
  for (const UnitName& unit : kUnits) {
    if (!EqualsIgnoringCase(scanner.Rest(), unit.name)) continue;
    const double value = number * unit.factor;
    if (!std::isfinite(value)) return {};
    return SvgLength{value, unit.unit};
  }
  return {};
}

double InPixels(const SvgLength& length, const LengthBasis& basis, Axis axis) {
  switch (length.unit) {
    case LengthUnit::kPixel:
      return length.value;
    case LengthUnit::kPercent:
      return length.value / 100.0 * Extent(basis.viewport, axis);
    case LengthUnit::kEm:
      return length.value * basis.fontSize;
    case LengthUnit::kRootEm:
      return length.value * basis.rootFontSize;
    case LengthUnit::kViewportWidth:
      return length.value / 100.0 * basis.viewport.x;
    case LengthUnit::kViewportHeight:
      return length.value / 100.0 * basis.viewport.y;
  }
  return length.value;
}

}  // namespace trovan::filters
