#include "BitmapRows.h"

namespace trovan::filters {

BitmapRows::BitmapRows(brindle::MemoryBitmap& bitmap) : bitmap_(bitmap) {
  rows_.reserve(bitmap.GetHeight());
  for (unsigned row = 0; row < bitmap.GetNumScanRectRows(); ++row) {
    const brindle::ScanRect band = bitmap.LockScanRect(row, 0);
    for (unsigned y = 0; y < band.height; ++y) rows_.push_back(band.GetRowPtr(y));
  }
}

BitmapRows::~BitmapRows() {
  for (unsigned row = 0; row < bitmap_.GetNumScanRectRows(); ++row) {
    bitmap_.CommitScanRect(row, 0);
    bitmap_.UnlockScanRect(row, 0);
  }
}

}  // namespace trovan::filters
