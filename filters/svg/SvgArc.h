// Arcs of ellipses as curves.
#pragma once

#include <corvel/Geometry.h>

#include "filters/svg/SvgOutline.h"

namespace trovan::filters {

// What the path command A gives besides the end of the arc.
struct SvgArc {
  double xRadius = 0.0;
  double yRadius = 0.0;
  double rotation = 0.0;  // of the x axis of the ellipse, in degrees
  bool isLarge = false;
  bool isSweep = false;  // toward growing angles
};

// Adds the arc between the points to the outline, which has come to `from`. A radius of 0 gives a
// straight line; radii that do not reach are enlarged until they do; nothing is added where the
// points are one.
void AddArc(const SvgArc& arc, const corvel::Vec2d& from, const corvel::Vec2d& to,
            SvgOutline& outline);

}  // namespace trovan::filters
