// Whether a region encloses anything.
#pragma once

#include <tarnis/Polygon2.h>

namespace trovan::filters {

// Whether the rings have an area under the even-odd rule. Takes time in proportion to the points,
// but for regions that are hardly wider than a line.
bool HasArea(const tarnis::Polygon2& region);

}  // namespace trovan::filters
