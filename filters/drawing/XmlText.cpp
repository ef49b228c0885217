#include "XmlText.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include <corvel/Text.h>

namespace trovan::filters {
namespace {

// A surrogate is left to the conversion to UTF-8, which joins those that are pairs.
bool IsXmlCharacter(wchar_t c) {
  const auto code = static_cast<std::uint32_t>(c);
  if (code < 0x20) return code == 0x9 || code == 0xA || code == 0xD;
  return code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

// What cannot stand for itself; null: it can.
const char* Replacement(wchar_t c) {
  switch (c) {
    case L'&':
      return "&amp;";
    case L'<':
      return "&lt;";
    case L'>':
      return "&gt;";
    case L'"':
      return "&quot;";
    // Parsers make blanks of these in attributes, and line feeds of carriage returns.
    case L'\t':
      return "&#9;";
    case L'\n':
      return "&#10;";
    case L'\r':
      return "&#13;";
    default:
      return IsXmlCharacter(c) ? nullptr : "\xEF\xBF\xBD";
  }
}

// NameChar, ordered.
bool IsNameCharacter(wchar_t c) {
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
  };
  static constexpr Range kRanges[] = {
      {'-', '.'},       {'0', '9'},       {'A', 'Z'},         {'_', '_'},       {'a', 'z'},
      {0xB7, 0xB7},     {0xC0, 0xD6},     {0xD8, 0xF6},       {0xF8, 0x37D},    {0x37F, 0x1FFF},
      {0x200C, 0x200D}, {0x203F, 0x2040}, {0x2070, 0x218F},   {0x2C00, 0x2FEF}, {0x3001, 0xD7FF},
      {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
  };
  const auto code = static_cast<std::uint32_t>(c);
  return std::any_of(std::begin(kRanges), std::end(kRanges), [code](const Range& range) {
    return range.first <= code && code <= range.last;
  });
}

}  // namespace

void AppendXmlText(std::string& xml, std::wstring_view text) {
  std::size_t from = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* replacement = Replacement(text[i]);
    if (replacement == nullptr) continue;
    xml += corvel::Utf8FromWide(text.substr(from, i - from));
    xml += replacement;
    from = i + 1;
  }
  xml += corvel::Utf8FromWide(text.substr(from));
}

void AppendXmlName(std::string& xml, std::wstring_view text) {
  std::wstring name(text);
  std::replace_if(
      name.begin(), name.end(), [](wchar_t c) { return !IsNameCharacter(c); }, L'_');
  xml += corvel::Utf8FromWide(name);
}

}  // namespace trovan::filters
