// Where edges of a region lie on one another.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "RegionIndex.h"

namespace tarnis {

// Whether a part of the given edges that `isMet` bounds the region. Where edges lie on one another
// in an even number, both sides are alike, and nothing is bounded.
//
// `isMet` tells of a part of an edge, which is given by corners of the region, whether any of it
// counts.
bool HasOddEdge(const RegionIndex& index, const std::vector<std::uint32_t>& edges,
                const std::function<bool(const Edge&)>& isMet);

}  // namespace tarnis
