// JPEG files as bitmaps (ITU-T Recommendation T.81; JFIF 1.02).
#pragma once

#include <cstdint>
#include <string_view>

#include <brindle/MemoryBitmap.h>

namespace trovan::filters {

// Whether the bytes begin as a JPEG file does.
bool IsJpeg(std::string_view bytes);

// Decodes the file. Greys become a bitmap of corvel::kColorFormat8 without a palette, colours one
// of corvel::kColorFormatBgra32. No colour profile is applied, and the picture is not turned as a
// camera may want it.
//
// Raises FilterError when the file is damaged or cut off, has more than `mostPixels`, or has four
// colours (CMYK).
brindle::MemoryBitmap DecodeJpeg(std::string_view bytes, std::uint64_t mostPixels);

}  // namespace trovan::filters
