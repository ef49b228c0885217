#include "PixelBits.h"

#include <climits>
#include <cstring>

namespace brindle {
namespace {

constexpr std::size_t kBits = CHAR_BIT;

// The mask of a bit of its byte.
unsigned MaskOf(std::size_t bit) { return 0x80U >> bit % kBits; }

}  // namespace

void CopyBits(const unsigned char* from, std::size_t fromBit, unsigned char* to, std::size_t toBit,
              std::size_t bits) {
  if (fromBit % kBits == 0 && toBit % kBits == 0) {
    const std::size_t whole = bits / kBits;
    if (whole > 0) std::memcpy(to + toBit / kBits, from + fromBit / kBits, whole);
    fromBit += whole * kBits;
    toBit += whole * kBits;
    bits -= whole * kBits;
  }
  for (; bits > 0; ++fromBit, ++toBit, --bits) {
    const bool isSet = (from[fromBit / kBits] & MaskOf(fromBit)) != 0;
    unsigned char& target = to[toBit / kBits];
    target = static_cast<unsigned char>((target & ~MaskOf(toBit)) | (isSet ? MaskOf(toBit) : 0U));
  }
}

}  // namespace brindle
