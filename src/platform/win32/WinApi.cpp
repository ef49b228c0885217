#include <win32/WinApi.h>

#include <cerrno>
#include <chrono>
#include <cwchar>
#include <fcntl.h>
#include <langinfo.h>
#include <string>
#include <string_view>
#include <strings.h>
#include <unistd.h>

#include <win32/Utf8.h>

namespace {

struct CharacterSet {
  const char* name;  // as nl_langinfo(CODESET) spells it
  UINT codePage;
};

constexpr UINT kWesternEuropean = 1252;

// The character sets of the locales that GNU and BSD systems offer. Plain ASCII, the set of the "C"
// locale, is left out: it says nothing about the user's letters.
constexpr CharacterSet kCharacterSets[] = {
    {"UTF-8", 65001},      {"ISO-8859-1", 28591}, {"ISO-8859-2", 28592},  {"ISO-8859-3", 28593},
    {"ISO-8859-4", 28594}, {"ISO-8859-5", 28595}, {"ISO-8859-6", 28596},  {"ISO-8859-7", 28597},
    {"ISO-8859-8", 28598}, {"ISO-8859-9", 28599}, {"ISO-8859-13", 28603}, {"ISO-8859-15", 28605},
    {"KOI8-R", 20866},     {"KOI8-U", 21866},     {"CP1250", 1250},       {"CP1251", 1251},
    {"CP1252", 1252},      {"CP1253", 1253},      {"CP1254", 1254},       {"CP1255", 1255},
    {"CP1256", 1256},      {"CP1257", 1257},      {"CP1258", 1258},       {"TIS-620", 874},
    {"SHIFT_JIS", 932},    {"GBK", 936},          {"GB2312", 936},        {"EUC-KR", 51949},
    {"BIG5", 950},         {"EUC-JP", 51932},     {"GB18030", 54936},     {"JOHAB", 1361},
};

// Sixteen bits, as different from other callers' as a clock and a process number allow.
UINT FirstNumber() {
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  return (static_cast<UINT>(ticks) ^ static_cast<UINT>(::getpid()) * 40503U) & 0xFFFFU;
}

// REQUIRES: `folder` is not empty.
std::wstring TempName(std::wstring_view folder, std::wstring_view prefix, UINT number) {
  std::wstring name(folder);
  if (name.back() != L'/') name += L'/';
  name += prefix.substr(0, 3);
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  for (int shift = 12; shift >= 0; shift -= 4) {
    if (number >> shift != 0 || shift == 0) name += kDigits[(number >> shift) & 0xFU];
  }
  return name + L".tmp";
}

// Whether the file was made. False with errno EEXIST when the name is taken.
bool CreateNew(const std::wstring& name) {
  const std::string bytes = win32::FileNameFromWide(name);
  const int file = ::open(bytes.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file < 0) return false;
  ::close(file);
  return true;
}

void CopyName(const std::wstring& from, wchar_t* to) {
  std::wmemcpy(to, from.c_str(), from.size() + 1);
}

}  // namespace

UINT GetACP() {
  const char* name = ::nl_langinfo(CODESET);
  for (const CharacterSet& set : kCharacterSets) {
    if (::strcasecmp(name, set.name) == 0) return set.codePage;
  }
  return kWesternEuropean;
}

UINT GetTempFileNameW(const wchar_t* path, const wchar_t* prefix, UINT unique, wchar_t* name) {
  constexpr std::size_t kLongestFolder = MAX_PATH - 14;
  constexpr UINT kNumbers = 0xFFFF;
  if (path == nullptr || name == nullptr) {
    errno = EINVAL;
    return 0;
  }
  if (*path == L'\0') {
    errno = ENOENT;
    return 0;
  }
  if (std::wcslen(path) > kLongestFolder) {
    errno = ENAMETOOLONG;
    return 0;
  }
  const std::wstring_view start = prefix == nullptr ? L"" : prefix;
  if (unique != 0) {
    CopyName(TempName(path, start, unique & kNumbers), name);
    return unique;
  }
  const UINT first = FirstNumber();
  for (UINT tried = 0; tried < kNumbers; ++tried) {
    const UINT number = (first + tried) % kNumbers + 1;
    const std::wstring candidate = TempName(path, start, number);
    if (CreateNew(candidate)) {
      CopyName(candidate, name);
      return number;
    }
    if (errno != EEXIST) return 0;
  }
  return 0;
}
