#include "SvgImportFilter.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <corvel/BufferedFile.h>
#include <corvel/Text.h>

#include "SvgDocument.h"
#include "SvgPainter.h"
#include "SvgPlacement.h"
#include "SvgRemarks.h"
#include "SvgRenderer.h"
#include "SvgSniffer.h"
#include "filters/support/InputFile.h"

namespace trovan::filters {
namespace {

constexpr long long kHeadSize = 64LL * 1024;  // bytes: enough for what stands before a root

// At most `most` bytes of the file.
std::string ReadFile(const std::wstring& path, long long most) {
  RequireFile(path);
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  std::string bytes(static_cast<std::size_t>(std::min(file.GetLength(), most)), '\0');
  bytes.resize(file.Read(bytes.data(), bytes.size()));
  return bytes;
}

corvel::Box2d InDrawing(const SvgPage& page) {
  const corvel::Box2d& box = page.viewBox;
  return {box.min.x * page.scale, -box.max.y * page.scale, box.max.x * page.scale,
          -box.min.y * page.scale};
}

}  // namespace

SvgImportFilter::SvgImportFilter(quillon::IoManager& manager) : DrawingFilter(manager) {}
SvgImportFilter::~SvgImportFilter() = default;

void SvgImportFilter::Open(const std::wstring& path) {
  Read(ReadFile(path, corvel::CBufferedFile::kNoReadEnd), corvel::Utf8FromWide(path));
  path_ = path;
}

void SvgImportFilter::Read(std::string_view bytes, const std::string& name) {
  document_.reset();
  path_.clear();
  auto document = std::make_unique<SvgDocument>(bytes, name);
  // What there is to remark is said when the document is drawn.
  SvgRemarks ignored(*document, [](const std::string&) {});
  page_ = PlacePage(*document, ignored);
  document_ = std::move(document);
}

std::wstring SvgImportFilter::GetFilterName() const { return L"Scalable Vector Graphics"; }

std::vector<std::wstring> SvgImportFilter::GetFileExtensions() const { return {L".svg"}; }

bool SvgImportFilter::CanImport(const std::wstring& path) const {
  try {
    return RootAlone(ReadFile(path, kHeadSize)).has_value();
  } catch (const std::exception&) {
    return false;
  }
}

quillon::IoImportFilter::ImportFileInfo SvgImportFilter::GetImportFileInfo(
    FileScanMode mode, const std::wstring& path) {
  ImportFileInfo info;
  std::string bytes =
      ReadFile(path, mode == kScanHeader ? kHeadSize : corvel::CBufferedFile::kNoReadEnd);
  if (mode == kScanHeader) {
    auto root = RootAlone(bytes);
    if (!root) return info;
    bytes = std::move(*root);
  }
  const SvgDocument document(bytes, corvel::Utf8FromWide(path));
  SvgRemarks ignored(document, [](const std::string&) {});
  info.isKnown = true;
  info.summary = GetFilterName();
  if (mode == kScanHeader && !TellsPage(document)) return info;
  const SvgPage page = PlacePage(document, ignored);
  info.extent = InDrawing(page);
  corvel::FormatString(info.summary, L"%s, %g by %g", info.summary.c_str(), page.viewBox.Width(),
                       page.viewBox.Height());
  return info;
}

void SvgImportFilter::ImportFromFile(const std::wstring& path, bool) {
  if (document_ == nullptr || path != path_) Open(path);
  Deliver();
}

void SvgImportFilter::ImportFromMemory(const unsigned char* bytes, unsigned int count, bool) {
  Read({reinterpret_cast<const char*>(bytes), count}, "The document");
  Deliver();
}

void SvgImportFilter::Deliver() {
  // The document is done with afterwards, even where the work is stopped.
  const auto document = std::move(document_);
  SvgRemarks remarks(*document, [this](std::string message) { Remark(std::move(message)); });
  if (document->Sheet().LeftOut() > 0) {
    remarks.Add(
        "rules for media and with other selectors than elements, classes, ids and "
        "attributes are left out",
        document->Root());
  }
  if (!(page_.viewBox.Width() > 0.0) || !(page_.viewBox.Height() > 0.0)) return;
  SvgPainter painter(Region(), [this](quillon::TrBase& object) { Send(object); });
  SvgRenderer renderer(*document, path_, painter, remarks,
                       [this](double fraction) { ReportProgress(fraction); });
  try {
    renderer.Draw(OuterContext(page_));
  } catch (...) {
    // The next import begins with the outer region, not with a clip path of this document.
    SetRegion(tarnis::Polygon2(Region()));
    throw;
  }
}

}  // namespace trovan::filters
