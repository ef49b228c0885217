#include <trovan/DBFCodePages.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include <corvel/BufferedFile.h>
#include <corvel/Exception.h>
#include <corvel/Path.h>
#include <kerno/CodePageInfo.h>
#include <win32/WinApi.h>

namespace trovan {
namespace {

using corvel::CBufferedFile;
using corvel::CPath;
using corvel::FileSharing;

constexpr int kUtf8 = 65001;
constexpr int kActiveAnsi = 0;
constexpr int kNoCodePage = 0;
constexpr int kSystemOem = 1;
constexpr int kLargestCodePage = 65535;

struct NamedPage {
  std::int32_t number;
  const char* name;
};

// The names that ".cpg" files hold. The first match counts; an empty row ends the table.
constexpr NamedPage kNamedPages[] = {
    {28591, "ISO 88591"},  {28592, "ISO 88592"},  {28593, "ISO 88593"},
    {28594, "ISO 88594"},  {28595, "ISO 88595"},  {28596, "ISO 88596"},
    {28597, "ISO 88597"},  {28598, "ISO 88598"},  {28599, "ISO 88599"},
    {28600, "ISO 885910"}, {28603, "ISO 885913"}, {28605, "ISO 885915"},
    {65001, "UTF-8"},      {65000, "UTF-7"},      {20127, "US-ASCII"},
    {874, "ANSI 874"},     {1250, "ANSI 1250"},   {1251, "ANSI 1251"},
    {1252, "ANSI 1252"},   {1253, "ANSI 1253"},   {1254, "ANSI 1254"},
    {1255, "ANSI 1255"},   {1256, "ANSI 1256"},   {1257, "ANSI 1257"},
    {1258, "ANSI 1258"},   {437, "OEM 437"},      {720, "OEM 720"},
    {737, "OEM 737"},      {775, "OEM 775"},      {819, "OEM 819"},
    {850, "OEM 850"},      {852, "OEM 852"},      {855, "OEM 855"},
    {857, "OEM 857"},      {858, "OEM 858"},      {860, "OEM 860"},
    {861, "OEM 861"},      {862, "OEM 862"},      {863, "OEM 863"},
    {864, "OEM 864"},      {865, "OEM 865"},      {866, "OEM 866"},
    {869, "OEM 869"},      {874, "OEM 874"},      {0, ""},
};

constexpr char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (ToLowerAscii(a[i]) != ToLowerAscii(b[i])) return false;
  }
  return true;
}

int PageOfName(std::string_view name) {
  for (const NamedPage* row = kNamedPages; *row->name != '\0'; ++row) {
    if (EqualIgnoringCase(row->name, name)) return row->number;
  }
  return kNoCodePage;
}

constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Reads the number at the start of `text` as strtol does where a long has 32 bits: blanks and a
// sign may precede it, anything may follow. Nothing when there is no digit or the value does not
// fit.
std::optional<int> LeadingNumber(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsSpace(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  const std::size_t firstDigit = at;
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  const std::int64_t limit = negative ? kLargest + 1 : kLargest;
  std::int64_t value = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    value = value * 10 + (text[at] - '0');
    if (value > limit) return std::nullopt;
  }
  if (at == firstDigit) return std::nullopt;
  return static_cast<int>(negative ? -value : value);
}

std::wstring WithExtension(const std::wstring& path, const wchar_t* extension) {
  CPath changed(path);
  changed.SetExtension(extension);
  return changed.GetPath();
}

int PageOfLanguage(unsigned char langID, int otherwise) {
  const int page = kerno::MapDBFLangIDtoCodePage(langID);
  return page >= 0 ? page : otherwise;
}

}  // namespace

int CPGFileRead(const std::wstring& path) {
  CBufferedFile file;
  if (!file.OpenNoThrow(WithExtension(path, L".cpg"), "rb", FileSharing(1), false)) {
    return kNoCodePage;
  }
  std::string line;
  if (!file.ReadString(line)) return kNoCodePage;
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
  // A NUL ends the line for the parsers of narrow text.
  const std::string_view text = line.c_str();
  const std::optional<int> number = LeadingNumber(text);
  return number ? *number : PageOfName(text);
}

void CPGFileWrite(const std::wstring& path, int codePage) {
  CBufferedFile file;
  file.Open(WithExtension(path, L".cpg"), "wb", FileSharing(0), false);
  if (codePage == kUtf8) {
    file.Printf("UTF-8\r\n");
  } else if (codePage == kActiveAnsi) {
    file.Printf("%u\r\n", static_cast<unsigned int>(GetACP()));
  } else {
    file.Printf("%d\r\n", codePage);
  }
  file.Close();
}

int CodePageForDBFTranslation(const std::wstring& path, unsigned char langID) {
  const std::wstring shapefile = WithExtension(path, L".shp");
  if (!corvel::FileExists(CPath(shapefile).GetFullPath())) {
    return PageOfLanguage(langID, kSystemOem);
  }
  constexpr int kByNumber = 2;
  const kerno::CodePageInfo known(kByNumber);
  std::size_t index = 0;
  if (!known.GetIndexFromName(L"Western European (Windows)", index)) {
    corvel::ThrowInternalError("Trovan", "DBFReader", 746);
  }
  const int fallback = static_cast<int>(known.GetPageNumberByIndex(index));
  const int named = CPGFileRead(shapefile);
  if (named != kNoCodePage && named <= kLargestCodePage &&
      known.GetIndexFromPageNumber(named, index)) {
    return named;
  }
  return PageOfLanguage(langID, fallback);
}

}  // namespace trovan
