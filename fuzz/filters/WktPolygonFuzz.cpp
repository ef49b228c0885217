// Any bytes as well-known text: an error, or polygons that are the same when they are written and
// read once more.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "filters/geometry/WktPolygon.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"

namespace {

using tarnis::Polygon2;
using trovan::filters::AppendNumber;
using trovan::filters::FilterError;
using trovan::filters::ParseWktPolygon;
using trovan::fuzz::Require;

std::string Text(const std::vector<Polygon2>& polygons) {
  std::string text = "MULTIPOLYGON ";
  for (const Polygon2& polygon : polygons) {
    text += text.ends_with(' ') ? "((" : ",(";
    const corvel::Vec2d* point = polygon.Points().data();
    for (const unsigned int count : polygon.Counts()) {
      if (!text.ends_with('(')) text += ',';
      text += count == 0 ? "EMPTY" : "(";
      for (unsigned int i = 0; i < count; ++i, ++point) {
        if (i > 0) text += ',';
        AppendNumber(text, point->x);
        text += ' ';
        AppendNumber(text, point->y);
      }
      if (count > 0) text += ')';
    }
    text += ')';
  }
  return text + (polygons.empty() ? "EMPTY" : ")");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<Polygon2> polygons;
  try {
    polygons = ParseWktPolygon({reinterpret_cast<const char*>(data), size});
  } catch (const FilterError&) {
    return 0;
  }
  const std::vector<Polygon2> again = ParseWktPolygon(Text(polygons));
  Require(again.size() == polygons.size(), "another number of polygons");
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    Require(again[i].Points() == polygons[i].Points(), "other points");
    Require(again[i].Counts() == polygons[i].Counts(), "other rings");
  }
  return 0;
}
