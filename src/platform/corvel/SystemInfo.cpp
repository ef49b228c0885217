#include <corvel/SystemInfo.h>

#include <langinfo.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): <clocale> has no newlocale.

#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace corvel {
namespace {

constexpr wchar_t kPoint = L'.';

// A locale in force on this thread for as long as the object lives.
class ThreadLocale {
 public:
  explicit ThreadLocale(::locale_t locale) : locale_(locale), previous_(::uselocale(locale)) {}
  ~ThreadLocale() {
    ::uselocale(previous_);
    ::freelocale(locale_);
  }
  ThreadLocale(const ThreadLocale&) = delete;
  ThreadLocale& operator=(const ThreadLocale&) = delete;

 private:
  ::locale_t locale_;
  ::locale_t previous_;
};

// The user's choice for numbers, by the precedence that POSIX gives the variables ("Environment
// Variables", 8.2). An empty one counts as unset.
const char* NumericLocaleName() {
  for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return name;
  }
  return "C";
}

// The one character of the text in the character set of the thread's locale; a point if the text is
// anything else.
wchar_t OnlyCharacter(const char* text) {
  const std::size_t length = std::strlen(text);
  wchar_t character = kPoint;
  std::mbstate_t state{};
  const bool whole = length != 0 && std::mbrtowc(&character, text, length, &state) == length;
  return whole ? character : kPoint;
}

wchar_t UserDecimalChar() {
  // The character set of the numbers' own locale: that of texts may be another.
  const ::locale_t locale =
      ::newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, NumericLocaleName(), ::locale_t{});
  if (locale == ::locale_t{}) return kPoint;
  const ThreadLocale inForce(locale);
  return OnlyCharacter(::nl_langinfo(RADIXCHAR));
}

}  // namespace

CSystemInfo::CSystemInfo() : decimalChar_(UserDecimalChar()) {}

template <>
CSystemInfo& Singleton<CSystemInfo>::Instance() {
  static CSystemInfo instance;
  return instance;
}

bool LocaleDecimalIsPoint() {
  const char* decimal = ::nl_langinfo(RADIXCHAR);
  return decimal[0] == '.' && decimal[1] == '\0';
}

}  // namespace corvel
