#include "DrawingFormats.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/geometry/GeoJsonImportFilter.h"
#include "filters/geometry/ShapeImportFilter.h"
#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"
#include "filters/svg/SvgImportFilter.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using tarnis::Polygon2;

void Configure(GeoJsonImportFilter& filter, const DrawingOptions& options) {
  filter.SetKeepAttributes(options.keepAttributes);
}

void Configure(ShapeImportFilter& filter, const DrawingOptions& options) {
  filter.SetKeepAttributes(options.keepAttributes);
  filter.SetCodePage(options.codePage);
}

// The part of the extent that the box leaves; all of it if that is nothing.
Box2d Remaining(const Box2d& extent, const Box2d& box) {
  if (extent.IsEmpty() || box.IsEmpty()) return extent;
  const Box2d both(std::max(extent.min.x, box.min.x), std::max(extent.min.y, box.min.y),
                   std::min(extent.max.x, box.max.x), std::min(extent.max.y, box.max.y));
  return both.min.x <= both.max.x && both.min.y <= both.max.y ? both : extent;
}

// A map: its coordinates are those of the drawing.
template <typename MapFilter>
class MapDrawing : public Drawing {
 public:
  MapDrawing(std::wstring path, const DrawingOptions& options, quillon::IoManager& manager)
      : path_(std::move(path)), filter_(manager) {
    Configure(filter_, options);
  }

  DrawingFilter& Filter() override { return filter_; }
  void Import() override { filter_.ImportFromFile(path_, false); }
  Polygon2 ToDrawing(const Polygon2& region) const override { return region; }
  Polygon2 ToFile(const Polygon2& region) const override { return region; }
  SvgPage Page(const Box2d& box) override { return MapPage(Remaining(Extent(), box)); }
  Box2d Extent() override { return filter_.GetImportFileInfo(MapFilter::kScanFile, path_).extent; }

 private:
  std::wstring path_;
  MapFilter filter_;
};

// A document: its coordinates have y down, and those of the drawing are scaled.
class SvgDrawing : public Drawing {
 public:
  SvgDrawing(std::wstring path, const DrawingOptions&, quillon::IoManager& manager)
      : path_(std::move(path)), filter_(manager) {
    filter_.Open(path_);
  }

  DrawingFilter& Filter() override { return filter_; }
  void Import() override { filter_.ImportFromFile(path_, false); }
  Polygon2 ToDrawing(const Polygon2& region) const override {
    return Scaled(region, filter_.Scale());
  }
  Polygon2 ToFile(const Polygon2& region) const override {
    return Scaled(region, 1.0 / filter_.Scale());
  }
  // The page stays as it is.
  SvgPage Page(const Box2d&) override { return filter_.Page(); }
  Box2d Extent() override { return filter_.Page().viewBox; }

 private:
  // Exact: scales are powers of two.
  static Polygon2 Scaled(const Polygon2& region, double scale) {
    std::vector<corvel::Vec2d> points = region.Points();
    for (corvel::Vec2d& point : points) point = {point.x * scale, -point.y * scale};
    return {std::move(points), region.Counts()};
  }

  std::wstring path_;
  SvgImportFilter filter_;
};

struct Format {
  std::unique_ptr<Drawing> (*open)(const std::wstring& path, const DrawingOptions& options,
                                   quillon::IoManager& manager);
  std::vector<std::wstring> extensions;
  bool (*isContent)(const std::wstring& path);
};

// Filters tell their extensions and know their files without an import.
class NoManager : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase&) override {}
};

template <typename Filter, typename DrawingType>
Format FormatOf() {
  NoManager manager;
  return {[](const std::wstring& path, const DrawingOptions& options,
             quillon::IoManager& to) -> std::unique_ptr<Drawing> {
            return std::make_unique<DrawingType>(path, options, to);
          },
          Filter(manager).GetFileExtensions(),
          [](const std::wstring& path) {
            NoManager nobody;
            return Filter(nobody).CanImport(path);
          }};
}

const std::vector<Format>& Formats() {
  static const std::vector<Format> formats = {
      FormatOf<SvgImportFilter, SvgDrawing>(),
      FormatOf<GeoJsonImportFilter, MapDrawing<GeoJsonImportFilter>>(),
      FormatOf<ShapeImportFilter, MapDrawing<ShapeImportFilter>>(),
  };
  return formats;
}

const Format* FindFormat(const std::wstring& path) {
  const std::wstring extension = corvel::ToLower(corvel::CPath(path).GetExtension());
  for (const Format& format : Formats()) {
    const auto& known = format.extensions;
    if (std::find(known.begin(), known.end(), extension) != known.end()) return &format;
  }
  for (const Format& format : Formats()) {
    if (format.isContent(path)) return &format;
  }
  return nullptr;
}

}  // namespace

bool IsDrawing(const std::wstring& path) { return FindFormat(path) != nullptr; }

std::unique_ptr<Drawing> OpenDrawing(const std::wstring& path, const DrawingOptions& options,
                                     quillon::IoManager& manager) {
  RequireFile(path);
  if (!corvel::FileExists(path)) {
    throw FilterError(corvel::Utf8FromWide(path) + ": there is no file of this name");
  }
  const Format* format = FindFormat(path);
  if (format == nullptr) {
    throw FilterError(corvel::Utf8FromWide(path) +
                      " is no drawing that can be read: SVG, GeoJSON or a shapefile (.shp)");
  }
  return format->open(path, options, manager);
}

}  // namespace trovan::filters
