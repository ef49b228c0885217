#include "filters/lattice/Preview.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeErrors.h"
#include "LatticeFakes.h"

namespace trovan::filters {
namespace {

using test::MemoryReader;
using testing::ElementsAre;
using testing::HasSubstr;

PreviewOptions Grey(unsigned pixels) {
  PreviewOptions options;
  options.style = PreviewStyle::kGrey;
  options.pixels = pixels;
  return options;
}

Picture Draw(MemoryReader reader, const PreviewOptions& options) {
  const auto picture = PreviewLattice(reader, options, nullptr);
  EXPECT_TRUE(picture.has_value());
  return picture.value_or(Picture());
}

// The red of each pixel, -1 where it is transparent.
std::vector<int> Levels(const Picture& picture) {
  std::vector<int> levels;
  for (std::size_t i = 0; i < picture.pixels.size(); i += 4) {
    levels.push_back(picture.pixels[i + 3] == 0 ? -1 : picture.pixels[i]);
  }
  return levels;
}

MemoryReader Bytes(unsigned columns, unsigned rows, const std::vector<std::uint8_t>& nodes) {
  return MemoryReader(test::LatticeOf(test::UniformHeader(corvel::kUInt8, columns, rows), nodes));
}

TEST(Preview, HasTheTopRowFirst) {
  const Picture picture = Draw(Bytes(2, 2, {0, 51, 102, 255}), Grey(2));
  EXPECT_EQ(picture.width, 2U);
  EXPECT_EQ(picture.height, 2U);
  EXPECT_THAT(Levels(picture), ElementsAre(102, 255, 0, 51));
}

TEST(Preview, AveragesPlanesThatAreTooLarge) {
  const Picture picture = Draw(Bytes(4, 2, {0, 0, 255, 255, 0, 0, 255, 255}), Grey(2));
  EXPECT_EQ(picture.width, 2U);
  EXPECT_EQ(picture.height, 1U);
  EXPECT_THAT(Levels(picture), ElementsAre(0, 255));
}

TEST(Preview, EnlargesSmallPlanesByWholeFactors) {
  const struct {
    unsigned columns, rows, pixels, width, height;
  } cases[] = {{2, 1, 1024, 384, 192}, {100, 50, 1024, 300, 150}, {200, 10, 1024, 200, 10},
               {2, 1, 7, 6, 3},        {1, 1, 1024, 384, 384},    {1, 1, 1, 1, 1}};
  for (const auto& c : cases) {
    const Picture picture =
        Draw(Bytes(c.columns, c.rows, std::vector<std::uint8_t>(std::size_t{c.columns} * c.rows)),
             Grey(c.pixels));
    EXPECT_EQ(picture.width, c.width) << c.columns << " x " << c.rows;
    EXPECT_EQ(picture.height, c.height) << c.columns << " x " << c.rows;
    EXPECT_EQ(picture.pixels.size(), std::size_t{c.width} * c.height * 4);
  }
  EXPECT_THAT(Levels(Draw(Bytes(2, 1, {0, 255}), Grey(5))),
              ElementsAre(0, 0, 255, 255, 0, 0, 255, 255));
}

TEST(Preview, LeavesInvalidAndVoidNodesTransparent) {
  LatticeHeader header = test::UniformHeader(corvel::kFloat, 4, 1);
  header.voidValue = -1.0;
  MemoryReader reader(
      test::LatticeOf<float>(header, {10, -1, std::numeric_limits<float>::infinity(), 20}));
  EXPECT_THAT(Levels(Draw(std::move(reader), Grey(4))), ElementsAre(0, -1, -1, 255));
}

TEST(Preview, DrawsALatticeWithoutAnyValue) {
  MemoryReader reader(
      test::LatticeOf<float>(test::UniformHeader(corvel::kFloat, 2, 1), {NAN, NAN}));
  EXPECT_THAT(Levels(Draw(std::move(reader), Grey(2))), ElementsAre(-1, -1));
}

TEST(Preview, DrawsALatticeOfOneValueInTheMiddleColour) {
  EXPECT_THAT(Levels(Draw(Bytes(2, 1, {9, 9}), Grey(2))), ElementsAre(128, 128));
  PreviewOptions relief;
  relief.pixels = 2;
  const auto levels = Levels(Draw(Bytes(2, 1, {9, 9}), relief));
  EXPECT_EQ(levels[0], levels[1]);
}

TEST(Preview, TakesTheRangeThatIsGiven) {
  PreviewOptions options = Grey(3);
  options.lowest = 100.0;
  EXPECT_THAT(Levels(Draw(Bytes(3, 1, {50, 150, 200}), options)), ElementsAre(0, 128, 255));
  options.lowest.reset();
  options.highest = 100.0;
  EXPECT_THAT(Levels(Draw(Bytes(3, 1, {50, 75, 200}), options)), ElementsAre(0, 128, 255));
}

TEST(Preview, DrawsThePlaneAndTheComponentThatAreAskedFor) {
  const std::vector<std::uint8_t> nodes = {0, 10, 255, 20, 30, 255, 40, 0};
  const auto header = test::UniformHeader(corvel::kUInt8, 2, 1, 2, 2);
  PreviewOptions options = Grey(2);
  options.lowest = 0.0;
  options.highest = 255.0;
  const auto levels = [&](unsigned plane, unsigned component) {
    options.plane = plane;
    options.component = component;
    return Levels(Draw(MemoryReader(test::LatticeOf(header, nodes)), options));
  };
  EXPECT_THAT(levels(0, 0), ElementsAre(0, 255));
  EXPECT_THAT(levels(0, 1), ElementsAre(10, 20));
  EXPECT_THAT(levels(1, 0), ElementsAre(30, 40));
  EXPECT_THAT(levels(1, 1), ElementsAre(255, 0));
}

TEST(Preview, DrawsCurvilinearLatticesByTheirNodes) {
  LatticeHeader header = test::UniformHeader(corvel::kUInt8, 2, 1);
  header.type = LatticeResequencer::Curvilinear;
  EXPECT_THAT(Levels(Draw(MemoryReader(test::LatticeOf<std::uint8_t>(header, {1, 2})), Grey(2))),
              ElementsAre(0, 255));
}

TEST(Preview, RefusesWhatIsNotThere) {
  const auto error = [](auto change) {
    test::HeaderOnly reader(test::UniformHeader(corvel::kUInt8, 2, 2, 3, 4));
    PreviewOptions options;
    change(options);
    return test::FilterErrorOf([&] { PreviewLattice(reader, options, nullptr); });
  };
  EXPECT_THAT(error([](auto& o) { o.plane = 3; }),
              HasSubstr("no plane 3; planes count from 0 to 2"));
  EXPECT_THAT(error([](auto& o) { o.component = 4; }),
              HasSubstr("no component 4; components count from 0 to 3"));
  EXPECT_THAT(error([](auto& o) { o.pixels = 0; }), HasSubstr("at least one pixel"));
  EXPECT_THAT(error([](auto& o) { o.lowest = INFINITY; }), HasSubstr("finite values"));
  EXPECT_THAT(error([](auto& o) { o.highest = NAN; }), HasSubstr("finite values"));
  EXPECT_THAT(error([](auto& o) { o.lowest = o.highest = 1.0; }), HasSubstr("lower one first"));
}

TEST(Preview, StopsWhenItIsCancelled) {
  for (const unsigned call : {1U, 4U, 6U}) {
    MemoryReader reader{test::MemoryLattice(test::UniformHeader(corvel::kUInt8, 2, 3, 2))};
    test::StopAt progress(call);
    EXPECT_FALSE(PreviewLattice(reader, {}, &progress));
    EXPECT_EQ(progress.Calls(), call);
  }
}

}  // namespace
}  // namespace trovan::filters
