#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <corvel/Text.h>

#include "support/Locale.h"

namespace corvel {
namespace {

using trovan::test::ScopedLocale;

// What FormatString makes of it; nothing when it refuses.
std::optional<std::wstring> Formatted(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = L"old";
  const bool formatted = FormatStringV(text, format, arguments);
  va_end(arguments);
  if (!formatted) {
    EXPECT_EQ(text, L"old") << "a refusal leaves the text alone";
    return std::nullopt;
  }
  return text;
}

// What the C library makes of it, up to the length that these tests need.
std::wstring ByTheLibrary(const wchar_t* format, ...) {
  static wchar_t text[16'000];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vswprintf(text, std::size(text), format, arguments);
  va_end(arguments);
  EXPECT_GE(length, 0);
  return {text, length < 0 ? 0 : static_cast<std::size_t>(length)};
}

// Numbers: the C library decides.

// Sets of flags, and widths with precisions.
constexpr const wchar_t* kFlags[] = {L"",   L"-",  L"+",  L" ",  L"0",   L"-+",
                                     L"- ", L"+0", L" 0", L"+-", L"+ 0", L"-0"};
constexpr const wchar_t* kSizes[] = {L"",   L"1",  L"7",   L"40",   L"300",  L".0",   L".",
                                     L".1", L".3", L".17", L".250", L"12.5", L"5.12", L"200.130"};

// Compares every conversion of `types` with size `size` for one value.
template <typename T>
void ExpectAsTheLibrary(const wchar_t* types, const wchar_t* size, T value, bool alternate) {
  for (const wchar_t* flags : kFlags) {
    for (const wchar_t* extent : kSizes) {
      for (const wchar_t* type = types; *type != 0; ++type) {
        const std::wstring format =
            std::wstring(L"%") + (alternate ? L"#" : L"") + flags + extent + size + *type;
        ASSERT_EQ(Formatted(format.c_str(), value), ByTheLibrary(format.c_str(), value))
            << testing::PrintToString(format);
      }
    }
  }
}

template <typename T>
void ExpectIntegersAsTheLibrary(const wchar_t* size) {
  for (const long long value : {0LL, 1LL, -1LL, 7LL, 255LL, -128LL, 65535LL, 1'000'000'007LL,
                                static_cast<long long>(INT_MIN), LLONG_MAX, LLONG_MIN}) {
    ExpectAsTheLibrary(L"diuxXo", size, static_cast<T>(value), false);
    ExpectAsTheLibrary(L"xXo", size, static_cast<T>(value), true);
  }
}

// A locale's name as a test's name may be spelt.
std::string LocaleName(const testing::TestParamInfo<const char*>& locale) {
  return std::string(locale.param) == "C" ? "C" : "Utf8";
}

class FormatStringNumbers : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!locale_.IsSet()) GTEST_SKIP() << "the system has no such locale";
  }
  const ScopedLocale locale_{GetParam()};
};

TEST_P(FormatStringNumbers, AreThoseOfTheLibraryForIntegersOfEverySize) {
  ExpectIntegersAsTheLibrary<int>(L"");
  ExpectIntegersAsTheLibrary<int>(L"hh");
  ExpectIntegersAsTheLibrary<int>(L"h");
  ExpectIntegersAsTheLibrary<long>(L"l");
  ExpectIntegersAsTheLibrary<long long>(L"ll");
  ExpectIntegersAsTheLibrary<std::intmax_t>(L"j");
  ExpectIntegersAsTheLibrary<std::size_t>(L"z");
  ExpectIntegersAsTheLibrary<std::ptrdiff_t>(L"t");
}

TEST_P(FormatStringNumbers, AreThoseOfTheLibraryForReals) {
  for (const double value :
       {0.0, -0.0, 1.0, -1.5, 0.1, 2.5, 1e-5, 123456.789, 1e15, 1e22, DBL_MAX, -DBL_MAX, DBL_MIN,
        std::numeric_limits<double>::denorm_min(), static_cast<double>(INFINITY),
        -static_cast<double>(INFINITY), std::numeric_limits<double>::quiet_NaN()}) {
    for (const bool alternate : {false, true}) {
      ExpectAsTheLibrary(L"eEfFgGaA", L"", value, alternate);
    }
    ExpectAsTheLibrary(L"eEfFgGaA", L"l", value, false);
  }
}

