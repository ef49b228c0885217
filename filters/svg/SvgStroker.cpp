#include "SvgStroker.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <utility>

#include "filters/drawing/AreaUnion.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using Line = std::vector<Vec2d>;

constexpr double kTolerance = 0.25;

Vec2d Left(const Vec2d& direction) { return {-direction.y, direction.x}; }
double Dot(const Vec2d& a, const Vec2d& b) { return a.x * b.x + a.y * b.y; }
double Cross(const Vec2d& a, const Vec2d& b) { return a.x * b.y - a.y * b.x; }

Vec2d Direction(const Vec2d& from, const Vec2d& to) {
  const Vec2d way = to - from;
  const double length = std::hypot(way.x, way.y);
  return {way.x / length, way.y / length};  // 1 / length may be infinite
}

// Makes one ring for each piece of the line and one for each join and cap: they are the area
// together.
class Stroker {
 public:
  explicit Stroker(const SvgStroke& stroke) : stroke_(stroke), radius_(stroke.width / 2) {}

  void Add(const Line& line, bool isClosed) {
    const std::size_t pieces = line.size() - 1;
    for (std::size_t i = 0; i < pieces; ++i) AddPiece(line[i], line[i + 1]);
    for (std::size_t i = 1; i < pieces; ++i) AddJoin(line[i - 1], line[i], line[i + 1]);
    if (isClosed) {
      AddJoin(line[pieces - 1], line[0], line[1]);
    } else {
      AddCap(line[1], line[0]);
      AddCap(line[pieces - 1], line[pieces]);
    }
  }

  tarnis::Polygon2 Finish() { return UniteAreas(std::move(areas_)); }

 private:
  void AddRing(Line ring) {
    const auto count = static_cast<unsigned int>(ring.size());
    areas_.emplace_back(std::move(ring), std::vector{count});
  }

  void AddPiece(const Vec2d& from, const Vec2d& to) {
    const Vec2d side = Left(Direction(from, to)) * radius_;
    AddRing({from - side, to - side, to + side, from + side});
  }

  void AddJoin(const Vec2d& before, const Vec2d& at, const Vec2d& after) {
    const Vec2d in = Direction(before, at);
    const Vec2d out = Direction(at, after);
    const double turn = Cross(in, out);
    if (turn == 0.0 && Dot(in, out) > 0.0) return;
    if (stroke_.join == "round") return AddCircle(at);
    // The corner opens on the side away from the turn.
    const double side = turn > 0.0 ? -radius_ : radius_;
    const Vec2d a = at + Left(in) * side;
    const Vec2d b = at + Left(out) * side;
    Line ring = {at, a, b};
    // The length of a mitre divided by the width is 1 / sin(angle / 2).
    const double halfSine = std::sqrt(std::max(0.0, (1.0 + Dot(in, out)) / 2));
    if (stroke_.join == "miter" && halfSine * stroke_.miterLimit >= 1.0) {
      const Vec2d middle = (Left(in) + Left(out)) * (side / 2);
      ring.insert(ring.begin() + 2, at + middle * (1.0 / (halfSine * halfSine)));
    }
    AddRing(std::move(ring));
  }

  void AddCap(const Vec2d& from, const Vec2d& end) {
    if (stroke_.cap == "round") return AddCircle(end);
    if (stroke_.cap != "square") return;
    AddPiece(end, end + Direction(from, end) * radius_);
  }

  void AddCircle(const Vec2d& center) {
    const double most = std::acos(1.0 - std::min(1.0, kTolerance / radius_));
    const int count = static_cast<int>(std::clamp(std::ceil(std::numbers::pi / most), 8.0, 1024.0));
    Line ring;
    for (int i = 0; i < count; ++i) {
      const double angle = 2 * std::numbers::pi * i / count;
      ring.push_back(center + Vec2d(std::cos(angle), std::sin(angle)) * radius_);
    }
    AddRing(std::move(ring));
  }

  const SvgStroke& stroke_;
  double radius_;
  std::vector<tarnis::Polygon2> areas_;
};

// Without points that repeat the one before.
Line WithoutRepetitions(const Line& line) {
  Line kept;
  std::unique_copy(line.begin(), line.end(), std::back_inserter(kept));
  return kept;
}

}  // namespace

tarnis::Polygon2 StrokedArea(const Line& line, const SvgStroke& stroke) {
  const Line points = WithoutRepetitions(line);
  if (points.size() < 2) return {};
  Stroker stroker(stroke);
  stroker.Add(points, points.front() == points.back() && points.size() > 2);
  return stroker.Finish();
}

}  // namespace trovan::filters
