// Where a drawing stands on the page of an SVG document.
#pragma once

#include <optional>
#include <string>

#include <corvel/Geometry.h>

namespace trovan::filters {

// The axes of the drawing have y up, those of the page y down. A point (x, y) of the drawing is at
// ((x - origin.x) / scale, (origin.y - y) / scale) of the page, in its user units.
struct SvgPage {
  corvel::Box2d viewBox{0, 0, 0, 0};  // in user units, y down: what the page shows
  std::string width;                  // as the document says it ("210mm"); empty: it does not
  std::string height;
  // "preserveAspectRatio" as the document says it, of a view box and a size of other proportions;
  // empty: it does not.
  std::string aspectRatio;
  double scale = 1.0;    // units of the drawing for a user unit; powers of two lose no bit
  corvel::Vec2d origin;  // in units of the drawing
  // Digits behind the point of each coordinate; nothing: so many that it reads back as the same.
  std::optional<int> decimals;
};

// The page for a map of this extent: 1000 user units wide or high, whichever the map is more, with
// a narrow margin; coordinates to a thousandth. An extent without width or height is fine; the
// empty box gives an empty page.
//
// Raises FilterError when the extent reaches beyond 1e300 in any direction.
SvgPage MapPage(const corvel::Box2d& extent);

}  // namespace trovan::filters
