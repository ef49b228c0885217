#include "PictureDecoder.h"

#include <string>

#include "JpegDecoder.h"
#include "PngDecoder.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {

brindle::MemoryBitmap DecodePicture(std::string_view bytes, std::uint64_t mostPixels) {
  if (IsPng(bytes)) return DecodePng(bytes, mostPixels);
  if (IsJpeg(bytes)) return DecodeJpeg(bytes, mostPixels);
  throw FilterError("it is neither a PNG nor a JPEG file");
}

void RequirePictureSize(std::uint64_t width, std::uint64_t height, std::uint64_t mostPixels) {
  if (width == 0 || height == 0) throw FilterError("it has no pixels");
  if (width <= mostPixels / height) return;
  throw FilterError("it has " + std::to_string(width) + " by " + std::to_string(height) +
                    " pixels; no more than " + std::to_string(mostPixels) + " are read");
}

}  // namespace trovan::filters
