#include "ShapeImportFilter.h"

#include <cmath>
#include <memory>
#include <utility>

#include <corvel/Text.h>

#include <trovan/TextHelpers.h>

#include "filters/geometry/ShapeAttributes.h"
#include "filters/geometry/ShapeGeometry.h"
#include "filters/support/StoredNumbers.h"

namespace trovan::filters {
namespace {

constexpr std::uint32_t kFileCode = 9994;
constexpr std::uint32_t kRecordsBetweenReports = 256;

// Programs leave numbers without meaning where there are no records.
bool IsExtent(const corvel::Box2d& box) {
  return std::isfinite(box.min.x) && std::isfinite(box.min.y) && std::isfinite(box.max.x) &&
         std::isfinite(box.max.y) && box.min.x <= box.max.x && box.min.y <= box.max.y;
}

std::string Place(const ShapeRecord& record) {
  return "record " + std::to_string(std::uint64_t{record.index} + 1) + " at byte " +
         std::to_string(record.offset);
}

}  // namespace

bool ShapeImportFilter::CanImport(const std::wstring& path) const {
  const std::vector<unsigned char> bytes = ReadBytesAtBeginningOfFile(path, 4);
  return bytes.size() == 4 && LoadU32HighFirst(bytes.data()) == kFileCode;
}

quillon::IoImportFilter::ImportFileInfo ShapeImportFilter::GetImportFileInfo(
    FileScanMode mode, const std::wstring& path) {
  ShapeFile file(path);
  ImportFileInfo info;
  info.isKnown = true;
  if (mode == kScanFile) {
    info.extent = FindExtent(file);
  } else if (IsExtent(file.Header().extent)) {
    info.extent = file.Header().extent;
  }
  info.summary = L"Shapefile: " + corvel::WideFromUtf8(DescribeShapeType(file.Header().type));
  return info;
}

corvel::Box2d ShapeImportFilter::FindExtent(ShapeFile& file) {
  Extent extent;
  ShapeRecord record;
  while (file.Read(record)) {
    if (record.index % kRecordsBetweenReports == 0) ReportPlace(file);
    extent.Add(DecodeShape(record.content).geometry);
  }
  return extent.Box();
}

void ShapeImportFilter::ReportPlace(const ShapeFile& file) {
  ReportProgress(static_cast<double>(file.Position()) / static_cast<double>(file.Length()));
}

void ShapeImportFilter::ImportFromFile(const std::wstring& path, bool) {
  ShapeFile file(path);
  std::unique_ptr<ShapeAttributes> attributes;
  if (KeepsAttributes()) {
    attributes = ShapeAttributes::Open(path, codePage_, LossList());
    if (!attributes) Remark("there are no attributes: no .dbf file lies beside the shapefile");
  }
  SendStyle();
  ShapeRecord record;
  while (file.Read(record)) {
    if (record.index % kRecordsBetweenReports == 0) ReportPlace(file);
    Shape shape = DecodeShape(record.content);
    if (!shape.fault.empty()) NoteLoss(Place(record) + " is left out: " + shape.fault);
    if (!shape.remark.empty()) Remark(Place(record) + ": " + shape.remark);
    if (shape.geometry.points.empty()) continue;
    SendGeometry(std::move(shape.geometry),
                 attributes ? attributes->Read(record.index) : corvel::CParamList());
  }
  if (!file.Fault().empty()) NoteLoss(file.Fault());
  if (attributes && attributes->Malformed() > 0) {
    Remark(std::to_string(attributes->Malformed()) + " places of the attributes are no text of " +
           "code page " + std::to_string(attributes->CodePage()) + " and came out as U+FFFD");
  }
  ReportProgress(1.0);
}

}  // namespace trovan::filters
