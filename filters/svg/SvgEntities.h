// Entities that a document declares itself:
//
//   <!DOCTYPE svg [ <!ENTITY shade "fill='#ccc'"> ]> ... <rect &shade; .../>
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trovan::filters {

// The document with its own entities put in, those within entities too. Entities that are not
// declared, or declared to be elsewhere, stay as they are. Nothing if the document declares none:
// then it is to be taken as it is.
//
// Raises FilterError where entities hold themselves, or make the document more than a few times as
// large as it is. `name` is for the message.
std::optional<std::string> WithEntities(std::string_view document, const std::string& name);

}  // namespace trovan::filters
