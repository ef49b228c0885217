#include "SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <quillon/TrImage.h>
#include <tarnis/Clipping.h>
#include <tarnis/FillRule.h>

#include "SvgAreas.h"
#include "SvgElement.h"
#include "SvgImages.h"
#include "SvgPaints.h"
#include "SvgStroker.h"
#include "SvgStrokes.h"
#include "SvgTextLayout.h"
#include "SvgTexts.h"
#include "SvgTransform.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::Mat3d;
using corvel::Vec2d;

// What draws nothing by itself, as it should be.
constexpr std::string_view kSilent[] = {
    "clipPath", "defs",     "desc",    "filter",         "linearGradient", "marker",
    "mask",     "metadata", "pattern", "radialGradient", "script",         "stop",
    "style",    "symbol",   "title",   "view",
};

bool IsSilent(std::string_view name) {
  return std::find(std::begin(kSilent), std::end(kSilent), name) != std::end(kSilent);
}

bool KeepsAxes(const Mat3d& map) {
  return (map(0, 1) == 0.0 && map(1, 0) == 0.0) || (map(0, 0) == 0.0 && map(1, 1) == 0.0);
}

bool SwapsAxes(const Mat3d& map) { return map(0, 0) == 0.0 && map(1, 1) == 0.0; }

// Whether circles stay circles.
bool KeepsShapes(const Mat3d& map) {
  const double most = std::max(
      {std::fabs(map(0, 0)), std::fabs(map(0, 1)), std::fabs(map(1, 0)), std::fabs(map(1, 1))});
  const double tolerance = most * 1e-12;
  const bool turns = std::fabs(map(0, 0) - map(1, 1)) <= tolerance &&
                     std::fabs(map(0, 1) + map(1, 0)) <= tolerance;
  const bool mirrors = std::fabs(map(0, 0) + map(1, 1)) <= tolerance &&
                       std::fabs(map(0, 1) - map(1, 0)) <= tolerance;
  return turns || mirrors;
}

Box2d MappedBox(const Box2d& box, const Mat3d& map) {
  Vec2d corners[] = {box.min, box.max};
  map.Transform(corners, corners, 2);
  Box2d mapped;
  mapped.BoundPoints(corners, 2);
  return mapped;
}

bool IsFinite(const Box2d& box) {
  return std::isfinite(box.min.x) && std::isfinite(box.min.y) && std::isfinite(box.max.x) &&
         std::isfinite(box.max.y);
}

}  // namespace

// Clips what is drawn while it lives as the element wants it.
class SvgRenderer::Clip {
 public:
  Clip(SvgRenderer& renderer, const pugi::xml_node& node, const SvgContext& context)
      : stack_(renderer.painter_.Clips()) {
    if (context.viewport) Push({*context.viewport, {4}});
    if (context.style.clipPath.empty()) return;
    const auto region = renderer.clipPaths_.RegionFor(context.style.clipPath, node, context);
    if (region) Push(*region);
  }
  ~Clip() {
    for (; pushed_ > 0; --pushed_) stack_.Pop();
  }
  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;

 private:
  void Push(const tarnis::Polygon2& area) {
    stack_.Push(area);
    ++pushed_;
  }

  SvgClipStack& stack_;
  int pushed_ = 0;
};

SvgRenderer::SvgRenderer(const SvgDocument& document, std::wstring path, SvgPainter& painter,
                         SvgRemarks& remarks, Progress progress)
    : document_(document),
      painter_(painter),
      remarks_(remarks),
      progress_(std::move(progress)),
      guard_(document, remarks),
      clipPaths_(document, guard_, remarks),
      pictures_(std::move(path), guard_, remarks) {}

