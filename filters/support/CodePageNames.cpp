#include "CodePageNames.h"

#include <cstddef>

#include <corvel/Text.h>
#include <kerno/CodePageInfo.h>
#include <kerno/TextCodec.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {

std::string CodePageName(int page) {
  constexpr int kSystemOem = 1;
  constexpr int kByNumber = 2;
  if (page == kSystemOem) return "the system's OEM code page, read as 437";
  const kerno::CodePageInfo pages(kByNumber);
  std::size_t index = 0;
  if (!pages.GetIndexFromPageNumber(page, index)) return {};
  return corvel::Utf8FromWide(pages.GetNameByIndex(index));
}

void RequireConvertible(int page, const std::string& reason) {
  if (kerno::TextCodec::IsConvertible(page)) return;
  const std::string name = CodePageName(page);
  throw FilterError("code page " + std::to_string(page) + (name.empty() ? "" : " (" + name + ")") +
                    " cannot be read here (" + reason + "); choose another one");
}

}  // namespace trovan::filters
