// Dashed lines.
#pragma once

#include <optional>
#include <vector>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

#include "filters/svg/SvgOutline.h"

namespace trovan::filters {

// What shows by its caps alone gets this length, in units of the drawing, so that its direction is
// known. It cannot be seen, and yet is more than what renderers round to nothing: 1/256 pixel in
// some, also where the drawing is shown at a small part of its size.
inline constexpr double kDotLength = 1.0 / 16;

struct SvgDashes {
  std::vector<double> lengths;  // of dashes and gaps in turn, in user units; sum above 0
  double offset = 0.0;          // where in the pattern a line starts
};

// The dashes of a line of the drawing, in the order of travel; one that a closed line ends and
// starts with goes through its start. Lengths are measured in the user space from which `map` leads
// to the drawing. A dash without length gets kDotLength.
//
// Nothing where there would be more than `most` dashes, or the map has no inverse.
std::optional<std::vector<std::vector<corvel::Vec2d>>> CutIntoDashes(const FlatLine& line,
                                                                     const SvgDashes& dashes,
                                                                     const corvel::Mat3d& map,
                                                                     std::size_t most);

}  // namespace trovan::filters
