// Wide text: formatting and its narrow form.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include <corvel/Export.h>

namespace corvel {

// Formats like the wide printf of Windows, on every system: %s and %c take wide text, %S, %hs, %C
// and %hc narrow text (UTF-8), %ls and %ws wide text again; the sizes I64 and I32 are known beside
// hh, h, l, ll, j, z, t and L. Numbers come out as the C library of the system writes them.
//
//   std::wstring text;
//   FormatString(text, L"%s: %.3G", L"width", 0.5);  // true: "width: 0.5"
//
// The result may have any length. A null string prints as "(null)". Returns false and leaves `out`
// as it was when `format` is null or holds a conversion that is not known; %n is refused.
//
// REQUIRES: one argument of the right type for each conversion, as with printf.
CORVEL_API bool FormatString(std::wstring& out, const wchar_t* format, ...);
CORVEL_API bool FormatStringV(std::wstring& out, const wchar_t* format, std::va_list arguments);

// UTF-8 to wide text and back. What is no valid text becomes U+FFFD. (The names of files have their
// own conversion, which loses nothing; see Path.h.)
CORVEL_API std::wstring WideFromUtf8(std::string_view bytes);
CORVEL_API std::string Utf8FromWide(std::wstring_view text);

}  // namespace corvel
