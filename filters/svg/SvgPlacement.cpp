#include "SvgPlacement.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "SvgBounds.h"
#include "SvgElement.h"
#include "SvgGuard.h"
#include "SvgViewBox.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;

constexpr double kLeastPixels = 1000.0;

// A width or height of the root in pixels; nothing where it is relative to where the document is
// shown.
std::optional<double> PixelSize(const pugi::xml_node& root, const char* name) {
  const auto length = ParseLength(Attribute(root, name));
  if (!length || length->value < 0.0) return {};
  const bool isRelative = length->unit != LengthUnit::kPixel && length->unit != LengthUnit::kEm &&
                          length->unit != LengthUnit::kRootEm;
  if (isRelative) return {};
  return InPixels(*length, LengthBasis(), Axis::kHorizontal);
}

std::string SizeAsGiven(const pugi::xml_node& root, const char* name) {
  const auto length = ParseLength(Attribute(root, name));
  return length && length->value >= 0.0 ? std::string(Attribute(root, name)) : std::string();
}

Box2d ContentBox(const SvgDocument& document, SvgRemarks& remarks) {
  SvgGuard guard(document, remarks);
  const auto context = Enter(document.Root(), SvgContext(), document, remarks);
  const Box2d box =
      context ? BoundsOf(document.Root(), *context, document, guard, remarks) : Box2d();
  const bool hasExtent = !box.IsEmpty() && box.Width() > 0.0 && box.Height() > 0.0;
  return hasExtent ? box : Box2d(0, 0, 100, 100);
}

Box2d ViewBoxOf(const SvgDocument& document, SvgRemarks& remarks) {
  const pugi::xml_node root = document.Root();
  if (const auto box = ParseViewBox(Attribute(root, "viewBox"))) return *box;
  const auto width = PixelSize(root, "width");
  const auto height = PixelSize(root, "height");
  if (width && height) return {0, 0, *width, *height};
  Box2d box = ContentBox(document, remarks);
  if (width) box = {0, box.min.y, *width, box.max.y};
  if (height) box = {box.min.x, 0, box.max.x, *height};
  return box;
}

double PixelsPerUnit(const pugi::xml_node& root, const Box2d& box) {
  double pixels = kLeastPixels / std::max(box.Width(), box.Height());
  const auto width = PixelSize(root, "width");
  const auto height = PixelSize(root, "height");
  if (width && box.Width() > 0.0) pixels = std::max(pixels, *width / box.Width());
  if (height && box.Height() > 0.0) pixels = std::max(pixels, *height / box.Height());
  return pixels;
}

double PowerOfTwoFrom(double value) {
  constexpr int kMost = 200;  // far beyond all pages; keeps the coordinates from overflowing
  if (!(value > 0.0) || !std::isfinite(value)) return 1.0;
  int exponent = 0;
  const double fraction = std::frexp(value, &exponent);
  if (fraction == 0.5) --exponent;
  return std::ldexp(1.0, std::clamp(exponent, -kMost, kMost));
}

}  // namespace

bool TellsPage(const SvgDocument& document) {
  const pugi::xml_node root = document.Root();
  return ParseViewBox(Attribute(root, "viewBox")) ||
         (PixelSize(root, "width") && PixelSize(root, "height"));
}

SvgPage PlacePage(const SvgDocument& document, SvgRemarks& remarks) {
  SvgPage page;
  page.viewBox = ViewBoxOf(document, remarks);
  page.width = SizeAsGiven(document.Root(), "width");
  page.height = SizeAsGiven(document.Root(), "height");
  page.aspectRatio = Attribute(document.Root(), "preserveAspectRatio");
  page.scale = PowerOfTwoFrom(PixelsPerUnit(document.Root(), page.viewBox));
  return page;
}

SvgContext OuterContext(const SvgPage& page) {
  SvgContext context;
  context.map = corvel::Mat3d(page.scale, 0, 0, -page.scale, 0, 0);
  context.basis.viewport = {page.viewBox.Width(), page.viewBox.Height()};
  return context;
}

}  // namespace trovan::filters
