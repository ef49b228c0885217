// A bitmap whose pixels are in memory, all of them, all the time.
//
//   MemoryBitmap picture(40, 20, corvel::kColorFormatBgr24);
//   picture.StoreRegion(pixels, 120, 0, 0, 40, 20);
#pragma once

#include <memory>
#include <vector>

#include <corvel/Color.h>

#include <brindle/Export.h>
#include <brindle/GBitmap.h>

namespace brindle {

// A value: a copy has pixels of its own. What is written to a locked scan rectangle counts at once.
class BRINDLE_API MemoryBitmap : public GBitmap {
 public:
  struct ScanRectSize {
    unsigned width;
    unsigned height;
  };

  // All bits 0, no palette, no mask. A scan rectangle is as wide as the bitmap and as high as 64
  // KiB allow, though at least one row high; `scanRects` gives it another size.
  //
  // Raises corvel::Exception ("Bad parameter") when the format is none, when an extent exceeds
  // 2^31 - 1, when an extent of the scan rectangles is 0, or when their width does not end at a
  // whole byte (pixels of 1 bit: not a multiple of 8; of 4 bits: of 2) and there are more than one
  // in a row.
  MemoryBitmap(unsigned width, unsigned height, corvel::ColorFormat format);
  MemoryBitmap(unsigned width, unsigned height, corvel::ColorFormat format, ScanRectSize scanRects);

  // What the pixels are indices of. Raises ("Bad parameter") when there are more colours than a
  // pixel can tell apart, or any where pixels have more than 8 bits.
  void SetPalette(std::vector<corvel::Color4b> palette);

  // Whether each pixel is there, row by row from the top; none: all are. Raises ("Bad parameter")
  // when there are more or less of them than pixels.
  void SetMask(std::vector<bool> mask);

  std::unique_ptr<GBitmap> Clone() const override;

  unsigned GetWidth() const override { return width_; }
  unsigned GetHeight() const override { return height_; }
  corvel::ColorFormat GetColorFormat() const override { return format_; }
  unsigned GetNumColorsUsed() const override { return static_cast<unsigned>(palette_.size()); }
  corvel::Color4b GetColorTableItem(unsigned index) const override { return palette_[index]; }

  unsigned GetScanRectWidth() const override { return scanRects_.width; }
  unsigned GetScanRectHeight() const override { return scanRects_.height; }
  unsigned GetNumScanRectRows() const override;
  unsigned GetNumScanRects(unsigned row) const override;

  ScanRect LockScanRect(unsigned row, unsigned index) override;
  ConstScanRect LockScanRect(unsigned row, unsigned index) const override;
  void CommitScanRect(unsigned row, unsigned index) override;
  void UnlockScanRect(unsigned row, unsigned index) const override;

  void GetAlphaFromMask(unsigned char* buffer, int stride, const RECT& rect,
                        unsigned value) const override;

 private:
  unsigned width_;
  unsigned height_;
  corvel::ColorFormat format_;
  ScanRectSize scanRects_;
  std::size_t stride_;  // rows are padded to 32 bits
  std::vector<unsigned char> pixels_;
  std::vector<corvel::Color4b> palette_;
  std::vector<bool> mask_;
};

}  // namespace brindle
