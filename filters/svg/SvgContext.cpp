#include "SvgContext.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "SvgElement.h"
#include "SvgTransform.h"
#include "SvgViewBox.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Mat3d;
using corvel::Vec2d;

void ApplyTransform(const pugi::xml_node& node, SvgContext& context, SvgRemarks& remarks) {
  const pugi::xml_attribute attribute = node.attribute("transform");
  if (!attribute) return;
  const auto transform = ParseTransform(attribute.value());
  if (transform) {
    context.map = *transform * context.map;
  } else {
    remarks.Add("a transform that is none is ignored", node);
  }
}

// The space of a nested "svg" or of a "symbol" that is used. False where it has no extent.
bool EnterViewport(const pugi::xml_node& node, const SvgContext& parent, SvgContext& context) {
  const LengthBasis& basis = parent.basis;
  const bool isSymbol = ElementName(node) == "symbol";
  const double x = isSymbol ? 0.0 : LengthAttribute(node, "x", basis, Axis::kHorizontal);
  const double y = isSymbol ? 0.0 : LengthAttribute(node, "y", basis, Axis::kVertical);
  const double width = parent.width.value_or(
      LengthAttribute(node, "width", basis, Axis::kHorizontal, basis.viewport.x));
  const double height = parent.height.value_or(
      LengthAttribute(node, "height", basis, Axis::kVertical, basis.viewport.y));
  if (!(width > 0.0) || !(height > 0.0)) return false;
  const Box2d space(x, y, x + width, y + height);
  if (!context.style.isOverflowVisible) context.viewport = MappedCorners(space, context.map);
  const auto viewBox = ParseViewBox(Attribute(node, "viewBox"));
  if (!viewBox) {
    context.basis.viewport = {width, height};
    context.map = Mat3d(1, 0, 0, 1, x, y) * context.map;
    return true;
  }
  if (!(viewBox->Width() > 0.0) || !(viewBox->Height() > 0.0)) return false;
  context.basis.viewport = {viewBox->Width(), viewBox->Height()};
  const AspectRatio ratio = ParseAspectRatio(Attribute(node, "preserveAspectRatio"));
  context.map = FitInto(*viewBox, space, ratio) * context.map;
  return true;
}

void EnterUse(const pugi::xml_node& node, SvgContext& context) {
  const LengthBasis& basis = context.basis;
  context.map = Mat3d(1, 0, 0, 1, LengthAttribute(node, "x", basis, Axis::kHorizontal),
                      LengthAttribute(node, "y", basis, Axis::kVertical)) *
                context.map;
  context.width = FindLength(node, "width", basis, Axis::kHorizontal);
  context.height = FindLength(node, "height", basis, Axis::kVertical);
}

bool IsUsed(const pugi::xml_node& node, const SvgDocument& document) {
  return ElementName(node) == "use" && !document.Target(node).empty();
}

}  // namespace

std::optional<SvgContext> Enter(const pugi::xml_node& node, const SvgContext& parent,
                                const SvgDocument& document, SvgRemarks& remarks) {
  const std::string_view name = ElementName(node);
  SvgContext context;
  context.style = ComputeStyle(node, parent.style, document.Sheet(), parent.basis);
  if (!context.style.isDisplayed) return {};
  context.map = parent.map;
  context.basis = parent.basis;
  context.basis.fontSize = context.style.fontSize;
  context.opacity = parent.opacity * context.style.opacity;
  ApplyTransform(node, context, remarks);
  const bool hasViewport = name == "symbol" || (name == "svg" && node != document.Root());
  if (hasViewport && !EnterViewport(node, parent, context)) return {};
  if (name == "use") EnterUse(node, context);
  if (!IsFinite(context.map)) {
    remarks.Add("what lies beyond all bounds is left out", node);
    return {};
  }
  return context;
}

SvgContext EnterApart(const pugi::xml_node& node, const SvgContext& user,
                      const SvgDocument& document) {
  std::vector<pugi::xml_node> ancestors;
  for (pugi::xml_node at = node; at.type() == pugi::node_element; at = at.parent()) {
    ancestors.push_back(at);
  }
  SvgContext context;
  context.map = user.map;
  context.basis = user.basis;
  std::reverse(ancestors.begin(), ancestors.end());
  for (const pugi::xml_node& at : ancestors) {
    context.style = ComputeStyle(at, context.style, document.Sheet(), context.basis);
  }
  context.basis.fontSize = context.style.fontSize;
  return context;
}

std::vector<Vec2d> MappedCorners(const Box2d& box, const Mat3d& map) {
  std::vector<Vec2d> corners(4);
  box.GetCorners(corners.data());
  map.Transform(corners.data(), corners.data(), corners.size());
  return corners;
}

bool IsGroup(const pugi::xml_node& node) {
  const std::string_view name = ElementName(node);
  return name == "g" || name == "use" || name == "svg" || name == "a" || name == "switch" ||
         name == "symbol";
}

std::vector<pugi::xml_node> Drawn(const pugi::xml_node& node, const SvgDocument& document) {
  std::vector<pugi::xml_node> drawn;
  if (ElementName(node) == "use") {
    if (IsUsed(node, document)) drawn.push_back(document.Target(node));
    return drawn;
  }
  const bool isSwitch = ElementName(node) == "switch";
  for (const pugi::xml_node& child : node.children()) {
    const std::string_view name = ElementName(child);
    // A symbol is drawn where it is used only.
    if (name.empty() || name == "symbol" || !MeetsConditions(child)) continue;
    // Programs write what follows it for readers that cannot draw it.
    if (isSwitch && name == "foreignObject") continue;
    drawn.push_back(child);
    if (isSwitch) break;
  }
  return drawn;
}

}  // namespace trovan::filters
