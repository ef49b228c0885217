// Copies runs of pixels whose first one may start within a byte.
#pragma once

#include <cstddef>

namespace brindle {

// Copies `bits` bits from bit `fromBit` of `from` to bit `toBit` of `to`; bit 0 is the highest one
// of the first byte. All other bits of `to` are kept. The two do not overlap.
void CopyBits(const unsigned char* from, std::size_t fromBit, unsigned char* to, std::size_t toBit,
              std::size_t bits);

}  // namespace brindle
