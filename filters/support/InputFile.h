// What can be read as a file.
#pragma once

#include <string>

namespace trovan::filters {

// Raises FilterError when `path` names a device or a pipe: these cannot be read here and there, or
// twice, and to open one would wait. A missing file and a folder are left to whoever opens them.
void RequireFile(const std::wstring& path);

}  // namespace trovan::filters
