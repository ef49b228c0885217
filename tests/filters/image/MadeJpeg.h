// JPEG files that tests make.
#pragma once

#include <csetjmp>
#include <cstdint>
#include <cstdio>  // the library's header wants it first
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace trovan::test {

struct MadeJpeg {
  unsigned width = 16;
  unsigned height = 16;
  J_COLOR_SPACE samples = JCS_GRAYSCALE;  // of `rows`
  J_COLOR_SPACE stored = JCS_GRAYSCALE;
  int components = 1;
  std::vector<std::uint8_t> rows;
  bool isProgressive = false;
  bool isSeparated = false;  // a scan for each of three components

  std::string Bytes() const {
    jpeg_error_mgr errors{};
    jpeg_compress_struct jpeg{};
    jpeg.err = jpeg_std_error(&errors);
    errors.error_exit = [](j_common_ptr) { std::terminate(); };  // a fault of the test
    jpeg_create_compress(&jpeg);
    unsigned char* made = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &made, &size);
    jpeg.image_width = width;
    jpeg.image_height = height;
    jpeg.in_color_space = samples;
    jpeg.input_components = components;
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, stored);
    jpeg_set_quality(&jpeg, 100, TRUE);
    if (isProgressive) jpeg_simple_progression(&jpeg);
    constexpr jpeg_scan_info kScans[] = {
        {1, {0}, 0, 63, 0, 0}, {1, {1}, 0, 63, 0, 0}, {1, {2}, 0, 63, 0, 0}};
    if (isSeparated) {
      jpeg.scan_info = kScans;
      jpeg.num_scans = 3;
    }
    jpeg_start_compress(&jpeg, TRUE);
    const std::size_t stride = rows.size() / height;
    while (jpeg.next_scanline < height) {
      auto* row = const_cast<JSAMPROW>(rows.data() + jpeg.next_scanline * stride);
      jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    const std::string bytes(reinterpret_cast<const char*>(made), size);
    std::free(made);
    return bytes;
  }
};

}  // namespace trovan::test
