// The rows of a bitmap in memory, all at once.
//
//   BitmapRows rows(bitmap);
//   std::memset(rows[0], 0, 4);
#pragma once

#include <cstddef>
#include <vector>

#include <brindle/MemoryBitmap.h>

namespace trovan::filters {

// Holds all scan rectangles locked while it lives, and commits them at its end.
class BitmapRows {
 public:
  // `bitmap` is borrowed.
  // REQUIRES: its scan rectangles are as wide as itself, as they are at first.
  explicit BitmapRows(brindle::MemoryBitmap& bitmap);
  ~BitmapRows();
  BitmapRows(const BitmapRows&) = delete;
  BitmapRows& operator=(const BitmapRows&) = delete;

  // From the top; as many as the bitmap is high.
  unsigned char** Data() { return rows_.data(); }
  unsigned char* operator[](std::size_t row) const { return rows_[row]; }
  std::size_t Size() const { return rows_.size(); }

 private:
  brindle::MemoryBitmap& bitmap_;
  std::vector<unsigned char*> rows_;
};

}  // namespace trovan::filters
