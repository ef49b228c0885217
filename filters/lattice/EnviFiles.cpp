#include "filters/lattice/EnviFiles.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"
#include "filters/support/OutputName.h"

namespace trovan::filters {
namespace {

using Names = std::vector<std::wstring>;

constexpr const wchar_t* kHeaderExtension = L".hdr";
constexpr const wchar_t* kRawExtensions[] = {L".img", L".dat", L".raw", L".bsq",
                                             L".bil", L".bip", L".bin"};

bool IsHeader(const std::wstring& path) {
  return corvel::ToLower(corvel::CPath(path).GetExtension()) == kHeaderExtension;
}

// The extension in whatever letters; small letters come first.
Names InAnyLetters(const std::wstring& base, std::wstring extension) {
  Names names;
  const std::wstring small = extension;
  const unsigned spellings = 1U << (small.size() - 1);
  for (unsigned raised = 0; raised < spellings; ++raised) {
    for (std::size_t i = 1; i < small.size(); ++i) {
      const bool isRaised = (raised >> (i - 1) & 1U) != 0;
      extension[i] = isRaised ? static_cast<wchar_t>(small[i] - L'a' + L'A') : small[i];
    }
    names.push_back(base + extension);
  }
  return names;
}

void Append(Names& names, const Names& more) {
  names.insert(names.end(), more.begin(), more.end());
}

std::wstring WithoutExtension(const std::wstring& path) {
  return corvel::CPath::ChangeExtension(path.c_str(), L"");
}

// Where a reader looks for the raw file of a header, in this order.
Names RawNames(const std::wstring& header) {
  const std::wstring base = WithoutExtension(header);
  Names names{base};
  for (const wchar_t* extension : kRawExtensions) Append(names, InAnyLetters(base, extension));
  return names;
}

// Where a reader looks for the header of a raw file, in this order.
Names HeaderNames(const std::wstring& raw) {
  Names names = InAnyLetters(raw, kHeaderExtension);
  const std::wstring base = WithoutExtension(raw);
  if (base != raw) Append(names, InAnyLetters(base, kHeaderExtension));
  return names;
}

// The first name for which `isThere`.
template <typename Predicate>
std::optional<std::wstring> First(const Names& names, Predicate isThere) {
  const auto found = std::find_if(names.begin(), names.end(), isThere);
  if (found == names.end()) return std::nullopt;
  return *found;
}

std::string Name(const std::wstring& path) { return corvel::Utf8FromWide(path); }

std::string Listed(const Names& paths) {
  std::string text;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (i > 0) text += i + 1 < paths.size() ? ", " : " and ";
    text += Name(paths[i]);
  }
  return text;
}

// One spelling of each name: the list is for people.
Names InSmallLetters(const Names& names) {
  Names some;
  for (const std::wstring& name : names) {
    const auto isSame = [&](const std::wstring& other) {
      return corvel::ToLower(other) == corvel::ToLower(name);
    };
    if (std::none_of(some.begin(), some.end(), isSame)) some.push_back(name);
  }
  return some;
}

std::wstring FindRaw(const std::wstring& header) {
  const Names names = RawNames(header);
  if (const auto found = First(names, corvel::FileExists)) return *found;
  throw FilterError(Name(header) + " has no raw file beside it; looked for " +
                    Listed(InSmallLetters(names)));
}

std::wstring FindHeader(const std::wstring& raw) {
  const Names names = HeaderNames(raw);
  if (const auto found = First(names, corvel::FileExists)) return *found;
  throw FilterError(Name(raw) + " has no ENVI header beside it; looked for " +
                    Listed(InSmallLetters(names)));
}

bool HasRawExtension(const std::wstring& path) {
  const std::wstring extension = corvel::ToLower(corvel::CPath(path).GetExtension());
  return std::find(std::begin(kRawExtensions), std::end(kRawExtensions), extension) !=
         std::end(kRawExtensions);
}

// The first name that is there once the raw file is.
std::optional<std::wstring> FirstWith(const std::wstring& raw, const Names& names) {
  return First(names,
               [&](const std::wstring& name) { return name == raw || corvel::FileExists(name); });
}

[[noreturn]] void FailToPair(const std::wstring& obstacle, const std::string& belongs) {
  throw FilterError(Name(obstacle) + " is in the way: " + belongs +
                    "; choose another name for the output");
}

// The header must not be one that a reader takes for that of another raw file.
void RequireOwnHeader(const EnviFiles& files) {
  const Names names = RawNames(files.header);
  // A header that exists has its raw file already, wherever the new one would stand in the list.
  const bool isReplaced = corvel::FileExists(files.header);
  const auto raw = isReplaced ? First(names, corvel::FileExists) : FirstWith(files.raw, names);
  if (!raw || *raw == files.raw) return;
  FailToPair(*raw, "by its name it belongs to the header " + Name(files.header) +
                       ", and so would " + Name(files.raw));
}

// The raw file must not have or get another header, which a reader would find instead or which
// would lose its own raw file.
void RequireOwnRaw(const EnviFiles& files) {
  for (const std::wstring& header : HeaderNames(files.raw)) {
    if (header == files.header || !corvel::FileExists(header)) continue;
    if (FirstWith(files.raw, RawNames(header)) != files.raw) continue;
    FailToPair(header, "by its name it would be a header of " + Name(files.raw) + ", as " +
                           Name(files.header) + " is");
  }
}

bool IsSameFile(const std::wstring& a, const std::wstring& b) {
  std::error_code failed;
  return std::filesystem::equivalent(corvel::PathToSystem(a), corvel::PathToSystem(b), failed);
}

// Where names are links, the files at their ends must not belong to other rasters either.
void RequireOwnTargets(const EnviFiles& files) {
  const EnviFiles targets{OutputTarget(files.header), OutputTarget(files.raw)};
  if (targets.header == files.header && targets.raw == files.raw) return;
  if (targets.header == targets.raw || IsSameFile(targets.header, targets.raw)) {
    FailToPair(targets.raw,
               "as links, " + Name(files.header) + " and " + Name(files.raw) + " both lead to it");
  }
  if (IsHeader(targets.header) && corvel::FileExists(targets.header)) {
    const auto raw = First(RawNames(targets.header), corvel::FileExists);
    if (raw && !IsSameFile(*raw, targets.raw)) {
      FailToPair(*raw, "its header is " + Name(targets.header) + ", to which " +
                           Name(files.header) + " leads as a link");
    }
  }
  if (corvel::FileExists(targets.raw)) {
    const auto header = First(HeaderNames(targets.raw), corvel::FileExists);
    if (header && !IsSameFile(*header, targets.header)) {
      FailToPair(*header, "it is the header of " + Name(targets.raw) + ", to which " +
                              Name(files.raw) + " leads as a link");
    }
  }
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
  const std::wstring base = WithoutExtension(path);
  if (IsHeader(path)) return {path, HasRawExtension(base) ? base : base + kRawExtensions[0]};
  return {(HasRawExtension(path) ? base : path) + kHeaderExtension, path};
}

void RequireOwnNames(const EnviFiles& files) {
  RequireOwnHeader(files);
  RequireOwnRaw(files);
  RequireOwnTargets(files);
}

}  // namespace trovan::filters
