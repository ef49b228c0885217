// What the filters of maps have in common: features become objects of a drawing.
#pragma once

#include <corvel/ParamList.h>

#include "filters/drawing/DrawingFilter.h"
#include "filters/geometry/Geometry.h"

namespace trovan::filters {

// The files do not say how a map looks: areas are filled lightly, and everything is drawn with thin
// dark lines.
class MapFilter : public DrawingFilter {
 public:
  // Whether the attributes of features go with their objects, as parameters. At first they do not.
  void SetKeepAttributes(bool keeps) { keepsAttributes_ = keeps; }

 protected:
  using DrawingFilter::DrawingFilter;

  bool KeepsAttributes() const { return keepsAttributes_; }

  // Sends the pen and the brush of all features.
  void SendStyle();

  // Sends a set of markers, a line for each part, or a polygon with all rings; nothing when there
  // are no points.
  void SendGeometry(Geometry geometry, const corvel::CParamList& attributes);

 private:
  void SendLines(const Geometry& geometry, const corvel::CParamList& attributes);

  bool keepsAttributes_ = false;
};

}  // namespace trovan::filters
