#include "ImageData.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <corvel/Color.h>

#include "filters/support/PngFile.h"

namespace trovan::filters {
namespace {

using brindle::ConstScanRect;
using brindle::GBitmap;
using corvel::Color4b;

constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 26;
constexpr std::size_t kBytesInPixel = 4;

Color4b PixelAt(const GBitmap& bitmap, const unsigned char* row, unsigned x) {
  switch (bitmap.GetColorFormat()) {
    case corvel::kColorFormatBgra32:
      row += std::size_t{x} * 4;
      return {row[2], row[1], row[0], row[3]};
    case corvel::kColorFormatBgr24:
      row += std::size_t{x} * 3;
      return {row[2], row[1], row[0], 255};
    default:
      if (row[x] < bitmap.GetNumColorsUsed()) return bitmap.GetColorTableItem(row[x]);
      return {row[x], row[x], row[x], 255};
  }
}

void CopyPiece(const GBitmap& bitmap, const ConstScanRect& piece,
               std::vector<std::uint8_t>& pixels) {
  for (unsigned y = 0; y < piece.height; ++y) {
    const std::size_t first = (std::size_t{piece.y} + y) * bitmap.GetWidth() + piece.x;
    std::uint8_t* to = &pixels[first * kBytesInPixel];
    for (unsigned x = 0; x < piece.width; ++x, to += kBytesInPixel) {
      const Color4b color = PixelAt(bitmap, piece.GetRowPtr(y), x);
      to[0] = color.red;
      to[1] = color.green;
      to[2] = color.blue;
      to[3] = color.alpha;
    }
  }
}

std::vector<std::uint8_t> PixelsOf(const GBitmap& bitmap) {
  std::vector<std::uint8_t> pixels(std::size_t{bitmap.GetWidth()} * bitmap.GetHeight() *
                                   kBytesInPixel);
  for (unsigned row = 0; row < bitmap.GetNumScanRectRows(); ++row) {
    for (unsigned i = 0; i < bitmap.GetNumScanRects(row); ++i) {
      CopyPiece(bitmap, bitmap.LockScanRect(row, i), pixels);
      bitmap.UnlockScanRect(row, i);
    }
  }
  return pixels;
}

// RFC 4648, section 4.
void AppendBase64(std::string& text, const std::vector<std::uint8_t>& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  text.reserve(text.size() + (bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) { return at < bytes.size() ? unsigned{bytes[at]} : 0U; };
    const unsigned group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    text += kDigits[group >> 18];
    text += kDigits[group >> 12 & 63U];
    text += i + 1 < bytes.size() ? kDigits[group >> 6 & 63U] : '=';
    text += i + 2 < bytes.size() ? kDigits[group & 63U] : '=';
  }
}

}  // namespace

bool CanHoldImage(const GBitmap& bitmap) {
  const std::uint64_t pixels = std::uint64_t{bitmap.GetWidth()} * bitmap.GetHeight();
  const corvel::ColorFormat format = bitmap.GetColorFormat();
  return pixels > 0 && pixels <= kMostPixels &&
         (format == corvel::kColorFormatBgra32 || format == corvel::kColorFormatBgr24 ||
          format == corvel::kColorFormat8);
}

std::string ImageDataUri(const GBitmap& bitmap) {
  std::string uri = "data:image/png;base64,";
  AppendBase64(uri, EncodePng(bitmap.GetWidth(), bitmap.GetHeight(), PixelsOf(bitmap)));
  return uri;
}

}  // namespace trovan::filters
