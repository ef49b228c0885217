// Regions of bitmaps that are divided in many ways, fetched and stored.
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>
#include <corvel/Exception.h>

namespace brindle {
namespace {

using corvel::ColorFormat;
using corvel::Exception;

// The pixels of a bitmap as one text of bits each, row by row: the slow and plain way.
class PlainPicture {
 public:
  PlainPicture(int width, int height, int depth, std::mt19937& random)
      : width_(width), depth_(depth), pixels_(static_cast<std::size_t>(width * height)) {
    for (auto& pixel : pixels_) {
      for (int bit = 0; bit < depth; ++bit) pixel += random() % 2 == 0 ? '0' : '1';
    }
  }

  std::string& At(int x, int y) { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }

  // The rows of a region, each padded with zeros to `stride` bytes.
  std::vector<unsigned char> Bytes(const RECT& rect, int stride) {
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(stride * std::max(rect.bottom - rect.top, 0)));
    for (int y = rect.top; y < rect.bottom; ++y) {
      std::string row;
      for (int x = rect.left; x < rect.right; ++x) row += At(x, y);
      for (std::size_t bit = 0; bit < row.size(); ++bit) {
        const auto byte = static_cast<std::size_t>((y - rect.top) * stride) + bit / 8;
        if (row[bit] == '1')
          bytes[byte] = static_cast<unsigned char>(bytes[byte] | 0x80U >> bit % 8);
      }
    }
    return bytes;
  }

  int StrideOf(const RECT& rect) const {
    return std::max((rect.right - rect.left) * depth_ + 31, 0) / 32 * 4;
  }

 private:
  int width_;
  int depth_;
  std::vector<std::string> pixels_;
};

int Pick(std::mt19937& random, int low, int high) {
  return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

RECT RandomRect(std::mt19937& random, int width, int height) {
  const int left = Pick(random, 0, width);
  const int top = Pick(random, 0, height);
  return {left, top, Pick(random, left, width), Pick(random, top, height)};
}

std::vector<unsigned char> Fetched(const GBitmap& bitmap, const RECT& rect, int stride) {
  std::vector<unsigned char> bytes(static_cast<std::size_t>(stride * (rect.bottom - rect.top)));
  bitmap.FetchRegion(bytes.data(), stride, rect);
  return bytes;
}

class RegionTest : public testing::TestWithParam<int> {
 protected:
  ColorFormat Format() const { return static_cast<ColorFormat>(GetParam()); }
  int Depth() const { return corvel::ColorFmtToBPP[GetParam()]; }
};

TEST_P(RegionTest, AreFetchedAndStoredWhereverTheyLie) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 60; ++round) {
    const int width = Pick(random, 1, 40);
    const int height = Pick(random, 1, 12);
    const MemoryBitmap::ScanRectSize size{static_cast<unsigned>(8 * Pick(random, 1, 4)),
                                          static_cast<unsigned>(Pick(random, 1, 5))};
    MemoryBitmap bitmap(static_cast<unsigned>(width), static_cast<unsigned>(height), Format(),
                        size);
    PlainPicture picture(width, height, Depth(), random);
    const RECT all{0, 0, width, height};
    const int rowSize = picture.StrideOf(all);
    bitmap.StoreRegion(picture.Bytes(all, rowSize).data(), rowSize, 0, 0, width, height);

    PlainPicture patch(width, height, Depth(), random);
    const RECT place = RandomRect(random, width, height);
    const int patchStride = patch.StrideOf(place);
    bitmap.StoreRegion(patch.Bytes(place, patchStride).data(), patchStride, place.left, place.top,
                       place.right - place.left, place.bottom - place.top);
    for (int y = place.top; y < place.bottom; ++y) {
      for (int x = place.left; x < place.right; ++x) picture.At(x, y) = patch.At(x, y);
    }

    for (const RECT& rect : {all, RandomRect(random, width, height)}) {
      const int stride = picture.StrideOf(rect);
      ASSERT_EQ(Fetched(bitmap, rect, stride), picture.Bytes(rect, stride))
          << "round " << round << ": " << rect.left << ", " << rect.top << " to " << rect.right
          << ", " << rect.bottom << " of " << width << " x " << height;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, RegionTest, testing::Range(1, 14));

TEST(Region, IsFetchedUpwardsWithANegativeStride) {
  MemoryBitmap bitmap(1, 3, corvel::kColorFormat8);
  const unsigned char pixels[] = {1, 2, 3};
  bitmap.StoreRegion(pixels + 2, -1, 0, 0, 1, 3);
  unsigned char upwards[3] = {};
  bitmap.FetchRegion(upwards + 2, -1, {0, 0, 1, 3});
  EXPECT_EQ(std::vector<unsigned char>(upwards, upwards + 3),
            (std::vector<unsigned char>{1, 2, 3}));
  unsigned char top = 0;
  bitmap.FetchRegion(&top, 1, {0, 0, 1, 1});
  EXPECT_EQ(top, 3);
}

TEST(Region, KeepsTheBitsBehindItsLastPixel) {
  const MemoryBitmap bitmap(3, 1, corvel::kColorFormat1);
  unsigned char row = 0xFF;
  bitmap.FetchRegion(&row, 1, {0, 0, 3, 1});
  EXPECT_EQ(row, 0x1F);
}

TEST(Region, IsRefusedWhereItReachesBeyondTheBitmap) {
  MemoryBitmap bitmap(4, 3, corvel::kColorFormat8);
  unsigned char pixels[64] = {};
  for (const RECT& rect :
       {RECT{-1, 0, 2, 2}, RECT{0, -1, 2, 2}, RECT{0, 0, 5, 2}, RECT{0, 0, 2, 4}}) {
    EXPECT_THROW(bitmap.FetchRegion(pixels, 8, rect), Exception);
    EXPECT_THROW(bitmap.GetAlphaFromMask(pixels, 8, rect, 1), Exception);
    EXPECT_THROW(bitmap.StoreRegion(pixels, 8, rect.left, rect.top, rect.right - rect.left,
                                    rect.bottom - rect.top),
                 Exception);
  }
  EXPECT_THROW(bitmap.StoreRegion(pixels, 8, 0x7FFFFFFF, 0, 0x7FFFFFFF, 1), Exception);
  EXPECT_THROW(bitmap.StoreRegion(pixels, 8, 0, 0x7FFFFFFF, 1, 0x7FFFFFFF), Exception);
  EXPECT_THROW(bitmap.StoreRegion(pixels, 8, 0, 0, -1, 1), Exception);
}

TEST(Region, WithoutPixelsTouchesNothing) {
  MemoryBitmap bitmap(4, 3, corvel::kColorFormat8);
  EXPECT_NO_THROW(bitmap.FetchRegion(nullptr, 8, {4, 0, 4, 3}));
  EXPECT_NO_THROW(bitmap.FetchRegion(nullptr, 8, {3, 2, 1, 1})) << "flipped";
  EXPECT_NO_THROW(bitmap.StoreRegion(nullptr, 8, 4, 3, 0, 0));
  EXPECT_NO_THROW(bitmap.GetAlphaFromMask(nullptr, 8, {1, 1, 1, 3}, 1));
}

}  // namespace
}  // namespace brindle
