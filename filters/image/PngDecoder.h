// PNG files as bitmaps (W3C, "Portable Network Graphics (PNG) Specification", second edition).
#pragma once

#include <cstdint>
#include <string_view>

#include <brindle/MemoryBitmap.h>

namespace trovan::filters {

// Whether the bytes begin as a PNG file does.
bool IsPng(std::string_view bytes);

// Decodes the file. Greys without transparency become a bitmap of corvel::kColorFormat8 without a
// palette, all others one of corvel::kColorFormatBgra32. Samples of less than 8 bits are spread
// over the range of 8, those of 16 bits rounded to it; no gamma and no colour profile is applied.
//
// Raises FilterError when the file is damaged or cut off, or has more than `mostPixels`.
brindle::MemoryBitmap DecodePng(std::string_view bytes, std::uint64_t mostPixels);

}  // namespace trovan::filters
