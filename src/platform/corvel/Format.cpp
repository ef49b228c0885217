// FormatString walks the format itself and leaves only single numbers to the C library: the
// libraries of other systems read %s of a wide format as narrow text in the encoding of the current
// locale, and tell neither the size of a long result nor why a short one failed.
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <cwctype>

#include <corvel/Text.h>

namespace corvel {
namespace {

enum class Size {
  kDefault,
  kChar,
  kShort,
  kLong,
  kLongLong,
  kInt32,
  kIntMax,
  kSize,
  kPtrDiff,
  kLongDouble,
  kWide
};

// One conversion of a format: %[flags][width][.precision][size]type.
struct Conversion {
  std::wstring flags;
  int width = 0;
  int precision = -1;  // -1: none given
  Size size = Size::kDefault;
  wchar_t type = 0;

  bool LeftAligned() const { return flags.find(L'-') != std::wstring::npos; }
};

// Owned copy of the caller's argument list: `va_arg` on a parameter would not move the caller's.
class Arguments {
 public:
  explicit Arguments(std::va_list from) { va_copy(list_, from); }
  ~Arguments() { va_end(list_); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  template <typename T>
  T Next() {
    return va_arg(list_, T);
  }

 private:
  std::va_list list_;
};

// Reads digits at `at`. False if the number does not fit an int.
bool ReadNumber(const wchar_t*& at, int& number) {
  constexpr int kLargest = 0x7FFFFFFF;
  number = 0;
  for (; *at >= L'0' && *at <= L'9'; ++at) {
    const int digit = static_cast<int>(*at - L'0');
    if (number > (kLargest - digit) / 10) return false;
    number = number * 10 + digit;
  }
  return true;
}

bool Skip(const wchar_t*& at, const wchar_t* text) {
  const std::size_t length = std::wcslen(text);
  if (std::wcsncmp(at, text, length) != 0) return false;
  at += length;
  return true;
}

Size ReadSize(const wchar_t*& at) {
  struct Prefix {
    const wchar_t* text;
    Size size;
  };
  // Longer prefixes first.
  constexpr Prefix kPrefixes[] = {
      {L"hh", Size::kChar},   {L"h", Size::kShort},      {L"ll", Size::kLongLong},
      {L"l", Size::kLong},    {L"I64", Size::kLongLong}, {L"I32", Size::kInt32},
      {L"I", Size::kSize},    {L"j", Size::kIntMax},     {L"z", Size::kSize},
      {L"t", Size::kPtrDiff}, {L"L", Size::kLongDouble}, {L"w", Size::kWide},
  };
  for (const Prefix& prefix : kPrefixes) {
    if (Skip(at, prefix.text)) return prefix.size;
  }
  return Size::kDefault;
}

// Reads what follows a '%'. False if it is no conversion.
bool ReadConversion(const wchar_t*& at, Arguments& arguments, Conversion& conversion) {
  while (*at != 0 && std::wcschr(L"-+ #0", *at) != nullptr) conversion.flags += *at++;
  if (*at == L'*') {
    ++at;
    conversion.width = arguments.Next<int>();
    if (conversion.width < 0) {
      if (conversion.width == INT32_MIN) return false;
      conversion.flags += L'-';
      conversion.width = -conversion.width;
    }
  } else if (!ReadNumber(at, conversion.width)) {
    return false;
  }
  if (*at == L'.') {
    ++at;
    if (*at == L'*') {
      ++at;
      conversion.precision = arguments.Next<int>();
      if (conversion.precision < 0) conversion.precision = -1;
    } else if (!ReadNumber(at, conversion.precision)) {
      return false;
    }
  }
  conversion.size = ReadSize(at);
  conversion.type = *at;
  if (conversion.type == 0) return false;
  ++at;
  return true;
}

void AppendPadded(std::wstring& out, std::wstring_view text, const Conversion& conversion) {
  const auto width = static_cast<std::size_t>(conversion.width);
  const std::size_t padding = width > text.size() ? width - text.size() : 0;
  if (!conversion.LeftAligned()) out.append(padding, L' ');
  out.append(text);
  if (conversion.LeftAligned()) out.append(padding, L' ');
}

template <typename Char>
std::size_t BoundedLength(const Char* text, int precision) {
  std::size_t length = 0;
  while ((precision < 0 || length < static_cast<std::size_t>(precision)) && text[length] != 0) {
    ++length;
  }
  return length;
}

bool IsWideText(const Conversion& conversion) {
  switch (conversion.size) {
    case Size::kShort:
      return false;
    case Size::kLong:
    case Size::kWide:
      return true;
    default:
      return conversion.type == L's' || conversion.type == L'c';
  }
}

void AppendString(std::wstring& out, const Conversion& conversion, Arguments& arguments) {
  if (IsWideText(conversion)) {
    const wchar_t* text = arguments.Next<const wchar_t*>();
    if (text == nullptr) text = L"(null)";
    AppendPadded(out, {text, BoundedLength(text, conversion.precision)}, conversion);
    return;
  }
  const char* text = arguments.Next<const char*>();
  if (text == nullptr) text = "(null)";
  AppendPadded(out, WideFromUtf8({text, BoundedLength(text, conversion.precision)}), conversion);
}

void AppendCharacter(std::wstring& out, const Conversion& conversion, Arguments& arguments) {
  if (IsWideText(conversion)) {
    const auto character = static_cast<wchar_t>(arguments.Next<std::wint_t>());
    AppendPadded(out, {&character, 1}, conversion);
    return;
  }
  const auto character = static_cast<char>(arguments.Next<int>());
  AppendPadded(out, WideFromUtf8({&character, 1}), conversion);
}

// Formats one number with the C library, whatever the length of the result.
template <typename T>
bool AppendNumber(std::wstring& out, const Conversion& conversion, const wchar_t* size, T value) {
  const std::wstring format = L"%" + conversion.flags + L"*.*" + size + conversion.type;
  // The longest number without a width or a precision is a %Lf of 4933 digits.
  constexpr std::size_t kLongestNumber = 5000;
  wchar_t small[128];
  int length = std::swprintf(small, std::size(small), format.c_str(), conversion.width,
                             conversion.precision, value);
  if (length >= 0) {
    out.append(small, static_cast<std::size_t>(length));
    return true;
  }
  const auto precision =
      static_cast<std::size_t>(conversion.precision < 0 ? 0 : conversion.precision);
  std::wstring large(static_cast<std::size_t>(conversion.width) + precision + kLongestNumber,
                     L'\0');
  length = std::swprintf(large.data(), large.size(), format.c_str(), conversion.width,
                         conversion.precision, value);
  if (length < 0) return false;
  out.append(large, 0, static_cast<std::size_t>(length));
  return true;
}

bool AppendInteger(std::wstring& out, const Conversion& conversion, Arguments& arguments) {
  switch (conversion.size) {
    case Size::kDefault:
    case Size::kInt32:
      return AppendNumber(out, conversion, L"", arguments.Next<int>());
    case Size::kChar:
      return AppendNumber(out, conversion, L"hh", arguments.Next<int>());
    case Size::kShort:
      return AppendNumber(out, conversion, L"h", arguments.Next<int>());
    case Size::kLong:
      return AppendNumber(out, conversion, L"l", arguments.Next<long>());
    case Size::kLongLong:
      return AppendNumber(out, conversion, L"ll", arguments.Next<long long>());
    case Size::kIntMax:
      return AppendNumber(out, conversion, L"j", arguments.Next<std::intmax_t>());
    case Size::kSize:
      return AppendNumber(out, conversion, L"z", arguments.Next<std::size_t>());
    case Size::kPtrDiff:
      return AppendNumber(out, conversion, L"t", arguments.Next<std::ptrdiff_t>());
    default:
      return false;
  }
}

bool AppendReal(std::wstring& out, const Conversion& conversion, Arguments& arguments) {
  switch (conversion.size) {
    case Size::kDefault:
    case Size::kLong:
      return AppendNumber(out, conversion, L"", arguments.Next<double>());
    case Size::kLongDouble:
      return AppendNumber(out, conversion, L"L", arguments.Next<long double>());
    default:
      return false;
  }
}

bool AppendConversion(std::wstring& out, const Conversion& conversion, Arguments& arguments) {
  switch (conversion.type) {
    case L'%':
      out += L'%';
      return true;
    case L's':
    case L'S':
      AppendString(out, conversion, arguments);
      return true;
    case L'c':
    case L'C':
      AppendCharacter(out, conversion, arguments);
      return true;
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
      return AppendInteger(out, conversion, arguments);
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
      return AppendReal(out, conversion, arguments);
    case L'p':
      return AppendNumber(out, conversion, L"", arguments.Next<void*>());
    default:
      return false;
  }
}

}  // namespace

bool FormatStringV(std::wstring& out, const wchar_t* format, std::va_list list) {
  if (format == nullptr) return false;
  Arguments arguments(list);
  std::wstring text;
  for (const wchar_t* at = format; *at != 0;) {
    if (*at != L'%') {
      text += *at++;
      continue;
    }
    ++at;
    Conversion conversion;
    if (!ReadConversion(at, arguments, conversion)) return false;
    if (!AppendConversion(text, conversion, arguments)) return false;
  }
  out.swap(text);
  return true;
}

bool FormatString(std::wstring& out, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const bool formatted = FormatStringV(out, format, arguments);
  va_end(arguments);
  return formatted;
}

}  // namespace corvel
