// The part of a region near a place, so that a small thing is not compared with all of a large
// region.
#pragma once

#include <corvel/Geometry.h>

#include <tarnis/Polygon2.h>

#include "RegionIndex.h"

namespace tarnis {

// Inside the box the same area as the region, under the even-odd rule; outside the box nothing
// further away than a sixteenth of its size.
//
// REQUIRES: the box has an area.
Polygon2 RegionPartAround(const RegionIndex& index, const corvel::Box2d& box);

}  // namespace tarnis