void SvgRenderer::Draw(const SvgContext& outer) {
  DrawElement(document_.Root(), outer);
  painter_.End();
}

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
void SvgRenderer::DrawElement(const pugi::xml_node& node, const SvgContext& parent) {
  const std::string_view name = ElementName(node);
  const bool isSymbol = name == "symbol";  // comes here only where it is used
  if (name.empty() || (IsSilent(name) && !isSymbol)) return;
  const SvgGuard::Visit visit(guard_, node);
  if (!visit) return;
  progress_(guard_.Progress());
  const auto context = Enter(node, parent, document_, remarks_);
  if (!context) return;
  NoteOmissions(node, *context);
  const Clip clip(*this, node, *context);
  DrawContent(node, *context);
}

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
void SvgRenderer::DrawContent(const pugi::xml_node& node, const SvgContext& context) {
  const std::string_view name = ElementName(node);
  if (IsGroup(node)) return DrawGroup(node, context);
  if (name == "text") return DrawTexts(node, context);
  if (name == "image") return DrawImage(node, context);
  if (const auto shape = MakeShape(node, context.basis)) return DrawShape(node, *shape, context);
  remarks_.Add("elements \"" + std::string(name) + "\" are left out", node);
}

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
void SvgRenderer::DrawGroup(const pugi::xml_node& node, const SvgContext& context) {
  const auto children = Drawn(node, document_);
  if (context.style.opacity < 1.0 && children.size() > 1) {
    remarks_.Add("the opacity of a group is given to each of its objects", node);
  }
  for (const pugi::xml_node& child : children) DrawElement(child, context);
}

void SvgRenderer::NoteOmissions(const pugi::xml_node& node, const SvgContext& context) {
  const ComputedStyle& style = context.style;
  if (style.hasMask) remarks_.Add("masks are left out", node);
  if (style.hasFilter) remarks_.Add("filters are left out", node);
  if (style.hasMarkers && !IsGroup(node)) remarks_.Add("markers are left out", node);
  if (style.hasUnknownClip) remarks_.Add("only elements \"clipPath\" clip", node);
}

void SvgRenderer::DrawShape(const pugi::xml_node& node, const SvgShape& shape,
                            const SvgContext& context) {
  if (!shape.fault.empty()) remarks_.Add(shape.fault, node);
  // A map onto a line leaves nothing to be seen.
  if (shape.outline.IsEmpty() || !context.style.isVisible || Determinant(context.map) == 0.0) {
    return;
  }
  const auto lines = shape.outline.Flatten(context.map);
  if (!IsInBounds(lines)) {
    remarks_.Add("what lies beyond all bounds is left out", node);
    return;
  }
  const bool isArea = shape.kind != SvgShape::Kind::kLine;
  if (const auto color = FillColor(node, context, document_, remarks_); color && isArea) {
    Fill(shape, lines, context, *color);
  }
  const auto color = StrokeColor(node, context, document_, remarks_);
  if (!color) return;
  DrawLines(node, lines, context, *color);
}

// The document's own clip paths cut strokes in their whole width, as areas. To the outer region it
// is lines that are cut, whose pen then ends where it does.
void SvgRenderer::DrawLines(const pugi::xml_node& node, const std::vector<FlatLine>& lines,
                            const SvgContext& context, const Color4b& color) {
  const SvgStroke stroke = StrokeOf(node, context, color, remarks_);
  if (!(stroke.width < kFarthest)) {
    remarks_.Add("what lies beyond all bounds is left out", node);
    return;
  }
  const SvgClipStack& clips = painter_.Clips();
  const auto drawn = StrokeLines(node, context, lines, clips.Region(), remarks_);
  guard_.CountLines(drawn.size(), node);
  for (const auto& line : drawn) {
    if (clips.IsInner() && MayBeCut(line, Reach(stroke), clips.Region())) {
      painter_.FillArea(StrokedArea(line, stroke), color);
    } else {
      painter_.DrawLine(line, stroke);
    }
  }
}

void SvgRenderer::Fill(const SvgShape& shape, const std::vector<FlatLine>& lines,
                       const SvgContext& context, const Color4b& color) {
  if (FillPlainly(shape, context, color)) return;
  const auto rule =
      context.style.isEvenOdd ? tarnis::FillRule::kEvenOdd : tarnis::FillRule::kNonZero;
  painter_.FillArea(AreaOf(lines, rule), color);
}

