#include "SvgStrokes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <utility>

#include <tarnis/Clipping.h>

#include "SvgDashes.h"
#include "SvgElement.h"
#include "SvgTransform.h"

namespace trovan::filters {
namespace {

using corvel::Mat3d;
using corvel::Vec2d;
using Line = std::vector<Vec2d>;

constexpr std::size_t kMostDashes = 100000;  // of an element

// The larger of the two factors by which the map scales, divided by the smaller one.
double Stretch(const Mat3d& map) {
  const double sum =
      map(0, 0) * map(0, 0) + map(0, 1) * map(0, 1) + map(1, 0) * map(1, 0) + map(1, 1) * map(1, 1);
  const double d = std::fabs(Determinant(map));
  const double larger = (sum + std::sqrt(std::max(0.0, sum * sum - 4 * d * d))) / 2;
  return larger / d;
}

// A closed line, from the middle of its longest piece.
Line FromMiddle(const Line& line) {
  std::size_t longest = 0;
  double most = -1.0;
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    const double length = std::hypot(line[i + 1].x - line[i].x, line[i + 1].y - line[i].y);
    if (length <= most) continue;
    most = length;
    longest = i;
  }
  const Vec2d middle = (line[longest] + line[longest + 1]) * 0.5;
  const auto cut = line.begin() + static_cast<std::ptrdiff_t>(longest) + 1;
  Line turned = {middle};
  turned.insert(turned.end(), cut, line.end());
  // The last point is the first one.
  turned.insert(turned.end(), line.begin() + 1, cut);
  turned.push_back(middle);
  return turned;
}

// By which factor the author's idea of the length of a path differs from its length.
double DashScale(const pugi::xml_node& node, const std::vector<FlatLine>& lines,
                 const SvgContext& context) {
  const auto claimed = ParseSvgNumber(Attribute(node, "pathLength"));
  if (!claimed || !(*claimed > 0.0)) return 1.0;
  const Mat3d inverse = Inverted(context.map);
  double length = 0.0;
  for (const FlatLine& line : lines) {
    for (std::size_t i = 1; i < line.points.size(); ++i) {
      const Vec2d way = Mapped(line.points[i], inverse) - Mapped(line.points[i - 1], inverse);
      length += std::hypot(way.x, way.y);
    }
  }
  return length / *claimed;
}

// False where there would be too many dashes.
bool AppendDashes(const SvgContext& context, double scale, const FlatLine& line,
                  std::vector<Line>& drawn) {
  SvgDashes dashes{context.style.dashes, context.style.dashOffset};
  if (!(scale > 0.0)) return true;
  for (double& length : dashes.lengths) length *= scale;
  dashes.offset *= scale;
  const std::size_t most = kMostDashes - std::min(drawn.size(), kMostDashes);
  auto cut = CutIntoDashes(line, dashes, context.map, most);
  if (!cut) return false;
  std::move(cut->begin(), cut->end(), std::back_inserter(drawn));
  return true;
}

// A line without length shows by its caps, which lie along the x axis.
void AppendDot(const SvgContext& context, const Vec2d& point, std::vector<Line>& drawn) {
  if (context.style.lineCap == "butt") return;
  const Vec2d axis(context.map(0, 0), context.map(0, 1));
  const double length = std::hypot(axis.x, axis.y);
  if (length > 0.0) drawn.push_back({point, point + axis * (kDotLength / length)});
}

}  // namespace

double Reach(const SvgStroke& stroke) {
  const double factor = stroke.join == "miter" ? std::max(stroke.miterLimit, std::numbers::sqrt2)
                                               : std::numbers::sqrt2;
  return stroke.width / 2 * factor;
}

bool MayBeCut(const Line& line, double reach, const tarnis::Polygon2& region) {
  if (region.IsEmpty()) return false;
  corvel::Box2d box;
  box.BoundPoints(line.data(), line.size());
  box.min = box.min - Vec2d(reach, reach);
  box.max = box.max + Vec2d(reach, reach);
  std::vector<Vec2d> corners(4);
  box.GetCorners(corners.data());
  return !tarnis::PolygonContains(region, tarnis::Polygon2(std::move(corners), {4}));
}

SvgStroke StrokeOf(const pugi::xml_node& node, const SvgContext& context,
                   const corvel::Color4b& color, SvgRemarks& remarks) {
  constexpr double kVisibleStretch = 1.1;
  if (Stretch(context.map) > kVisibleStretch) {
    remarks.Add("lines that are stretched to different widths get one width", node);
  }
  const ComputedStyle& style = context.style;
  return {color, style.strokeWidth * MeanScale(context.map), style.lineCap, style.lineJoin,
          style.miterLimit};
}

std::vector<Line> StrokeLines(const pugi::xml_node& node, const SvgContext& context,
                              const std::vector<FlatLine>& lines, const tarnis::Polygon2& region,
                              SvgRemarks& remarks) {
  std::vector<Line> drawn;
  const bool isDashed = !context.style.dashes.empty();
  const double dashScale = isDashed ? DashScale(node, lines, context) : 1.0;
  for (const FlatLine& line : lines) {
    if (line.points.size() < 2) {
      AppendDot(context, line.points.front(), drawn);
      continue;
    }
    if (isDashed) {
      if (AppendDashes(context, dashScale, line, drawn)) continue;
      remarks.Add("lines of very many dashes are drawn without", node);
    }
    drawn.push_back(line.isClosed && MayBeCut(line.points, 0.0, region) ? FromMiddle(line.points)
                                                                        : line.points);
  }
  return drawn;
}

}  // namespace trovan::filters
