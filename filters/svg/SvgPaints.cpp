#include "SvgPaints.h"

#include <cmath>
#include <cstdint>
#include <string_view>

#include "SvgElement.h"

namespace trovan::filters {
namespace {

using corvel::Color4b;

constexpr int kMostReferences = 16;  // from gradient to gradient

bool HasStops(const pugi::xml_node& gradient) {
  for (const pugi::xml_node& child : gradient.children()) {
    if (ElementName(child) == "stop") return true;
  }
  return false;
}

bool IsGradient(const pugi::xml_node& node) {
  const std::string_view name = ElementName(node);
  return name == "linearGradient" || name == "radialGradient";
}

// The gradient itself or the one from which it has its stops.
pugi::xml_node OwnerOfStops(pugi::xml_node gradient, const SvgDocument& document) {
  for (int i = 0; i < kMostReferences && IsGradient(gradient); ++i) {
    if (HasStops(gradient)) return gradient;
    gradient = document.Target(gradient);
  }
  return {};
}

// Colours count by their opacity.
class MeanColor {
 public:
  void Add(const Color4b& color) {
    const double weight = color.alpha / 255.0;
    red_ += color.red * weight;
    green_ += color.green * weight;
    blue_ += color.blue * weight;
    weight_ += weight;
    ++count_;
  }

  Color4b Get() const {
    if (!(weight_ > 0.0)) return {};
    return {ByteOf(red_ / weight_), ByteOf(green_ / weight_), ByteOf(blue_ / weight_),
            ByteOf(255.0 * weight_ / count_)};
  }

 private:
  static std::uint8_t ByteOf(double value) { return static_cast<std::uint8_t>(std::lround(value)); }

  double red_ = 0.0;
  double green_ = 0.0;
  double blue_ = 0.0;
  double weight_ = 0.0;
  int count_ = 0;
};

std::optional<Color4b> MeanOfStops(const pugi::xml_node& gradient, const SvgContext& context,
                                   const SvgDocument& document) {
  const pugi::xml_node owner = OwnerOfStops(gradient, document);
  if (owner.empty()) return {};
  const SvgContext place = EnterApart(owner, context, document);
  MeanColor mean;
  for (const pugi::xml_node& child : owner.children()) {
    if (ElementName(child) != "stop") continue;
    const ComputedStyle style = ComputeStyle(child, place.style, document.Sheet(), place.basis);
    mean.Add(WithOpacity(style.stopColor, style.stopOpacity));
  }
  return mean.Get();
}

std::optional<Color4b> Fallback(const SvgPaint& paint, const ComputedStyle& style) {
  if (!paint.hasFallback) return {};
  return paint.isCurrentColor ? style.color : paint.color;
}

std::optional<Color4b> ColorOf(const SvgPaint& paint, const pugi::xml_node& node,
                               const SvgContext& context, const SvgDocument& document,
                               SvgRemarks& remarks) {
  if (paint.kind == SvgPaint::Kind::kNone) return {};
  if (paint.kind == SvgPaint::Kind::kColor) return PlainColor(paint, context.style);
  const pugi::xml_node target = document.Find(paint.reference);
  if (IsGradient(target)) {
    remarks.Add("gradients become one colour", node);
    return MeanOfStops(target, context, document);
  }
  if (ElementName(target) == "pattern") remarks.Add("patterns are left out", node);
  return Fallback(paint, context.style);
}

std::optional<Color4b> Visible(const std::optional<Color4b>& color, double opacity) {
  if (!color) return {};
  const Color4b seen = WithOpacity(*color, opacity);
  if (seen.alpha == 0) return {};
  return seen;
}

}  // namespace

std::optional<Color4b> FillColor(const pugi::xml_node& node, const SvgContext& context,
                                 const SvgDocument& document, SvgRemarks& remarks) {
  return Visible(ColorOf(context.style.fill, node, context, document, remarks),
                 context.style.fillOpacity * context.opacity);
}

std::optional<Color4b> StrokeColor(const pugi::xml_node& node, const SvgContext& context,
                                   const SvgDocument& document, SvgRemarks& remarks) {
  if (!(context.style.strokeWidth > 0.0)) return {};
  return Visible(ColorOf(context.style.stroke, node, context, document, remarks),
                 context.style.strokeOpacity * context.opacity);
}

}  // namespace trovan::filters
