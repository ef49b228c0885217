// Text in which nothing is invisible: what people type for a tab, and what they see of one.
//
//   Escaped("a\tb\x1B");     // a\tb\x1B, with backslashes
//   Unescaped("\\t\\x3b");   // a tab and a semicolon
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trovan::filters {

// A backslash, a control character and a byte that belongs to no UTF-8 character become an escape:
// \\ \n \r \t \f or \xHH. UTF-8.
std::string Escaped(std::string_view bytes);

// The way back; nothing when a backslash does not start one of these escapes. H is a digit or a
// letter of either case.
std::optional<std::string> Unescaped(std::string_view text);

}  // namespace trovan::filters
