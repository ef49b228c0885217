#include <win32/Utf8.h>

#include <cstdint>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace win32 {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;
constexpr UChar32 kEscapeBase = 0xDC00;  // U+DC80 to U+DCFF stand for the bytes 80 to FF

void Append(std::wstring& text, UChar32 point) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (point > 0xFFFF) {
      text += static_cast<wchar_t>(U16_LEAD(point));
      text += static_cast<wchar_t>(U16_TRAIL(point));
      return;
    }
  }
  text += static_cast<wchar_t>(point);
}

void Append(std::string& bytes, UChar32 point) {
  char unit[U8_MAX_LENGTH];
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(unit, length, point);
  bytes.append(unit, static_cast<std::size_t>(length));
}

// The code point at `at`, which moves behind it; negative for a unit that is no text.
UChar32 NextPoint(std::wstring_view text, std::size_t& at) {
  const auto unit = static_cast<std::uint32_t>(text[at++]);
  if constexpr (sizeof(wchar_t) == 2) {
    if (U16_IS_LEAD(unit) && at < text.size() && U16_IS_TRAIL(text[at])) {
      return U16_GET_SUPPLEMENTARY(unit, text[at++]);
    }
  }
  return unit > 0x10FFFF || U_IS_SURROGATE(unit) ? U_SENTINEL : static_cast<UChar32>(unit);
}

template <typename OnBadBytes>
std::wstring Decode(std::string_view bytes, OnBadBytes onBadBytes) {
  std::wstring text;
  text.reserve(bytes.size());
  const auto* units = reinterpret_cast<const std::uint8_t*>(bytes.data());
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t from = at;
    UChar32 point = 0;
    U8_NEXT(units, at, bytes.size(), point);
    if (point >= 0) {
      Append(text, point);
    } else {
      onBadBytes(text, bytes.substr(from, at - from));
    }
  }
  return text;
}

template <typename OnBadUnit>
std::string Encode(std::wstring_view text, OnBadUnit onBadUnit) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto unit = static_cast<std::uint32_t>(text[at]);
    const UChar32 point = NextPoint(text, at);
    if (point >= 0) {
      Append(bytes, point);
    } else {
      onBadUnit(bytes, unit);
    }
  }
  return bytes;
}

}  // namespace

std::wstring WideFromUtf8(std::string_view bytes) {
  return Decode(bytes, [](std::wstring& text, std::string_view) { Append(text, kReplacement); });
}

std::string Utf8FromWide(std::wstring_view text) {
  return Encode(text, [](std::string& bytes, std::uint32_t) { Append(bytes, kReplacement); });
}

std::wstring WideFromFileName(std::string_view bytes) {
  return Decode(bytes, [](std::wstring& text, std::string_view bad) {
    for (const char byte : bad) {
      text += static_cast<wchar_t>(kEscapeBase + static_cast<unsigned char>(byte));
    }
  });
}

std::string FileNameFromWide(std::wstring_view text) {
  return Encode(text, [](std::string& bytes, std::uint32_t unit) {
    if (unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF) {
      bytes += static_cast<char>(unit - kEscapeBase);
    } else {
      Append(bytes, kReplacement);
    }
  });
}

}  // namespace win32
