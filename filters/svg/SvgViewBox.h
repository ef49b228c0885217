// How the content of an element is fitted into the space that it gets.
#pragma once

#include <optional>
#include <string_view>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

namespace trovan::filters {

// The box of the attribute "viewBox"; its width and height may be 0, which hides the content.
// Nothing where the text is no such box.
std::optional<corvel::Box2d> ParseViewBox(std::string_view text);

// The attribute "preserveAspectRatio".
struct AspectRatio {
  double xAlign = 0.5;    // 0: to the left, 1: to the right
  double yAlign = 0.5;    // 0: to the top
  bool isKept = true;     // false: stretched along each axis by itself
  bool isSliced = false;  // covers the space, instead of lying within it
};

// "xMidYMid meet" where the text is none.
AspectRatio ParseAspectRatio(std::string_view text);

// The map of the box onto the space.
// REQUIRES: the box has a width and a height above 0.
corvel::Mat3d FitInto(const corvel::Box2d& box, const corvel::Box2d& space,
                      const AspectRatio& ratio);

}  // namespace trovan::filters
