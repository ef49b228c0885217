#include <win32/Utf8.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace win32 {
namespace {

using std::string_literals::operator""s;

constexpr std::uint32_t kReplacement = 0xFFFD;

// The wide text of the code points, whatever the width of wchar_t.
std::wstring Wide(const std::vector<std::uint32_t>& points) {
  std::wstring text;
  for (const std::uint32_t point : points) {
    if (sizeof(wchar_t) == 2 && point > 0xFFFF) {
      text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
      text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    } else {
      text += static_cast<wchar_t>(point);
    }
  }
  return text;
}

// UTF-8 by its definition (RFC 3629, section 3).
std::string Bytes(std::uint32_t point) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto trail = [&](int shift) { return byte(0x80 | ((point >> shift) & 0x3F)); };
  if (point < 0x80) return {byte(point)};
  if (point < 0x800) return {byte(0xC0 | point >> 6), trail(0)};
  if (point < 0x10000) return {byte(0xE0 | point >> 12), trail(6), trail(0)};
  return {byte(0xF0 | point >> 18), trail(12), trail(6), trail(0)};
}

bool IsSurrogate(std::uint32_t point) { return point >= 0xD800 && point <= 0xDFFF; }

TEST(Utf8, ConvertsEveryCodePointBothWays) {
  // In blocks, the bounds of which fall on those of UTF-8's lengths and of the surrogates.
  for (std::uint32_t block = 0; block <= 0x10FFFF; block += 0x80) {
    if (IsSurrogate(block)) continue;
    std::vector<std::uint32_t> points;
    std::string bytes;
    for (std::uint32_t point = block; point < block + 0x80; ++point) {
      points.push_back(point);
      bytes += Bytes(point);
    }
    const std::wstring wide = Wide(points);
    SCOPED_TRACE(testing::Message() << "from code point " << block);
    ASSERT_EQ(WideFromUtf8(bytes), wide);
    ASSERT_EQ(Utf8FromWide(wide), bytes);
    ASSERT_EQ(WideFromFileName(bytes), wide);
    ASSERT_EQ(FileNameFromWide(wide), bytes);
  }
}

TEST(Utf8, ConvertsWholeTexts) {
  EXPECT_EQ(WideFromUtf8(""), L"");
  EXPECT_EQ(Utf8FromWide(L""), "");
  EXPECT_EQ(WideFromUtf8("a\0b"s), Wide({'a', 0, 'b'}));
  EXPECT_EQ(Utf8FromWide(Wide({'a', 0, 'b'})), "a\0b"s);
  const std::string mixed = "Ru\xC3\x9F \xE2\x82\xAC \xF0\x9F\x97\xBA.";
  EXPECT_EQ(WideFromUtf8(mixed), Wide({'R', 'u', 0xDF, ' ', 0x20AC, ' ', 0x1F5FA, '.'}));
  EXPECT_EQ(Utf8FromWide(WideFromUtf8(mixed)), mixed);
}

TEST(Utf8, ReplacesEachPartThatIsNoUtf8) {
  const std::uint32_t bad = kReplacement;
  const struct {
    const char* name;
    std::string bytes;
    std::vector<std::uint32_t> points;
  } cases[] = {
      {"lone trail byte", "a\x80z", {'a', bad, 'z'}},
      {"two trail bytes", "\xBF\x80", {bad, bad}},
      {"two-byte sequence cut by a letter", "\xC3z", {bad, 'z'}},
      {"cut by the end", "a\xC3", {'a', bad}},
      {"three bytes cut after two are one part", "\xE2\x82z", {bad, 'z'}},
      {"four bytes cut after three are one part", "\xF0\x9F\x97", {bad}},
      {"overlong slash", "\xC0\xAF", {bad, bad}},
      {"overlong in three bytes", "\xE0\x80\xAF", {bad, bad, bad}},
      {"overlong in four bytes", "\xF0\x80\x80\xAF", {bad, bad, bad, bad}},
      {"surrogate", "\xED\xA0\x80", {bad, bad, bad}},
      {"beyond U+10FFFF", "\xF4\x90\x80\x80", {bad, bad, bad, bad}},
      {"bytes that never occur", "\xFE\xFF", {bad, bad}},
      {"Latin letters",
       "Stra\xDF"
       "e",
       {'S', 't', 'r', 'a', bad, 'e'}},
  };
  for (const auto& c : cases) EXPECT_EQ(WideFromUtf8(c.bytes), Wide(c.points)) << c.name;
}

