// Packed elements from one byte order to the other.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

namespace trovan::filters {

// Reverses the bytes of each of `count` elements of `size` bytes, in place.
inline void SwapBytes(void* elements, std::size_t count, std::size_t size) {
  auto* bytes = static_cast<unsigned char*>(elements);
  const auto swap = [bytes, count]<std::size_t kSize>() {
    for (std::size_t i = 0; i < count; ++i) {
      std::reverse(bytes + i * kSize, bytes + i * kSize + kSize);
    }
  };
  if (size == 2) swap.template operator()<2>();
  if (size == 4) swap.template operator()<4>();
  if (size == 8) swap.template operator()<8>();
}

constexpr bool kMachineIsBigEndian = std::endian::native == std::endian::big;

}  // namespace trovan::filters
