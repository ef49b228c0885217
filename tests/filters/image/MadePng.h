// PNG files that tests make, sample by sample.
#pragma once

#include <cstdint>
#include <exception>
#include <png.h>
#include <string>
#include <vector>

namespace trovan::test {

struct MadePng {
  unsigned width = 1;
  unsigned height = 1;
  int depth = 8;
  int colorType = PNG_COLOR_TYPE_GRAY;
  std::vector<std::uint8_t> rows;  // packed as in the file
  std::vector<png_color> palette;
  std::vector<std::uint8_t> alphas;  // of the palette
  bool hasKey = false;               // the colour that is transparent
  png_color_16 key{};
  bool isInterlaced = false;
  double gamma = 0.0;  // 0: none

  std::string Bytes() const {
    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &bytes, &Write, nullptr);
    png_set_IHDR(png, info, width, height, depth, colorType,
                 isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!palette.empty()) png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    if (!alphas.empty()) {
      png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
    }
    if (hasKey) png_set_tRNS(png, info, nullptr, 0, &key);
    if (gamma != 0.0) png_set_gAMA(png, info, gamma);
    png_write_info(png, info);
    std::vector<png_bytep> pointers;
    const std::size_t stride = rows.size() / height;
    for (unsigned y = 0; y < height; ++y) {
      pointers.push_back(const_cast<png_bytep>(rows.data() + y * stride));
    }
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
  }

 private:
  // A fault of the test: it ends the program.
  [[noreturn]] static void Fail(png_structp, png_const_charp) { std::terminate(); }
  static void Write(png_structp png, png_bytep bytes, std::size_t count) {
    static_cast<std::string*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(bytes), count);
  }
};

}  // namespace trovan::test
