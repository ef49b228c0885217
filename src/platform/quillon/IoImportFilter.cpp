#include <quillon/IoImportFilter.h>

#include <corvel/Text.h>

namespace quillon {

IoImportFilter::IoImportFilter(IoManager& manager) : manager_(manager) {}
IoImportFilter::~IoImportFilter() = default;

IoImportFilter::ImportFileInfo IoImportFilter::GetImportFileInfo(FileScanMode,
                                                                 const std::wstring&) {
  return {};
}

bool IoImportFilter::HasDelayedImport() { return false; }

void IoImportFilter::ImportFromFile(const std::wstring& path, bool) {
  throw std::runtime_error("This filter cannot read files: " + corvel::Utf8FromWide(path));
}

void IoImportFilter::ImportFromMemory(const unsigned char*, unsigned int, bool) {
  throw std::runtime_error("This filter cannot read from memory");
}

void IoImportFilter::ImportObject(TrBase& object) const { manager_.ImportObject(object); }

}  // namespace quillon