TEST_P(FormatStringNumbers, AreThoseOfTheLibraryForLongReals) {
  for (const long double value : {0.1L, -1e30L, LDBL_MAX, LDBL_MIN}) {
    ExpectAsTheLibrary(L"eEfFgGaA", L"L", value, false);
  }
}

TEST_P(FormatStringNumbers, AreThoseOfTheLibraryForRandomBits) {
  std::mt19937_64 random(20240611);
  for (int round = 0; round < 20'000; ++round) {
    const std::uint64_t bits = random();
    double real = 0;
    std::memcpy(&real, &bits, sizeof real);
    const int width = static_cast<int>(random() % 60);
    const int precision = static_cast<int>(random() % 40);
    const auto integer = static_cast<long long>(bits >> (bits % 64));
    for (const wchar_t* format : {L"%*.*e", L"%-*.*g", L"%0*.*f", L"%+*.*G", L"%*.*a"}) {
      ASSERT_EQ(Formatted(format, width, precision, real),
                ByTheLibrary(format, width, precision, real));
    }
    for (const wchar_t* format : {L"%*.*lld", L"%-*.*llx", L"%#*.*llo", L"%+*.*lli"}) {
      ASSERT_EQ(Formatted(format, width, precision, integer),
                ByTheLibrary(format, width, precision, integer));
    }
  }
}

TEST_P(FormatStringNumbers, AreThoseOfTheLibraryForPointers) {
  int here = 0;
  for (void* pointer : {static_cast<void*>(&here), static_cast<void*>(nullptr)}) {
    EXPECT_EQ(Formatted(L"%p|%30p|%-30p", pointer, pointer, pointer),
              ByTheLibrary(L"%p|%30p|%-30p", pointer, pointer, pointer));
  }
}

INSTANTIATE_TEST_SUITE_P(Locales, FormatStringNumbers, testing::Values("C", "C.UTF-8"), LocaleName);

TEST(FormatString, KnowsTheSizesOfWindows) {
  EXPECT_EQ(Formatted(L"%I64d %I64u %I64x", LLONG_MIN, ULLONG_MAX, 0x123456789ABCDEFLL),
            L"-9223372036854775808 18446744073709551615 123456789abcdef");
  EXPECT_EQ(Formatted(L"%I32d %I32u", INT_MIN, UINT_MAX), L"-2147483648 4294967295");
  EXPECT_EQ(Formatted(L"%Iu %08Ix", static_cast<std::size_t>(SIZE_MAX), std::size_t{255}),
            ByTheLibrary(L"%zu %08zx", static_cast<std::size_t>(SIZE_MAX), std::size_t{255}));
}

TEST(FormatString, TakesWidthAndPrecisionFromTheArguments) {
  EXPECT_EQ(Formatted(L"[%*d]", 5, 42), L"[   42]");
  EXPECT_EQ(Formatted(L"[%*d]", -5, 42), L"[42   ]");
  EXPECT_EQ(Formatted(L"[%-*d]", -5, 42), L"[42   ]");
  EXPECT_EQ(Formatted(L"[%.*f]", 2, 1.0), L"[1.00]");
  EXPECT_EQ(Formatted(L"[%.*f]", -1, 1.0), L"[1.000000]");
  EXPECT_EQ(Formatted(L"[%*.*d]", 6, 4, 42), L"[  0042]");
  EXPECT_EQ(Formatted(L"[%*s|%.*s]", 3, L"a", 2, L"abc"), L"[  a|ab]");
  EXPECT_EQ(Formatted(L"[%-*s|%*s]", 3, L"a", -3, L"b"), L"[a  |b  ]");
  EXPECT_EQ(Formatted(L"[%.*s]", -1, L"abc"), L"[abc]");
}

// Texts.

class FormatStringTexts : public FormatStringNumbers {};

