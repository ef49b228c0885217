// Drawing objects as texts, so that a test can tell what it expects in one line each.
#pragma once

#include <string>
#include <vector>

#include <quillon/TrBase.h>

namespace trovan::test {

// The class, all that the object holds, and its parameters:
//
//   "TrPolygon 0 0 0, 4 0 0, 4 4 0 (3) layer=roads"
//   "TrPen 2 00000000 0"
std::string TextOf(const quillon::TrBase& object);

// The same, but the rings of a polygon start at their least point, and the ring whose least point
// is less comes first: where clipping starts its rings is its own affair.
std::string TextOfArea(const quillon::TrBase& object);

}  // namespace trovan::test
