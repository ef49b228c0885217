#include <brindle/MemoryBitmap.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include <corvel/Exception.h>

namespace brindle {

using corvel::Color4b;
using corvel::ColorFormat;

namespace {

constexpr std::size_t kBandSize = 64 * 1024;  // bytes of a scan rectangle, about

[[noreturn]] void ThrowBadParameter(int line) {
  corvel::Throw_ERR_CORVEL_BAD_PARAMETER("brindle", "MemoryBitmap", line);
}

std::size_t DepthOf(ColorFormat format) {
  if (format <= corvel::kColorFormatNone || format >= corvel::kColorFormatCount) {
    ThrowBadParameter(__LINE__);
  }
  return static_cast<std::size_t>(corvel::ColorFmtToBPP[format]);
}

std::size_t StrideOf(unsigned width, ColorFormat format) {
  return (width * DepthOf(format) + 31) / 32 * 4;
}

MemoryBitmap::ScanRectSize Bands(unsigned width, ColorFormat format) {
  const std::size_t rows = kBandSize / std::max<std::size_t>(StrideOf(width, format), 1);
  return {std::max(width, 1U), static_cast<unsigned>(std::max<std::size_t>(rows, 1))};
}

// How many pieces of a size a length has; the last one may be shorter.
unsigned Pieces(unsigned length, unsigned size) {
  return static_cast<unsigned>((std::uint64_t{length} + size - 1) / size);
}

unsigned SizeOfPiece(unsigned start, unsigned length, unsigned size) {
  return std::min(size, length - start);
}

}  // namespace

MemoryBitmap::MemoryBitmap(unsigned width, unsigned height, ColorFormat format)
    : MemoryBitmap(width, height, format, Bands(width, format)) {}

MemoryBitmap::MemoryBitmap(unsigned width, unsigned height, ColorFormat format,
                           ScanRectSize scanRects)
    : width_(width),
      height_(height),
      format_(format),
      scanRects_(scanRects),
      stride_(StrideOf(width, format)) {
  if (width > INT32_MAX || height > INT32_MAX) ThrowBadParameter(__LINE__);
  if (scanRects.width == 0 || scanRects.height == 0) ThrowBadParameter(__LINE__);
  if (scanRects.width < width && scanRects.width * DepthOf(format) % 8 != 0) {
    ThrowBadParameter(__LINE__);
  }
  pixels_.resize(stride_ * height);
}

void MemoryBitmap::SetPalette(std::vector<Color4b> palette) {
  const std::size_t depth = DepthOf(format_);
  const std::size_t most = depth > 8 ? 0 : std::size_t{1} << depth;
  if (palette.size() > most) ThrowBadParameter(__LINE__);
  palette_ = std::move(palette);
}

void MemoryBitmap::SetMask(std::vector<bool> mask) {
  const std::size_t pixels = std::size_t{width_} * height_;
  if (!mask.empty() && mask.size() != pixels) ThrowBadParameter(__LINE__);
  mask_ = std::move(mask);
}

std::unique_ptr<GBitmap> MemoryBitmap::Clone() const {
  return std::make_unique<MemoryBitmap>(*this);
}

unsigned MemoryBitmap::GetNumScanRectRows() const {
  return width_ == 0 ? 0 : Pieces(height_, scanRects_.height);
}

unsigned MemoryBitmap::GetNumScanRects(unsigned) const { return Pieces(width_, scanRects_.width); }

ConstScanRect MemoryBitmap::LockScanRect(unsigned row, unsigned index) const {
  const unsigned x = index * scanRects_.width;
  const unsigned y = row * scanRects_.height;
  const std::size_t start = stride_ * y + x * DepthOf(format_) / 8;
  return {x,
          y,
          SizeOfPiece(x, width_, scanRects_.width),
          SizeOfPiece(y, height_, scanRects_.height),
          pixels_.data() + start,
          static_cast<std::ptrdiff_t>(stride_)};
}

ScanRect MemoryBitmap::LockScanRect(unsigned row, unsigned index) {
  const ConstScanRect rect = std::as_const(*this).LockScanRect(row, index);
  unsigned char* pixels = pixels_.data() + (rect.pixels - pixels_.data());
  return {rect.x, rect.y, rect.width, rect.height, pixels, rect.stride};
}

void MemoryBitmap::CommitScanRect(unsigned, unsigned) {}

void MemoryBitmap::UnlockScanRect(unsigned, unsigned) const {}

void MemoryBitmap::GetAlphaFromMask(unsigned char* buffer, int stride, const RECT& rect,
                                    unsigned value) const {
  if (mask_.empty()) return GBitmap::GetAlphaFromMask(buffer, stride, rect, value);
  if (!HasPixels(rect)) return;
  for (LONG y = rect.top; y < rect.bottom; ++y) {
    unsigned char* row = buffer + std::ptrdiff_t{y - rect.top} * stride;
    for (LONG x = rect.left; x < rect.right; ++x) {
      const bool isThere =
          mask_[static_cast<std::size_t>(y) * width_ + static_cast<std::size_t>(x)];
      row[x - rect.left] = static_cast<unsigned>(isThere) == value ? 255 : 0;
    }
  }
}

}  // namespace brindle
