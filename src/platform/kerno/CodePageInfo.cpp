#include <kerno/CodePageInfo.h>

#include <corvel/Exception.h>

#include "CodePageTable.h"

namespace kerno {
namespace {

[[noreturn]] void RaiseBadParameter(int line) {
  corvel::Throw_ERR_CORVEL_BAD_PARAMETER("kerno", "CodePageInfo", line);
}

// REQUIRES: index < kCodePageCount.
const CodePageRow& Row(bool byName, std::size_t index) {
  return kCodePages[byName ? kCodePagesByName[index] : index];
}

// The first row, in list order, for which `matches` holds.
template <typename Predicate>
bool FindIndex(bool byName, std::size_t& index, Predicate matches) {
  for (std::size_t i = 0; i < kCodePageCount; ++i) {
    if (matches(Row(byName, i))) {
      index = i;
      return true;
    }
  }
  return false;
}

}  // namespace

CodePageInfo::CodePageInfo(int order) : byName_(order == kByDisplayName) {
  if (order < kAsDocumented || order > kByNumber) RaiseBadParameter(__LINE__);
}

std::size_t CodePageInfo::Count() const { return kCodePageCount; }

bool CodePageInfo::GetIndexFromName(const std::wstring& displayName, std::size_t& index) const {
  return FindIndex(byName_, index,
                   [&](const CodePageRow& row) { return row.displayName == displayName; });
}

bool CodePageInfo::GetIndexFromPageNumber(int page, std::size_t& index) const {
  return FindIndex(byName_, index, [&](const CodePageRow& row) { return row.number == page; });
}

unsigned int CodePageInfo::GetPageNumberByIndex(std::size_t index) const {
  if (index >= kCodePageCount) RaiseBadParameter(__LINE__);
  return static_cast<unsigned int>(Row(byName_, index).number);
}

std::wstring_view CodePageInfo::GetNameByIndex(std::size_t index) const {
  if (index >= kCodePageCount) RaiseBadParameter(__LINE__);
  return Row(byName_, index).displayName;
}

}  // namespace kerno
