#include <brindle/GBitmap.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <corvel/Exception.h>

#include "PixelBits.h"

namespace brindle {
namespace {

constexpr const char* kModule = "brindle";
constexpr const char* kFile = "GBitmap";

// Unlocks at the end what it has locked, also when an exception ends it.
template <class Bitmap>
class Lock {
 public:
  Lock(Bitmap& bitmap, unsigned row, unsigned index)
      : bitmap_(bitmap), row_(row), index_(index), rect_(bitmap.LockScanRect(row, index)) {}
  ~Lock() { bitmap_.UnlockScanRect(row_, index_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  const auto& Rect() const { return rect_; }

 private:
  Bitmap& bitmap_;
  unsigned row_;
  unsigned index_;
  decltype(bitmap_.LockScanRect(0, 0)) rect_;
};

// What a scan rectangle and a region have in common, in pixels of the bitmap.
struct Overlap {
  std::size_t left;
  std::size_t top;
  std::size_t right;
  std::size_t bottom;

  template <class Byte>
  Overlap(const ScanRectOf<Byte>& piece, const RECT& rect)
      : left(std::max<std::size_t>(piece.x, static_cast<std::size_t>(rect.left))),
        top(std::max<std::size_t>(piece.y, static_cast<std::size_t>(rect.top))),
        right(std::min<std::size_t>(std::size_t{piece.x} + piece.width,
                                    static_cast<std::size_t>(rect.right))),
        bottom(std::min<std::size_t>(std::size_t{piece.y} + piece.height,
                                     static_cast<std::size_t>(rect.bottom))) {}
};

// Row `y` of the bitmap in a buffer for the rectangle.
template <class Byte>
Byte* RowOf(Byte* buffer, int stride, const RECT& rect, std::size_t y) {
  return buffer + (static_cast<std::ptrdiff_t>(y) - rect.top) * stride;
}

std::size_t BitsPerPixel(const GBitmap& bitmap) {
  return static_cast<std::size_t>(corvel::ColorFmtToBPP[bitmap.GetColorFormat()]);
}

// Shows `copy` each row that a locked piece and the rectangle have in common.
template <class Byte, class CopyRow>
void ForEachRow(const ScanRectOf<Byte>& piece, const RECT& rect, const CopyRow& copy) {
  const Overlap overlap(piece, rect);
  if (overlap.left >= overlap.right) return;
  for (std::size_t y = overlap.top; y < overlap.bottom; ++y) {
    copy(piece.GetRowPtr(static_cast<unsigned>(y - piece.y)), overlap, y);
  }
}

}  // namespace

GBitmap::~GBitmap() = default;

bool GBitmap::HasPixels(const RECT& rect) const {
  const auto width = static_cast<std::int64_t>(GetWidth());
  const auto height = static_cast<std::int64_t>(GetHeight());
  if (rect.left < 0 || rect.top < 0 || rect.right > width || rect.bottom > height) {
    corvel::Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  }
  return rect.left < rect.right && rect.top < rect.bottom;
}

// Shows `copy` the indices of each scan rectangle that may have pixels of the rectangle.
template <class Copy>
void GBitmap::ForEachPiece(const RECT& rect, const Copy& copy) const {
  if (!HasPixels(rect)) return;
  const unsigned firstRow = static_cast<unsigned>(rect.top) / GetScanRectHeight();
  const unsigned lastRow = static_cast<unsigned>(rect.bottom - 1) / GetScanRectHeight();
  const unsigned first = static_cast<unsigned>(rect.left) / GetScanRectWidth();
  const unsigned last = static_cast<unsigned>(rect.right - 1) / GetScanRectWidth();
  for (unsigned row = firstRow; row <= lastRow; ++row) {
    for (unsigned index = first; index <= last; ++index) copy(row, index);
  }
}

void GBitmap::FetchRegion(unsigned char* buffer, int stride, const RECT& rect) const {
  const std::size_t depth = BitsPerPixel(*this);
  ForEachPiece(rect, [&](unsigned row, unsigned index) {
    const Lock lock(*this, row, index);
    ForEachRow(lock.Rect(), rect, [&](const auto* from, const Overlap& overlap, std::size_t y) {
      CopyBits(from, (overlap.left - lock.Rect().x) * depth, RowOf(buffer, stride, rect, y),
               (overlap.left - static_cast<std::size_t>(rect.left)) * depth,
               (overlap.right - overlap.left) * depth);
    });
  });
}

void GBitmap::StoreRegion(const unsigned char* pixels, int stride, int x, int y, int width,
                          int height) {
  const std::int64_t right = std::int64_t{x} + width;
  const std::int64_t bottom = std::int64_t{y} + height;
  if (right > INT32_MAX || bottom > INT32_MAX || width < 0 || height < 0) {
    corvel::Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  }
  const RECT rect{x, y, static_cast<LONG>(right), static_cast<LONG>(bottom)};
  const std::size_t depth = BitsPerPixel(*this);
  ForEachPiece(rect, [&](unsigned row, unsigned index) {
    const Lock lock(*this, row, index);
    ForEachRow(lock.Rect(), rect, [&](auto* to, const Overlap& overlap, std::size_t line) {
      CopyBits(RowOf(pixels, stride, rect, line),
               (overlap.left - static_cast<std::size_t>(rect.left)) * depth, to,
               (overlap.left - lock.Rect().x) * depth, (overlap.right - overlap.left) * depth);
    });
    CommitScanRect(row, index);
  });
}

void GBitmap::GetAlphaFromMask(unsigned char* buffer, int stride, const RECT& rect,
                               unsigned value) const {
  if (!HasPixels(rect)) return;
  const auto width = static_cast<std::size_t>(rect.right - rect.left);
  for (LONG y = rect.top; y < rect.bottom; ++y) {
    std::memset(RowOf(buffer, stride, rect, static_cast<std::size_t>(y)), value == 1 ? 255 : 0,
                width);
  }
}

}  // namespace brindle
