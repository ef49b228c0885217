// The basic shapes and the path: elements as outlines.
#pragma once

#include <optional>
#include <string>

#include <pugixml.hpp>
#include <corvel/Geometry.h>

#include "filters/svg/SvgNumbers.h"
#include "filters/svg/SvgOutline.h"

namespace trovan::filters {

struct SvgShape {
  enum class Kind {
    kRectangle,  // `box` and radii; the outline is the same
    kEllipse,    // `box`
    kLine,       // nothing to fill
    kOther,
  };

  Kind kind = Kind::kOther;
  SvgOutline outline;  // empty: nothing is drawn
  corvel::Box2d box;
  double xRadius = 0.0;
  double yRadius = 0.0;
  std::string fault;  // what of the element could not be read, in words; empty: nothing
};

// The element as a shape in its own user space; nothing if it is no shape.
std::optional<SvgShape> MakeShape(const pugi::xml_node& node, const LengthBasis& basis);

}  // namespace trovan::filters
