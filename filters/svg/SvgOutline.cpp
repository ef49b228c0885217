#include "SvgOutline.h"

#include <utility>

#include <tarnis/Polygon2.h>

#include "SvgTransform.h"

namespace trovan::filters {
namespace {

// Those with which the clipped import makes lines of curves.
constexpr double kTolerance = 0.25;
constexpr int kDepth = 10;

}  // namespace

void SvgOutline::MoveTo(const corvel::Vec2d& point) {
  Line line;
  line.path.MoveTo(point);
  line.start = point;
  line.end = point;
  lines_.push_back(std::move(line));
}

void SvgOutline::LineTo(const corvel::Vec2d& point) {
  lines_.back().path.LineTo(point);
  lines_.back().end = point;
  lines_.back().hasPieces = true;
}

void SvgOutline::CurveTo(const corvel::Vec2d& control1, const corvel::Vec2d& control2,
                         const corvel::Vec2d& point) {
  lines_.back().path.CurveTo(control1, control2, point);
  lines_.back().end = point;
  lines_.back().hasPieces = true;
}

void SvgOutline::QuarterTo(const corvel::Vec2d& center, const corvel::Vec2d& point) {
  lines_.back().path.QuarterTo(center, point);
  lines_.back().end = point;
  lines_.back().hasPieces = true;
}

void SvgOutline::Close() {
  lines_.back().isClosed = true;
  lines_.back().hasPieces = true;
}

corvel::Box2d SvgOutline::Bounds(const corvel::Mat3d& map) const {
  corvel::Box2d box;
  for (const Line& line : lines_) {
    velum::Path path = line.path;
    path.Transform(map);
    box |= path.GetBounds();
  }
  return box;
}

std::vector<FlatLine> SvgOutline::Flatten(const corvel::Mat3d& map) const {
  std::vector<FlatLine> flat;
  flat.reserve(lines_.size());
  for (const Line& line : lines_) {
    if (line.hasPieces) flat.push_back(Flatten(line, map));
  }
  return flat;
}

// A flat ring stops in front of its first point, wherever the line ended.
FlatLine SvgOutline::Flatten(Line line, const corvel::Mat3d& map) {
  line.path.Transform(map);
  const corvel::Vec2d start = Mapped(line.start, map);
  const tarnis::Polygon2 ring = line.path.GetFlatPolygon(kTolerance, kDepth);
  FlatLine flat;
  flat.isClosed = line.isClosed;
  flat.points = ring.Points();
  if (flat.points.empty()) flat.points.push_back(start);
  const bool endsAtStart = line.isClosed || Mapped(line.end, map) == start;
  if (endsAtStart && flat.points.size() > 1) flat.points.push_back(start);
  return flat;
}

}  // namespace trovan::filters
