#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kerno/TextCodec.h>
#include <win32/Utf8.h>

#include "platform/kerno/CodecTesting.h"

namespace kerno {
namespace {

struct Case {
  const char* name;
  std::string bytes;
  std::wstring text;  // with one U+FFFD for each malformed part
};

std::size_t Replacements(const std::wstring& text) {
  std::size_t count = 0;
  for (const wchar_t character : text) count += character == 0xFFFD ? 1 : 0;
  return count;
}

void ExpectCases(int page, const std::vector<Case>& cases) {
  TextCodec codec(page);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "page " << page << ": " << c.name);
    std::size_t malformed = 5;
    EXPECT_EQ(codec.Decode(c.bytes, &malformed), c.text);
    EXPECT_EQ(malformed, 5 + Replacements(c.text));  // added
    std::string utf8;
    EXPECT_EQ(codec.AppendUtf8(c.bytes, utf8), Replacements(c.text));
    EXPECT_EQ(utf8, win32::Utf8FromWide(c.text));
  }
}

TEST(MalformedText, OfUtf8) {
  ExpectCases(
      65001,
      {
          {"overlong slash", "\xC0\xAF", L"\uFFFD\uFFFD"},
          {"overlong of three bytes", "\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},
          {"overlong of four bytes", "\xF0\x80\x80\xAF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"first that is not overlong", "\xE0\xA0\x80\xF0\x90\x80\x80", L"\u0800\U00010000"},
          {"surrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
          {"around the surrogates", "\xED\x9F\xBF\xEE\x80\x80", L"\uD7FF\uE000"},
          {"beyond the last", "\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
          {"the last", "\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
          {"bytes that never occur", "\xF5\xFE\xFF", L"\uFFFD\uFFFD\uFFFD"},
          {"lone continuation",
           "a\x80"
           "b",
           L"a\uFFFDb"},
          {"two of three bytes, then a letter",
           "\xE2\x82"
           "a",
           L"\uFFFDa"},
          {"three of four bytes, then a letter",
           "\xF0\x9F\x92"
           "a",
           L"\uFFFDa"},
          {"cut after one byte", "a\xC3", L"a\uFFFD"},
          {"cut after two of three", "a\xE2\x82", L"a\uFFFD"},
          {"cut after three of four", "a\xF0\x9F\x92", L"a\uFFFD"},
          {"a start after a start", "\xE2\xE2\x82\xAC", L"\uFFFD€"},
          {"far inside ASCII", "0123456789abcdef\xFFghijklmnopqrstuv",
           L"0123456789abcdef\uFFFDghijklmnopqrstuv"},
      });
}

TEST(MalformedText, IsNotAReplacementCharacterThatIsWritten) {
  std::size_t malformed = 0;
  EXPECT_EQ(TextCodec(65001).Decode("\xEF\xBF\xBD", &malformed), L"\uFFFD");
  EXPECT_EQ(malformed, 0U);
}

TEST(MalformedText, OfShiftJis) {
  ExpectCases(932, {
                       {"cut", "a\x93", L"a\uFFFD"},
                       {"second byte out of range",
                        "\x93\x20"
                        "b",
                        L"\uFFFD b"},
                       {"code without a character",
                        "\x81\xAD"
                        "b",
                        L"\uFFFDb"},
                   });
}

TEST(MalformedText, OfChineseAndKoreanPages) {
  for (const int page : {936, 949, 950, 1361}) {
    ExpectCases(page, {
                          {"cut", "a\xB1", L"a\uFFFD"},
                          {"second byte out of range",
                           "\xB1\x20"
                           "b",
                           L"\uFFFD b"},
                      });
  }
  ExpectCases(936, {{"second byte above the range",
                     "\xB1\xFF"
                     "b",
                     L"\uFFFD\uF8F5b"}});
  ExpectCases(950, {{"code without a character",
                     "\xA3\xFE"
                     "b",
                     L"\uFFFDb"}});
  ExpectCases(1361, {{"code without a character",
                      "\xD9\xFE"
                      "b",
                      L"\uFFFDb"},
                     {"byte that begins nothing",
                      "\x80\xFF"
                      "b",
                      L"\uFFFD\uFFFDb"}});
}

TEST(MalformedText, OfGb18030) {
  ExpectCases(54936, {
                         {"cut after one", "a\x81", L"a\uFFFD"},
                         {"cut after two of four", "a\x81\x30", L"a\uFFFD"},
                         {"cut after three of four", "a\x81\x30\x81", L"a\uFFFD"},
                         {"second byte out of range",
                          "\x81\x20"
                          "b",
                          L"\uFFFD b"},
                         {"single byte that is none",
                          "a\xFF"
                          "b",
                          L"a\uFFFDb"},
                         {"beyond the last",
                          "\xE3\x32\x9A\x36"
                          "b",
                          L"\uFFFDb"},
                         {"the last",
                          "\xE3\x32\x9A\x35"
                          "b",
                          L"\U0010FFFFb"},
                     });
}

TEST(MalformedText, OfUtf16AndUtf32) {
  using namespace std::string_literals;
  ExpectCases(1200, {
                        {"lone leading surrogate",
                         "\0\xD8"
                         "a\0"s,
                         L"\uFFFDa"},
                        {"lone trailing surrogate",
                         "\0\xDC"
                         "a\0"s,
                         L"\uFFFDa"},
                        {"cut unit", "a\0b"s, L"a\uFFFD"},
                        {"cut pair", "a\0\x3D\xD8"s, L"a\uFFFD"},
                    });
  ExpectCases(12001, {
                         {"surrogate", "\0\0\xD8\0\0\0\0a"s, L"\uFFFDa"},
                         {"beyond the last", "\0\x11\0\0\0\0\0a"s, L"\uFFFDa"},
                         {"cut", "\0\0\0a\0\0"s, L"a\uFFFD"},
                     });
}

TEST(MalformedText, OfOtherPages) {
  ExpectCases(20127, {{"byte without a character", "a\x80\xFF", L"a\uFFFD\uFFFD"}});
  ExpectCases(28593, {{"byte without a character",
                       "a\xA5"
                       "b",
                       L"a\uFFFDb"}});
  ExpectCases(51932, {{"cut after two of three", "a\x8F\xB0", L"a\uFFFD"},
                      {"cut after one of two", "a\xB0", L"a\uFFFD"}});
  ExpectCases(20269, {{"accent that is cut", "a\xC8", L"a\uFFFD"},
                      {"accent on what takes none", "\xC8\xE9", L"\uFFFDØ"}});
  ExpectCases(65000, {{"a lone surrogate", "+2AA-a", L"\uFFFDa"},
                      {"a trailing surrogate", "+3AA-a", L"\uFFFDa"},
                      {"a byte above ASCII",
                       "a\xE9"
                       "b",
                       L"a\uFFFDb"}});
  ExpectCases(50220, {{"unknown escape", "a\x1B$Zb", L"a\uFFFD$Zb"}});
}

TEST(MalformedText, NeverStopsAReadOfTwoBytesInAnyPage) {
  for (const int page : ConvertiblePages()) {
    TextCodec codec(page);
    std::string code(2, '\0');
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        code[0] = static_cast<char>(first);
        code[1] = static_cast<char>(second);
        std::size_t malformed = 0;
        std::string utf8;
        const std::wstring text = codec.Decode(code, &malformed);
        ASSERT_EQ(codec.AppendUtf8(code, utf8), malformed);
        ASSERT_EQ(win32::WideFromUtf8(utf8), text);
        ASSERT_EQ(win32::Utf8FromWide(text), utf8);  // no lone surrogates
        ASSERT_LE(malformed, 2U) << page << ' ' << first << ' ' << second;
        if (malformed != 0) {
          ASSERT_NE(text.find(L'\uFFFD'), std::wstring::npos) << page;
        }
      }
    }
  }
}

}  // namespace
}  // namespace kerno