TEST_P(FormatStringTexts, AreWideByDefault) {
  EXPECT_EQ(Formatted(L"%s", L"\u6771\U0001F5FA"), L"\u6771\U0001F5FA");
  EXPECT_EQ(Formatted(L"%ls|%ws|%lS|%wS", L"\u00E4", L"\u00F6", L"\u00FC", L"\u00DF"),
            L"\u00E4|\u00F6|\u00FC|\u00DF");
  EXPECT_EQ(Formatted(L"%c%lc%wc%lC", L'\u6771', L'\u00E4', L'\u00F6', L'\u00FC'),
            L"\u6771\u00E4\u00F6\u00FC");
}

TEST_P(FormatStringTexts, AreUtf8WhereTheyAreNarrow) {
  EXPECT_EQ(Formatted(L"%S|%hs|%hS", "\xC3\xA4", "\xE6\x9D\xB1", "\xF0\x9F\x97\xBA"),
            L"\u00E4|\u6771|\U0001F5FA");
  EXPECT_EQ(Formatted(L"%C%hc%hC", 'a', 'b', 'c'), L"abc");
  EXPECT_EQ(Formatted(L"%S", "a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(Formatted(L"%C", '\xC3'), L"\uFFFD");
}

INSTANTIATE_TEST_SUITE_P(Locales, FormatStringTexts, testing::Values("C", "C.UTF-8"), LocaleName);

TEST(FormatString, PadsAndCutsTexts) {
  EXPECT_EQ(Formatted(L"[%5s|%-5s|%1s|%.2s|%5.2s|%-5.2s|%.0s]", L"abc", L"abc", L"abc", L"abc",
                      L"abc", L"abc", L"abc"),
            L"[  abc|abc  |abc|ab|   ab|ab   |]");
  EXPECT_EQ(Formatted(L"[%4S|%-4S|%.2S]", "\xC3\xA4", "\xC3\xA4", "abc"),
            L"[   \u00E4|\u00E4   |ab]")
      << "a width counts characters";
  EXPECT_EQ(Formatted(L"[%3c|%-3c|%3C]", L'x', L'y', 'z'), L"[  x|y  |  z]");
}

TEST(FormatString, ReadsNoMoreOfATextThanItsPrecision) {
  const wchar_t wide[2] = {L'a', L'b'};  // no NUL
  const char narrow[2] = {'c', 'd'};
  EXPECT_EQ(Formatted(L"%.2s%.*S", wide, 2, narrow), L"abcd");
}

TEST(FormatString, PrintsANullTextAsSuch) {
  const wchar_t* wide = nullptr;
  const char* narrow = nullptr;
  EXPECT_EQ(Formatted(L"%s|%S|%8s|%.3hs", wide, narrow, wide, narrow),
            L"(null)|(null)|  (null)|(nu");
}

TEST(FormatString, KeepsANulCharacter) {
  EXPECT_EQ(Formatted(L"a%cb", L'\0'), std::wstring(L"a\0b", 3));
}

TEST(FormatString, CopiesWhatIsNoConversion) {
  EXPECT_EQ(Formatted(L""), L"");
  EXPECT_EQ(Formatted(L"\u6771 {} \n\\"), L"\u6771 {} \n\\");
  EXPECT_EQ(Formatted(L"100%% %d%%", 5), L"100% 5%");
}

TEST(FormatString, TakesItsArgumentsInOrder) {
  EXPECT_EQ(Formatted(L"%d %s %g %I64d %S %c %u", -1, L"two", 3.5, 4LL, "five", L'6', 7U),
            L"-1 two 3.5 4 five 6 7");
}

// Refusals.

TEST(FormatString, RefusesWhatIsNoConversion) {
  for (const wchar_t* format : {L"%",
                                L"a%",
                                L"%5",
                                L"%.",
                                L"%-",
                                L"%l",
                                L"%I64",
                                L"%h",
                                L"%y",
                                L"%n",
                                L"%hn",
                                L"%lln",
                                L"%5.3q",
                                L"%'d",
                                L"%1$d",
                                L"%.-1d",
                                L"%99999999999d",
                                L"%.99999999999d",
                                L"%Ld",
                                L"%wd",
                                L"%hf",
                                L"%I64f",
                                L"%k%d",
                                L"%\u6771",
                                L"text %d %"}) {
    EXPECT_EQ(Formatted(format, 1, 2, 3), std::nullopt) << testing::PrintToString(format);
  }
}

TEST(FormatString, RefusesAWidthThatHasNoOpposite) {
  EXPECT_EQ(Formatted(L"%*d", INT_MIN, 1), std::nullopt);
}

TEST(FormatString, RefusesToFormatWithoutAFormat) { EXPECT_EQ(Formatted(nullptr), std::nullopt); }

TEST(FormatString, ReturnsWhetherItFormatted) {
  std::wstring text = L"old";
  EXPECT_TRUE(FormatString(text, L"%s: %.3G", L"width", 0.5));
  EXPECT_EQ(text, L"width: 0.5");
  EXPECT_FALSE(FormatString(text, L"%d %y", 1, 2));
  EXPECT_EQ(text, L"width: 0.5");
}

TEST(FormatString, MayWriteIntoAnArgument) {
  std::wstring text = L"ab";
  EXPECT_TRUE(FormatString(text, L"%s%s", text.c_str(), text.c_str()));
  EXPECT_EQ(text, L"abab");
  text = L"<%d>";
  EXPECT_TRUE(FormatString(text, text.c_str(), 5));
  EXPECT_EQ(text, L"<5>");
}

// Lengths.

TEST(FormatString, MakesResultsOfAnyLength) {
  const std::wstring wide(1'000'000, L'\u6771');
  EXPECT_TRUE(Formatted(L"<%s>", wide.c_str()) == L"<" + wide + L">");
  const std::string narrow(1'000'000, 'n');
  EXPECT_TRUE(Formatted(L"%S", narrow.c_str()) == std::wstring(1'000'000, L'n'));
  EXPECT_TRUE(Formatted(wide.c_str()) == wide);
  EXPECT_TRUE(Formatted(L"%1000000d", 7) == std::wstring(999'999, L' ') + L"7");
  EXPECT_TRUE(Formatted(L"%.1000000d", 7) == std::wstring(999'999, L'0') + L"7");
  EXPECT_TRUE(Formatted(L"%-1000000s", L"x") == L"x" + std::wstring(999'999, L' '));
  EXPECT_TRUE(Formatted(L"%.4000f", 0.1) == ByTheLibrary(L"%.4000f", 0.1));
  EXPECT_TRUE(Formatted(L"%5000.4000f", -DBL_MAX) == ByTheLibrary(L"%5000.4000f", -DBL_MAX));
}

TEST(FormatString, MakesNumbersOfEveryLengthAroundAnyBuffer) {
  for (int length = 1; length <= 600; ++length) {
    const auto size = static_cast<std::size_t>(length);
    ASSERT_EQ(Formatted(L"%*d", length, 7), std::wstring(size - 1, L' ') + L"7") << length;
    ASSERT_EQ(Formatted(L"%.*d", length, 0), std::wstring(size, L'0')) << length;
  }
}

// UTF-8.

TEST(WideFromUtf8, ReadsEveryLengthOfSequence) {
  EXPECT_EQ(WideFromUtf8("a\xC3\xA4\xE6\x9D\xB1\xF0\x9F\x97\xBA"), L"a\u00E4\u6771\U0001F5FA");
  EXPECT_EQ(WideFromUtf8(""), L"");
  EXPECT_EQ(WideFromUtf8(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(WideFromUtf8, ReplacesWhatIsNoText) {
  for (const char* bad : {"\xFF", "\x80", "\xC3", "\xE6\x9D"}) {
    EXPECT_EQ(WideFromUtf8(std::string("<") + bad + ">"), L"<\uFFFD>") << bad;
  }
  for (const char* bad : {"\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_EQ(WideFromUtf8(bad).find_first_not_of(L'\uFFFD'), std::wstring::npos) << bad;
  }
}

TEST(Utf8FromWide, IsTheWayBack) {
  for (const wchar_t* text : {L"", L"a", L"\u00E4\u6771", L"\U0001F5FA\U0010FFFF\uFFFD"}) {
    EXPECT_EQ(WideFromUtf8(Utf8FromWide(text)), text);
  }
}

TEST(Utf8FromWide, ReplacesWhatIsNoText) {
  EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
  EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0xDC80))), "\xEF\xBF\xBD");
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(-1))), "\xEF\xBF\xBD");
  }
}

}  // namespace
}  // namespace corvel
