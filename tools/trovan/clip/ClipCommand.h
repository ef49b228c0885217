// `trovan clip`: cuts drawings to a region.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace trovan::tool {

// Adds the command to `app`. When the arguments ask for it, parsing sets `work` to what is to be
// done; it returns an exit code.
void AddClipCommand(CLI::App& app, std::function<int()>& work);

}  // namespace trovan::tool
