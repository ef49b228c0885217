// Texts and names for XML documents (W3C, "Extensible Markup Language 1.0", fifth edition).
#pragma once

#include <string>
#include <string_view>

namespace trovan::filters {

// Appends the text as content or as the value of an attribute in double quotes, in UTF-8.
// Characters that XML does not know, such as most control characters, become U+FFFD.
void AppendXmlText(std::string& xml, std::wstring_view text);

// Appends what can stand inside of a name: the text with an underscore for each character that
// cannot. The first character of a name is more restricted: it has to come before.
void AppendXmlName(std::string& xml, std::wstring_view text);

}  // namespace trovan::filters
