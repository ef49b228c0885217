#pragma once

#include <string>
#include <string_view>

namespace trovan::filters {

// Text from a file in quotes, fit for a message: cut when it is long, other than printable ASCII as
// "\x1B".
std::string Quoted(std::string_view text);

}  // namespace trovan::filters
