// Code pages in words.
#pragma once

#include <string>

namespace trovan::filters {

// The customary English name; empty when the page is not in the list.
std::string CodePageName(int page);

// Raises FilterError when no text of the page can be read here. `reason` tells in words why this
// page was taken: "asked for".
void RequireConvertible(int page, const std::string& reason);

}  // namespace trovan::filters
