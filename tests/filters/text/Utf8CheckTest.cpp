#include "filters/text/Utf8Check.h"

#include <string>

#include <gtest/gtest.h>

namespace trovan::test {
namespace {

using filters::Utf8Check;

constexpr long long kNowhere = Utf8Check::kNowhere;

std::span<const unsigned char> Bytes(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

// The first bad byte, whichever way the text is cut in two.
long long FirstBad(const std::string& text) {
  long long firstBad = kNowhere;
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    Utf8Check check;
    check.Take(Bytes(std::string_view(text).substr(0, cut)));
    check.Take(Bytes(std::string_view(text).substr(cut)));
    check.Finish();
    if (cut > 0) {
      EXPECT_EQ(check.FirstBad(), firstBad) << "cut at " << cut;
    }
    firstBad = check.FirstBad();
  }
  return firstBad;
}

std::string Encoded(unsigned code) {
  if (code < 0x80) return {static_cast<char>(code)};
  const auto last = [code](unsigned shift) {
    return static_cast<char>(0x80 | (code >> shift & 0x3F));
  };
  if (code < 0x800) return {static_cast<char>(0xC0 | code >> 6), last(0)};
  if (code < 0x10000) return {static_cast<char>(0xE0 | code >> 12), last(6), last(0)};
  return {static_cast<char>(0xF0 | code >> 18), last(12), last(6), last(0)};
}

TEST(Utf8Check, AcceptsEveryCharacterButSurrogates) {
  for (unsigned code = 0; code < 0x110800; ++code) {
    const std::string text = Encoded(code);
    Utf8Check check;
    check.Take(Bytes(text));
    check.Finish();
    const bool isCharacter = code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
    ASSERT_EQ(check.FirstBad(), isCharacter ? kNowhere : 0) << std::hex << code;
  }
}

TEST(Utf8Check, TellsTheFirstByteOfWhatIsNoCharacter) {
  const struct {
    std::string text;
    long long expected;
  } cases[] = {
      {"", kNowhere},
      {"plain text, longer than eight bytes", kNowhere},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 mixed", kNowhere},
      {"ab\x80", 2},      // a continuation byte alone
      {"ab\xC0\x80", 2},  // overlong
      {"ab\xC1\xBF", 2},
      {"ab\xE0\x9F\xBF", 2},
      {"ab\xF0\x8F\xBF\xBF", 2},
      {"ab\xF5\x80\x80\x80", 2},  // beyond U+10FFFF
      {"ab\xFF", 2},
      {"twelve bytes\xE9 and more", 12},
      {"\xC3\xA9\xC3", 2},  // cut off
      {"\xE2\x82", 0},
      {"\xE2\x28\xA1", 0},
      {"\xC3\xA9\x80\xFF", 2},  // only the first counts
  };
  for (const auto& c : cases) EXPECT_EQ(FirstBad(c.text), c.expected);
}

}  // namespace
}  // namespace trovan::test
