#include "filters/lattice/Shading.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace trovan::filters {
namespace {

struct Colour {
  double red;
  double green;
  double blue;
};

// From deep water over lowland to snow; brightness rises all the way, so that the picture also
// tells in grey which value is higher.
constexpr std::array<Colour, 7> kRamp = {{{27, 42, 102},
                                          {35, 97, 140},
                                          {52, 145, 130},
                                          {110, 178, 104},
                                          {201, 202, 112},
                                          {233, 202, 160},
                                          {252, 249, 244}}};

Colour Mixed(const Colour& a, const Colour& b, double share) {
  return {a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share,
          a.blue + (b.blue - a.blue) * share};
}

// `place` from 0 to 1.
Colour RampColour(double place) {
  const double at = place * (kRamp.size() - 1);
  const auto index = std::min(static_cast<std::size_t>(at), kRamp.size() - 2);
  return Mixed(kRamp[index], kRamp[index + 1], at - static_cast<double>(index));
}

Colour Grey(double place) {
  const double level = 255.0 * place;
  return {level, level, level};
}

double PlaceInRange(double value, const ColourRange& range) {
  if (!(range.highest > range.lowest)) return 0.5;
  // Halved, so that a range as wide as all doubles does not overflow.
  const double width = range.highest / 2 - range.lowest / 2;
  return std::clamp((value / 2 - range.lowest / 2) / width, 0.0, 1.0);
}

// The value of a neighbour, or of the cell itself where there is none.
double Neighbour(const CellGrid& grid, std::size_t x, std::size_t y, int dx, int dy) {
  const auto column = static_cast<long long>(x) + dx;
  const auto row = static_cast<long long>(y) + dy;
  const double own = grid.At(x, y);
  if (column < 0 || row < 0 || column >= grid.width || row >= grid.height) return own;
  const double value = grid.At(static_cast<std::size_t>(column), static_cast<std::size_t>(row));
  return std::isnan(value) ? own : value;
}

// How much the values rise toward the light, which comes from the upper left: per cell.
double RiseTowardLight(const CellGrid& grid, std::size_t x, std::size_t y) {
  const double right = Neighbour(grid, x, y, 1, 0) / 2 - Neighbour(grid, x, y, -1, 0) / 2;
  const double down = Neighbour(grid, x, y, 0, 1) / 2 - Neighbour(grid, x, y, 0, -1) / 2;
  return -right / 2 - down / 2;
}

// The typical rise. Measured in it, light and shadow look alike whatever the units of the values
// and the distances of the nodes.
double TypicalRise(const CellGrid& grid) {
  double sum = 0.0;
  double count = 0.0;
  for (std::size_t y = 0; y < grid.height; ++y) {
    for (std::size_t x = 0; x < grid.width; ++x) {
      const double rise = std::abs(RiseTowardLight(grid, x, y));
      if (!std::isfinite(rise)) continue;
      sum += rise;
      ++count;
    }
  }
  return count > 0 ? sum / count : 0.0;
}

// A slope that falls toward the light is lit: towards white by up to a third; one that falls away
// lies in the shadow, darker by up to half.
Colour Lit(const Colour& colour, double light) {
  constexpr Colour kWhite = {255, 255, 255};
  constexpr Colour kShadow = {24, 28, 48};
  const double strength = std::tanh(light / 2.5);
  return strength > 0 ? Mixed(colour, kWhite, strength / 3) : Mixed(colour, kShadow, -strength / 2);
}

std::uint8_t ToByte(double level) {
  return static_cast<std::uint8_t>(std::clamp(level + 0.5, 0.0, 255.0));
}

}  // namespace

ColourRange RangeOf(const CellGrid& grid) {
  ColourRange range;
  bool any = false;
  for (const double value : grid.values) {
    if (std::isnan(value)) continue;
    range.lowest = any ? std::min(range.lowest, value) : value;
    range.highest = any ? std::max(range.highest, value) : value;
    any = true;
  }
  return range;
}

Picture Shaded(const CellGrid& grid, const ColourRange& range, PreviewStyle style) {
  Picture picture{grid.width, grid.height, {}};
  picture.pixels.reserve(grid.values.size() * 4);
  const double typical = style == PreviewStyle::kRelief ? TypicalRise(grid) : 0.0;
  for (std::size_t y = 0; y < grid.height; ++y) {
    for (std::size_t x = 0; x < grid.width; ++x) {
      const double value = grid.At(x, y);
      if (std::isnan(value)) {
        picture.pixels.insert(picture.pixels.end(), 4, 0);
        continue;
      }
      const double place = PlaceInRange(value, range);
      Colour colour = style == PreviewStyle::kGrey ? Grey(place) : RampColour(place);
      // Values fall away from the light where they rise toward it.
      if (typical > 0.0) colour = Lit(colour, -RiseTowardLight(grid, x, y) / typical);
      for (const double level : {colour.red, colour.green, colour.blue, 255.0}) {
        picture.pixels.push_back(ToByte(level));
      }
    }
  }
  return picture;
}

}  // namespace trovan::filters
