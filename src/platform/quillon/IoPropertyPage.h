// What a user chose on one page of the dialog of an import or export filter.
//
//   IoPropertyPage page;
//   page.SetProperty(IoPropertyPage::GetLatticeExportPropName_DataMin(), -12.5);
//   double lowest = 0.0;
//   page.GetProperty(IoPropertyPage::GetLatticeExportPropName_DataMin(), lowest);  // true
#pragma once

#include <map>
#include <string>

#include <quillon/Export.h>

namespace quillon {

// Numbers by their keys; keys that differ in case differ. An application derives its own page when
// the numbers live elsewhere, such as in the controls of a dialog.
//
// A number that was set as one kind can be read as the other.
class QUILLON_API IoPropertyPage {
 public:
  // The keys of the page that all lattice exports share: the least and the greatest value of the
  // data, and the type of the samples (the number of a corvel::PrimType).
  static std::wstring GetLatticeExportPropName_DataMin();
  static std::wstring GetLatticeExportPropName_DataMax();
  static std::wstring GetLatticeExportPropName_DataType();

  IoPropertyPage() = default;
  IoPropertyPage(const IoPropertyPage&) = delete;
  IoPropertyPage& operator=(const IoPropertyPage&) = delete;
  virtual ~IoPropertyPage();

  // Returns whether the page holds the key; if not, `value` stays as it was. An int is truncated
  // toward zero from what was set; what does not fit, NaN included, gives the least int.
  virtual bool GetProperty(const std::wstring& key, double& value) const;
  virtual bool GetProperty(const std::wstring& key, int& value) const;

  // Adds the number, or replaces the one that the key had.
  virtual void SetProperty(const std::wstring& key, double value);
  virtual void SetProperty(const std::wstring& key, int value);

 private:
  std::map<std::wstring, double> values_;  // A double holds every int.
};

}  // namespace quillon
