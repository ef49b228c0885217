// Numbers as binary files store them, byte by byte: neither the machine's byte order nor the
// alignment matters.
#pragma once

#include <bit>
#include <cstdint>

namespace trovan::filters {

constexpr std::uint16_t LoadU16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

constexpr std::uint32_t LoadU32(const unsigned char* bytes) {
  return LoadU16(bytes) | static_cast<std::uint32_t>(LoadU16(bytes + 2)) << 16;
}

constexpr std::uint64_t LoadU64(const unsigned char* bytes) {
  return LoadU32(bytes) | static_cast<std::uint64_t>(LoadU32(bytes + 4)) << 32;
}

constexpr std::uint16_t LoadU16HighFirst(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

constexpr std::uint32_t LoadU32HighFirst(const unsigned char* bytes) {
  return static_cast<std::uint32_t>(LoadU16HighFirst(bytes)) << 16 | LoadU16HighFirst(bytes + 2);
}

constexpr std::uint64_t LoadU64HighFirst(const unsigned char* bytes) {
  return static_cast<std::uint64_t>(LoadU32HighFirst(bytes)) << 32 | LoadU32HighFirst(bytes + 4);
}

constexpr double LoadDouble(const unsigned char* bytes) {
  return std::bit_cast<double>(LoadU64(bytes));
}

}  // namespace trovan::filters
