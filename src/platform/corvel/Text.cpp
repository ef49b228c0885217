#include <corvel/Text.h>
#include <win32/Utf8.h>

namespace corvel {

std::wstring WideFromUtf8(std::string_view bytes) { return win32::WideFromUtf8(bytes); }
std::string Utf8FromWide(std::wstring_view text) { return win32::Utf8FromWide(text); }

}  // namespace corvel
