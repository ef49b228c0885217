// Pictures within documents.
#pragma once

#include <string>

#include <brindle/GBitmap.h>

namespace trovan::filters {

// Whether ImageDataUri can tell the picture: it has pixels of 24 or 32 bits, or of 8 bits with a
// palette or as grey, and no more than 2^26 of them.
bool CanHoldImage(const brindle::GBitmap& bitmap);

// The picture as a "data:" address (RFC 2397) of a PNG file, which keeps each pixel.
//
// Raises FilterError when it cannot be encoded.
// REQUIRES: CanHoldImage(bitmap).
std::string ImageDataUri(const brindle::GBitmap& bitmap);

}  // namespace trovan::filters
