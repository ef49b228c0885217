// Clips a drawing to a region, and draws what remains as SVG.
#pragma once

#include <optional>
#include <string>

#include <corvel/Geometry.h>
#include <corvel/Progress.h>
#include <tarnis/Polygon2.h>

#include "filters/clip/DrawingFormats.h"
#include "filters/drawing/ClipStatistics.h"
#include "filters/support/ByteSink.h"
#include "filters/support/Problems.h"

namespace trovan::filters {

// What a drawing and a region cover, in the coordinates of the drawing's file.
struct Extents {
  corvel::Box2d drawing;
  corvel::Box2d region;
};

struct DrawingClipResult {
  ClipStatistics statistics;
  // In words: what was not read, what is odd or only nearly as it was, and what SVG cannot hold.
  Problems losses;
  Problems remarks;
  Problems unwritten;
  // Set where the drawing has objects, and none of them lies in the region even in part.
  std::optional<Extents> apart;
};

// Reads the drawing at `path` and writes what lies within the region, whose coordinates are those
// of the file. `progress` may be null.
//
// Raises FilterError when the drawing cannot be read, quillon::AbortError when `progress` asks to
// stop, and what the sink raises; the output is then incomplete.
DrawingClipResult ClipDrawing(const std::wstring& path, const DrawingOptions& options,
                              const tarnis::Polygon2& region, ByteSink& sink,
                              corvel::IProgress* progress);

}  // namespace trovan::filters
