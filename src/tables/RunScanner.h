// Looks for the end of a run of ordinary bytes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace trovan {

// Eight bytes in a word, the first one lowest; what is asked of each comes out as its highest bit.
// Of the bytes that have it, the first one is right; later ones may have it by a borrow.
class EightBytes {
 public:
  static constexpr std::size_t kCount = 8;

  explicit EightBytes(const unsigned char* bytes) { std::memcpy(&word_, bytes, kCount); }

  std::uint64_t UpToBlank() const { return Less(word_, ' ' + 1); }
  std::uint64_t EqualTo(unsigned char byte) const { return Less(word_ ^ Each(byte), 1); }

  // The place of the first byte with the bit. REQUIRES: found != 0
  static std::size_t First(std::uint64_t found) {
    return static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }

 private:
  static constexpr std::uint64_t Each(unsigned char byte) { return byte * 0x0101010101010101U; }

  // Subtracting turns on the highest bit of a smaller byte that had it off.
  static std::uint64_t Less(std::uint64_t word, unsigned char limit) {
    return (word - Each(limit)) & ~word & Each(0x80);
  }

  std::uint64_t word_;
};

// The place of the first byte at or behind `at` for which `isEnd` is true; bytes.size() if there is
// none.
//
// REQUIRES: of the bytes above a blank, `isEnd` is true at most for the two of `rare`.
//
// Tokens are short, so that it is the branches that cost: a word at a time tells the length of most
// of them with one or two. What ends a token is mostly a control character, a blank, or one
// delimiter; whether a byte that looks so really is one, `isEnd` says.
template <class IsEnd>
std::size_t FindRunEnd(std::span<const unsigned char> bytes, std::size_t at,
                       const std::array<unsigned char, 2>& rare, const IsEnd& isEnd) {
  if constexpr (std::endian::native == std::endian::little) {
    while (bytes.size() - at >= EightBytes::kCount) {
      const EightBytes eight(bytes.data() + at);
      const std::uint64_t found =
          eight.UpToBlank() | eight.EqualTo(rare[0]) | eight.EqualTo(rare[1]);
      if (found == 0) {
        at += EightBytes::kCount;
        continue;
      }
      at += EightBytes::First(found);
      if (isEnd(bytes[at])) return at;
      ++at;
    }
  }
  while (at < bytes.size() && !isEnd(bytes[at])) ++at;
  return at;
}

}  // namespace trovan
