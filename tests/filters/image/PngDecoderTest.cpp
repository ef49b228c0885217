#include "filters/image/PngDecoder.h"

#include "MadePng.h"
#include "Pixels.h"
#include "filters/image/PictureDecoder.h"

namespace trovan::filters {
namespace {

using test::FaultOf;
using test::MadePng;
using test::PixelsOf;
using testing::ElementsAre;
using testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

// Four pixels of 16 bits.
MadePng Deep() {
  MadePng made;
  made.width = 4;
  made.depth = 16;
  made.rows = {0, 0, 0, 0x7F, 0, 0x81, 0xFF, 0xFF};
  return made;
}

TEST(PngDecoder, KeepsGreysAsGreys) {
  const struct {
    int depth;
    Bytes row;
    Bytes expected;
  } cases[] = {
      {1, {0xA0}, {255, 0, 255}},
      {2, {0x1B}, {0, 85, 170}},
      {4, {0x0F, 0x80}, {0, 255, 136}},
      {8, {1, 2, 255}, {1, 2, 255}},
      {16, {0, 128, 0, 129, 0xFF, 0x7E}, {0, 1, 254}},  // to the nearest
  };
  for (const auto& c : cases) {
    for (const bool isInterlaced : {false, true}) {
      MadePng made;
      made.width = 3;
      made.depth = c.depth;
      made.rows = c.row;
      made.isInterlaced = isInterlaced;
      const auto bitmap = DecodePicture(made.Bytes());
      EXPECT_EQ(bitmap.GetColorFormat(), corvel::kColorFormat8);
      EXPECT_EQ(bitmap.GetWidth(), 3U);
      EXPECT_EQ(bitmap.GetHeight(), 1U);
      EXPECT_EQ(PixelsOf(bitmap), c.expected) << c.depth;
    }
  }
}

TEST(PngDecoder, KeepsColorsAndOpacity) {
  MadePng made;
  made.width = 2;
  made.colorType = PNG_COLOR_TYPE_RGB;
  made.rows = {1, 2, 3, 4, 5, 6};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(3, 2, 1, 255, 6, 5, 4, 255));
  made.width = 1;
  made.colorType = PNG_COLOR_TYPE_RGB_ALPHA;
  made.rows = {1, 2, 3, 4};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(3, 2, 1, 4));
  made.colorType = PNG_COLOR_TYPE_GRAY_ALPHA;
  made.rows = {7, 8};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(7, 7, 7, 8));
  made.depth = 16;
  made.rows = {7, 0, 0xFF, 0xFF};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(7, 7, 7, 255));
}

TEST(PngDecoder, LooksUpPalettes) {
  MadePng made;
  made.width = 3;
  made.depth = 2;
  made.colorType = PNG_COLOR_TYPE_PALETTE;
  made.palette = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
  made.rows = {0x18};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())),
              ElementsAre(3, 2, 1, 255, 6, 5, 4, 255, 9, 8, 7, 255));
  made.alphas = {10, 20};
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())),
              ElementsAre(3, 2, 1, 10, 6, 5, 4, 20, 9, 8, 7, 255));
}

TEST(PngDecoder, MakesTheKeyColorTransparent) {
  MadePng made = Deep();
  made.hasKey = true;
  made.key.gray = 0x7F;
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())),
              ElementsAre(0, 0, 0, 255, 0, 0, 0, 0, 1, 1, 1, 255, 255, 255, 255, 255));
  made = MadePng();
  made.width = 2;
  made.colorType = PNG_COLOR_TYPE_RGB;
  made.rows = {1, 2, 3, 1, 2, 4};
  made.hasKey = true;
  made.key.red = 1;
  made.key.green = 2;
  made.key.blue = 3;
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(3, 2, 1, 0, 4, 2, 1, 255));
}

TEST(PngDecoder, AppliesNoGamma) {
  MadePng made;
  made.rows = {100};
  made.gamma = 1.0;
  EXPECT_THAT(PixelsOf(DecodePicture(made.Bytes())), ElementsAre(100));
}

TEST(PngDecoder, FillsAllBandsOfTallPictures) {
  MadePng made;
  made.width = 300;
  made.height = 701;  // more than 64 KiB
  for (unsigned i = 0; i < made.width * made.height; ++i) {
    made.rows.push_back(static_cast<std::uint8_t>(i * 7 + i / 251));
  }
  EXPECT_EQ(PixelsOf(DecodePicture(made.Bytes())), made.rows);
}

TEST(PngDecoder, RefusesFilesThatAreCutOff) {
  const std::string bytes = Deep().Bytes();
  for (std::size_t size = 4; size < bytes.size(); ++size) {
    EXPECT_THAT(FaultOf([&] { (void)DecodePicture(bytes.substr(0, size)); }),
                HasSubstr("the PNG file is damaged (it ends too early)"))
        << size;
  }
}

TEST(PngDecoder, RefusesOrReadsFilesWithAnyByteChanged) {
  const std::string bytes = Deep().Bytes();
  int refused = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::string changed = bytes;
    changed[i] = static_cast<char>(changed[i] ^ 0x10);
    refused += FaultOf([&] { (void)DecodePicture(changed); }).empty() ? 0 : 1;
  }
  EXPECT_EQ(refused, static_cast<int>(bytes.size()));  // every byte is checked in some way
}

TEST(PngDecoder, LooksAtTheSizeBeforeItMakesRoom) {
  EXPECT_THAT(FaultOf([] { (void)DecodePicture(Deep().Bytes(), 3); }),
              HasSubstr("4 by 1 pixels; no more than 3"));
  EXPECT_EQ(FaultOf([] { (void)DecodePicture(Deep().Bytes(), 4); }), "");
  EXPECT_NE(FaultOf([] { RequirePictureSize(0, 1, 1); }), "");
  EXPECT_NE(FaultOf([] { RequirePictureSize(UINT32_MAX, UINT32_MAX, UINT32_MAX); }), "");
  EXPECT_EQ(FaultOf([] { RequirePictureSize(UINT32_MAX, 1, UINT32_MAX); }), "");
}

TEST(PictureDecoder, RefusesOtherFiles) {
  for (const char* bytes : {"", "GIF89a", "\x89PN", "<svg/>", "\xFF\xD8"}) {
    EXPECT_EQ(FaultOf([&] { (void)DecodePicture(bytes); }), "it is neither a PNG nor a JPEG file");
  }
}

}  // namespace
}  // namespace trovan::filters
