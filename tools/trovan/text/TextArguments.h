// What the subcommands of `trovan text` have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace trovan::tool {

void AddTextSniff(CLI::App& text, std::function<int()>& work);
void AddTextTokens(CLI::App& text, std::function<int()>& work);
void AddTextColumns(CLI::App& text, std::function<int()>& work);

// Adds an option that takes single-byte characters, with the escapes \t \n \r \f \\ and \xHH, which
// `characters` then holds as bytes. `characters` must outlive the parsing.
CLI::Option* AddCharacters(CLI::App& command, const std::string& name,
                           std::optional<std::string>& characters, const std::string& description);

// A count. (The parser of numbers would take -1 for a huge one.)
extern const CLI::Validator kCount;

// A message of the command on standard error, without the control characters that a file may hold.
void WarnOfText(const std::string& message);

}  // namespace trovan::tool
