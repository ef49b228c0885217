// Where the boundaries of two polygons cross.
#pragma once

#include <cstdint>
#include <vector>

#include <corvel/Geometry.h>

#include "EdgeRings.h"
#include "RegionIndex.h"

namespace tarnis {

struct Crossing {
  corvel::Vec2d point;
  std::uint32_t edges[2];  // of the one and of the other polygon
  double shares[2];        // how far along those edges, from 0 to 1
  int turn;                // 1: the first edge goes to the left of the second one; -1: to the right
};

// Finds all crossings of the edges of `subject` with those of `region`, `near` of which lie near
// the subject. Returns false if any edges meet otherwise; what was found then means nothing.
bool FindCrossings(const EdgeRings& subject, const RegionIndex& region,
                   const std::vector<std::uint32_t>& near, std::vector<Crossing>& crossings);

}  // namespace tarnis
