// Files of a suite that was made to try decoders. They lie in the folder that the build names as
// TROVAN_TEST_DATA, outside the project.
#include <png.h>

#include "Pixels.h"
#include "filters/image/PictureDecoder.h"
#include "support/Sha256.h"
#include "support/TempFolder.h"
#include "tables/RealFiles.h"

namespace trovan::filters {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The file as it stands: no sample is changed.
struct RawPng {
  unsigned width = 0;
  unsigned height = 0;
  int depth = 0;
  int colorType = 0;
  unsigned channels = 0;
  std::vector<unsigned> samples;
  std::vector<png_color> palette;
  Bytes alphas;  // of the palette
  bool hasKey = false;
  png_color_16 key{};

  // As the sums of the suite are taken.
  std::string Text() const {
    std::string text;
    for (const unsigned sample : samples) {
      if (depth == 16) text += static_cast<char>(sample >> 8U);
      text += static_cast<char>(sample & 0xFFU);
    }
    return text;
  }
};

[[noreturn]] void EndProgram(png_structp, png_const_charp message) {
  ADD_FAILURE() << message;
  std::terminate();
}

void ReadFromText(png_structp png, png_bytep to, std::size_t count) {
  auto& rest = *static_cast<std::string_view*>(png_get_io_ptr(png));
  std::copy_n(rest.data(), count, to);
  rest.remove_prefix(count);
}

void KeepTransparency(png_structp png, png_infop info, RawPng& raw) {
  png_bytep alphas = nullptr;
  int count = 0;
  png_color_16p key = nullptr;
  if (png_get_tRNS(png, info, &alphas, &count, &key) == 0) return;
  if (raw.colorType == PNG_COLOR_TYPE_PALETTE) {
    raw.alphas.assign(alphas, alphas + count);
  } else {
    raw.hasKey = true;
    raw.key = *key;
  }
}

RawPng ReadRaw(std::string_view bytes) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &EndProgram, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &bytes, &ReadFromText);
  png_read_info(png, info);
  RawPng raw;
  raw.width = png_get_image_width(png, info);
  raw.height = png_get_image_height(png, info);
  raw.depth = png_get_bit_depth(png, info);
  raw.colorType = png_get_color_type(png, info);
  raw.channels = png_get_channels(png, info);
  png_colorp colors = nullptr;
  int count = 0;
  if (png_get_PLTE(png, info, &colors, &count) != 0) raw.palette.assign(colors, colors + count);
  KeepTransparency(png, info, raw);
  png_set_packing(png);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  const std::size_t stride = png_get_rowbytes(png, info);
  Bytes pixels(stride * raw.height);
  std::vector<png_bytep> rows;
  for (unsigned y = 0; y < raw.height; ++y) rows.push_back(pixels.data() + y * stride);
  png_read_image(png, rows.data());
  png_destroy_read_struct(&png, &info, nullptr);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    raw.samples.push_back(pixels[i]);
    if (raw.depth != 16) continue;
    raw.samples.back() = raw.samples.back() << 8U | pixels[++i];
  }
  return raw;
}

// The nearest of 8 bits.
std::uint8_t Spread(unsigned sample, int depth) {
  const unsigned most = (1U << static_cast<unsigned>(depth)) - 1;
  return static_cast<std::uint8_t>((sample * 255 + most / 2) / most);
}

// Blue, green, red, opacity.
void AppendPixel(const RawPng& raw, const unsigned* pixel, Bytes& to) {
  const auto spread = [&](unsigned channel) { return Spread(pixel[channel], raw.depth); };
  if (raw.colorType == PNG_COLOR_TYPE_PALETTE) {
    const png_color color = raw.palette.at(*pixel);
    const std::uint8_t alpha = *pixel < raw.alphas.size() ? raw.alphas[*pixel] : 255;
    to.insert(to.end(), {color.blue, color.green, color.red, alpha});
    return;
  }
  const bool isGrey = raw.channels < 3;
  const bool isKey = raw.hasKey && (isGrey ? *pixel == raw.key.gray
                                           : pixel[0] == raw.key.red && pixel[1] == raw.key.green &&
                                                 pixel[2] == raw.key.blue);
  const std::uint8_t alpha = raw.channels % 2 == 0 ? spread(raw.channels - 1) : (isKey ? 0 : 255);
  to.insert(to.end(), {spread(isGrey ? 0 : 2), spread(isGrey ? 0 : 1), spread(0), alpha});
}

Bytes ExpectedPixels(const RawPng& raw) {
  Bytes expected;
  const bool isPlainGrey = raw.colorType == PNG_COLOR_TYPE_GRAY && !raw.hasKey;
  for (std::size_t i = 0; i < raw.samples.size(); i += raw.channels) {
    if (isPlainGrey) {
      expected.push_back(Spread(raw.samples[i], raw.depth));
    } else {
      AppendPixel(raw, &raw.samples[i], expected);
    }
  }
  return expected;
}

class RealPng : public test::RealFileTest {
 protected:
  static const nlohmann::json& Expected() {
    static const nlohmann::json expected = test::Expectations("images");
    return expected.at(GetParam());
  }
};

TEST_P(RealPng, HasThePixelsOfItsSamples) {
  const std::string bytes = test::ReadBytes(test::DataFolder() / GetParam());
  if (!Expected().at("valid").get<bool>()) {
    EXPECT_NE(test::FaultOf([&] { (void)DecodePicture(bytes); }), "");
    return;
  }
  const RawPng raw = ReadRaw(bytes);
  ASSERT_EQ(test::Sha256(raw.Text()), Expected().at("samples_sha256"));
  const auto bitmap = DecodePicture(bytes);
  EXPECT_EQ(bitmap.GetWidth(), Expected().at("width"));
  EXPECT_EQ(bitmap.GetHeight(), Expected().at("height"));
  EXPECT_EQ(test::PixelsOf(bitmap), ExpectedPixels(raw));
}

INSTANTIATE_TEST_SUITE_P(All, RealPng, testing::ValuesIn(test::Keys(test::Expectations("images"))),
                         test::TestName);

}  // namespace
}  // namespace trovan::filters
