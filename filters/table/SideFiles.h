// The files that lie beside a table under its name, in whatever letters their extensions are.
#pragma once

#include <optional>
#include <string>

namespace trovan::filters {

struct SideFile {
  std::wstring path;
  // The libraries look for extensions in small letters. Where the file system tells letters apart,
  // they do not find "TOWNS.FPT".
  bool foundInSmallLetters = false;
};

// The file beside `path` with the given extension (in small letters, with its point); one in small
// letters comes first. Nothing when there is none.
std::optional<SideFile> FindSideFile(const std::wstring& path, const std::wstring& extension);

}  // namespace trovan::filters
