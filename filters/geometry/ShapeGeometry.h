// What a record of a shapefile holds (ESRI, "ESRI Shapefile Technical Description", 1998).
#pragma once

#include <span>
#include <string>

#include "filters/geometry/Geometry.h"
#include "filters/geometry/ShapeFile.h"

namespace trovan::filters {

struct Shape {
  ShapeType type = ShapeType::kNull;
  Geometry geometry;   // without points: a null shape, an empty one, or one with a fault
  std::string fault;   // why it could not be taken; empty: nothing
  std::string remark;  // what is odd about one that could; empty: nothing
};

// Decodes the content of a record: its type word and all that follows. Measures are passed over, as
// are bytes behind what the type needs. Where heights are missing, they are 0.
Shape DecodeShape(std::span<const unsigned char> content);

}  // namespace trovan::filters
