// The code page in which a table's text is read, with the reason in words.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "filters/table/TableLayout.h"

namespace trovan::filters {

struct CodePageChoice {
  int number = 0;
  std::string name;    // the customary English name; empty when the page is not in the list
  std::string reason;  // "towns.cpg names it"
  std::vector<std::string> remarks;  // about side files that had no say
};

// `asked` overrules all else.
CodePageChoice ChooseCodePage(const std::wstring& path, const TableLayout& layout,
                              std::optional<int> asked);

}  // namespace trovan::filters
