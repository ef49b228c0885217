// What the start of a file tells about it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trovan::filters {

// Where XML begins with an element "svg", that element alone, without content. Nothing for other
// texts, and where its start tag does not end within `head`. The text is in UTF-8, or in UTF-16
// with ASCII letters only.
std::optional<std::string> RootAlone(std::string_view head);

}  // namespace trovan::filters
