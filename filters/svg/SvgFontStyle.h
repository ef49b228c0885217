// The values of the properties of fonts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "filters/svg/SvgNumbers.h"

namespace trovan::filters {

// A length, a percentage of the parent's size, or a word such as "small" or "larger". In pixels, 0
// or more; nothing where the text is none of these.
std::optional<double> ParseFontSize(std::string_view text, double parentSize,
                                    const LengthBasis& basis);

// 1 to 1000, "normal", "bold", "bolder" or "lighter" than the parent's.
std::optional<int> ParseFontWeight(std::string_view text, int parentWeight);

struct FontShorthand {
  double size = 16.0;
  int weight = 400;
  bool isItalic = false;
  std::string family;
};

// The property "font". Nothing where there is no size and family.
std::optional<FontShorthand> ParseFontShorthand(std::string_view text, double parentSize,
                                                const LengthBasis& basis);

// The first family of a list, without quotes.
std::string FirstFamily(std::string_view list);

}  // namespace trovan::filters
