// The Windows code pages with their numbers and customary English names, and the code page that a
// dBASE table's language byte stands for.
//
//   CodePageInfo pages(CodePageInfo::kByNumber);
//   std::size_t index = 0;
//   if (pages.GetIndexFromName(L"Western European (Windows)", index))
//     pages.GetPageNumberByIndex(index);  // 1252
//   MapDBFLangIDtoCodePage(0xC9);         // 1251, Russian Windows
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <kerno/Export.h>

namespace kerno {

// The Windows code page that `langID`, the byte at offset 29 of a dBASE table, names; -1 if the
// byte names none (0 is one that says nothing) or one that Windows does not have.
KERNO_API int MapDBFLangIDtoCodePage(unsigned char langID);

// The 140 code pages of Microsoft's list, in an order of the caller's choice. An index runs from 0
// to Count() - 1 and means the same page in every list of the same order.
//
// A list is a view of constant data: making and copying one costs next to nothing. That a page is
// listed does not say that its text can be converted; see TextCodec::IsConvertible.
class KERNO_API CodePageInfo {
 public:
  // The values are fixed: callers pass them as plain numbers.
  enum ListOrder {
    kAsDocumented = 0,   // as in Microsoft's table, which ascends by number
    kByDisplayName = 1,  // by name, letter by letter (capitals first); equal names by number
    kByNumber = 2,       // ascending by number
  };

  // Raises corvel's "Bad parameter" (module "kerno") if `order` is no ListOrder.
  explicit CodePageInfo(int order);

  std::size_t Count() const;

  // Finds the page with exactly this name. Two pages (1047 and 20924) share one: the first in list
  // order is found. Returns false, and leaves `index` as it is, if there is none.
  bool GetIndexFromName(const std::wstring& displayName, std::size_t& index) const;

  // Returns false, and leaves `index` as it is, if the list has no page of this number.
  bool GetIndexFromPageNumber(int page, std::size_t& index) const;

  // Raise corvel's "Bad parameter" (module "kerno") if `index` is not below Count(). The name is a
  // constant that lives as long as the program.
  unsigned int GetPageNumberByIndex(std::size_t index) const;
  std::wstring_view GetNameByIndex(std::size_t index) const;

 private:
  bool byName_;
};

}  // namespace kerno
