#include "SvgFontStyle.h"

#include <cmath>

#include "SvgScanner.h"

namespace trovan::filters {
namespace {

struct NamedSize {
  std::string_view name;
  double pixels;
};

constexpr NamedSize kSizes[] = {
    {"xx-small", 9.0}, {"x-small", 10.0}, {"small", 13.0},    {"medium", 16.0},
    {"large", 18.0},   {"x-large", 24.0}, {"xx-large", 32.0},
};

constexpr double kStep = 1.2;  // from one named size to the next

}  // namespace

std::optional<double> ParseFontSize(std::string_view text, double parentSize,
                                    const LengthBasis& basis) {
  for (const NamedSize& size : kSizes) {
    if (size.name == text) return size.pixels;
  }
  if (text == "larger") return parentSize * kStep;
  if (text == "smaller") return parentSize / kStep;
  const auto length = ParseLength(text);
  if (!length || length->value < 0.0) return {};
  if (length->unit == LengthUnit::kPercent) return length->value / 100.0 * parentSize;
  LengthBasis parent = basis;
  parent.fontSize = parentSize;
  return InPixels(*length, parent, Axis::kDiagonal);
}

std::optional<int> ParseFontWeight(std::string_view text, int parentWeight) {
  if (text == "normal") return 400;
  if (text == "bold") return 700;
  if (text == "bolder") return parentWeight < 350 ? 400 : parentWeight < 550 ? 700 : 900;
  if (text == "lighter") return parentWeight < 550 ? 100 : parentWeight < 750 ? 400 : 700;
  const auto number = ParseSvgNumber(text);
  if (!number || *number < 1.0 || *number > 1000.0) return {};
  return static_cast<int>(std::lround(*number));
}

std::optional<FontShorthand> ParseFontShorthand(std::string_view text, double parentSize,
                                                const LengthBasis& basis) {
  FontShorthand font;
  SvgScanner scanner(text);
  for (scanner.SkipSpace(); !scanner.AtEnd(); scanner.SkipSpace()) {
    const std::string_view word = scanner.ReadUntil(" \t\n\r\f");
    // A bare number is a weight: sizes have units.
    if (word == "italic" || word == "oblique") {
      font.isItalic = true;
    } else if (const auto weight = ParseFontWeight(word, 400); weight && word != "normal") {
      font.weight = *weight;
    } else if (const auto size = ParseFontSize(word.substr(0, word.find('/')), parentSize, basis)) {
      font.size = *size;
      font.family = std::string(TrimSpace(scanner.Rest()));
      if (font.family.empty()) return {};
      return font;
    }
  }
  return {};
}

std::string FirstFamily(std::string_view list) {
  list = TrimSpace(list);
  if (!list.empty() && (list.front() == '"' || list.front() == '\'')) {
    const std::size_t end = list.find(list.front(), 1);
    return std::string(TrimSpace(list.substr(1, end == std::string_view::npos ? end : end - 1)));
  }
  return std::string(TrimSpace(list.substr(0, list.find(','))));
}

}  // namespace trovan::filters
