#include <tarnis/FillRule.h>

#include "ClipEngine.h"

namespace tarnis {

Polygon2 ResolveRings(const Polygon2& rings, FillRule rule) { return Resolved(rings, rule); }

}  // namespace tarnis