TEST(Utf8, ReplacesEachUnitThatIsNoText) {
  const std::string bad = "\xEF\xBF\xBD";
  for (std::uint32_t surrogate = 0xD800; surrogate <= 0xDFFF; ++surrogate) {
    const auto unit = static_cast<wchar_t>(surrogate);
    ASSERT_EQ(Utf8FromWide(std::wstring{L'a', unit, L'z'}), "a" + bad + "z") << surrogate;
    ASSERT_EQ(Utf8FromWide(std::wstring{unit}), bad) << surrogate;
  }
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(Utf8FromWide(std::wstring{static_cast<wchar_t>(0x110000), L'z'}), bad + "z");
    EXPECT_EQ(Utf8FromWide(std::wstring{static_cast<wchar_t>(-1)}), bad);
    // A pair is a character in UTF-16 only.
    EXPECT_EQ(Utf8FromWide(std::wstring{wchar_t{0xD83D}, wchar_t{0xDDFA}}), bad + bad);
  }
}

TEST(FileNames, GiveEachByteThatIsNoUtf8ALoneSurrogate) {
  for (std::uint32_t byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string name = "a" + std::string(1, static_cast<char>(byte)) + "z";
    const std::wstring wide{L'a', static_cast<wchar_t>(0xDC00 + byte), L'z'};
    EXPECT_EQ(WideFromFileName(name), wide) << byte;
    EXPECT_EQ(FileNameFromWide(wide), name) << byte;
  }
}

TEST(FileNames, GiveEachByteOfAPartOfItsOwnSurrogate) {
  EXPECT_EQ(WideFromFileName("\xE2\x82z"), (std::wstring{0xDCE2, 0xDC82, L'z'}));
  EXPECT_EQ(WideFromFileName("\xED\xB2\x80"), (std::wstring{0xDCED, 0xDCB2, 0xDC80}));
}

TEST(FileNames, ReplaceUnitsThatStandForNoByte) {
  const std::string bad = "\xEF\xBF\xBD";
  for (const std::uint32_t unit : {0xD800U, 0xDBFFU, 0xDC00U, 0xDC7FU, 0xDD00U, 0xDFFFU}) {
    EXPECT_EQ(FileNameFromWide(std::wstring{static_cast<wchar_t>(unit)}), bad) << unit;
  }
}

TEST(FileNames, KeepEveryPairOfBytes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string name{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(FileNameFromWide(WideFromFileName(name)), name) << first << ' ' << second;
    }
  }
}

TEST(FileNames, KeepEveryByteString) {
  std::mt19937 random(20240611);
  // Aimed at UTF-8: leads and trails follow each other often, and often wrongly.
  constexpr unsigned char kTrouble[] = {0x00, 'a',  0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xB2, 0xBF,
                                        0xC0, 0xC2, 0xDF, 0xE0, 0xED, 0xEF, 0xF0, 0xF4, 0xF5, 0xFF};
  std::uniform_int_distribution<std::size_t> length(0, 12);
  std::uniform_int_distribution<std::size_t> pick(0, sizeof kTrouble - 1);
  for (int round = 0; round < 200'000; ++round) {
    std::string name(length(random), '\0');
    for (char& byte : name) byte = static_cast<char>(kTrouble[pick(random)]);
    const std::wstring wide = WideFromFileName(name);
    ASSERT_EQ(FileNameFromWide(wide), name) << "round " << round;
    // What is UTF-8 reads the same as other text.
    if (Utf8FromWide(WideFromUtf8(name)) == name) {
      ASSERT_EQ(wide, WideFromUtf8(name)) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace win32
