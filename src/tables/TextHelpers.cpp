#include <trovan/TextHelpers.h>

#include <algorithm>
#include <string_view>

#include <corvel/SystemInfo.h>

namespace trovan {
namespace {

using corvel::CBufferedFile;
using corvel::FileOrigin;
using corvel::FileSharing;

template <typename Byte>
std::vector<Byte> ReadBeginning(const std::wstring& path, std::size_t count) {
  std::vector<Byte> bytes;
  if (path.empty() || count == 0) return bytes;
  try {
    CBufferedFile file;
    if (!file.OpenNoThrow(path, "rb", FileSharing(1), false)) return bytes;
    bytes.resize(count);
    bytes.resize(file.Read(bytes.data(), count));
  } catch (...) {
    bytes.clear();
  }
  return bytes;
}

// The decimal character of the user; a point where nothing is to be converted.
wchar_t UserDecimal() {
  return corvel::Singleton<corvel::CSystemInfo>::Instance().DefDecimalChar();
}

template <typename Char>
std::basic_string<Char> ReplaceEachOf(std::basic_string<Char> text,
                                      std::basic_string_view<Char> characters, Char replacement) {
  std::replace_if(
      text.begin(), text.end(),
      [characters](Char c) { return characters.find(c) != characters.npos; }, replacement);
  return text;
}

}  // namespace

bool IsBinary(CBufferedFile& file, unsigned int count) {
  std::vector<char> bytes(count);
  const long long position = file.GetPosition();
  const std::size_t got = file.Read(count == 0 ? nullptr : bytes.data(), count);
  file.Seek(position, FileOrigin(0));
  const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(got);
  return std::find(bytes.begin(), end, '\0') != end;
}

std::vector<char> ReadCharsAtBeginningOfFile(const std::wstring& path, std::size_t count) {
  return ReadBeginning<char>(path, count);
}

std::vector<unsigned char> ReadBytesAtBeginningOfFile(const std::wstring& path, std::size_t count) {
  return ReadBeginning<unsigned char>(path, count);
}

// In both directions the lists' separators are looked at first, so that a comma that has just been
// made is not taken for the other kind.

std::wstring ConvertNumericToAppLocale(const std::wstring& text) {
  const wchar_t decimal = UserDecimal();
  if (decimal == L'.') return text;
  std::wstring converted = text;
  for (wchar_t& c : converted) {
    if (c == L',') {
      c = L';';
    } else if (c == L'.') {
      c = decimal;
    }
  }
  return converted;
}

std::wstring ConvertNumericFromAppLocale(const std::wstring& text) {
  const wchar_t decimal = UserDecimal();
  if (decimal == L'.') return text;
  std::wstring converted = text;
  for (wchar_t& c : converted) {
    if (c == L';') {
      c = L',';
    } else if (c == decimal) {
      c = L'.';
    }
  }
  return converted;
}

std::string ReplaceCertainCharsInString(const std::string& text, const char* chars,
                                        char replacement) {
  return ReplaceEachOf<char>(text, chars == nullptr ? "\r\n,\"'" : chars, replacement);
}

std::wstring ReplaceCertainCharsInString(const std::wstring& text, const wchar_t* chars,
                                         wchar_t replacement) {
  return ReplaceEachOf<wchar_t>(text, chars == nullptr ? L"\r\n,\"'" : chars, replacement);
}

}  // namespace trovan
