#include "GeoJsonImportFilter.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <corvel/BufferedFile.h>
#include <corvel/Text.h>

#include <trovan/TextHelpers.h>

#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"

namespace trovan::filters {
namespace {

constexpr std::size_t kLookedAt = 4096;  // bytes

constexpr std::string_view kTypes[] = {
    "\"FeatureCollection\"", "\"Feature\"",    "\"GeometryCollection\"", "\"Point\"",
    "\"MultiPoint\"",        "\"LineString\"", "\"MultiLineString\"",    "\"Polygon\"",
    "\"MultiPolygon\""};

}  // namespace

bool GeoJsonImportFilter::CanImport(const std::wstring& path) const {
  const std::vector<char> bytes = ReadCharsAtBeginningOfFile(path, kLookedAt);
  std::string_view text(bytes.data(), bytes.size());
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (!text.starts_with('{')) return false;
  return std::any_of(std::begin(kTypes), std::end(kTypes), [text](std::string_view type) {
    return text.find(type) != std::string_view::npos;
  });
}

quillon::IoImportFilter::ImportFileInfo GeoJsonImportFilter::GetImportFileInfo(
    FileScanMode mode, const std::wstring& path) {
  ImportFileInfo info;
  if (mode != kScanFile) return info;
  Extent extent;
  std::size_t features = 0;
  ReadFile(path, false, [&](GeoJsonFeature& feature) {
    ++features;
    for (const Geometry& geometry : feature.geometries) extent.Add(geometry);
  });
  info.isKnown = true;
  info.extent = extent.Box();
  info.summary = L"GeoJSON, features: " + std::to_wstring(features);
  return info;
}

void GeoJsonImportFilter::ImportFromFile(const std::wstring& path, bool) {
  SendStyle();
  ReadFile(path, KeepsAttributes(), [this](GeoJsonFeature& feature) { SendFeature(feature); });
  ReportProgress(1.0);
}

void GeoJsonImportFilter::ImportFromMemory(const unsigned char* bytes, unsigned int count, bool) {
  SendStyle();
  ByteSource source({bytes, count});
  ReadGeoJson(source, KeepsAttributes(), [this](GeoJsonFeature& feature) { SendFeature(feature); });
}

void GeoJsonImportFilter::ReadFile(const std::wstring& path, bool withProperties,
                                   const Take& take) {
  RequireFile(path);
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  const auto length = static_cast<double>(file.GetLength());
  ByteSource source(file, [&](long long position) {
    ReportProgress(length > 0 ? std::min(static_cast<double>(position) / length, 1.0) : 1.0);
  });
  try {
    ReadGeoJson(source, withProperties, take);
  } catch (const FilterError& error) {
    throw FilterError(corvel::Utf8FromWide(path) + ", " + error.what());
  }
}

void GeoJsonImportFilter::SendFeature(GeoJsonFeature& feature) {
  for (Geometry& geometry : feature.geometries) {
    SendGeometry(std::move(geometry), feature.properties);
  }
}

}  // namespace trovan::filters
