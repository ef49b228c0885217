#include "JpegDecoder.h"

#include <csetjmp>
#include <cstddef>
#include <cstdio>  // the library's header wants it first

#include <jerror.h>
#include <jpeglib.h>

#include <string>

#include <corvel/Color.h>

#include "BitmapRows.h"
#include "PictureDecoder.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using brindle::MemoryBitmap;

constexpr std::string_view kStart = "\xFF\xD8\xFF";

// A few hundred bytes may hold a scan over all pixels; programs make ten of them.
constexpr int kMostScans = 100;

// What is odd but takes nothing from the picture.
bool IsHarmless(int warning) {
  return warning == JWRN_EXTRANEOUS_DATA || warning == JWRN_ADOBE_XFORM ||
         warning == JWRN_JFIF_MAJOR;
}

// The library reports a fault by a long jump into the operation that called it.
class JpegReader {
 public:
  JpegReader() {
    jpeg_.err = jpeg_std_error(&errors_);
    errors_.error_exit = &Fail;
    errors_.emit_message = &Judge;
    progress_.progress_monitor = &CountScans;
    jpeg_.client_data = this;
  }
  ~JpegReader() { jpeg_destroy_decompress(&jpeg_); }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;

  // `bytes` are borrowed.
  void ReadHeader(std::string_view bytes) {
    Guarded([this, bytes] {
      jpeg_create_decompress(&jpeg_);
      jpeg_mem_src(&jpeg_, reinterpret_cast<const unsigned char*>(bytes.data()),
                   static_cast<unsigned long>(bytes.size()));
      jpeg_read_header(&jpeg_, TRUE);
      jpeg_.progress = &progress_;
    });
  }

  unsigned Width() const { return jpeg_.image_width; }
  unsigned Height() const { return jpeg_.image_height; }
  bool IsGrey() const { return jpeg_.jpeg_color_space == JCS_GRAYSCALE; }
  bool IsColored() const {
    return jpeg_.jpeg_color_space == JCS_YCbCr || jpeg_.jpeg_color_space == JCS_RGB;
  }

  // Reads all that is left of the file.
  void ReadRows(unsigned char** rows) {
    Guarded([this, rows] {
      jpeg_.out_color_space = IsGrey() ? JCS_GRAYSCALE : JCS_EXT_BGRA;
      jpeg_start_decompress(&jpeg_);
      while (jpeg_.output_scanline < jpeg_.output_height) {
        jpeg_read_scanlines(&jpeg_, rows + jpeg_.output_scanline,
                            jpeg_.output_height - jpeg_.output_scanline);
      }
      jpeg_finish_decompress(&jpeg_);
    });
  }

 private:
  // `work` has no local objects, so that a jump leaves none behind.
  template <class Work>
  void Guarded(const Work& work) {
    if (setjmp(back_) != 0) {
      throw FilterError(std::string("the JPEG file is damaged (") + fault_ + ")");
    }
    work();
  }

  [[noreturn]] static void Fail(j_common_ptr jpeg) {
    auto* reader = static_cast<JpegReader*>(jpeg->client_data);
    (*jpeg->err->format_message)(jpeg, reader->fault_);
    std::longjmp(reader->back_, 1);
  }

  static void Judge(j_common_ptr jpeg, int level) {
    const bool isWarning = level < 0;
    if (isWarning && !IsHarmless(jpeg->err->msg_code)) Fail(jpeg);
  }

  static void CountScans(j_common_ptr jpeg) {
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number <= kMostScans) return;
    auto* reader = static_cast<JpegReader*>(jpeg->client_data);
    std::snprintf(reader->fault_, sizeof reader->fault_, "more than %d scans", kMostScans);
    std::longjmp(reader->back_, 1);
  }

  jpeg_decompress_struct jpeg_{};
  jpeg_error_mgr errors_{};
  jpeg_progress_mgr progress_{};
  std::jmp_buf back_{};
  char fault_[JMSG_LENGTH_MAX] = {};
};

}  // namespace

bool IsJpeg(std::string_view bytes) { return bytes.starts_with(kStart); }

MemoryBitmap DecodeJpeg(std::string_view bytes, std::uint64_t mostPixels) {
  JpegReader reader;
  reader.ReadHeader(bytes);
  if (!reader.IsGrey() && !reader.IsColored()) {
    throw FilterError("it is a JPEG file of other colours than grey, YCbCr and RGB (CMYK?)");
  }
  RequirePictureSize(reader.Width(), reader.Height(), mostPixels);
  MemoryBitmap bitmap(reader.Width(), reader.Height(),
                      reader.IsGrey() ? corvel::kColorFormat8 : corvel::kColorFormatBgra32);
  reader.ReadRows(BitmapRows(bitmap).Data());
  return bitmap;
}

}  // namespace trovan::filters
