#include "PngDecoder.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <new>
#include <string>

#include <corvel/Color.h>

#include "BitmapRows.h"
#include "PictureDecoder.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using brindle::MemoryBitmap;

constexpr std::string_view kStart = "\x89PNG";

// The library reports a fault by a long jump into the operation that called it.
class PngReader {
 public:
  explicit PngReader(std::string_view bytes) : bytes_(bytes) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &Fail, &Ignore);
    info_ = png_ == nullptr ? nullptr : png_create_info_struct(png_);
    if (info_ == nullptr) {
      png_destroy_read_struct(&png_, nullptr, nullptr);
      throw std::bad_alloc();
    }
    png_set_read_fn(png_, this, &Read);
  }
  ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;

  void ReadHeader() {
    Guarded([this] { png_read_info(png_, info_); });
  }

  png_uint_32 Width() const { return png_get_image_width(png_, info_); }
  png_uint_32 Height() const { return png_get_image_height(png_, info_); }

  // Whether a byte tells all of a pixel.
  bool IsGrey() const {
    return png_get_color_type(png_, info_) == PNG_COLOR_TYPE_GRAY &&
           png_get_valid(png_, info_, PNG_INFO_tRNS) == 0;
  }

  // Reads all that is left of the file.
  void ReadRows(unsigned char** rows) {
    Guarded([this, rows] {
      png_set_expand(png_);
      png_set_scale_16(png_);
      if (!IsGrey()) {
        png_set_gray_to_rgb(png_);
        png_set_bgr(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
      }
      png_set_interlace_handling(png_);
      png_read_update_info(png_, info_);
      png_read_image(png_, rows);
      png_read_end(png_, nullptr);
    });
  }

 private:
  // `work` has no local objects, so that a jump leaves none behind.
  template <class Work>
  void Guarded(const Work& work) {
    if (setjmp(png_jmpbuf(png_)) != 0) {
      throw FilterError(std::string("the PNG file is damaged (") + fault_.data() + ")");
    }
    work();
  }

  [[noreturn]] static void Fail(png_structp png, png_const_charp message) {
    auto& fault = static_cast<PngReader*>(png_get_error_ptr(png))->fault_;
    std::snprintf(fault.data(), fault.size(), "%s", message);
    png_longjmp(png, 1);
  }

  static void Ignore(png_structp, png_const_charp) {}

  static void Read(png_structp png, png_bytep to, std::size_t count) {
    auto* reader = static_cast<PngReader*>(png_get_io_ptr(png));
    if (count > reader->bytes_.size()) png_error(png, "it ends too early");
    std::copy_n(reader->bytes_.data(), count, to);
    reader->bytes_.remove_prefix(count);
  }

  std::string_view bytes_;  // those not read yet
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::array<char, 200> fault_{};
};

}  // namespace

bool IsPng(std::string_view bytes) { return bytes.starts_with(kStart); }

MemoryBitmap DecodePng(std::string_view bytes, std::uint64_t mostPixels) {
  PngReader reader(bytes);
  reader.ReadHeader();
  RequirePictureSize(reader.Width(), reader.Height(), mostPixels);
  MemoryBitmap bitmap(reader.Width(), reader.Height(),
                      reader.IsGrey() ? corvel::kColorFormat8 : corvel::kColorFormatBgra32);
  reader.ReadRows(BitmapRows(bitmap).Data());
  return bitmap;
}

}  // namespace trovan::filters
