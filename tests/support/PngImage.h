// PNG files, read by the library that everyone reads them with.
#pragma once

#include <cstdint>
#include <filesystem>
#include <png.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/TempFolder.h"

namespace trovan::test {

// Pixels of four bytes (red, green, blue, opacity), top row first.
struct PngImage {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<std::uint8_t> pixels;
};

// Raises for what is no such file.
inline PngImage ReadPng(const std::filesystem::path& path) {
  const std::string bytes = ReadBytes(path);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) {
    throw std::runtime_error(image.message);
  }
  image.format = PNG_FORMAT_RGBA;
  PngImage result{image.width, image.height, std::vector<std::uint8_t>(PNG_IMAGE_SIZE(image))};
  if (png_image_finish_read(&image, nullptr, result.pixels.data(), 0, nullptr) == 0) {
    throw std::runtime_error(image.message);
  }
  return result;
}

}  // namespace trovan::test
