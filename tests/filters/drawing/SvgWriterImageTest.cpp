#include "SvgWriterFixture.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>
#include <quillon/TrImage.h>

#include "support/PngImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using testing::HasSubstr;
using SvgWriterImageTest = SvgWriterTest;

// What the data address of the only image holds.
std::string PngOf(const std::string& body) {
  const std::string start = "data:image/png;base64,";
  const std::size_t at = body.find(start) + start.size();
  std::string bytes;
  unsigned bits = 0;
  unsigned count = 0;
  for (const char c : body.substr(at, body.find('"', at) - at)) {
    if (c == '=') break;
    const std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    bits = bits << 6 | static_cast<unsigned>(digits.find(c));
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  return bytes;
}

TEST_F(SvgWriterImageTest, PicturesStandInTheDocument) {
  const unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const struct {
    corvel::ColorFormat format;
    unsigned width;
    std::vector<std::uint8_t> expected;
  } cases[] = {
      {corvel::kColorFormatBgra32, 3, {3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12}},
      {corvel::kColorFormatBgr24, 2, {3, 2, 1, 255, 6, 5, 4, 255}},
      {corvel::kColorFormat8, 2, {10, 20, 30, 40, 2, 2, 2, 255}},
  };
  writer_.Begin(page_);
  begun_ = true;
  for (const auto& test : cases) {
    brindle::MemoryBitmap bitmap(test.width, 1, test.format);
    bitmap.StoreRegion(pixels, 12, 0, 0, static_cast<int>(test.width), 1);
    if (test.format == corvel::kColorFormat8) bitmap.SetPalette({{}, {10, 20, 30, 40}});
    quillon::TrImage image(&bitmap, false);
    image.SetPlacement(Box2d(1, 2, 5, 4));
    sink_.text.clear();
    Add(image);
    writer_.End();
    EXPECT_THAT(sink_.text, HasSubstr("<image x=\"1\" y=\"-4\" width=\"4\" height=\"2\" "
                                      "preserveAspectRatio=\"none\" href=\""));
    const test::TempFolder folder;
    test::WriteBytes(folder.Path() / "p.png", PngOf(sink_.text));
    EXPECT_EQ(test::ReadPng(folder.Path() / "p.png").pixels, test.expected);
  }
}

TEST_F(SvgWriterImageTest, PicturesAreTurnedAndMirroredAsInTheDrawing) {
  brindle::MemoryBitmap bitmap(2, 1, corvel::kColorFormatBgr24);
  quillon::TrImage image(&bitmap, false);
  image.SetPlacement(Box2d(5, 2, 1, 4));  // mirrored
  Add(image);
  EXPECT_THAT(Body(), testing::StartsWith(
                          "<image width=\"1\" height=\"1\" transform=\"matrix(-4 0 0 2 5 -4)\" "));
}

TEST_F(SvgWriterImageTest, PicturesOfOtherFormatsAreLeftOut) {
  brindle::MemoryBitmap bitmap(2, 1, corvel::kColorFormatBgr48);
  quillon::TrImage image(&bitmap, false);
  image.SetPlacement(Box2d(1, 2, 5, 4));
  Add(image);
  Add(quillon::TrImage());
  EXPECT_EQ(Body(), "");
  EXPECT_EQ(writer_.Remarks().Count(), 1U);
}

}  // namespace
}  // namespace trovan::filters
