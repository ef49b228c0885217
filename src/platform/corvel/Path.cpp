#include <corvel/Path.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unicode/uchar.h>

#include <win32/Utf8.h>
#if defined(_WIN32)
#include <win32/WinTypes.h>
#endif

namespace corvel {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const wchar_t* kSeparators = L"/\\:";
fs::path SystemPath(const std::wstring& path) { return fs::path(path); }
std::wstring FromSystemPath(const fs::path& path) { return path.wstring(); }
#else
constexpr const wchar_t* kSeparators = L"/";
fs::path SystemPath(const std::wstring& path) { return fs::path(PathToSystem(path)); }
std::wstring FromSystemPath(const fs::path& path) { return PathFromSystem(path.native()); }
#endif

// Where the extension begins; the length of the path when it has none.
std::size_t ExtensionAt(const std::wstring& path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  const std::size_t name = separator == std::wstring::npos ? 0 : separator + 1;
  const std::size_t point = path.rfind(L'.');
  const bool none = point == std::wstring::npos || point < name ||
                    path.compare(name, std::wstring::npos, L".") == 0 ||
                    path.compare(name, std::wstring::npos, L"..") == 0;
  return none ? path.size() : point;
}

// No file has such a name, but the system would see only what stands in front of the NUL.
bool HoldsNul(const std::wstring& path) { return path.find(L'\0') != std::wstring::npos; }

}  // namespace

std::wstring CPath::GetExtension() const { return path_.substr(ExtensionAt(path_)); }

void CPath::SetExtension(const std::wstring& extension) {
  path_.replace(ExtensionAt(path_), std::wstring::npos, extension);
}

std::wstring CPath::GetFullPath() const {
  std::error_code error;
  const fs::path absolute = fs::absolute(SystemPath(path_), error);
  return error ? path_ : FromSystemPath(absolute);
}

std::wstring CPath::ChangeExtension(const wchar_t* path, const wchar_t* extension) {
  CPath changed(path == nullptr ? std::wstring() : std::wstring(path));
  changed.SetExtension(extension == nullptr ? std::wstring() : std::wstring(extension));
  return changed.GetPath();
}

std::wstring CPath::GetTempPath(bool mustExist) {
#if defined(_WIN32)
  std::error_code unknown;
  const fs::path folder = fs::temp_directory_path(unknown);
#else
  const char* named = std::getenv("TMPDIR");
  const fs::path folder = named != nullptr && *named != '\0' ? named : "/tmp";
#endif
  std::error_code error;
  if (mustExist && !fs::is_directory(folder, error)) return {};
  return FromSystemPath(folder);
}

bool FileExists(const std::wstring& path) {
  if (HoldsNul(path)) return false;
  std::error_code error;
  const fs::file_status status = fs::status(SystemPath(path), error);
  return fs::exists(status) && !fs::is_directory(status);
}

bool RemoveFile(const std::wstring& path) {
  if (HoldsNul(path)) return false;
  std::error_code error;
  const fs::path file = SystemPath(path);
  const fs::file_status status = fs::symlink_status(file, error);
  if (!fs::exists(status) || fs::is_directory(status)) return false;
  return fs::remove(file, error);
}

std::wstring ToLower(const std::wstring& text) {
  std::wstring lower = text;
  for (wchar_t& unit : lower) unit = static_cast<wchar_t>(u_tolower(static_cast<UChar32>(unit)));
  return lower;
}

std::wstring PathFromSystem(std::string_view bytes) { return win32::WideFromFileName(bytes); }
std::string PathToSystem(std::wstring_view path) { return win32::FileNameFromWide(path); }

}  // namespace corvel
