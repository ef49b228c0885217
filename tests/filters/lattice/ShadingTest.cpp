#include "filters/lattice/Shading.h"

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using testing::ElementsAre;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
using Pixel = std::array<int, 4>;

Pixel At(const Picture& picture, unsigned x, unsigned y) {
  Pixel pixel{};
  for (std::size_t i = 0; i < 4; ++i) {
    pixel[i] = picture.pixels.at((std::size_t{y} * picture.width + x) * 4 + i);
  }
  return pixel;
}

// How bright the eye finds a pixel.
double Brightness(const Pixel& pixel) {
  return 0.2126 * pixel[0] + 0.7152 * pixel[1] + 0.0722 * pixel[2];
}

CellGrid Row(const std::vector<double>& values) {
  return {static_cast<unsigned>(values.size()), 1, values};
}

TEST(RangeOf, LeavesOutCellsWithoutAValue) {
  const ColourRange range = RangeOf(Row({kNone, 5.0, -2.0, kNone, 3.0}));
  EXPECT_EQ(range.lowest, -2.0);
  EXPECT_EQ(range.highest, 5.0);
  for (const CellGrid& grid : {Row({}), Row({kNone})}) {
    EXPECT_EQ(RangeOf(grid).lowest, 0.0);
    EXPECT_EQ(RangeOf(grid).highest, 0.0);
  }
  EXPECT_EQ(RangeOf(Row({7.0})).lowest, 7.0);
}

TEST(Shaded, GreyGoesFromBlackToWhite) {
  const Picture picture =
      Shaded(Row({0.0, 2.5, 10.0, -99.0, 99.0}), {0.0, 10.0}, PreviewStyle::kGrey);
  EXPECT_EQ(picture.width, 5U);
  EXPECT_EQ(picture.height, 1U);
  EXPECT_THAT(At(picture, 0, 0), ElementsAre(0, 0, 0, 255));
  EXPECT_THAT(At(picture, 1, 0), ElementsAre(64, 64, 64, 255));
  EXPECT_THAT(At(picture, 2, 0), ElementsAre(255, 255, 255, 255));
  EXPECT_EQ(At(picture, 3, 0), At(picture, 0, 0));  // beyond the range: its ends
  EXPECT_EQ(At(picture, 4, 0), At(picture, 2, 0));
}

TEST(Shaded, ColoursGetBrighterAllTheWay) {
  std::vector<double> values;
  for (int i = 0; i <= 60; ++i) values.push_back(i);
  const Picture picture = Shaded(Row(values), {0.0, 60.0}, PreviewStyle::kColour);
  for (unsigned x = 1; x <= 60; ++x) {
    EXPECT_GT(Brightness(At(picture, x, 0)), Brightness(At(picture, x - 1, 0))) << x;
  }
  EXPECT_GT(At(picture, 0, 0)[2], At(picture, 0, 0)[0]);  // low is blue
  EXPECT_GT(Brightness(At(picture, 60, 0)), 240.0);       // high is white
}

TEST(Shaded, CellsWithoutAValueAreTransparent) {
  for (const auto style : {PreviewStyle::kGrey, PreviewStyle::kColour, PreviewStyle::kRelief}) {
    const Picture picture = Shaded(Row({1.0, kNone, 2.0}), {1.0, 2.0}, style);
    EXPECT_THAT(At(picture, 1, 0), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(At(picture, 0, 0)[3], 255);
    EXPECT_EQ(At(picture, 2, 0)[3], 255);
  }
}

TEST(Shaded, OneValueGetsTheMiddleColourAndNoShadow) {
  const CellGrid flat{3, 3, std::vector<double>(9, 42.0)};
  const Picture grey = Shaded(flat, RangeOf(flat), PreviewStyle::kGrey);
  EXPECT_THAT(At(grey, 1, 1), ElementsAre(128, 128, 128, 255));
  EXPECT_EQ(Shaded(flat, RangeOf(flat), PreviewStyle::kRelief).pixels,
            Shaded(flat, RangeOf(flat), PreviewStyle::kColour).pixels);
}

// A hill, lit from the north-west: cells at the same height differ by the side they lie on.
TEST(Shaded, ReliefIsLitFromTheNorthWest) {
  CellGrid hill{9, 9, {}};
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 9; ++x) hill.values.push_back(-std::hypot(x - 4, y - 4));
  }
  const Picture relief = Shaded(hill, RangeOf(hill), PreviewStyle::kRelief);
  const Picture plain = Shaded(hill, RangeOf(hill), PreviewStyle::kColour);
  const auto light = [&](unsigned x, unsigned y) {
    return Brightness(At(relief, x, y)) - Brightness(At(plain, x, y));
  };
  EXPECT_GT(light(2, 2), 5.0);         // north-west: lit
  EXPECT_LT(light(6, 6), -5.0);        // south-east: in the shadow
  EXPECT_NEAR(light(6, 2), 0.0, 1.0);  // north-east and south-west: neither
  EXPECT_NEAR(light(2, 6), 0.0, 1.0);
  EXPECT_GT(light(4, 1), 2.0);   // north
  EXPECT_GT(light(1, 4), 2.0);   // west
  EXPECT_LT(light(4, 7), -2.0);  // south
  EXPECT_LT(light(7, 4), -2.0);  // east
}

TEST(Shaded, ReliefLooksTheSameWhateverTheUnits) {
  const std::vector<double> heights = {0, 1, 3, 2, 5, 1, 0, 4, 2};
  CellGrid metres{3, 3, heights};
  CellGrid kilometres = metres;
  for (double& value : kilometres.values) value /= 1024.0;
  EXPECT_EQ(Shaded(metres, RangeOf(metres), PreviewStyle::kRelief).pixels,
            Shaded(kilometres, RangeOf(kilometres), PreviewStyle::kRelief).pixels);
}

TEST(Shaded, EndureValuesAsFarApartAsDoublesGet) {
  constexpr double kMost = std::numeric_limits<double>::max();
  const CellGrid grid{3, 3, {kMost, -kMost, kMost, -kMost, 0, kMost, kMost, -kMost, -kMost}};
  const Picture grey = Shaded(grid, RangeOf(grid), PreviewStyle::kGrey);
  EXPECT_THAT(At(grey, 0, 0), ElementsAre(255, 255, 255, 255));
  EXPECT_THAT(At(grey, 1, 0), ElementsAre(0, 0, 0, 255));
  EXPECT_THAT(At(grey, 1, 1), ElementsAre(128, 128, 128, 255));
  const Picture relief = Shaded(grid, RangeOf(grid), PreviewStyle::kRelief);
  EXPECT_EQ(relief.pixels.size(), 36U);
}

}  // namespace
}  // namespace trovan::filters
