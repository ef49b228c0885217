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

struct Exchange {
  wchar_t from;
  wchar_t to;
};

// The separators of a list are looked at first, so that a comma is one of them before it is a
// decimal character, and what was just put in is not exchanged again.
std::wstring Exchanged(std::wstring text, const Exchange& separator, const Exchange& decimal) {
  for (wchar_t& c : text) {
    if (c == separator.from) {
      c = separator.to;
    } else if (c == decimal.from) {
      c = decimal.to;
    }
  }
  return text;
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

std::wstring ConvertNumericToAppLocale(const std::wstring& text) {
  const wchar_t decimal = UserDecimal();
  return decimal == L'.' ? text : Exchanged(text, {L',', L';'}, {L'.', decimal});
}

std::wstring ConvertNumericFromAppLocale(const std::wstring& text) {
  const wchar_t decimal = UserDecimal();
  return decimal == L'.' ? text : Exchanged(text, {L';', L','}, {decimal, L'.'});
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
