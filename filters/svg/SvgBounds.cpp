#include "SvgBounds.h"

#include <cmath>
#include <optional>

#include "SvgElement.h"
#include "SvgImages.h"
#include "SvgShapes.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;

class Bounder {
 public:
  Bounder(const SvgDocument& document, SvgGuard& guard, SvgRemarks& remarks)
      : document_(document), guard_(guard), remarks_(remarks) {}

  // NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
  void Add(const pugi::xml_node& node, const SvgContext& context) {
    if (const auto shape = MakeShape(node, context.basis)) {
      const Box2d box = shape->outline.Bounds(context.map);
      if (std::isfinite(box.Width()) && std::isfinite(box.Height())) box_ |= box;
    } else if (ElementName(node) == "image") {
      AddImage(node, context);
    } else if (IsGroup(node)) {
      for (const pugi::xml_node& child : Drawn(node, document_)) AddChild(child, context);
    }
  }

  const Box2d& Box() const { return box_; }

 private:
  // Pictures are not opened to tell their size.
  void AddImage(const pugi::xml_node& node, const SvgContext& context) {
    const auto space = GivenImageSpace(node, context.basis);
    if (!space || !(space->Width() > 0.0) || !(space->Height() > 0.0)) return;
    Box2d box;
    box.BoundPoints(MappedCorners(*space, context.map).data(), 4);
    if (std::isfinite(box.Width()) && std::isfinite(box.Height())) box_ |= box;
  }

  // NOLINTNEXTLINE(misc-no-recursion): the guard bounds the depth
  void AddChild(const pugi::xml_node& node, const SvgContext& parent) {
    const SvgGuard::Visit visit(guard_, node);
    if (!visit) return;
    if (const auto context = Enter(node, parent, document_, remarks_)) Add(node, *context);
  }

  const SvgDocument& document_;
  SvgGuard& guard_;
  SvgRemarks& remarks_;
  Box2d box_;
};

}  // namespace

Box2d BoundsOf(const pugi::xml_node& node, const SvgContext& context, const SvgDocument& document,
               SvgGuard& guard, SvgRemarks& remarks) {
  Bounder bounder(document, guard, remarks);
  SvgContext own = context;
  own.map = corvel::Mat3d();
  bounder.Add(node, own);
  return bounder.Box();
}

}  // namespace trovan::filters
