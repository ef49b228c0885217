#include "MapFilter.h"

#include <utility>

#include <quillon/TrBrush.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

namespace trovan::filters {
namespace {

constexpr corvel::Color4b kInk(0x4A, 0x55, 0x48, 0xFF);
constexpr corvel::Color4b kPaper(0xE4, 0xEA, 0xD8, 0xFF);

}  // namespace

void MapFilter::SendStyle() {
  quillon::TrPen pen(quillon::TrPen::kSolid, kInk, 0.0);
  quillon::TrBrush brush(quillon::TrBrush::kSolid, kPaper);
  Send(pen);
  Send(brush);
}

void MapFilter::SendGeometry(Geometry geometry, const corvel::CParamList& attributes) {
  if (geometry.points.empty()) return;
  if (geometry.kind == Geometry::Kind::kLines) return SendLines(geometry, attributes);
  if (geometry.kind == Geometry::Kind::kPlaces) {
    quillon::TrMarkerSet markers(std::move(geometry.points));
    markers.Params() = attributes;
    return Send(markers);
  }
  quillon::TrPolygon polygon(std::move(geometry.points), std::move(geometry.counts));
  polygon.Params() = attributes;
  Send(polygon);
}

void MapFilter::SendLines(const Geometry& geometry, const corvel::CParamList& attributes) {
  auto start = geometry.points.begin();
  for (const unsigned int count : geometry.counts) {
    const auto end = start + count;
    if (count > 0) {
      quillon::TrPolyline line({start, end});
      line.Params() = attributes;
      Send(line);
    }
    start = end;
  }
}

}  // namespace trovan::filters
