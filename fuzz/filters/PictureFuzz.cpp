// Any bytes as a picture: it is whole and has the pixels that it claims, or what is wrong is said.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "filters/image/PictureDecoder.h"
#include "filters/support/FilterError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using trovan::fuzz::Require;
  constexpr std::uint64_t kMostPixels = 1U << 20U;  // keeps each run short
  try {
    const auto bitmap =
        trovan::filters::DecodePicture({reinterpret_cast<const char*>(data), size}, kMostPixels);
    const std::uint64_t pixels = std::uint64_t{bitmap.GetWidth()} * bitmap.GetHeight();
    Require(pixels > 0 && pixels <= kMostPixels, "a picture of another size");
    Require(bitmap.GetColorFormat() == corvel::kColorFormat8 ||
                bitmap.GetColorFormat() == corvel::kColorFormatBgra32,
            "a picture of another format");
  } catch (const trovan::filters::FilterError& error) {
    Require(error.what()[0] != '\0', "an error without words");
  }
  return 0;
}
