#include "filters/support/PngFile.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "filters/support/FilterError.h"
#include "support/FileSizeLimit.h"
#include "support/PngImage.h"
#include "support/Random.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

std::vector<std::uint8_t> RandomPixels(std::size_t count) {
  std::mt19937 random(20260312);
  std::vector<std::uint8_t> pixels(count * 4);
  for (auto& byte : pixels) byte = static_cast<std::uint8_t>(test::Below(random, 256));
  return pixels;
}

TEST(PngFile, HasThePixelsThatWereGiven) {
  const test::TempFolder folder;
  const struct {
    unsigned width;
    unsigned height;
  } sizes[] = {{1, 1}, {7, 3}, {1, 500}, {500, 1}, {129, 65}};
  for (const auto& size : sizes) {
    const auto pixels = RandomPixels(std::size_t{size.width} * size.height);
    WritePng(folder.File(L"p.png"), size.width, size.height, pixels);
    const test::PngImage image = test::ReadPng(folder.Path() / "p.png");
    EXPECT_EQ(image.width, size.width);
    EXPECT_EQ(image.height, size.height);
    EXPECT_EQ(image.pixels, pixels);
  }
  const auto files = std::filesystem::directory_iterator(folder.Path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(PngFile, ThatCannotBeEncodedIsRefused) {
  const test::TempFolder folder;
  constexpr unsigned kBeyondTheLibrary = 1'000'001;
  const std::vector<std::uint8_t> pixels(std::size_t{kBeyondTheLibrary} * 4);
  try {
    WritePng(folder.File(L"p.png"), kBeyondTheLibrary, 1, pixels);
    ADD_FAILURE() << "nothing was raised";
  } catch (const FilterError& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("the picture cannot be encoded: "));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(PngFile, ThatDoesNotFitOnTheDiskLeavesNothingBehind) {
  const test::TempFolder folder;
  const auto pixels = RandomPixels(std::size_t{200} * 200);
  {
    const test::FileSizeLimit full(10'000);
    EXPECT_THROW(WritePng(folder.File(L"p.png"), 200, 200, pixels), FilterError);
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_THROW(WritePng(folder.File(L"none/p.png"), 200, 200, pixels), FilterError);
}

}  // namespace
}  // namespace trovan::filters
