#include "Utf8Check.h"

#include <cstdint>
#include <cstring>

namespace trovan::filters {
namespace {

// How many bytes at the start are ASCII, in steps of eight.
std::size_t AsciiRun(std::span<const unsigned char> bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t length = 0;
  for (std::uint64_t eight = 0; length + sizeof eight <= bytes.size(); length += sizeof eight) {
    std::memcpy(&eight, bytes.data() + length, sizeof eight);
    if ((eight & kHighBits) != 0) break;
  }
  return length;
}

}  // namespace

void Utf8Check::Take(std::span<const unsigned char> bytes) {
  for (std::size_t i = 0; i < bytes.size() && firstBad_ == kNowhere; ++i) {
    if (missing_ == 0) i += AsciiRun(bytes.subspan(i));
    if (i < bytes.size()) TakeByte(bytes[i], offset_ + static_cast<long long>(i));
  }
  offset_ += static_cast<long long>(bytes.size());
}

void Utf8Check::Finish() {
  if (missing_ > 0 && firstBad_ == kNowhere) firstBad_ = characterAt_;
}

void Utf8Check::TakeByte(unsigned char byte, long long offset) {
  if (missing_ == 0) return StartCharacter(byte, offset);
  if (byte < lowest_ || byte > highest_) {
    firstBad_ = characterAt_;
    return;
  }
  lowest_ = 0x80;
  highest_ = 0xBF;
  --missing_;
}

// The table of well-formed byte sequences: Unicode, table 3-7.
void Utf8Check::StartCharacter(unsigned char byte, long long offset) {
  characterAt_ = offset;
  lowest_ = 0x80;
  highest_ = 0xBF;
  if (byte < 0x80) return;
  if (byte < 0xC2 || byte > 0xF4) {
    firstBad_ = offset;
    return;
  }
  missing_ = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
  if (byte == 0xE0) lowest_ = 0xA0;
  if (byte == 0xED) highest_ = 0x9F;
  if (byte == 0xF0) lowest_ = 0x90;
  if (byte == 0xF4) highest_ = 0x8F;
}

}  // namespace trovan::filters
