#include "SideFiles.h"

#include <corvel/Path.h>

namespace trovan::filters {
namespace {

// The extension with those letters raised whose bit is set in `raised`; the point has no bit.
std::wstring InLetters(const std::wstring& extension, unsigned raised) {
  std::wstring letters = extension;
  for (std::size_t i = 1; i < letters.size(); ++i) {
    const bool small = letters[i] >= L'a' && letters[i] <= L'z';
    if (small && (raised >> (i - 1) & 1U) != 0) {
      letters[i] = static_cast<wchar_t>(letters[i] - L'a' + L'A');
    }
  }
  return letters;
}

}  // namespace

std::optional<SideFile> FindSideFile(const std::wstring& path, const std::wstring& extension) {
  const unsigned spellings = 1U << (extension.size() - 1);
  for (unsigned raised = 0; raised < spellings; ++raised) {
    corvel::CPath candidate(path);
    candidate.SetExtension(InLetters(extension, raised));
    if (corvel::FileExists(candidate.GetPath())) return SideFile{candidate.GetPath(), raised == 0};
  }
  return std::nullopt;
}

}  // namespace trovan::filters
