#include "SvgShapes.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "SvgElement.h"
#include "SvgPathData.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

bool IsFinite(const Box2d& box) {
  return std::isfinite(box.min.x) && std::isfinite(box.min.y) && std::isfinite(box.max.x) &&
         std::isfinite(box.max.y);
}

void AddRoundCorners(const Box2d& box, double rx, double ry, SvgOutline& outline) {
  const Vec2d low(box.min.x + rx, box.min.y + ry);
  const Vec2d high(box.max.x - rx, box.max.y - ry);
  outline.MoveTo({low.x, box.min.y});
  outline.LineTo({high.x, box.min.y});
  outline.QuarterTo({high.x, low.y}, {box.max.x, low.y});
  outline.LineTo({box.max.x, high.y});
  outline.QuarterTo(high, {high.x, box.max.y});
  outline.LineTo({low.x, box.max.y});
  outline.QuarterTo({low.x, high.y}, {box.min.x, high.y});
  outline.LineTo({box.min.x, low.y});
  outline.QuarterTo(low, {low.x, box.min.y});
  outline.Close();
}

void AddCorners(const Box2d& box, SvgOutline& outline) {
  outline.MoveTo(box.min);
  outline.LineTo({box.max.x, box.min.y});
  outline.LineTo(box.max);
  outline.LineTo({box.min.x, box.max.y});
  outline.Close();
}

struct Radii {
  double x;
  double y;
};

// A radius that is not given, or negative, is that of the other axis.
Radii ReadRadii(const pugi::xml_node& node, const LengthBasis& basis) {
  auto rx = FindLength(node, "rx", basis, Axis::kHorizontal);
  auto ry = FindLength(node, "ry", basis, Axis::kVertical);
  if (rx && *rx < 0.0) rx.reset();
  if (ry && *ry < 0.0) ry.reset();
  return {rx.value_or(ry.value_or(0.0)), ry.value_or(rx.value_or(0.0))};
}

void SetRadii(const pugi::xml_node& node, const LengthBasis& basis, SvgShape& shape) {
  const Radii radii = ReadRadii(node, basis);
  shape.xRadius = std::min(radii.x, shape.box.Width() / 2);
  shape.yRadius = std::min(radii.y, shape.box.Height() / 2);
  if (shape.xRadius == 0.0 || shape.yRadius == 0.0) shape.xRadius = shape.yRadius = 0.0;
}

SvgShape MakeRectangle(const pugi::xml_node& node, const LengthBasis& basis) {
  SvgShape shape;
  shape.kind = SvgShape::Kind::kRectangle;
  const double x = LengthAttribute(node, "x", basis, Axis::kHorizontal);
  const double y = LengthAttribute(node, "y", basis, Axis::kVertical);
  const double width = LengthAttribute(node, "width", basis, Axis::kHorizontal);
  const double height = LengthAttribute(node, "height", basis, Axis::kVertical);
  shape.box = Box2d(x, y, x + width, y + height);
  if (!(width > 0.0) || !(height > 0.0) || !IsFinite(shape.box)) return shape;
  SetRadii(node, basis, shape);
  if (shape.xRadius > 0.0) {
    AddRoundCorners(shape.box, shape.xRadius, shape.yRadius, shape.outline);
  } else {
    AddCorners(shape.box, shape.outline);
  }
  return shape;
}

// It starts where the positive x axis cuts it, and runs toward the positive y axis.
SvgShape MakeEllipse(const pugi::xml_node& node, const LengthBasis& basis, double rx, double ry) {
  SvgShape shape;
  shape.kind = SvgShape::Kind::kEllipse;
  const Vec2d center(LengthAttribute(node, "cx", basis, Axis::kHorizontal),
                     LengthAttribute(node, "cy", basis, Axis::kVertical));
  shape.box = Box2d(center.x - rx, center.y - ry, center.x + rx, center.y + ry);
  if (!(rx > 0.0) || !(ry > 0.0) || !IsFinite(shape.box)) return shape;
  shape.outline.MoveTo({shape.box.max.x, center.y});
  shape.outline.QuarterTo(center, {center.x, shape.box.max.y});
  shape.outline.QuarterTo(center, {shape.box.min.x, center.y});
  shape.outline.QuarterTo(center, {center.x, shape.box.min.y});
  shape.outline.QuarterTo(center, {shape.box.max.x, center.y});
  shape.outline.Close();
  return shape;
}

SvgShape MakeCircle(const pugi::xml_node& node, const LengthBasis& basis) {
  const double r = LengthAttribute(node, "r", basis, Axis::kDiagonal);
  return MakeEllipse(node, basis, r, r);
}

SvgShape MakeEllipse(const pugi::xml_node& node, const LengthBasis& basis) {
  const Radii radii = ReadRadii(node, basis);
  return MakeEllipse(node, basis, radii.x, radii.y);
}

SvgShape MakeLine(const pugi::xml_node& node, const LengthBasis& basis) {
  SvgShape shape;
  shape.kind = SvgShape::Kind::kLine;
  shape.outline.MoveTo({LengthAttribute(node, "x1", basis, Axis::kHorizontal),
                        LengthAttribute(node, "y1", basis, Axis::kVertical)});
  shape.outline.LineTo({LengthAttribute(node, "x2", basis, Axis::kHorizontal),
                        LengthAttribute(node, "y2", basis, Axis::kVertical)});
  return shape;
}

// Up to the first fault, and without a number that has no partner.
SvgShape MakePolyline(const pugi::xml_node& node, bool isClosed) {
  SvgShape shape;
  bool isWhole = true;
  std::vector<double> numbers = ParseNumbers(Attribute(node, "points"), &isWhole);
  const auto* const infinite = std::find_if(numbers.data(), numbers.data() + numbers.size(),
                                            [](double n) { return !std::isfinite(n); });
  const auto finite = static_cast<std::size_t>(infinite - numbers.data());
  if (finite < numbers.size()) isWhole = false;
  numbers.resize(finite - finite % 2);
  if (!isWhole || finite % 2 != 0) shape.fault = "a list of points is drawn up to its fault";
  if (numbers.size() < 4) return shape;
  shape.outline.MoveTo({numbers[0], numbers[1]});
  for (std::size_t i = 2; i < numbers.size(); i += 2) {
    shape.outline.LineTo({numbers[i], numbers[i + 1]});
  }
  if (isClosed) shape.outline.Close();
  return shape;
}

SvgShape MakePath(const pugi::xml_node& node) {
  SvgPathData data = ParsePathData(Attribute(node, "d"));
  SvgShape shape;
  shape.outline = std::move(data.outline);
  if (data.fault) shape.fault = "a path is drawn up to the fault in its data";
  return shape;
}

}  // namespace

std::optional<SvgShape> MakeShape(const pugi::xml_node& node, const LengthBasis& basis) {
  const std::string_view name = ElementName(node);
  if (name == "path") return MakePath(node);
  if (name == "rect") return MakeRectangle(node, basis);
  if (name == "circle") return MakeCircle(node, basis);
  if (name == "ellipse") return MakeEllipse(node, basis);
  if (name == "line") return MakeLine(node, basis);
  if (name == "polyline") return MakePolyline(node, false);
  if (name == "polygon") return MakePolyline(node, true);
  return {};
}

}  // namespace trovan::filters
