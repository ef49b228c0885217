#include "SvgPicture.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

#include <quillon/TrEllipse.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

using corvel::Box2d;
using corvel::Color4b;
using corvel::Vec2d;
using corvel::Vec3d;

namespace {

std::string Number(double value) {
  char digits[32];
  return {digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr};
}

std::string Quoted(double value) { return "\"" + Number(value) + "\""; }

std::string Color(Color4b color) {
  return "rgb(" + std::to_string(color.red) + "," + std::to_string(color.green) + "," +
         std::to_string(color.blue) + ")";
}

}  // namespace

void SvgPicture::ImportObject(quillon::TrBase& object) {
  if (const auto* pen = dynamic_cast<quillon::TrPen*>(&object)) {
    pen_ = *pen;
  } else if (const auto* brush = dynamic_cast<quillon::TrBrush*>(&object)) {
    brush_ = *brush;
  } else if (const auto* line = dynamic_cast<quillon::TrPolyline*>(&object)) {
    const auto count = static_cast<unsigned int>(line->Points().size());
    Draw("<path d=\"" + Path(line->Points(), {count}, "") + "\"", false);
  } else if (const auto* area = dynamic_cast<quillon::TrPolygon*>(&object)) {
    Draw("<path d=\"" + Path(area->Points(), area->Counts(), "Z") + R"(" fill-rule="evenodd")",
         true);
  } else if (const auto* ellipse = dynamic_cast<quillon::TrEllipse*>(&object)) {
    const Box2d& box = ellipse->Box();
    extent_ |= box;
    Draw("<ellipse cx=" + Quoted(box.Center().x) + " cy=" + Quoted(0.0 - box.Center().y) +
             " rx=" + Quoted(box.Width() / 2) + " ry=" + Quoted(box.Height() / 2),
         true);
  }
}

void SvgPicture::Draw(const std::string& shape, bool isFilled) {
  const bool fills = isFilled && brush_.Fills();
  shapes_ += "  " + shape + " fill=\"" + (fills ? Color(brush_.Color()) : "none") + "\" stroke=\"" +
             (pen_.Draws() ? Color(pen_.Color()) : "none") +
             "\" stroke-width=" + Quoted(pen_.Width()) + "/>\n";
}

// In a drawing y points up, in a picture down.
std::string SvgPicture::Point(const Vec2d& point) {
  extent_ |= Box2d(point, point);
  return Number(point.x) + " " + Number(0.0 - point.y);
}

std::string SvgPicture::Path(const std::vector<Vec3d>& points,
                             const std::vector<unsigned int>& counts, const char* end) {
  std::string path;
  auto next = points.begin();
  for (const unsigned int count : counts) {
    for (unsigned int i = 0; i < count; ++i, ++next) {
      path += (i == 0 ? "M" : "L") + Point({next->x, next->y});
    }
    path += end;
  }
  return path;
}

std::string SvgPicture::Text() const {
  const Box2d box = extent_.IsEmpty() ? Box2d(0, 0, 1, 1) : extent_;
  const double margin = std::max(box.Width(), box.Height()) / 40;
  return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox=")" + Number(box.min.x - margin) + " " +
         Number(-box.max.y - margin) + " " + Number(box.Width() + 2 * margin) + " " +
         Number(box.Height() + 2 * margin) + "\">\n" + shapes_ + "</svg>\n";
}
