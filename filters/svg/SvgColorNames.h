// The colours that have names (W3C, "CSS Color Module Level 4", section 6.1).
#pragma once

#include <optional>
#include <string_view>

#include <corvel/Color.h>

namespace trovan::filters {

// The opaque colour of that name, in any case; nothing if there is none.
std::optional<corvel::Color4b> ColorOfName(std::string_view name);

}  // namespace trovan::filters
