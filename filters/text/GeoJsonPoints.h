// Points as a GeoJSON collection of features (RFC 7946), written piece by piece.
//
//   GeoJsonPoints points(sink, {"NAME"});
//   points.BeginPoint({10.75, 59.91}).Text("Oslo");
//   points.EndPoint();
//   points.End();
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "filters/support/JsonObject.h"
#include "filters/support/OutputBuffer.h"

namespace trovan::filters {

class GeoJsonPoints {
 public:
  // `properties` are the names of what comes with each point; for `firstBeyond` see JsonObject.
  // `sink` outlives the object.
  GeoJsonPoints(ByteSink& sink, const std::vector<std::string>& properties,
                std::size_t firstBeyond = 0);

  // Begins a feature. `coordinates` are x, y and perhaps z, finite; none: the feature has no
  // geometry. They are written so that they read back as the same numbers. The result takes the
  // properties.
  JsonObject& BeginPoint(std::span<const double> coordinates);
  void EndPoint();

  void End();

 private:
  OutputBuffer out_;
  JsonObject properties_;
  std::string text_;
  bool any_ = false;
};

}  // namespace trovan::filters
