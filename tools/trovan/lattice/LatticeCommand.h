// `trovan lattice`: looks into lattice files, converts them, and draws them.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace trovan::tool {

// Adds the command. Parsing its arguments sets `work` to what they ask for.
void AddLatticeCommand(CLI::App& app, std::function<int()>& work);

}  // namespace trovan::tool
