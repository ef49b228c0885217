// Where things lie in a dBASE table and its memo file. Integers are little-endian; offsets are in
// bytes from the start of the file, of the descriptor or of the block. See docs/formats/dbf.md.
#pragma once

#include <cstddef>
#include <cstdint>

namespace trovan::dbf {

inline constexpr std::size_t kHeaderSize = 32;
inline constexpr std::size_t kRecordCountAt = 4;    // u32
inline constexpr std::size_t kHeaderLengthAt = 8;   // u16: offset of record 0
inline constexpr std::size_t kRecordLengthAt = 10;  // u16: deletion flag included
inline constexpr std::size_t kLanguageAt = 29;      // u8

inline constexpr std::size_t kDescriptorSize = 32;
inline constexpr std::size_t kNameAt = 0;
inline constexpr std::size_t kNameKept = 10;
inline constexpr std::size_t kTypeAt = 11;    // u8
inline constexpr std::size_t kLengthAt = 16;  // u8

inline constexpr std::uint32_t kFptBlockSize = 64;
inline constexpr std::uint32_t kDbtBlockSize = 512;
inline constexpr std::uint32_t kMemoLengthAt = 6;  // in a block; its text begins at 8

// Byte by byte: neither the machine's byte order nor the alignment matters.
constexpr std::uint16_t LoadU16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}
constexpr std::uint32_t LoadU32(const unsigned char* bytes) {
  return LoadU16(bytes) | static_cast<std::uint32_t>(LoadU16(bytes + 2)) << 16;
}

}  // namespace trovan::dbf
