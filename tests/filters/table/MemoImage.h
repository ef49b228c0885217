// Builds the bytes of memo files for tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TableFixture.h"

namespace trovan::filters {

// A FoxPro memo file: 512 bytes of header, then what AddTo puts into it.
class FptImage {
 public:
  explicit FptImage(std::uint16_t blockSize) : blockSize_(blockSize), bytes_(512, '\0') {
    bytes_.replace(6, 2, HighFirst(blockSize, 2));
  }

  // Adds a memo at the next block. `stated` is the length that the block header states.
  std::uint32_t Add(std::string_view memo, std::uint32_t type = 1) {
    return AddStating(static_cast<std::uint32_t>(memo.size()), memo, type);
  }
  std::uint32_t AddStating(std::uint32_t stated, std::string_view memo, std::uint32_t type = 1) {
    bytes_.resize((bytes_.size() + blockSize_ - 1) / blockSize_ * blockSize_, '\xAA');
    const auto block = static_cast<std::uint32_t>(bytes_.size() / blockSize_);
    bytes_ += HighFirst(type, 4) + HighFirst(stated, 4);
    bytes_ += memo;
    return block;
  }

  const std::string& Bytes() const { return bytes_; }

 private:
  std::size_t blockSize_;
  std::string bytes_;
};

// A dBASE IV memo file.
class Dbt4Image {
 public:
  explicit Dbt4Image(std::uint16_t blockSize) : blockSize_(blockSize), bytes_(blockSize, '\0') {
    bytes_.replace(20, 2, LowFirst(blockSize, 2));
  }

  std::uint32_t Add(std::string_view memo) {
    return AddStating(static_cast<std::uint32_t>(memo.size() + 8), memo);
  }
  std::uint32_t AddStating(std::uint32_t stated, std::string_view memo) {
    bytes_.resize((bytes_.size() + blockSize_ - 1) / blockSize_ * blockSize_, '\xAA');
    const auto block = static_cast<std::uint32_t>(bytes_.size() / blockSize_);
    bytes_ += "\xFF\xFF\x08" + std::string(1, '\0') + LowFirst(stated, 4);
    bytes_ += memo;
    return block;
  }

  const std::string& Bytes() const { return bytes_; }

 private:
  std::size_t blockSize_;
  std::string bytes_;
};

}  // namespace trovan::filters
