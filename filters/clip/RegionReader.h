// The region to which a drawing is to be clipped, as a person gives it.
#pragma once

#include <string>

#include <corvel/Progress.h>
#include <tarnis/Polygon2.h>

#include "filters/support/Problems.h"

namespace trovan::filters {

// `argument` is one of
// - a box "xmin,ymin,xmax,ymax",
// - a POLYGON or MULTIPOLYGON as well-known text,
// - the name of a file: a drawing (SVG, GeoJSON), whose filled areas are united; a shapefile, whose
//   first polygon counts; or well-known text.
// The coordinates are those that stand there; what is within more than one area of a MULTIPOLYGON
// is inside, too. `remarks`, which may be null, gets what could not be taken over of a drawing as
// it is.
//
// Raises FilterError when it is none of these, or the region has no area, and quillon::AbortError
// when `progress`, which may be null, asks to stop.
tarnis::Polygon2 ReadRegion(const std::wstring& argument, corvel::IProgress* progress,
                            Problems* remarks = nullptr);

}  // namespace trovan::filters
