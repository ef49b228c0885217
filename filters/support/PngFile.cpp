#include "filters/support/PngFile.h"

#include <png.h>

#include "filters/support/FilterError.h"
#include "filters/support/OutputFile.h"

namespace trovan::filters {

std::vector<std::uint8_t> EncodePng(unsigned width, unsigned height,
                                    const std::vector<std::uint8_t>& pixels) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width;
  image.height = height;
  image.format = PNG_FORMAT_RGBA;
  const auto encode = [&](void* to, png_alloc_size_t& size) {
    if (png_image_write_to_memory(&image, to, &size, 0, pixels.data(), 0, nullptr) == 0) {
      throw FilterError(std::string("the picture cannot be encoded: ") + image.message);
    }
  };
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<std::uint8_t> bytes(size);
  encode(bytes.data(), size);
  bytes.resize(size);
  return bytes;
}

void WritePng(const std::wstring& path, unsigned width, unsigned height,
              const std::vector<std::uint8_t>& pixels) {
  const std::vector<std::uint8_t> bytes = EncodePng(width, height, pixels);
  OutputFile file(path);
  file.Fill([&](corvel::CBufferedFile& to) { to.Write(bytes.data(), bytes.size()); });
  file.Commit();
}

}  // namespace trovan::filters
