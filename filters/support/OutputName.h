// Where an output goes, by the name that the user gave for it.
#pragma once

#include <string>

namespace trovan::filters {

// The file to write for `path`: `path` itself or, where that is a symbolic link, what the link
// leads to, which need not exist. An output replaces a file as a whole, so that the link stays.
//
// Raises FilterError when the name is taken by what is no file (a folder, a device, a pipe), or
// cannot be that of a file. Writes nothing.
std::wstring OutputTarget(const std::wstring& path);

// Raises FilterError: cannot write "<path>": <reason>.
[[noreturn]] void FailToWrite(const std::wstring& path, const std::string& reason);

}  // namespace trovan::filters
