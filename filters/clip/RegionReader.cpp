#include "RegionReader.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include <trovan/TextHelpers.h>

#include "filters/clip/AreaCollector.h"
#include "filters/clip/DrawingFormats.h"
#include "filters/clip/RegionArea.h"
#include "filters/drawing/AreaUnion.h"
#include "filters/geometry/ShapeFile.h"
#include "filters/geometry/ShapeGeometry.h"
#include "filters/geometry/ShapeImportFilter.h"
#include "filters/geometry/WktPolygon.h"
#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;

constexpr std::size_t kStartOfText = 256;
constexpr long long kLongestText = 64LL * 1024 * 1024;

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Four numbers with commas between; nothing for other texts.
std::optional<std::array<double, 4>> FourNumbers(std::string_view text) {
  std::array<double, 4> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t comma = text.find(',');
    const bool isLast = i + 1 == numbers.size();
    if (isLast != (comma == std::string_view::npos)) return std::nullopt;
    const std::string_view number = Trimmed(text.substr(0, comma));
    if (ParseNumber(number, numbers[i]) != NumberStatus::kNumber) return std::nullopt;
    if (!isLast) text.remove_prefix(comma + 1);
  }
  return numbers;
}

Polygon2 BoxRegion(const std::array<double, 4>& box) {
  const auto [xMin, yMin, xMax, yMax] = box;
  for (const double number : box) {
    if (!std::isfinite(number)) throw FilterError("the box of the region has to be finite");
  }
  // Negated, so that no order of numbers slips through.
  if (!(xMin < xMax) || !(yMin < yMax)) {
    const bool isFlat = xMin >= xMax;
    throw FilterError(std::string("the box of the region has no ") +
                      (isFlat ? "width: xmin" : "height: ymin") + " has to be below " +
                      (isFlat ? "xmax" : "ymax") + "; a box is given as xmin,ymin,xmax,ymax");
  }
  return {{{xMin, yMin}, {xMax, yMin}, {xMax, yMax}, {xMin, yMax}}, {4}};
}

// Some editors put a byte order mark in front of texts.
std::string_view WithoutMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  return text;
}

bool StartsAsText(const std::wstring& path) {
  const std::vector<char> start = ReadCharsAtBeginningOfFile(path, kStartOfText);
  return LooksLikeWktPolygon(WithoutMark({start.data(), start.size()}));
}

Polygon2 TextFileRegion(const std::wstring& path) {
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  const long long length = file.GetLength();
  if (length > kLongestText) throw FilterError("a region as text may have 64 MiB at most");
  std::string text(static_cast<std::size_t>(length), '\0');
  text.resize(file.Read(text.data(), text.size()));
  return UniteAreas(ParseWktPolygon(WithoutMark(text)));
}

Polygon2 FirstPolygon(const std::wstring& path) {
  ShapeFile file(path);
  ShapeRecord record;
  while (file.Read(record)) {
    Shape shape = DecodeShape(record.content);
    // It may have been the first polygon; the next one is another region.
    if (!shape.fault.empty()) {
      throw FilterError("record " + std::to_string(std::uint64_t{record.index} + 1) + " at byte " +
                        std::to_string(record.offset) + ": " + shape.fault);
    }
    if (shape.geometry.kind != Geometry::Kind::kArea || shape.geometry.points.empty()) continue;
    std::vector<Vec2d> points;
    for (const corvel::Vec3d& point : shape.geometry.points) points.emplace_back(point.x, point.y);
    return {std::move(points), std::move(shape.geometry.counts)};
  }
  throw FilterError(file.Fault().empty() ? "it holds no polygon" : file.Fault());
}

bool IsShapefile(const std::wstring& path) {
  AreaCollector nobody;
  return ShapeImportFilter(nobody).CanImport(path);
}

Polygon2 DrawingRegion(const std::wstring& path, corvel::IProgress* progress, Problems* remarks) {
  AreaCollector collector;
  const auto drawing = OpenDrawing(path, {}, collector);
  drawing->Filter().SetProgress(progress);
  drawing->Import();
  if (remarks != nullptr) *remarks = drawing->Filter().Remarks();
  if (collector.IsEmpty()) throw FilterError("it holds no filled area");
  return drawing->ToFile(collector.Region());
}

Polygon2 FileRegion(const std::wstring& path, corvel::IProgress* progress, Problems* remarks) {
  RequireFile(path);
  if (!corvel::FileExists(path)) {
    throw FilterError(
        "there is no file of this name, and it is neither a box xmin,ymin,xmax,ymax nor a POLYGON "
        "as well-known text");
  }
  if (StartsAsText(path)) return TextFileRegion(path);
  if (IsShapefile(path)) return FirstPolygon(path);
  if (!IsDrawing(path)) {
    throw FilterError(
        "this is neither a drawing (SVG, GeoJSON, a shapefile) nor a POLYGON as well-known text");
  }
  return DrawingRegion(path, progress, remarks);
}

}  // namespace

Polygon2 ReadRegion(const std::wstring& argument, corvel::IProgress* progress, Problems* remarks) {
  const std::string text = corvel::Utf8FromWide(argument);
  if (const auto box = FourNumbers(text)) return BoxRegion(*box);
  const bool isText = LooksLikeWktPolygon(text) && !corvel::FileExists(argument);
  Polygon2 region;
  try {
    region = isText ? UniteAreas(ParseWktPolygon(text)) : FileRegion(argument, progress, remarks);
    if (!HasArea(region)) throw FilterError("it has no area");
  } catch (const FilterError& error) {
    throw FilterError("the region" + (isText ? std::string() : " " + text) + ": " + error.what());
  }
  return region;
}

}  // namespace trovan::filters
