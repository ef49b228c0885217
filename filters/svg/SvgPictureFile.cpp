#include "SvgPictureFile.h"

#include <cstddef>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>
#include <corvel/Path.h>

#include "SvgScanner.h"
#include "filters/image/DataUri.h"
#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"

namespace trovan::filters {
namespace {

#ifdef _WIN32
constexpr const char* kSeparators = "/\\";
constexpr const wchar_t* kPathSeparators = L"/\\:";
#else
constexpr const char* kSeparators = "/";
constexpr const wchar_t* kPathSeparators = L"/";
#endif

constexpr long long kMostBytes = 256LL * 1024 * 1024;

bool IsSeparator(char c) { return std::string_view(kSeparators).find(c) != std::string_view::npos; }

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// What stands before the first colon; empty where that is no scheme (RFC 3986, section 3.1). A
// single letter is a drive.
std::string_view SchemeOf(std::string_view reference) {
  const std::size_t colon = reference.find(':');
  if (colon == std::string_view::npos || colon < 2 || !IsLetter(reference[0])) return {};
  const std::string_view scheme = reference.substr(0, colon);
  for (const char c : scheme) {
    const bool isPart = IsLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    if (!isPart) return {};
  }
  return scheme;
}

// "//host/name" and its like.
bool NamesHost(std::string_view reference) {
  return reference.size() >= 2 && IsSeparator(reference[0]) && IsSeparator(reference[1]);
}

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && IsLetter(path[0]) && path[1] == ':';
}

// The path of an address with the scheme "file".
std::string_view WithoutScheme(std::string_view address) {
  constexpr std::string_view kLocal = "//localhost/";
  address.remove_prefix(address.find(':') + 1);
  if (EqualsIgnoringCase(address.substr(0, kLocal.size()), kLocal)) {
    address.remove_prefix(kLocal.size() - 1);
  } else if (address.starts_with("///")) {
    address.remove_prefix(2);
  }
  // "/C:/name": the drive comes first in a path.
  if (address.starts_with('/') && HasDrive(address.substr(1))) address.remove_prefix(1);
  return address;
}

bool IsAbsolute(std::string_view path) {
#ifdef _WIN32
  if (HasDrive(path)) return true;
#endif
  return !path.empty() && IsSeparator(path[0]);
}

}  // namespace

std::wstring PicturePath(const std::wstring& documentPath, std::string_view reference) {
  const std::string_view scheme = SchemeOf(reference);
  const bool isFile = EqualsIgnoringCase(scheme, "file");
  if (isFile) reference = WithoutScheme(reference);
  if ((!scheme.empty() && !isFile) || NamesHost(reference)) {
    throw FilterError("only files of this computer are read");
  }
  const std::string name = DecodePercents(reference);
  if (name.empty() || name.find('\0') != std::string::npos) {
    throw FilterError("it has no name of a file");
  }
  std::wstring path = corvel::PathFromSystem(name);
  if (IsAbsolute(name)) return path;
  const std::size_t separator = documentPath.find_last_of(kPathSeparators);
  if (separator == std::wstring::npos) return path;
  return documentPath.substr(0, separator + 1) + path;
}

std::string ReadPictureFile(const std::wstring& path) {
  if (!corvel::FileExists(path)) throw FilterError("there is no such file");
  try {
    RequireFile(path);
    corvel::CBufferedFile file;
    file.Open(path, "rb", corvel::kFileShareRead, false);
    if (file.GetLength() > kMostBytes) throw FilterError("the file is larger than 256 MiB");
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    return bytes;
  } catch (const corvel::Exception& error) {
    throw FilterError(error.Message());
  }
}

}  // namespace trovan::filters
