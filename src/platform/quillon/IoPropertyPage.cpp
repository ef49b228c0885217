#include <quillon/IoPropertyPage.h>

#include <corvel/Truncate.h>

namespace quillon {

std::wstring IoPropertyPage::GetLatticeExportPropName_DataMin() { return L"LatticeExport.DataMin"; }

std::wstring IoPropertyPage::GetLatticeExportPropName_DataMax() { return L"LatticeExport.DataMax"; }

std::wstring IoPropertyPage::GetLatticeExportPropName_DataType() {
  return L"LatticeExport.DataType";
}

IoPropertyPage::~IoPropertyPage() = default;

bool IoPropertyPage::GetProperty(const std::wstring& key, double& value) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return false;
  value = found->second;
  return true;
}

bool IoPropertyPage::GetProperty(const std::wstring& key, int& value) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return false;
  value = corvel::TruncateToInt32(found->second);
  return true;
}

void IoPropertyPage::SetProperty(const std::wstring& key, double value) { values_[key] = value; }

void IoPropertyPage::SetProperty(const std::wstring& key, int value) { values_[key] = value; }

}  // namespace quillon
