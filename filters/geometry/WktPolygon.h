// Areas as well-known text (Open Geospatial Consortium, "Simple Feature Access, part 1", 06-103r4).
//
//   ParseWktPolygon("POLYGON ((0 0, 4 0, 4 4, 0 0), (2 1, 3 1, 3 2, 2 1))");  // one, with a hole
#pragma once

#include <string_view>
#include <vector>

#include <tarnis/Polygon2.h>

namespace trovan::filters {

// Whether the first word of the text is that of an area, whatever follows: POLYGON or MULTIPOLYGON,
// with or without letters for heights and measures.
bool LooksLikeWktPolygon(std::string_view text);

// The polygons of a POLYGON (one) or a MULTIPOLYGON, without their heights and measures; none for
// EMPTY ones. Words may be in any case of letters, and rings need not be closed.
//
// Raises FilterError for anything else, with the column (in bytes, from 1 on) in the message.
std::vector<tarnis::Polygon2> ParseWktPolygon(std::string_view text);

}  // namespace trovan::filters
