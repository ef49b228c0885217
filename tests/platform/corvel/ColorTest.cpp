#include <corvel/Color.h>

#include <cstddef>
#include <iterator>
#include <type_traits>

#include <gtest/gtest.h>

namespace corvel {
namespace {

TEST(Color4b, StartsAsTransparentBlack) {
  EXPECT_EQ(Color4b(), Color4b(0, 0, 0, 0));
  EXPECT_EQ(Color4b(), Color4b(0UL));
}

TEST(Color4b, TakesRedFromTheLowestByteAndAlphaFromTheHighest) {
  const Color4b color(0x40302010UL);
  EXPECT_EQ(color.red, 0x10);
  EXPECT_EQ(color.green, 0x20);
  EXPECT_EQ(color.blue, 0x30);
  EXPECT_EQ(color.alpha, 0x40);
}

TEST(Color4b, TakesEveryValueOfEachByte) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    const unsigned long packed = value;
    EXPECT_EQ(Color4b(packed), Color4b(byte, 0, 0, 0));
    EXPECT_EQ(Color4b(packed << 8), Color4b(0, byte, 0, 0));
    EXPECT_EQ(Color4b(packed << 16), Color4b(0, 0, byte, 0));
    EXPECT_EQ(Color4b(packed << 24), Color4b(0, 0, 0, byte));
  }
}

TEST(Color4b, NeverReadsBitsBeyondTheThirtySecond) {
  EXPECT_EQ(Color4b(static_cast<unsigned long>(0xFFFFFFFF00000001ULL)), Color4b(1, 0, 0, 0));
}

TEST(Color4b, LiesInMemoryAsFourBytesInOrder) {
  static_assert(std::is_trivially_copyable_v<Color4b> && std::is_standard_layout_v<Color4b>);
  EXPECT_EQ(sizeof(Color4b), 4U);
  EXPECT_EQ(offsetof(Color4b, red), 0U);
  EXPECT_EQ(offsetof(Color4b, green), 1U);
  EXPECT_EQ(offsetof(Color4b, blue), 2U);
  EXPECT_EQ(offsetof(Color4b, alpha), 3U);
}

TEST(Color4b, EqualsInAllFourBytes) {
  const Color4b color(1, 2, 3, 4);
  EXPECT_TRUE(color == Color4b(0x04030201UL));
  EXPECT_TRUE(color != Color4b(0, 2, 3, 4));
  EXPECT_TRUE(color != Color4b(1, 0, 3, 4));
  EXPECT_TRUE(color != Color4b(1, 2, 0, 4));
  EXPECT_TRUE(color != Color4b(1, 2, 3, 0));
}

TEST(ColorFormat, HasTheLayoutThatItsTablesTell) {
  const struct {
    ColorFormat format;
    int number;
    int samples;
    int bitsPerSample;
    int bitsPerPixel;
    bool alpha;
  } formats[] = {
      {kColorFormatNone, 0, 0, 0, 0, false},     {kColorFormat1, 1, 1, 1, 1, false},
      {kColorFormat4, 2, 1, 4, 4, false},        {kColorFormat8, 3, 1, 8, 8, false},
      {kColorFormatGrey16, 4, 1, 16, 16, false}, {kColorFormatGrey32, 5, 1, 32, 32, false},
      {kColorFormatGrey64, 6, 1, 64, 64, false}, {kColorFormatBgr565, 7, 0, 0, 16, false},
      {kColorFormatBgr24, 8, 3, 8, 24, false},   {kColorFormatBgr48, 9, 3, 16, 48, false},
      {kColorFormatBgra32, 10, 4, 8, 32, true},  {kColorFormatBgra64, 11, 4, 16, 64, true},
      {kColorFormatBgr96, 12, 3, 32, 96, false}, {kColorFormatBgra128, 13, 4, 32, 128, true},
  };
  ASSERT_EQ(std::size(formats), 14U);
  for (const auto& f : formats) {
    EXPECT_EQ(f.format, f.number);
    EXPECT_EQ(ColorFmtToSampleCount[f.format], f.samples) << "format " << f.number;
    EXPECT_EQ(ColorFmtToBPS[f.format], f.bitsPerSample) << "format " << f.number;
    EXPECT_EQ(ColorFmtToBPP[f.format], f.bitsPerPixel) << "format " << f.number;
    EXPECT_EQ(ColorFmtHasAlphaChannel[f.format], f.alpha) << "format " << f.number;
  }
}

TEST(ColorFormat, EveryTableCoversEveryFormat) {
  EXPECT_EQ(kColorFormatCount, 14);
  EXPECT_EQ(std::size(ColorFmtToSampleCount), 14U);
  EXPECT_EQ(std::size(ColorFmtToBPS), 14U);
  EXPECT_EQ(std::size(ColorFmtToBPP), 14U);
  EXPECT_EQ(std::size(ColorFmtHasAlphaChannel), 14U);
}

TEST(ColorFormat, ObeysTheLawsOfTheTables) {
  for (int format = 1; format < kColorFormatCount; ++format) {
    SCOPED_TRACE(testing::Message() << "format " << format);
    const int samples = ColorFmtToSampleCount[format];
    const int bits = ColorFmtToBPS[format];
    EXPECT_GT(ColorFmtToBPP[format], 0);
    EXPECT_EQ(ColorFmtHasAlphaChannel[format], samples == 4);
    EXPECT_EQ(samples == 0, bits == 0);
    if (samples == 0) continue;
    EXPECT_TRUE(samples == 1 || samples == 3 || samples == 4);
    EXPECT_TRUE(bits == 8 || bits == 16 || bits == 32 ||
                (samples == 1 && (bits == 1 || bits == 4 || bits == 64)));
    EXPECT_EQ(ColorFmtToBPP[format], samples * bits);
  }
}

TEST(ColorFormat, HoldsAnyNumber) {
  EXPECT_EQ(static_cast<int>(ColorFormat(-1)), -1);
  EXPECT_EQ(static_cast<int>(ColorFormat(1'000'000)), 1'000'000);
}

TEST(ColorReductionMethod, HasTheNumbersOneToFiveAndHoldsOthers) {
  EXPECT_EQ(ColorReductionMethod(1), ColorReductionMethod::kLowBits);
  EXPECT_EQ(ColorReductionMethod(2), ColorReductionMethod::kNearestColor);
  EXPECT_EQ(ColorReductionMethod(3), ColorReductionMethod::kOrderedDither);
  EXPECT_EQ(ColorReductionMethod(4), ColorReductionMethod::kErrorDiffusion);
  EXPECT_EQ(ColorReductionMethod(5), ColorReductionMethod::kMedianCut);
  EXPECT_EQ(static_cast<int>(ColorReductionMethod(-7)), -7);
}

}  // namespace
}  // namespace corvel
