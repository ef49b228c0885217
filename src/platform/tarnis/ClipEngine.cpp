#include "ClipEngine.h"

#include <polyclipping/clipper.hpp>

#include "IntegerGrid.h"
#include "RingList.h"

namespace tarnis {

using ClipperLib::Clipper;
using ClipperLib::PolyFillType;
using corvel::Box2d;
using corvel::Vec2d;

namespace {

// One run of the engine: rings put on a grid, clipped there, and taken back.
class Run {
 public:
  explicit Run(const Box2d& box) : grid_(box), vertices_(grid_) {}

  void Add(const Polygon2& polygon, ClipperLib::PolyType type) {
    vertices_.Add(polygon);
    const Vec2d* point = polygon.Points().data();
    for (const unsigned int count : polygon.Counts()) {
      ClipperLib::Path path;
      path.reserve(count);
      for (const Vec2d* end = point + count; point != end; ++point) {
        const IntegerGrid::Point p = grid_.Nearest(*point);
        path.emplace_back(p.x, p.y);
      }
      // False where nothing is left of a ring without area, which is nothing to clip either.
      clipper_.AddPath(path, type, true);
    }
  }

  Polygon2 Execute(ClipperLib::ClipType operation, PolyFillType rule) {
    ClipperLib::Paths paths;
    clipper_.Execute(operation, paths, rule, rule);
    vertices_.Sort();
    RingList rings;
    for (const ClipperLib::Path& path : paths) {
      for (const ClipperLib::IntPoint& p : path) rings.AddPoint(vertices_.At({p.X, p.Y}));
      rings.EndRing();
    }
    return rings.Take();
  }

 private:
  IntegerGrid grid_;
  GridVertices vertices_;
  Clipper clipper_;
};

}  // namespace

Polygon2 Intersection(const Polygon2& one, const Polygon2& other) {
  Box2d box = GetBoundingBox(one);
  box |= GetBoundingBox(other);
  Run run(box);
  run.Add(one, ClipperLib::ptSubject);
  run.Add(other, ClipperLib::ptClip);
  return run.Execute(ClipperLib::ctIntersection, ClipperLib::pftEvenOdd);
}

Polygon2 Resolved(const Polygon2& rings, FillRule rule) {
  Run run(GetBoundingBox(rings));
  run.Add(rings, ClipperLib::ptSubject);
  return run.Execute(ClipperLib::ctUnion,
                     rule == FillRule::kNonZero ? ClipperLib::pftNonZero : ClipperLib::pftEvenOdd);
}

}  // namespace tarnis
