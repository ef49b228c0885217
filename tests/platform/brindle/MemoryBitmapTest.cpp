#include <brindle/MemoryBitmap.h>

#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/Exception.h>

namespace brindle {
namespace {

using corvel::Color4b;
using corvel::ColorFormat;
using corvel::Exception;

TEST(MemoryBitmap, IsBlackWithoutPaletteAtFirst) {
  const MemoryBitmap bitmap(3, 2, corvel::kColorFormatBgr24);
  EXPECT_EQ(bitmap.GetWidth(), 3U);
  EXPECT_EQ(bitmap.GetHeight(), 2U);
  EXPECT_EQ(bitmap.GetColorFormat(), corvel::kColorFormatBgr24);
  EXPECT_EQ(bitmap.GetNumColorsUsed(), 0U);
  std::vector<unsigned char> pixels(18, 7);
  bitmap.FetchRegion(pixels.data(), 9, {0, 0, 3, 2});
  EXPECT_EQ(pixels, std::vector<unsigned char>(18, 0));
}

TEST(MemoryBitmap, TakesEveryFormatAndNothingElse) {
  for (int format = 1; format < corvel::kColorFormatCount; ++format) {
    EXPECT_NO_THROW(MemoryBitmap(5, 3, static_cast<ColorFormat>(format))) << format;
  }
  EXPECT_THROW(MemoryBitmap(5, 3, corvel::kColorFormatNone), Exception);
  EXPECT_THROW(MemoryBitmap(5, 3, static_cast<ColorFormat>(14)), Exception);
  EXPECT_THROW(MemoryBitmap(5, 3, static_cast<ColorFormat>(-1)), Exception);
}

TEST(MemoryBitmap, MayHaveNoPixels) {
  for (const auto& [width, height] : {std::pair{0U, 5U}, {5U, 0U}, {0U, 0U}}) {
    const MemoryBitmap bitmap(width, height, corvel::kColorFormatBgra32);
    EXPECT_EQ(bitmap.GetNumScanRectRows(), 0U);
    EXPECT_NO_THROW(bitmap.FetchRegion(nullptr, 0, {0, 0, 0, 0}));
  }
}

TEST(MemoryBitmap, IsNoLargerThanARegionCanSay) {
  EXPECT_THROW(MemoryBitmap(0x80000000U, 0, corvel::kColorFormat1), Exception);
  EXPECT_THROW(MemoryBitmap(0, 0x80000000U, corvel::kColorFormat1), Exception);
  EXPECT_NO_THROW(MemoryBitmap(0x7FFFFFFFU, 0, corvel::kColorFormatBgra128));
}

TEST(MemoryBitmap, IsDividedIntoBandsOf64KiB) {
  const MemoryBitmap bitmap(1000, 100, corvel::kColorFormatBgra32);  // 4000 bytes a row
  EXPECT_EQ(bitmap.GetScanRectWidth(), 1000U);
  EXPECT_EQ(bitmap.GetScanRectHeight(), 16U);
  EXPECT_EQ(bitmap.GetNumScanRectRows(), 7U);
  EXPECT_EQ(bitmap.GetNumScanRects(0), 1U);
  EXPECT_EQ(bitmap.LockScanRect(6, 0).height, 4U) << "what is left";
  EXPECT_EQ(MemoryBitmap(100'000, 2, corvel::kColorFormatBgra32).GetScanRectHeight(), 1U);
}

TEST(MemoryBitmap, IsDividedAsAskedFor) {
  MemoryBitmap bitmap(10, 7, corvel::kColorFormat8, {4, 3});
  EXPECT_EQ(bitmap.GetNumScanRectRows(), 3U);
  EXPECT_EQ(bitmap.GetNumScanRects(2), 3U);
  const ScanRect last = bitmap.LockScanRect(2, 2);
  EXPECT_EQ(last.x, 8U);
  EXPECT_EQ(last.y, 6U);
  EXPECT_EQ(last.width, 2U);
  EXPECT_EQ(last.height, 1U);
  last.GetRowPtr(0)[1] = 42;
  bitmap.CommitScanRect(2, 2);
  bitmap.UnlockScanRect(2, 2);
  unsigned char pixel = 0;
  bitmap.FetchRegion(&pixel, 1, {9, 6, 10, 7});
  EXPECT_EQ(pixel, 42);
}

TEST(MemoryBitmap, HasScanRectanglesThatStartAtWholeBytes) {
  EXPECT_THROW(MemoryBitmap(10, 7, corvel::kColorFormat1, {4, 3}), Exception);
  EXPECT_THROW(MemoryBitmap(10, 7, corvel::kColorFormat4, {3, 3}), Exception);
  EXPECT_NO_THROW(MemoryBitmap(10, 7, corvel::kColorFormat1, {8, 3}));
  EXPECT_NO_THROW(MemoryBitmap(10, 7, corvel::kColorFormat1, {10, 3})) << "just one in a row";
  EXPECT_THROW(MemoryBitmap(10, 7, corvel::kColorFormat8, {0, 3}), Exception);
  EXPECT_THROW(MemoryBitmap(10, 7, corvel::kColorFormat8, {4, 0}), Exception);
}

TEST(MemoryBitmap, HasAPaletteWhereItsPixelsAreIndices) {
  const struct {
    ColorFormat format;
    std::size_t most;
  } cases[] = {{corvel::kColorFormat1, 2},
               {corvel::kColorFormat4, 16},
               {corvel::kColorFormat8, 256},
               {corvel::kColorFormatGrey16, 0},
               {corvel::kColorFormatBgra32, 0}};
  for (const auto& c : cases) {
    MemoryBitmap bitmap(1, 1, c.format);
    EXPECT_NO_THROW(bitmap.SetPalette(std::vector<Color4b>(c.most)));
    EXPECT_EQ(bitmap.GetNumColorsUsed(), c.most);
    EXPECT_THROW(bitmap.SetPalette(std::vector<Color4b>(c.most + 1)), Exception);
    EXPECT_EQ(bitmap.GetNumColorsUsed(), c.most) << "as before";
  }
  MemoryBitmap bitmap(1, 1, corvel::kColorFormat1);
  bitmap.SetPalette({Color4b(1, 2, 3, 4), Color4b(5, 6, 7, 8)});
  EXPECT_EQ(bitmap.GetColorTableItem(1), Color4b(5, 6, 7, 8));
}

TEST(MemoryBitmap, ShowsAllPixelsWithoutAMask) {
  const MemoryBitmap bitmap(3, 2, corvel::kColorFormatBgr24);
  unsigned char alpha[] = {9, 9, 9, 9, 9, 9, 9, 9};
  bitmap.GetAlphaFromMask(alpha, 4, {1, 0, 3, 2}, 1);
  EXPECT_EQ(std::vector<unsigned char>(alpha, alpha + 8),
            (std::vector<unsigned char>{255, 255, 9, 9, 255, 255, 9, 9}));
  bitmap.GetAlphaFromMask(alpha, 4, {0, 0, 1, 1}, 0);
  EXPECT_EQ(alpha[0], 0);
}

TEST(MemoryBitmap, ShowsThePixelsOfItsMask) {
  MemoryBitmap bitmap(3, 2, corvel::kColorFormatBgr24);
  bitmap.SetMask({true, false, true, false, true, true});
  unsigned char alpha[4] = {};
  bitmap.GetAlphaFromMask(alpha, 2, {1, 0, 3, 2}, 1);
  EXPECT_EQ(std::vector<unsigned char>(alpha, alpha + 4),
            (std::vector<unsigned char>{0, 255, 255, 255}));
  bitmap.GetAlphaFromMask(alpha + 2, -2, {1, 0, 3, 2}, 0);
  EXPECT_EQ(std::vector<unsigned char>(alpha, alpha + 4),
            (std::vector<unsigned char>{0, 0, 255, 0}))
      << "the others, from the bottom";
  EXPECT_THROW(bitmap.GetAlphaFromMask(alpha, 2, {1, 0, 4, 2}, 1), Exception);
  EXPECT_THROW(bitmap.SetMask({true}), Exception);
}

TEST(MemoryBitmap, IsClonedWithItsPixels) {
  MemoryBitmap bitmap(1, 1, corvel::kColorFormat8);
  const unsigned char before = 3;
  bitmap.StoreRegion(&before, 1, 0, 0, 1, 1);
  bitmap.SetPalette(std::vector<Color4b>(4));
  const std::unique_ptr<GBitmap> clone = bitmap.Clone();
  const unsigned char after = 5;
  bitmap.StoreRegion(&after, 1, 0, 0, 1, 1);
  unsigned char pixel = 0;
  clone->FetchRegion(&pixel, 1, {0, 0, 1, 1});
  EXPECT_EQ(pixel, 3);
  EXPECT_EQ(clone->GetNumColorsUsed(), 4U);
}

}  // namespace
}  // namespace brindle
