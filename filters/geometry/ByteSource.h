// Bytes one after the other, from a file or from memory.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include <corvel/BufferedFile.h>

namespace trovan::filters {

class ByteSource {
 public:
  // Called with the number of bytes that were taken, before each piece of the file is read.
  using OnPiece = std::function<void(long long)>;

  // `file` is read from where it stands, in pieces; it outlives the source.
  ByteSource(corvel::CBufferedFile& file, OnPiece onPiece)
      : file_(&file), onPiece_(std::move(onPiece)), buffer_(kPieceSize) {}

  // The bytes outlive the source.
  explicit ByteSource(std::span<const unsigned char> bytes) : piece_(bytes) {}

  // The next byte, 0 to 255; -1 at the end.
  int Next() {
    if (at_ == piece_.size() && !ReadPiece()) return -1;
    return piece_[at_++];
  }

  // How many bytes were taken.
  long long Position() const { return taken_ + static_cast<long long>(at_); }

 private:
  static constexpr std::size_t kPieceSize = std::size_t{64} * 1024;

  bool ReadPiece() {
    if (file_ == nullptr) return false;
    onPiece_(Position());
    taken_ += static_cast<long long>(piece_.size());
    at_ = 0;
    piece_ = std::span(buffer_).first(file_->Read(buffer_.data(), buffer_.size()));
    return !piece_.empty();
  }

  corvel::CBufferedFile* file_ = nullptr;  // null: memory
  OnPiece onPiece_;
  std::vector<unsigned char> buffer_;
  std::span<const unsigned char> piece_;
  std::size_t at_ = 0;
  long long taken_ = 0;  // in front of the piece
};

}  // namespace trovan::filters
