// Numbers and lengths as SVG writes them.
//
//   ParseNumbers("0,0 10-5.5.5");       // 0, 0, 10, -5.5, 0.5
//   const auto width = ParseLength("50%");
//   InPixels(*width, basis, Axis::kHorizontal);  // half the width of the viewport
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <corvel/Geometry.h>

namespace trovan::filters {

// Numbers between spaces or single commas, as many as can be read; `isWhole` (unless null) tells
// whether that were all.
std::vector<double> ParseNumbers(std::string_view text, bool* isWhole = nullptr);

// The whole text as a number, space around it allowed. Nothing if it is none, or not finite.
std::optional<double> ParseSvgNumber(std::string_view text);

// A number between 0 and 1, or a percentage; what lies beyond is cut to that.
std::optional<double> ParseOpacity(std::string_view text);

enum class LengthUnit {
  kPixel,           // also what is given in in, cm, mm, Q, pt and pc, at 96 pixels an inch
  kPercent,         // of the viewport
  kEm,              // times the size of the font
  kRootEm,          // times that of the root element
  kViewportWidth,   // hundredths of it
  kViewportHeight,  // hundredths of it
};

struct SvgLength {
  double value = 0.0;
  LengthUnit unit = LengthUnit::kPixel;

  friend bool operator==(const SvgLength&, const SvgLength&) = default;
};

// The whole text as a length. Nothing if it is none, or not finite. An "ex" counts as half an "em".
std::optional<SvgLength> ParseLength(std::string_view text);

// What relative lengths are relative to, in pixels (user units).
struct LengthBasis {
  corvel::Vec2d viewport{100.0, 100.0};
  double fontSize = 16.0;
  double rootFontSize = 16.0;
};

// The extent of the viewport that percentages are of. The diagonal one is its length divided by the
// square root of 2.
enum class Axis { kHorizontal, kVertical, kDiagonal };

double InPixels(const SvgLength& length, const LengthBasis& basis, Axis axis);

}  // namespace trovan::filters
