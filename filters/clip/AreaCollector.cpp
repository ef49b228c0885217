#include "AreaCollector.h"

#include <cstddef>
#include <utility>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrRectangle.h>
#include <velum/Path.h>

namespace trovan::filters {
namespace {

using corvel::Order;
using corvel::Vec2d;
using tarnis::Polygon2;

// As curves are flattened when they are clipped.
constexpr double kTolerance = 0.25;  // units of the drawing
constexpr int kDepth = 10;

Polygon2 AreaOf(const quillon::TrPolygon& polygon) {
  std::vector<Vec2d> points;
  points.reserve(polygon.Points().size());
  for (const corvel::Vec3d& point : polygon.Points()) points.emplace_back(point.x, point.y);
  std::vector<unsigned int> counts = polygon.Counts();
  if (counts.empty()) counts.push_back(static_cast<unsigned int>(points.size()));
  return {std::move(points), std::move(counts)};
}

Polygon2 AreaOf(const quillon::TrRectangle& rectangle) {
  velum::Path path(velum::FillMode::kEvenOdd);
  path.AddRoundRect(rectangle.Box(), rectangle.XRadius(), rectangle.YRadius());
  return path.GetFlatPolygon(kTolerance, kDepth);
}

Polygon2 AreaOf(const quillon::TrEllipse& ellipse) {
  velum::Path path(velum::FillMode::kEvenOdd);
  path.AddEllipse(ellipse.Box());
  const Vec2d center = ellipse.Box().Center();
  corvel::Mat4d turned;
  turned.Translate(-center.x, -center.y, 0.0, Order::kAppend);
  turned.RotateZ(ellipse.Angle(), Order::kAppend);
  turned.Translate(center.x, center.y, 0.0, Order::kAppend);
  path.Transform(turned);
  return path.GetFlatPolygon(kTolerance, kDepth);
}

}  // namespace

void AreaCollector::ImportObject(quillon::TrBase& object) {
  object.AssertValid();
  if (const auto* brush = dynamic_cast<const quillon::TrBrush*>(&object)) brush_ = *brush;
  if (!brush_.Fills() || brush_.Color().alpha == 0) return;
  if (const auto* polygon = dynamic_cast<const quillon::TrPolygon*>(&object)) {
    areas_.push_back(AreaOf(*polygon));
  } else if (const auto* rectangle = dynamic_cast<const quillon::TrRectangle*>(&object)) {
    areas_.push_back(AreaOf(*rectangle));
  } else if (const auto* ellipse = dynamic_cast<const quillon::TrEllipse*>(&object)) {
    areas_.push_back(AreaOf(*ellipse));
  }
}

}  // namespace trovan::filters
