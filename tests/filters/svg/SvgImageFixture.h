// Documents with pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <brindle/MemoryBitmap.h>
#include <corvel/Geometry.h>
#include <quillon/TrImage.h>

#include "SvgFixture.h"
#include "filters/image/Pixels.h"
#include "filters/support/PngFile.h"

namespace trovan::filters {

// Of pixels in red, green, blue and opacity; those that are not given are white.
inline std::string PngOf(unsigned width, unsigned height, std::vector<std::uint8_t> pixels = {}) {
  pixels.resize(std::size_t{width} * height * 4, 255);
  const auto bytes = EncodePng(width, height, pixels);
  return {bytes.begin(), bytes.end()};
}

inline std::string AddressOf(const std::string& bytes) {
  std::string address = "data:image/png,";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    address += '%';
    address += "0123456789abcdef"[byte >> 4U];
    address += "0123456789abcdef"[byte & 15U];
  }
  return address;
}

class SvgImage : public SvgTest {
 protected:
  // The objects that arrive; the first image among them, if there is one, is in `image_`.
  void Import(const std::string& content) {
    ImportDocument(Page(content));
    FindImage();
  }
  void FindImage() {
    image_ = nullptr;
    for (std::size_t i = 0; i < manager_.Size() && image_ == nullptr; ++i) {
      image_ = dynamic_cast<const quillon::TrImage*>(&manager_.At(i));
    }
  }

  // An image with the address of a picture.
  static std::string Image(unsigned width, unsigned height, const std::string& attributes) {
    return "<image href='" + AddressOf(PngOf(width, height)) + "' " + attributes + "/>";
  }

  // Where the image stands, y up.
  corvel::Box2d Placement(const std::string& content) {
    Import(content);
    EXPECT_NE(image_, nullptr) << content;
    return image_ == nullptr ? corvel::Box2d() : image_->Placement();
  }

  // Where a place of the picture comes to stand, from (0, 0) at its top left to (1, 1).
  corvel::Vec2d Corner(double x, double y) const {
    const corvel::Box2d& box = image_->Placement();
    corvel::Vec2d corner(box.min.x + x * box.Width(), box.max.y - y * box.Height());
    image_->Transform().Transform(&corner, &corner, 1);
    return corner;
  }

  std::vector<std::uint8_t> Pixels() const {
    return test::PixelsOf(dynamic_cast<const brindle::MemoryBitmap&>(*image_->Bitmap()));
  }

  const quillon::TrImage* image_ = nullptr;
};

}  // namespace trovan::filters
