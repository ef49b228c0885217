#include "filters/lattice/HgtReader.h"

#include <cmath>
#include <cstdint>

#include <corvel/Text.h>

#include "filters/lattice/HgtTile.h"
#include "filters/lattice/RasterValues.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::uint64_t kSampleSize = 2;

// The side of the square of samples that fills the file.
unsigned SideOf(const std::wstring& path, std::uint64_t size) {
  const std::uint64_t samples = size / kSampleSize;
  // A double finds the root of so large a number only to within a unit or so.
  auto side = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(samples)));
  while (side * side > samples) --side;
  while ((side + 1) * (side + 1) <= samples) ++side;
  if (side >= 2 && side * side * kSampleSize == size) return static_cast<unsigned>(side);
  throw FilterError(corvel::Utf8FromWide(path) + " is no height tile: it has " +
                    std::to_string(size) +
                    " bytes, which is no square of 16-bit samples, such as 1201 x 1201 (2884802 "
                    "bytes) or 3601 x 3601 (25934402 bytes)");
}

}  // namespace

HgtReader::HgtReader(const std::wstring& path) {
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  const unsigned side = SideOf(path, static_cast<std::uint64_t>(file_.GetLength()));
  header_.columns = side;
  header_.rows = side;
  header_.dataType = corvel::kInt16;
  header_.rowOrder = RowOrder::kTopDown;
  header_.voidValue = kHgtVoid;
  header_.spacing.x = HgtSpacing(side);
  header_.spacing.y = HgtSpacing(side);
  header_.format = "SRTM height tile";
  if (const auto position = HgtPosition(path)) {
    header_.origin.x = position->x;
    header_.origin.y = position->y;
  } else {
    header_.remarks.emplace_back(
        "The name of the file tells no position (as N57E011.hgt does): the origin is 0, 0.");
  }
}

void HgtReader::ReadRows(LatticeRowSink& sink) {
  ReadRasterValues(
      file_, RasterLayout(header_, Interleave::kBandSequential, ByteOrder::kBigEndian, 0), sink);
}

}  // namespace trovan::filters
