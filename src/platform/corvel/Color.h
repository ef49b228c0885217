// Colours, and the layouts of pixels in memory.
#pragma once

#include <cstdint>

#include <corvel/Export.h>

namespace corvel {

// A colour of four bytes. Alpha 0 is transparent, 255 opaque.
struct Color4b {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 0;

  // Transparent black, the same as Color4b(0).
  constexpr Color4b() = default;
  constexpr Color4b(std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a)
      : red(r), green(g), blue(b), alpha(a) {}

  // 0xAABBGGRR: red in the lowest byte, alpha in the highest of 32 bits. Higher bits, where an
  // unsigned long has them, are not read.
  constexpr explicit Color4b(unsigned long packed)
      : red(static_cast<std::uint8_t>(packed & 0xFFU)),
        green(static_cast<std::uint8_t>(packed >> 8 & 0xFFU)),
        blue(static_cast<std::uint8_t>(packed >> 16 & 0xFFU)),
        alpha(static_cast<std::uint8_t>(packed >> 24 & 0xFFU)) {}

  friend constexpr bool operator==(const Color4b&, const Color4b&) = default;
};

static_assert(sizeof(Color4b) == 4);

// How the pixels of a row lie in memory. Samples are unsigned integers in the machine's byte order;
// those of one pixel follow each other in the order that the name gives. Pixels of less than a byte
// start at a byte's high bits.
//
// Any other number can be held, and is no format; the tables below end at 13.
enum ColorFormat : int {
  kColorFormatNone = 0,
  kColorFormat1 = 1,         // 1 bit: grey (0 black, 1 white) or palette index
  kColorFormat4 = 2,         // 4 bits: grey or palette index
  kColorFormat8 = 3,         // 8 bits: grey or palette index
  kColorFormatGrey16 = 4,    // 16 bits of grey
  kColorFormatGrey32 = 5,    // 32 bits of grey
  kColorFormatGrey64 = 6,    // 64 bits of grey
  kColorFormatBgr565 = 7,    // 16 bits: 5 of blue (lowest), 6 of green, 5 of red; no equal samples
  kColorFormatBgr24 = 8,     // blue, green, red of 8 bits
  kColorFormatBgr48 = 9,     // blue, green, red of 16 bits
  kColorFormatBgra32 = 10,   // blue, green, red, alpha of 8 bits: every cached bitmap
  kColorFormatBgra64 = 11,   // blue, green, red, alpha of 16 bits
  kColorFormatBgr96 = 12,    // blue, green, red of 32 bits
  kColorFormatBgra128 = 13,  // blue, green, red, alpha of 32 bits
};

inline constexpr int kColorFormatCount = 14;  // kColorFormatNone included

// What is known of each format, by its number.
//
// REQUIRES of the index: 0 to 13.
//
// The first two are 0 where a pixel is not a row of equal samples that can be converted one by one:
// for kColorFormatNone and kColorFormatBgr565.
extern CORVEL_API const int ColorFmtToSampleCount[kColorFormatCount];     // samples of a pixel
extern CORVEL_API const int ColorFmtToBPS[kColorFormatCount];             // bits of a sample
extern CORVEL_API const int ColorFmtToBPP[kColorFormatCount];             // bits of a pixel
extern CORVEL_API const bool ColorFmtHasAlphaChannel[kColorFormatCount];  // four samples

// How a picture is brought to a format that has fewer colours. Formats with room for every colour,
// such as 24 and 32 bits, come out the same whatever the method. Other numbers are no methods.
enum class ColorReductionMethod : int {
  kLowBits = 1,         // the low bits of each sample are dropped
  kNearestColor = 2,    // the nearest colour that the format or its palette has
  kOrderedDither = 3,   // a fixed pattern mixes neighbouring colours
  kErrorDiffusion = 4,  // each pixel's error is passed on to the pixels not yet done
  kMedianCut = 5,       // the nearest colour of a palette made for this picture
};

}  // namespace corvel
