// Bitmaps of any size and pixel format, wherever their pixels are kept.
//
//   // A bitmap of 32 bits a pixel becomes transparent, a piece at a time:
//   for (unsigned row = 0; row < bitmap.GetNumScanRectRows(); ++row) {
//     for (unsigned i = 0; i < bitmap.GetNumScanRects(row); ++i) {
//       const ScanRect piece = bitmap.LockScanRect(row, i);
//       for (unsigned y = 0; y < piece.height; ++y)
//         std::memset(piece.GetRowPtr(y), 0, piece.width * 4U);
//       bitmap.CommitScanRect(row, i);
//       bitmap.UnlockScanRect(row, i);
//     }
//   }
#pragma once

#include <cstddef>
#include <memory>

#include <corvel/Color.h>
#include <win32/WinTypes.h>

#include <brindle/Export.h>

namespace brindle {

// A scan rectangle that is locked: a part of a bitmap whose rows lie in memory.
template <class Byte>
struct ScanRectOf {
  unsigned x = 0;  // of its first pixel in the bitmap
  unsigned y = 0;
  unsigned width = 0;  // in pixels
  unsigned height = 0;
  Byte* pixels = nullptr;     // its first row
  std::ptrdiff_t stride = 0;  // bytes from one row to the next

  // REQUIRES: row < height.
  Byte* GetRowPtr(unsigned row) const { return pixels + static_cast<std::ptrdiff_t>(row) * stride; }
};

using ScanRect = ScanRectOf<unsigned char>;
using ConstScanRect = ScanRectOf<const unsigned char>;

// A bitmap, divided into rows of scan rectangles: the pieces in which its pixels are reached, so
// that a large one need not be in memory as a whole. Row 0 of the pixels is the topmost one.
//
// Places and sizes are in pixels; both extents are at most 2^31 - 1.
class BRINDLE_API GBitmap {
 public:
  virtual ~GBitmap();

  // A bitmap of its own with the same pixels.
  virtual std::unique_ptr<GBitmap> Clone() const = 0;

  virtual unsigned GetWidth() const = 0;
  virtual unsigned GetHeight() const = 0;
  virtual corvel::ColorFormat GetColorFormat() const = 0;

  // The palette: what the pixels of 1, 4 or 8 bits are indices of. 0: there is none.
  virtual unsigned GetNumColorsUsed() const = 0;
  // REQUIRES: index < GetNumColorsUsed().
  virtual corvel::Color4b GetColorTableItem(unsigned index) const = 0;

  // The size of a scan rectangle; the last ones of a row, and those of the last row, may be
  // smaller.
  virtual unsigned GetScanRectWidth() const = 0;
  virtual unsigned GetScanRectHeight() const = 0;

  // How many rows of scan rectangles there are, and how many rectangles a row has. A bitmap without
  // pixels has no rows.
  virtual unsigned GetNumScanRectRows() const = 0;
  virtual unsigned GetNumScanRects(unsigned row) const = 0;

  // Brings a scan rectangle into memory, where it stays until UnlockScanRect is called as often as
  // LockScanRect. What is written to it counts once it is committed, which is before it is
  // unlocked.
  //
  // REQUIRES: row < GetNumScanRectRows(), index < GetNumScanRects(row).
  virtual ScanRect LockScanRect(unsigned row, unsigned index) = 0;
  virtual ConstScanRect LockScanRect(unsigned row, unsigned index) const = 0;
  virtual void CommitScanRect(unsigned row, unsigned index) = 0;
  virtual void UnlockScanRect(unsigned row, unsigned index) const = 0;

  // Copies the pixels of the rectangle in the bitmap's own format to rows that are `stride` bytes
  // apart; a negative stride fills the buffer upwards, from its last row. Pixels of less than a
  // byte start at the high bits of each row's first byte; the bits behind a row's last pixel are
  // kept.
  //
  // Raises corvel::Exception ("Bad parameter") when the rectangle reaches beyond the bitmap. One
  // without pixels copies nothing.
  //
  // REQUIRES: `buffer` has room for the rows.
  virtual void FetchRegion(unsigned char* buffer, int stride, const RECT& rect) const;

  // Copies pixels in the bitmap's own format to the place (x, y). Rows and faults are as above.
  virtual void StoreRegion(const unsigned char* pixels, int stride, int x, int y, int width,
                           int height);

  // Fills a plane of one byte a pixel: 255 where the bitmap's mask of one bit a pixel has the bit
  // `value` (1 shows the pixels that the mask has, 0 the others), else 0. Here: there is no mask,
  // as if it had all pixels. Rows and faults are as above.
  virtual void GetAlphaFromMask(unsigned char* buffer, int stride, const RECT& rect,
                                unsigned value) const;

 protected:
  GBitmap() = default;
  GBitmap(const GBitmap&) = default;
  GBitmap& operator=(const GBitmap&) = default;

  // Whether there is anything in the rectangle; raises when it reaches beyond the bitmap.
  bool HasPixels(const RECT& rect) const;

 private:
  template <class Copy>
  void ForEachPiece(const RECT& rect, const Copy& copy) const;
};

}  // namespace brindle
