#include "filters/lattice/Preview.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "filters/lattice/CellMeans.h"
#include "filters/lattice/Shading.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

struct Cancelled {};

void CheckOptions(const LatticeHeader& header, const PreviewOptions& options) {
  if (options.plane >= header.planes) {
    throw FilterError("there is no plane " + std::to_string(options.plane) +
                      "; planes count from " + "0 to " + std::to_string(header.planes - 1));
  }
  if (options.component >= header.components) {
    throw FilterError("there is no component " + std::to_string(options.component) +
                      "; components count from 0 to " + std::to_string(header.components - 1));
  }
  if (options.pixels == 0) throw FilterError("a picture needs at least one pixel");
  if (!std::isfinite(options.lowest.value_or(0.0)) ||
      !std::isfinite(options.highest.value_or(0.0)) ||
      (options.lowest && options.highest && *options.lowest >= *options.highest)) {
    throw FilterError("the colours need a range of finite values, the lower one first");
  }
}

// Averages the rows of one plane as they come.
class PlaneSink : public LatticeRowSink {
 public:
  PlaneSink(const LatticeHeader& header, const PreviewOptions& options, CellMeans& cells,
            corvel::IProgress* progress)
      : header_(header), options_(options), cells_(cells), progress_(progress) {}

  void TakeRow(unsigned y, unsigned z, void* nodes) override {
    const double total = static_cast<double>(header_.rows) * header_.planes;
    if (progress_ != nullptr && !progress_->Update(++rows_ / total)) throw Cancelled();
    if (z == options_.plane) cells_.AddRow(header_.rows - 1 - y, nodes);
  }
  void TakeCoordinateRow(unsigned /*y*/, unsigned /*z*/, void* /*coordinates*/) override {}

 private:
  const LatticeHeader& header_;
  const PreviewOptions& options_;
  CellMeans& cells_;
  corvel::IProgress* progress_;
  double rows_ = 0.0;
};

// Each cell as a square of `factor` x `factor` pixels.
Picture Enlarged(const Picture& small, unsigned factor) {
  Picture large;
  large.width = small.width * factor;
  large.height = small.height * factor;
  large.pixels.resize(std::size_t{large.width} * large.height * 4);
  for (std::size_t y = 0; y < large.height; ++y) {
    for (std::size_t x = 0; x < large.width; ++x) {
      const std::size_t from = (y / factor * small.width + x / factor) * 4;
      std::copy_n(small.pixels.begin() + static_cast<std::ptrdiff_t>(from), 4,
                  large.pixels.begin() + static_cast<std::ptrdiff_t>((y * large.width + x) * 4));
    }
  }
  return large;
}

// Small lattices are enlarged to about this many pixels, so that single nodes can be seen.
unsigned Factor(const Picture& picture, unsigned most) {
  constexpr unsigned kComfortable = 384;
  const unsigned side = std::max(picture.width, picture.height);
  return std::max(1U, std::min(kComfortable, most) / side);
}

}  // namespace

std::optional<Picture> PreviewLattice(LatticeReader& reader, const PreviewOptions& options,
                                      corvel::IProgress* progress) {
  const LatticeHeader& header = reader.Header();
  CheckOptions(header, options);
  CellMeans cells(header, options.component, options.pixels);
  try {
    PlaneSink sink(header, options, cells, progress);
    reader.ReadRows(sink);
  } catch (const Cancelled&) {
    return std::nullopt;
  }
  const CellGrid grid = cells.Finish();
  ColourRange range = RangeOf(grid);
  range.lowest = options.lowest.value_or(range.lowest);
  range.highest = options.highest.value_or(range.highest);
  const Picture picture = Shaded(grid, range, options.style);
  return Enlarged(picture, Factor(picture, options.pixels));
}

}  // namespace trovan::filters
