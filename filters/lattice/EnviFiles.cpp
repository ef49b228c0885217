#include "filters/lattice/EnviFiles.h"

#include <optional>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr const wchar_t* kHeaderExtension = L".hdr";
constexpr const wchar_t* kRawExtensions[] = {L".img", L".dat", L".raw", L".bsq",
                                             L".bil", L".bip", L".bin"};

bool IsHeader(const std::wstring& path) {
  return corvel::ToLower(corvel::CPath(path).GetExtension()) == kHeaderExtension;
}

// The file `base` + `extension`, in whatever letters the extension is; small letters come first.
std::optional<std::wstring> FindInAnyLetters(const std::wstring& base, std::wstring extension) {
  const std::wstring small = extension;
  const unsigned spellings = 1U << (small.size() - 1);
  for (unsigned raised = 0; raised < spellings; ++raised) {
    for (std::size_t i = 1; i < small.size(); ++i) {
      const bool isRaised = (raised >> (i - 1) & 1U) != 0;
      extension[i] = isRaised ? static_cast<wchar_t>(small[i] - L'a' + L'A') : small[i];
    }
    if (corvel::FileExists(base + extension)) return base + extension;
  }
  return std::nullopt;
}

std::string Name(const std::wstring& path) { return corvel::Utf8FromWide(path); }

std::string Listed(const std::vector<std::wstring>& paths) {
  std::string text;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (i > 0) text += i + 1 < paths.size() ? ", " : " and ";
    text += Name(paths[i]);
  }
  return text;
}

std::wstring WithoutExtension(const std::wstring& path) {
  return corvel::CPath::ChangeExtension(path.c_str(), L"");
}

std::wstring FindRaw(const std::wstring& header) {
  std::wstring base = WithoutExtension(header);
  if (corvel::FileExists(base)) return base;
  std::vector<std::wstring> lookedFor{base};
  for (const wchar_t* extension : kRawExtensions) {
    if (auto found = FindInAnyLetters(base, extension)) return *found;
    lookedFor.push_back(base + extension);
  }
  throw FilterError(Name(header) + " has no raw file beside it; looked for " + Listed(lookedFor));
}

std::wstring FindHeader(const std::wstring& raw) {
  std::vector<std::wstring> lookedFor;
  for (const std::wstring& base : {raw, WithoutExtension(raw)}) {
    if (auto found = FindInAnyLetters(base, kHeaderExtension)) return *found;
    if (lookedFor.empty() || base != raw) lookedFor.push_back(base + kHeaderExtension);
  }
  throw FilterError(Name(raw) + " has no ENVI header beside it; looked for " + Listed(lookedFor));
}

}  // namespace

EnviFiles FindEnviFiles(const std::wstring& path) {
  // Opened first: without the file itself, nobody wants to hear that another one is missing.
  corvel::CBufferedFile file;
  file.Open(path, "rb", corvel::kFileShareRead, false);
  if (IsHeader(path)) return {path, FindRaw(path)};
  return {FindHeader(path), path};
}

EnviFiles NewEnviFiles(const std::wstring& path) {
  if (IsHeader(path)) return {path, corvel::CPath::ChangeExtension(path.c_str(), L".img")};
  return {corvel::CPath::ChangeExtension(path.c_str(), kHeaderExtension), path};
}

}  // namespace trovan::filters
