// Imports maps from shapefiles. What is taken over is told in docs/formats/shapefile.md.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "filters/geometry/MapFilter.h"
#include "filters/geometry/ShapeFile.h"

namespace trovan::filters {

// A shape becomes one polygon, one set of markers, or a line for each part; the coordinates are
// those of the file, with y up. Files of any size pass through record by record.
//
// Damaged records, and shapes made of patches, are left out and noted as losses; behind a record
// that the file cuts off nothing can be read. The import raises FilterError when the file is no
// shapefile.
class ShapeImportFilter : public MapFilter {
 public:
  explicit ShapeImportFilter(quillon::IoManager& manager) : MapFilter(manager) {}

  // The Windows code page of the attributes' texts; nothing: what the table says.
  void SetCodePage(std::optional<int> codePage) { codePage_ = codePage; }

  std::wstring GetFilterName() const override { return L"ESRI Shapefile"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {L".shp"}; }
  bool CanImport(const std::wstring& path) const override;

  // With kScanFile the extent is that of the records. Otherwise it is what the header says, where
  // programs leave old ones behind; the empty box where that can be none.
  ImportFileInfo GetImportFileInfo(FileScanMode mode, const std::wstring& path) override;

  void ImportFromFile(const std::wstring& path, bool isPreview) override;

 private:
  void ReportPlace(const ShapeFile& file);
  corvel::Box2d FindExtent(ShapeFile& file);

  std::optional<int> codePage_;
};

}  // namespace trovan::filters
