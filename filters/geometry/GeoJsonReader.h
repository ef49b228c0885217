// Reads GeoJSON (RFC 7946) feature by feature.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <corvel/ParamList.h>

#include "filters/geometry/ByteSource.h"
#include "filters/geometry/Geometry.h"

namespace trovan::filters {

struct GeoJsonFeature {
  std::vector<Geometry> geometries;  // several in a GeometryCollection; none: it has no place
  corvel::CParamList properties;     // its identifier among them, as "id"
};

// Calls `take` for each feature of the text in order: a collection of features, a feature, or a
// geometry, which counts as a feature without properties. No more than one feature is in memory.
//
// Members of objects may come in any order; those that the format does not know are passed over.
// Without `withProperties` the features have none.
//
// Raises FilterError when the text is no JSON, or no GeoJSON; the message tells the byte, counted
// from 1, near which that was seen. Objects and arrays may be nested 100 deep.
void ReadGeoJson(ByteSource& source, bool withProperties,
                 const std::function<void(GeoJsonFeature&)>& take);

}  // namespace trovan::filters
