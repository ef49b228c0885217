#include "ObjectText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <tuple>
#include <utility>

#include <corvel/Color.h>
#include <corvel/Geometry.h>
#include <corvel/Text.h>
#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrFont.h>
#include <quillon/TrImage.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrMetafile.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <quillon/TrText.h>

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::Vec2d;
using corvel::Vec3d;
using Points = std::vector<Vec3d>;
using Counts = std::vector<unsigned int>;

// The shortest that reads back the same.
std::string TextOf(double value) {
  char digits[32];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
  return {digits, end};
}

std::string TextOf(const Vec2d& point) { return TextOf(point.x) + " " + TextOf(point.y); }

std::string TextOf(const Vec3d& point) {
  return TextOf(Vec2d(point.x, point.y)) + " " + TextOf(point.z);
}

std::string TextOf(const Box2d& box) { return TextOf(box.min) + ", " + TextOf(box.max); }

std::string TextOf(Color4b color) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%02x%02x%02x%02x", color.red, color.green, color.blue,
                color.alpha);
  return digits;
}

std::string TextOf(const Points& points) {
  std::string text;
  for (const Vec3d& point : points) text += (text.empty() ? "" : ", ") + TextOf(point);
  return text;
}

std::string TextOf(const Counts& counts) {
  std::string text;
  for (const unsigned int count : counts) {
    text += (text.empty() ? "" : " ") + std::to_string(count);
  }
  return "(" + text + ")";
}

template <class Object>
std::string TextOfRings(const Object& object) {
  return TextOf(object.Points()) + " " + TextOf(object.Counts());
}

std::string TextOf(const quillon::TrText& text) {
  std::string all = corvel::Utf8FromWide(text.String()) + ", " + TextOf(text.Anchor()) + ", " +
                    TextOf(text.Bounds()) + (text.HasOutline() ? ", outline" : "");
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      all += (column == 0 ? ", " : " ") + TextOf(text.Transform()(row, column));
    }
  }
  return all;
}

std::string ContentOf(const quillon::TrBase& object) {
  using namespace quillon;  // NOLINT(google-build-using-namespace): all its classes are asked for
  if (const auto* pen = dynamic_cast<const TrPen*>(&object)) {
    return std::to_string(pen->GetStyle()) + " " + TextOf(pen->Color()) + " " +
           TextOf(pen->Width());
  }
  if (const auto* brush = dynamic_cast<const TrBrush*>(&object)) {
    return std::to_string(brush->GetPattern()) + " " + TextOf(brush->Color());
  }
  if (const auto* font = dynamic_cast<const TrFont*>(&object)) {
    return corvel::Utf8FromWide(font->FaceName()) + " " + TextOf(font->Size());
  }
  if (const auto* path = dynamic_cast<const TrClipPath*>(&object)) return TextOfRings(*path);
  if (const auto* polygon = dynamic_cast<const TrPolygon*>(&object)) return TextOfRings(*polygon);
  if (const auto* line = dynamic_cast<const TrPolyline*>(&object)) return TextOf(line->Points());
  if (const auto* set = dynamic_cast<const TrMarkerSet*>(&object)) return TextOf(set->Points());
  if (const auto* text = dynamic_cast<const TrText*>(&object)) return TextOf(*text);
  if (const auto* box = dynamic_cast<const TrRectangle*>(&object)) {
    return TextOf(box->Box()) + ", " + TextOf(box->XRadius()) + " " + TextOf(box->YRadius());
  }
  if (const auto* ellipse = dynamic_cast<const TrEllipse*>(&object)) {
    return TextOf(ellipse->Box()) + ", " + TextOf(ellipse->Angle());
  }
  if (const auto* image = dynamic_cast<const TrImage*>(&object)) {
    return TextOf(image->Placement()) + ", " + std::to_string(image->Flag());
  }
  if (const auto* file = dynamic_cast<const TrMetafile*>(&object)) return TextOf(file->Box());
  return "?";
}

std::string ParamsOf(const quillon::TrBase& object) {
  std::string text;
  for (const auto& [key, value] : object.Params()) {
    text += " " + corvel::Utf8FromWide(key) + "=" + corvel::Utf8FromWide(value);
  }
  return text;
}

bool IsLess(const Vec3d& a, const Vec3d& b) {
  return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
}

std::vector<Points> SortedRings(const quillon::TrPolygon& polygon) {
  std::vector<Points> rings;
  auto next = polygon.Points().begin();
  for (const unsigned int count : polygon.Counts()) {
    Points ring(next, next + count);
    next += count;
    std::rotate(ring.begin(), std::min_element(ring.begin(), ring.end(), IsLess), ring.end());
    rings.push_back(std::move(ring));
  }
  std::sort(rings.begin(), rings.end(), [](const Points& a, const Points& b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), IsLess);
  });
  return rings;
}

}  // namespace

std::string TextOf(const quillon::TrBase& object) {
  return object.GetTypeId()->Name() + (" " + ContentOf(object)) + ParamsOf(object);
}

std::string TextOfArea(const quillon::TrBase& object) {
  const auto* polygon = dynamic_cast<const quillon::TrPolygon*>(&object);
  if (polygon == nullptr) return TextOf(object);
  quillon::TrPolygon sorted;
  sorted.Params() = polygon->Params();
  for (const Points& ring : SortedRings(*polygon)) {
    sorted.Points().insert(sorted.Points().end(), ring.begin(), ring.end());
    sorted.Counts().push_back(static_cast<unsigned int>(ring.size()));
  }
  return TextOf(sorted);
}

}  // namespace trovan::test
