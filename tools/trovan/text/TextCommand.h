// `trovan text`: looks into files of delimited text, and converts their columns.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace trovan::tool {

// Adds the command. Parsing its arguments sets `work` to what they ask for.
void AddTextCommand(CLI::App& app, std::function<int()>& work);

}  // namespace trovan::tool
