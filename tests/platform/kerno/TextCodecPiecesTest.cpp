#include <algorithm>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <kerno/TextCodec.h>

#include "platform/kerno/CodecTesting.h"

namespace kerno {
namespace {

// Bytes that meet: letters, the starts and ends of escapes and shifts, and anything at all.
std::string RandomBytes(std::mt19937& random, std::size_t size) {
  constexpr std::string_view kCommon =
      "abc019 +-~{}$()BIJACGNO\x1B\x0E\x0F\x81\x8F\xB0\xC8\xD8\xEF";
  std::string bytes;
  while (bytes.size() < size) {
    const auto value = random();
    bytes +=
        value % 2 == 0 ? kCommon[(value >> 8) % kCommon.size()] : static_cast<char>(value >> 8);
  }
  return bytes;
}

// Cuts of 0 to 6 bytes, and long ones now and then.
std::size_t AppendInPieces(TextCodec& codec, std::string_view bytes, std::mt19937& random,
                           std::string& utf8) {
  std::size_t malformed = 0;
  while (!bytes.empty()) {
    const std::size_t wanted = random() % 8 == 0 ? 40 : random() % 7;
    const std::size_t size = std::min(wanted, bytes.size());
    malformed += codec.AppendPiece(bytes.substr(0, size), false, utf8);
    bytes.remove_prefix(size);
  }
  return malformed + codec.AppendPiece({}, true, utf8);
}

TEST(TextInPieces, EqualsTheWholeInEveryPage) {
  std::mt19937 random(20240611);
  for (const int page : ConvertiblePages()) {
    TextCodec codec(page);
    for (int round = 0; round < 200; ++round) {
      const std::string bytes = RandomBytes(random, random() % 120);
      std::size_t malformed = 0;
      const std::string whole = AsUtf8(codec, bytes, &malformed);
      std::string pieces;
      EXPECT_EQ(AppendInPieces(codec, bytes, random, pieces), malformed) << page << ' ' << round;
      ASSERT_EQ(pieces, whole) << page << ' ' << round << ' ' << testing::PrintToString(bytes);
    }
  }
}

TEST(TextInPieces, EqualsTheWholeForWellFormedTextCutEverywhere) {
  for (const int page : {932, 936, 949, 950, 1361, 20269, 51932, 54936, 50220, 50222, 50225, 52936,
                         65000, 65001, 1200, 12001}) {
    TextCodec codec(page);
    const std::wstring text = page == 20269 ? L"äöü Ñandú" : L"A東京、ア 0123456789abcdefghij 東!";
    const std::string bytes = codec.Encode(text);
    const std::string whole = AsUtf8(codec, bytes);
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
      std::string utf8;
      std::size_t malformed =
          codec.AppendPiece(std::string_view(bytes).substr(0, cut), false, utf8);
      malformed += codec.AppendPiece(std::string_view(bytes).substr(cut), true, utf8);
      EXPECT_EQ(utf8, whole) << page << " cut at " << cut;
      EXPECT_EQ(malformed, 0U) << page << " cut at " << cut;
    }
  }
}

TEST(TextInPieces, HoldsBackACharacterThatIsCut) {
  TextCodec codec(932);
  std::string utf8;
  EXPECT_EQ(codec.AppendPiece("a\x93", false, utf8), 0U);
  EXPECT_EQ(utf8, "a");
  EXPECT_EQ(codec.AppendPiece("\x8C", false, utf8), 0U);
  EXPECT_EQ(utf8, "a東");
}

TEST(TextInPieces, ReportsACharacterThatIsNeverCompleted) {
  for (const int page : {932, 54936, 65001, 1200}) {
    TextCodec codec(page);
    std::string utf8;
    EXPECT_EQ(codec.AppendPiece("\xE4", false, utf8), 0U) << page;
    EXPECT_EQ(codec.AppendPiece({}, true, utf8), 1U) << page;
    EXPECT_EQ(utf8, "\uFFFD") << page;
  }
}

TEST(TextInPieces, EndsWhenAWholeTextIsDecoded) {
  for (const int page : {932, 54936, 65001}) {
    TextCodec codec(page);
    std::string utf8;
    EXPECT_EQ(codec.AppendPiece("\xE4", false, utf8), 0U) << page;
    EXPECT_EQ(codec.Decode("ab"), L"ab") << page;
    EXPECT_EQ(codec.AppendPiece("cd", true, utf8), 0U) << page;
    EXPECT_EQ(utf8, "cd") << page;
  }
}

TEST(TextInPieces, BeginsAnewAfterTheLast) {
  TextCodec codec(50220);
  std::string utf8;
  EXPECT_EQ(codec.AppendPiece("\x1B$BEl", true, utf8), 0U);
  EXPECT_EQ(codec.AppendPiece("El", true, utf8), 0U);
  EXPECT_EQ(utf8, "東El");
}

}  // namespace
}  // namespace kerno
