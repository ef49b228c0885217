// The areas that a drawing fills, as one region.
#pragma once

#include <vector>

#include <quillon/IoManager.h>
#include <quillon/TrBrush.h>
#include <tarnis/Polygon2.h>

#include "filters/drawing/AreaUnion.h"

namespace trovan::filters {

// Takes the polygons, rectangles and ellipses that are filled. Lines, markers, texts and pictures
// fill nothing.
class AreaCollector : public quillon::IoManager {
 public:
  // Raises quillon::InvalidObject when the object contradicts itself.
  void ImportObject(quillon::TrBase& object) override;

  bool IsEmpty() const { return areas_.empty(); }

  // All of them, united.
  tarnis::Polygon2 Region() const { return UniteAreas(areas_); }

 private:
  quillon::TrBrush brush_;
  std::vector<tarnis::Polygon2> areas_;
};

}  // namespace trovan::filters
