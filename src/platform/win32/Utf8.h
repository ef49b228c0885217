// UTF-8 to wide text and back, for the system's narrow interfaces. A wide text is UTF-16 or UTF-32,
// as wchar_t is wide.
#pragma once

#include <string>
#include <string_view>

#include <win32/Export.h>

namespace win32 {

// Each part that is no valid UTF-8 becomes U+FFFD.
WIN32_API std::wstring WideFromUtf8(std::string_view bytes);

// Each unit that is no valid text (a surrogate without its partner, a value above U+10FFFF) becomes
// U+FFFD.
WIN32_API std::string Utf8FromWide(std::wstring_view text);

// The same for file names, without loss: POSIX names are bytes, and on real disks not all of them
// are UTF-8. A byte b that is not part of valid UTF-8 becomes the lone surrogate U+DC00 + b, and
// such a surrogate becomes the byte again.
WIN32_API std::wstring WideFromFileName(std::string_view bytes);
WIN32_API std::string FileNameFromWide(std::wstring_view text);

}  // namespace win32
