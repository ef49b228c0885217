// Columns as a person names them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace trovan::filters {

// A name fit for a message: cut where it is very long. UTF-8.
std::string ShortName(const std::string& name);

// The index of the column `wanted`: its name, or, where no column has that name, its number,
// counted from 1.
//
// Raises FilterError, listing the names, when there is no such column, and when several have that
// name.
std::size_t ChooseColumn(const std::vector<std::string>& names, std::string_view wanted);

// The same for each of a list.
std::vector<std::size_t> ChooseColumns(const std::vector<std::string>& names,
                                       const std::vector<std::string>& wanted);

}  // namespace trovan::filters
