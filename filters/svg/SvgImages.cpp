#include "SvgImages.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include <corvel/Color.h>

#include "SvgElement.h"
#include "SvgTransform.h"
#include "SvgViewBox.h"
#include "filters/image/BitmapRows.h"

namespace trovan::filters {
namespace {

using brindle::MemoryBitmap;
using corvel::Box2d;
using corvel::Mat3d;
using corvel::Vec2d;

std::optional<double> Width(const pugi::xml_node& node, const LengthBasis& basis) {
  return FindLength(node, "width", basis, Axis::kHorizontal);
}

std::optional<double> Height(const pugi::xml_node& node, const LengthBasis& basis) {
  return FindLength(node, "height", basis, Axis::kVertical);
}

Box2d SpaceOf(const pugi::xml_node& node, const LengthBasis& basis, double width, double height) {
  const double x = LengthAttribute(node, "x", basis, Axis::kHorizontal);
  const double y = LengthAttribute(node, "y", basis, Axis::kVertical);
  return {x, y, x + width, y + height};
}

// By more than the errors of rounding.
bool ReachesOut(const Box2d& inner, const Box2d& outer) {
  const double tolerance = std::max(outer.Width(), outer.Height()) * 1e-9;
  return inner.min.x < outer.min.x - tolerance || inner.min.y < outer.min.y - tolerance ||
         inner.max.x > outer.max.x + tolerance || inner.max.y > outer.max.y + tolerance;
}

void CopyRow(const unsigned char* from, bool isGrey, unsigned count, double opacity,
             unsigned char* to) {
  constexpr std::uint8_t kOpaque = 255;
  for (unsigned x = 0; x < count; ++x, to += 4) {
    const unsigned char* pixel = from + std::size_t{x} * (isGrey ? 1 : 4);
    for (int i = 0; i < 3; ++i) to[i] = isGrey ? *pixel : pixel[i];
    const double alpha = isGrey ? kOpaque : pixel[3];
    to[3] = static_cast<unsigned char>(std::lround(alpha * opacity));
  }
}

std::unique_ptr<MemoryBitmap> Faded(const MemoryBitmap& picture, double opacity) {
  MemoryBitmap source = picture;
  const bool isGrey = source.GetColorFormat() == corvel::kColorFormat8;
  auto faded = std::make_unique<MemoryBitmap>(source.GetWidth(), source.GetHeight(),
                                              corvel::kColorFormatBgra32);
  const BitmapRows from(source);
  const BitmapRows to(*faded);
  for (std::size_t y = 0; y < from.Size(); ++y) {
    CopyRow(from[y], isGrey, source.GetWidth(), opacity, to[y]);
  }
  return faded;
}

// Whether the map takes user space, y down, straight into the drawing, y up.
bool IsUpright(const Mat3d& map) {
  return map(0, 1) == 0.0 && map(1, 0) == 0.0 && map(0, 0) > 0.0 && map(1, 1) < 0.0;
}

// Where it must be, the transform starts from user space with y up, in units of the drawing.
void Place(quillon::TrImage& image, const Box2d& box, const Mat3d& map) {
  if (IsUpright(map)) {
    const Vec2d topLeft = Mapped(box.min, map);
    const Vec2d bottomRight = Mapped(box.max, map);
    image.SetPlacement({topLeft.x, bottomRight.y, bottomRight.x, topLeft.y});
    return;
  }
  const double scale = MeanScale(map);
  image.SetPlacement(
      {box.min.x * scale, -box.max.y * scale, box.max.x * scale, -box.min.y * scale});
  image.SetTransform(Mat3d(1 / scale, 0, 0, -1 / scale, 0, 0) * map);
}

}  // namespace

std::optional<Box2d> GivenImageSpace(const pugi::xml_node& node, const LengthBasis& basis) {
  const auto width = Width(node, basis);
  const auto height = Height(node, basis);
  if (!width || !height) return {};
  return SpaceOf(node, basis, *width, *height);
}

bool HidesImage(const pugi::xml_node& node, const LengthBasis& basis) {
  return !(Width(node, basis).value_or(1.0) > 0.0) || !(Height(node, basis).value_or(1.0) > 0.0);
}

ImagePlace PlaceImage(const pugi::xml_node& node, const LengthBasis& basis, const Vec2d& pixels) {
  const auto width = Width(node, basis);
  const auto height = Height(node, basis);
  const double fullWidth = height ? *height * pixels.x / pixels.y : pixels.x;
  const double fullHeight = width ? *width * pixels.y / pixels.x : pixels.y;
  ImagePlace place;
  place.space = SpaceOf(node, basis, width.value_or(fullWidth), height.value_or(fullHeight));
  const Box2d full(0, 0, pixels.x, pixels.y);
  const AspectRatio ratio = ParseAspectRatio(Attribute(node, "preserveAspectRatio"));
  const Mat3d map = FitInto(full, place.space, ratio);
  const Vec2d topLeft = Mapped(full.min, map);
  const Vec2d bottomRight = Mapped(full.max, map);
  place.picture = {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y};
  place.isOutOfSpace = ReachesOut(place.picture, place.space);
  // What fills its space has the very corners that the document gives.
  if (!place.isOutOfSpace && !ReachesOut(place.space, place.picture)) place.picture = place.space;
  return place;
}

quillon::TrImage MakeImage(const MemoryBitmap& picture, double opacity, const Box2d& box,
                           const Mat3d& map) {
  auto bitmap = opacity < 1.0 ? Faded(picture, opacity) : std::make_unique<MemoryBitmap>(picture);
  quillon::TrImage image(bitmap.release(), true);
  Place(image, box, map);
  return image;
}

std::vector<Vec2d> CornersOf(const quillon::TrImage& image) {
  std::vector<Vec2d> corners(4);
  image.Placement().GetCorners(corners.data());
  image.Transform().Transform(corners.data(), corners.data(), corners.size());
  return corners;
}

}  // namespace trovan::filters
