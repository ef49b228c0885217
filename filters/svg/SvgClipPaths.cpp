#include "SvgClipPaths.h"

#include <utility>
#include <vector>

#include <tarnis/Clipping.h>
#include <tarnis/FillRule.h>

#include "SvgAreas.h"
#include "SvgBounds.h"
#include "SvgElement.h"
#include "SvgShapes.h"
#include "SvgTransform.h"
#include "filters/drawing/AreaUnion.h"

namespace trovan::filters {

using corvel::Mat3d;
using tarnis::Polygon2;

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
std::optional<Polygon2> SvgClipPaths::RegionFor(const std::string& id, const pugi::xml_node& node,
                                                const SvgContext& context) {
  const pugi::xml_node clipPath = document_.Find(id);
  if (ElementName(clipPath) != "clipPath") {
    remarks_.Add("a reference to a clip path that is not there is ignored", node);
    return {};
  }
  const bool isText = ElementName(node) == "text";
  if (isText && Attribute(clipPath, "clipPathUnits") == "objectBoundingBox") {
    remarks_.Add("texts are not clipped to parts of their boxes, which only fonts tell", node);
    return {};
  }
  const SvgGuard::Visit visit(guard_, clipPath);
  if (!visit) return {};
  return RegionOf(clipPath, node, context);
}

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
Polygon2 SvgClipPaths::RegionOf(const pugi::xml_node& clipPath, const pugi::xml_node& node,
                                const SvgContext& user) {
  SvgContext content = EnterApart(clipPath, user, document_);
  const std::string outer = content.style.clipPath;
  if (!EnterUnits(clipPath, node, user, content)) return {};
  std::vector<Polygon2> areas;
  for (const pugi::xml_node& child : clipPath.children()) {
    Polygon2 area = ShapeRegion(child, content);
    if (!area.Points().empty()) areas.push_back(std::move(area));
  }
  Polygon2 region = UniteAreas(std::move(areas));
  if (outer.empty() || region.Points().empty()) return region;
  const Region other = RegionFor(outer, node, user);
  return other ? tarnis::ClipPolygonToPolygon(region, *other) : region;
}

// The content may be given in parts of the element's box. False where that is no space.
bool SvgClipPaths::EnterUnits(const pugi::xml_node& clipPath, const pugi::xml_node& node,
                              const SvgContext& user, SvgContext& content) {
  const pugi::xml_attribute attribute = clipPath.attribute("transform");
  const auto transform = attribute ? ParseTransform(attribute.value()) : Mat3d();
  if (transform) content.map = *transform * user.map;
  if (Attribute(clipPath, "clipPathUnits") == "objectBoundingBox") {
    const corvel::Box2d box = BoundsOf(node, user, document_, guard_, remarks_);
    if (box.IsEmpty() || !(box.Width() > 0.0) || !(box.Height() > 0.0)) return false;
    content.map = Mat3d(box.Width(), 0, 0, box.Height(), box.min.x, box.min.y) * content.map;
  }
  return IsFinite(content.map);
}

// Of a shape, or of a shape that is used. Others are no parts of clip paths.
// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
Polygon2 SvgClipPaths::ShapeRegion(const pugi::xml_node& shape, const SvgContext& content) {
  const std::string_view name = ElementName(shape);
  if (name == "text") remarks_.Add("texts in clip paths are left out", shape);
  const bool isUse = name == "use";
  const auto probe = isUse ? std::optional<SvgShape>() : MakeShape(shape, content.basis);
  if (!isUse && !probe) return {};
  const SvgGuard::Visit visit(guard_, shape);
  if (!visit) return {};
  const auto context = Enter(shape, content, document_, remarks_);
  if (!context) return {};
  if (isUse) {
    Polygon2 area;
    for (const pugi::xml_node& target : Drawn(shape, document_)) {
      if (ElementName(target) != "use") area = ShapeRegion(target, *context);
    }
    return Clipped(std::move(area), shape, *context);
  }
  if (!context->style.isVisible) return {};
  const auto lines = MakeShape(shape, context->basis)->outline.Flatten(context->map);
  if (!IsInBounds(lines)) return {};
  const auto rule =
      context->style.clipsEvenOdd ? tarnis::FillRule::kEvenOdd : tarnis::FillRule::kNonZero;
  return Clipped(AreaOf(lines, rule), shape, *context);
}

// NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
Polygon2 SvgClipPaths::Clipped(Polygon2 area, const pugi::xml_node& node,
                               const SvgContext& context) {
  if (context.style.clipPath.empty() || area.Points().empty()) return area;
  const Region region = RegionFor(context.style.clipPath, node, context);
  return region ? tarnis::ClipPolygonToPolygon(area, *region) : area;
}

}  // namespace trovan::filters
