// Shapes that meet the clip region: which pass whole, and which are clipped as lines or areas.
#include <corvel/Matrix.h>
#include <tarnis/Polygon2.h>
#include <trovan/IoClippedImportFilter.h>

#include "BoxPolygon.h"
#include "FlatPoints.h"

namespace trovan {

using corvel::Mat4d;
using corvel::Order;
using corvel::Vec2d;
using corvel::Vec3d;
using quillon::TrEllipse;
using quillon::TrMarkerSet;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using velum::FillMode;
using velum::Path;

namespace {

Path OutlineOf(const TrRectangle& rectangle) {
  Path path(FillMode::kEvenOdd);
  if (rectangle.XRadius() == 0.0 && rectangle.YRadius() == 0.0) {
    path.AddRect(rectangle.Box());
  } else {
    path.AddRoundRect(rectangle.Box(), rectangle.XRadius(), rectangle.YRadius());
  }
  return path;
}

Path OutlineOf(const TrEllipse& ellipse) {
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(ellipse.Box());
  const Vec2d center = ellipse.Box().Center();
  Mat4d turn;
  turn.Translate(-center.x, -center.y, 0.0, Order::kAppend);
  turn.RotateZ(ellipse.Angle(), Order::kAppend);
  turn.Translate(center.x, center.y, 0.0, Order::kAppend);
  path.Transform(turn);
  return path;
}

}  // namespace

void IoClippedImportFilter::ImportPolyline(TrPolyline& polyline) {
  polyline.AssertValid();
  if (polyline.Points().empty()) return IoImportFilter::ImportObject(polyline);
  const std::vector<Vec2d> points = Flat(polyline.Points());
  ClipAndPass2DPolyline(points.data(), points.size(), polyline.Params());
}

void IoClippedImportFilter::ImportPolygon(TrPolygon& polygon) {
  polygon.AssertValid();
  if (polygon.Points().empty()) return IoImportFilter::ImportObject(polygon);
  ClipAndPass2DPolygon(Flat(polygon.Points()),
                       RingCounts(polygon.Counts(), polygon.Points().size()), polygon.Params());
}

// Deliberate: a plain rectangle is looked at twice, with the same result.
void IoClippedImportFilter::ImportRectangle(TrRectangle& rectangle) {
  rectangle.AssertValid();
  if (Holds(clipPolygon_, rectangle.Box())) return IoImportFilter::ImportObject(rectangle);
  const Path path = OutlineOf(rectangle);
  if (Holds(clipPolygon_, path.GetBounds())) return IoImportFilter::ImportObject(rectangle);
  ClipAndPass2DPath(path, rectangle.Params());
}

void IoClippedImportFilter::ImportEllipse(TrEllipse& ellipse) {
  ellipse.AssertValid();
  if (Holds(clipPolygon_, ellipse.Box())) return IoImportFilter::ImportObject(ellipse);
  const Path path = OutlineOf(ellipse);
  if (Holds(clipPolygon_, path.GetBounds())) return IoImportFilter::ImportObject(ellipse);
  ClipAndPass2DPath(path, ellipse.Params());
}

void IoClippedImportFilter::ImportMarkerSet(TrMarkerSet& markers) {
  markers.AssertValid();
  if (markers.Points().empty()) return IoImportFilter::ImportObject(markers);
  const std::unique_ptr<quillon::TrBase> clone = markers.Clone();
  auto& inside = dynamic_cast<TrMarkerSet&>(*clone);
  inside.Points().clear();
  for (const Vec3d& point : markers.Points()) {
    if (tarnis::PointInPolygon({point.x, point.y}, clipPolygon_)) inside.Points().push_back(point);
  }
  if (!inside.Points().empty()) IoImportFilter::ImportObject(inside);
}

}  // namespace trovan
