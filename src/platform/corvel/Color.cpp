#include <corvel/Color.h>

namespace corvel {

// Columns: none, 1, 4 and 8 bits, grey of 16, 32 and 64 bits, BGR 5-6-5, BGR 24, BGR 48, BGRA 32,
// BGRA 64, BGR 96, BGRA 128.
const int ColorFmtToSampleCount[kColorFormatCount] = {0, 1, 1, 1, 1, 1, 1, 0, 3, 3, 4, 4, 3, 4};
const int ColorFmtToBPS[kColorFormatCount] = {0, 1, 4, 8, 16, 32, 64, 0, 8, 16, 8, 16, 32, 32};
const int ColorFmtToBPP[kColorFormatCount] = {0, 1, 4, 8, 16, 32, 64, 16, 24, 48, 32, 64, 96, 128};
const bool ColorFmtHasAlphaChannel[kColorFormatCount] = {
    false, false, false, false, false, false, false, false, false, false, true, true, false, true};

}  // namespace corvel
