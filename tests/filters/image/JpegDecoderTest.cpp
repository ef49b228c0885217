#include "filters/image/JpegDecoder.h"

#include <cstdlib>

#include "MadeJpeg.h"
#include "Pixels.h"
#include "filters/image/PictureDecoder.h"

namespace trovan::filters {
namespace {

using test::FaultOf;
using test::MadeJpeg;
using test::PixelsOf;
using testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

// Quantization by 1 and rounding, twice.
constexpr int kTolerance = 3;

MadeJpeg Ramp() {
  MadeJpeg made;
  for (unsigned i = 0; i < made.width * made.height; ++i) {
    made.rows.push_back(static_cast<std::uint8_t>(i % made.width * 10 + i / made.width * 5));
  }
  return made;
}

// One colour all over.
MadeJpeg Plain(J_COLOR_SPACE samples, J_COLOR_SPACE stored, const Bytes& color) {
  MadeJpeg made;
  made.samples = samples;
  made.stored = stored;
  made.components = static_cast<int>(color.size());
  for (unsigned i = 0; i < made.width * made.height; ++i) {
    made.rows.insert(made.rows.end(), color.begin(), color.end());
  }
  return made;
}

void ExpectNear(const Bytes& pixels, const Bytes& expected) {
  ASSERT_EQ(pixels.size(), expected.size());
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    ASSERT_LE(std::abs(int{pixels[i]} - int{expected[i]}), kTolerance) << i;
  }
}

TEST(JpegDecoder, KeepsGreysAsGreys) {
  for (const bool isProgressive : {false, true}) {
    MadeJpeg made = Ramp();
    made.isProgressive = isProgressive;
    const auto bitmap = DecodePicture(made.Bytes());
    EXPECT_EQ(bitmap.GetColorFormat(), corvel::kColorFormat8);
    EXPECT_EQ(bitmap.GetWidth(), 16U);
    ExpectNear(PixelsOf(bitmap), made.rows);
  }
}

TEST(JpegDecoder, GivesColorsAsOpaquePixels) {
  for (const J_COLOR_SPACE stored : {JCS_YCbCr, JCS_RGB}) {
    for (const bool isProgressive : {false, true}) {
      MadeJpeg made = Plain(JCS_RGB, stored, {200, 120, 40});
      made.isProgressive = isProgressive;
      const auto bitmap = DecodePicture(made.Bytes());
      EXPECT_EQ(bitmap.GetColorFormat(), corvel::kColorFormatBgra32);
      const Bytes pixels = PixelsOf(bitmap);
      ExpectNear({pixels.begin(), pixels.begin() + 4}, {40, 120, 200, 255});
      ExpectNear({pixels.end() - 4, pixels.end()}, {40, 120, 200, 255});
    }
  }
}

TEST(JpegDecoder, RefusesFourColors) {
  for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
    const MadeJpeg made = Plain(JCS_CMYK, stored, {1, 2, 3, 4});
    EXPECT_THAT(FaultOf([&] { (void)DecodePicture(made.Bytes()); }), HasSubstr("CMYK"));
  }
}

TEST(JpegDecoder, RefusesFilesThatAreCutOff) {
  for (const bool isProgressive : {false, true}) {
    MadeJpeg made = Ramp();
    made.isProgressive = isProgressive;
    const std::string bytes = made.Bytes();
    for (std::size_t size = 3; size < bytes.size(); ++size) {
      EXPECT_THAT(FaultOf([&] { (void)DecodePicture(bytes.substr(0, size)); }),
                  testing::StartsWith("the JPEG file is damaged ("))
          << size;
    }
  }
}

TEST(JpegDecoder, RefusesOrReadsFilesWithAnyByteChanged) {
  const std::string bytes = Ramp().Bytes();
  int refused = 0;
  for (std::size_t i = 3; i < bytes.size(); ++i) {
    std::string changed = bytes;
    changed[i] = static_cast<char>(~changed[i]);
    refused += FaultOf([&] { (void)DecodePicture(changed, 1 << 20); }).empty() ? 0 : 1;
  }
  EXPECT_GT(refused, 100);
  EXPECT_LT(refused, static_cast<int>(bytes.size()));
}

TEST(JpegDecoder, PassesOverBytesThatBelongToNothing) {
  std::string bytes = Ramp().Bytes();
  const std::size_t tables = bytes.find("\xFF\xDB");
  ASSERT_NE(tables, std::string::npos);
  bytes.insert(tables, "junk");
  EXPECT_EQ(PixelsOf(DecodePicture(bytes)), PixelsOf(DecodePicture(Ramp().Bytes())));
}

TEST(JpegDecoder, LooksAtTheSizeBeforeItMakesRoom) {
  const std::string bytes = Ramp().Bytes();
  EXPECT_THAT(FaultOf([&] { (void)DecodePicture(bytes, 255); }),
              HasSubstr("16 by 16 pixels; no more than 255"));
  EXPECT_EQ(FaultOf([&] { (void)DecodePicture(bytes, 256); }), "");
}

// Scans of no use may follow each other without end, each over the whole picture.
TEST(JpegDecoder, RefusesScansBeyondAllMeasure) {
  MadeJpeg made = Plain(JCS_RGB, JCS_YCbCr, {200, 120, 40});
  made.isSeparated = true;
  std::string bytes = made.Bytes();
  const std::size_t last = bytes.rfind("\xFF\xDA");
  const std::string scan = bytes.substr(last, bytes.size() - 2 - last);
  const auto withScans = [&](int count) {
    std::string repeated = bytes.substr(0, last);
    for (int i = 0; i < count; ++i) repeated += scan;
    return repeated + "\xFF\xD9";
  };
  EXPECT_EQ(FaultOf([&] { (void)DecodePicture(withScans(90)); }), "");
  EXPECT_EQ(FaultOf([&] { (void)DecodePicture(withScans(110)); }),
            "the JPEG file is damaged (more than 100 scans)");
}

}  // namespace
}  // namespace trovan::filters