// Rectangles and ellipses that stay such. An ellipse that is turned is tested for being inside a
// region as if it were not, so that it is only sent where there is no region.
bool SvgRenderer::FillPlainly(const SvgShape& shape, const SvgContext& context,
                              const Color4b& color) {
  const Mat3d& map = context.map;
  const Box2d box = MappedBox(shape.box, map);
  if (shape.kind == SvgShape::Kind::kRectangle && KeepsAxes(map) && IsFinite(box)) {
    double x = shape.xRadius * std::fabs(map(0, 0));
    double y = shape.yRadius * std::fabs(map(1, 1));
    if (SwapsAxes(map)) {
      x = shape.yRadius * std::fabs(map(1, 0));
      y = shape.xRadius * std::fabs(map(0, 1));
    }
    painter_.FillRectangle(box, x, y, color);
    return true;
  }
  if (shape.kind != SvgShape::Kind::kEllipse || !IsFinite(box)) return false;
  if (KeepsAxes(map)) {
    painter_.FillEllipse(box, 0.0, color);
    return true;
  }
  const bool isCircle = shape.box.Width() == shape.box.Height();
  if (!KeepsShapes(map) || (!isCircle && !painter_.Clips().Region().IsEmpty())) return false;
  const Vec2d center = Mapped(shape.box.Center(), map);
  const double x = shape.box.Width() / 2 * MeanScale(map);
  const double y = shape.box.Height() / 2 * MeanScale(map);
  painter_.FillEllipse({center.x - x, center.y - y, center.x + x, center.y + y},
                       isCircle ? 0.0 : std::atan2(map(0, 1), map(0, 0)), color);
  return true;
}

void SvgRenderer::DrawImage(const pugi::xml_node& node, const SvgContext& context) {
  const bool isHidden = !context.style.isVisible || !(context.opacity > 0.0) ||
                        Determinant(context.map) == 0.0 || HidesImage(node, context.basis);
  if (isHidden) return;
  const brindle::MemoryBitmap* picture = pictures_.Find(node);
  if (picture == nullptr) return;
  const Vec2d pixels(picture->GetWidth(), picture->GetHeight());
  const ImagePlace place = PlaceImage(node, context.basis, pixels);
  quillon::TrImage image = MakeImage(*picture, context.opacity, place.picture, context.map);
  const std::vector<FlatLine> outline = {{CornersOf(image), false}};
  if (!IsInBounds(outline)) {
    remarks_.Add("what lies beyond all bounds is left out", node);
    return;
  }
  SvgClipStack& clips = painter_.Clips();
  const bool isCut = place.isOutOfSpace && !context.style.isOverflowVisible;
  if (isCut) clips.Push({MappedCorners(place.space, context.map), {4}});
  const bool isWhole = clips.Region().IsEmpty() ||
                       tarnis::PolygonContains(clips.Region(), {outline.front().points, {4}});
  if (!isWhole) remarks_.Add("pictures are drawn whole, even where a clip path cuts them", node);
  painter_.Draw(image);
  if (isCut) clips.Pop();
}

void SvgRenderer::DrawTexts(const pugi::xml_node& node, const SvgContext& context) {
  if (Determinant(context.map) == 0.0) return;
  for (const SvgTextRun& run : LayOutText(node, context, document_, guard_, remarks_)) {
    const SvgContext& place = *run.context;
    if (!place.style.isVisible) continue;  // it only takes its room
    const auto fill = FillColor(run.node, place, document_, remarks_);
    const auto line = StrokeColor(run.node, place, document_, remarks_);
    if ((!fill && !line) || Determinant(place.map) == 0.0) continue;
    const bool isFinite = std::isfinite(run.place.x) && std::isfinite(run.place.y);
    quillon::TrText text = TextOf(run);
    if (!isFinite || !IsFinite(text.Bounds())) {
      remarks_.Add("what lies beyond all bounds is left out", run.node);
      continue;
    }
    std::optional<SvgStroke> outline;
    if (line) outline = StrokeOf(run.node, place, *line, remarks_);
    painter_.DrawText(text, FontOf(run, fill.value_or(Color4b())), outline);
  }
}

}  // namespace trovan::filters
