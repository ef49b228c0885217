#include "filters/text/EscapedText.h"

#include <gtest/gtest.h>

namespace trovan::test {
namespace {

using filters::Escaped;
using filters::Unescaped;

TEST(Escaped, ShowsWhatWouldNotBeSeen) {
  const struct {
    std::string bytes;
    const char* expected;
  } cases[] = {
      {"", ""},
      {"plain, \"text\"", "plain, \"text\""},
      {"a\tb\nc\rd\fe\\", R"(a\tb\nc\rd\fe\\)"},
      {std::string("\0\x1B[0m\x7F", 6), R"(\x00\x1B[0m\x7F)"},
      {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
      {"caf\xE9", R"(caf\xE9)"},
      {"\xE2\x82", R"(\xE2\x82)"},
      {"\xC2\x9B"
       "0m\xC2\xA0",
       "\\xC2\\x9B"
       "0m\xC2\xA0"},
  };
  for (const auto& c : cases) EXPECT_EQ(Escaped(c.bytes), c.expected);
}

TEST(Unescaped, ReadsWhatPeopleType) {
  EXPECT_EQ(Unescaped(""), "");
  EXPECT_EQ(Unescaped(",;"), ",;");
  EXPECT_EQ(Unescaped(R"(\t\n\r\f\\)"), "\t\n\r\f\\");
  EXPECT_EQ(Unescaped(R"(\x3B\x3b\xA7)"), ";;\xA7");
  EXPECT_EQ(Unescaped(R"(\x00)"), std::string(1, '\0'));
}

TEST(Unescaped, RefusesOtherEscapes) {
  for (const char* text :
       {R"(\)", R"(\a)", R"(\x)", R"(\x4)", R"(\xG0)", R"(\x-1)", R"(\x+1)", R"(a\,)", R"(\\\)"}) {
    EXPECT_EQ(Unescaped(text), std::nullopt) << text;
  }
}

TEST(Unescaped, GivesEveryByteBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string bytes = {'a', static_cast<char>(byte), 'b'};
    EXPECT_EQ(Unescaped(Escaped(bytes)), bytes) << byte;
  }
}

}  // namespace
}  // namespace trovan::test
