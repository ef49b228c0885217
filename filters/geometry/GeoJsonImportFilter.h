// Imports maps from GeoJSON (RFC 7946). What is taken over is told in docs/formats/geojson.md.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "filters/geometry/ByteSource.h"
#include "filters/geometry/GeoJsonReader.h"
#include "filters/geometry/MapFilter.h"

namespace trovan::filters {

// A geometry becomes one polygon, one set of markers, or a line for each part; the coordinates are
// those of the file, with y up. Files of any size pass through feature by feature.
//
// The import raises FilterError when the file is no GeoJSON; the objects in front of that place
// have been delivered then.
class GeoJsonImportFilter : public MapFilter {
 public:
  explicit GeoJsonImportFilter(quillon::IoManager& manager) : MapFilter(manager) {}

  std::wstring GetFilterName() const override { return L"GeoJSON"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {L".geojson", L".json"}; }

  // Whether the file begins with an object that names a type of GeoJSON soon.
  bool CanImport(const std::wstring& path) const override;

  // The extent takes reading the whole file: kScanFile.
  ImportFileInfo GetImportFileInfo(FileScanMode mode, const std::wstring& path) override;

  void ImportFromFile(const std::wstring& path, bool isPreview) override;
  void ImportFromMemory(const unsigned char* bytes, unsigned int count, bool isPreview) override;

 private:
  using Take = std::function<void(GeoJsonFeature&)>;

  void ReadFile(const std::wstring& path, bool withProperties, const Take& take);
  void SendFeature(GeoJsonFeature& feature);
};

}  // namespace trovan::filters
