// Pictures of any known format.
//
//   const brindle::MemoryBitmap picture = DecodePicture(bytes);
//   picture.GetWidth();
#pragma once

#include <cstdint>
#include <string_view>

#include <brindle/MemoryBitmap.h>

namespace trovan::filters {

// More pixels than these are not decoded: a small file may claim to hold any number of them.
inline constexpr std::uint64_t kMostPicturePixels = std::uint64_t{1} << 26;

// Decodes a PNG or a JPEG file, whichever the bytes are. The bitmap has the format
// corvel::kColorFormat8 without a palette (opaque greys) or corvel::kColorFormatBgra32.
//
// Raises FilterError, in words that may follow the name of the file, when it is neither, when it is
// damaged or cut off, and when the picture has more than `mostPixels`.
brindle::MemoryBitmap DecodePicture(std::string_view bytes,
                                    std::uint64_t mostPixels = kMostPicturePixels);

// For decoders: raises FilterError when a picture of this size is too large or has no pixels.
void RequirePictureSize(std::uint64_t width, std::uint64_t height, std::uint64_t mostPixels);

}  // namespace trovan::filters
