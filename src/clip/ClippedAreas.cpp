// Areas and lines of the plane, cut to the clip region and delivered as objects.
#include <tarnis/Clipping.h>
#include <trovan/IoClippedImportFilter.h>

#include "BoxPolygon.h"
#include "FlatPoints.h"

namespace trovan {

using corvel::Box2d;
using corvel::Color4b;
using corvel::CParamList;
using corvel::Vec2d;
using corvel::Vec3d;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using tarnis::Polygon2;

namespace {

// How curves become lines: their distance in units of the drawing, and how often one is halved.
constexpr double kFlatTolerance = 0.25;
constexpr int kFlatDepth = 10;

}  // namespace

void IoClippedImportFilter::ClipAndPass2DPath(const velum::Path& path, const CParamList& params) {
  const Polygon2 flat = path.GetFlatPolygon(kFlatTolerance, kFlatDepth);
  ClipAndPass2DPolygon(flat.Points(), flat.Counts(), params);
}

void IoClippedImportFilter::ClipAndPass2DPolygon(const std::vector<Vec2d>& points,
                                                 const std::vector<unsigned int>& counts,
                                                 const CParamList& params) {
  if (counts.empty() || points.empty()) return;
  const Polygon2 subject(points, counts);
  if (Holds(clipPolygon_, tarnis::GetBoundingBox(subject))) {
    return PassClippedPolygon(points, counts, params);
  }
  const Polygon2 clipped = tarnis::ClipPolygonToPolygon(subject, clipPolygon_);
  if (clipped.Points().empty()) return;

  TrPen noLine(TrPen::kNone, Color4b(0), 0.0);
  IoImportFilter::ImportObject(noLine);
  PassClippedPolygon(clipped.Points(), clipped.Counts(), params);
  IoImportFilter::ImportObject(*currentPen_);
  StrokeRings(points, counts, params);
}

// Rings may repeat their first point at their end; those that do not are closed here.
void IoClippedImportFilter::StrokeRings(const std::vector<Vec2d>& points,
                                        const std::vector<unsigned int>& counts,
                                        const CParamList& params) {
  ForEachPiece(points, counts, [&](const Vec2d* ring, std::size_t count) {
    if (count == 0) return;
    ClipAndPass2DPolyline(ring, count, params);
    const Vec2d closing[] = {ring[count - 1], ring[0]};
    if (closing[0] != closing[1]) ClipAndPass2DPolyline(closing, 2, params);
  });
}

void IoClippedImportFilter::PassClippedPolygon(const std::vector<Vec2d>& points,
                                               const std::vector<unsigned int>& counts,
                                               const CParamList& params) {
  if (points.empty()) return;
  TrPolygon polygon(Raised(points.data(), points.size()), counts);
  polygon.Params() = params;
  IoImportFilter::ImportObject(polygon);
}

void IoClippedImportFilter::ClipAndPass2DPolyline(const Vec2d* points, std::size_t count,
                                                  const CParamList& params) {
  std::vector<Vec2d> pieces;
  std::vector<unsigned int> counts;
  Box2d rectangle;
  if (tarnis::GetIfRect(clipPolygon_, rectangle)) {
    const auto all = static_cast<unsigned int>(count);
    tarnis::ClipPolylinesToRect(points, &all, 1, rectangle, pieces, counts);
  } else {
    lineClipper_.Clip(points, count, pieces, counts);
  }
  PassClippedPolylines(pieces, counts, params);
}

void IoClippedImportFilter::PassClippedPolylines(const std::vector<Vec2d>& points,
                                                 const std::vector<unsigned int>& counts,
                                                 const CParamList& params) {
  ForEachPiece(points, counts,
               [&](const Vec2d* piece, std::size_t size) { PassPolyline(piece, size, params); });
}

void IoClippedImportFilter::PassPolyline(const Vec2d* points, std::size_t count,
                                         const CParamList& params) {
  if (count == 0) return;
  TrPolyline polyline(Raised(points, count));
  polyline.Params() = params;
  IoImportFilter::ImportObject(polyline);
}

void IoClippedImportFilter::CopyCoords(Vec3d* to, const Vec2d* from, std::size_t count) {
  CopyRaised(from, count, to);
}

void IoClippedImportFilter::CopyCoords(Vec2d* to, const Vec3d* from, std::size_t count) {
  CopyFlat(from, count, to);
}

}  // namespace trovan
