// Several areas as one.
#pragma once

#include <vector>

#include <tarnis/Polygon2.h>

namespace trovan::filters {

// What is inside one of the areas at least, each under the even-odd rule. One alone stays as it is,
// corner by corner; of several the rings do not cross.
tarnis::Polygon2 UniteAreas(std::vector<tarnis::Polygon2> areas);

}  // namespace trovan::filters
