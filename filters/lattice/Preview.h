// A picture of one plane of a lattice.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <corvel/Progress.h>

#include "filters/lattice/LatticeReader.h"

namespace trovan::filters {

enum class PreviewStyle {
  kColour,  // low values blue, high ones white
  kGrey,    // low values black
  kRelief,  // colours, lit from the north-west: for terrain
};

struct PreviewOptions {
  unsigned plane = 0;
  unsigned component = 0;
  PreviewStyle style = PreviewStyle::kRelief;
  // The longer side of the picture is at most this many pixels. Larger planes are averaged, much
  // smaller ones enlarged by whole factors.
  unsigned pixels = 1024;
  // The values of the first and the last colour; otherwise those that occur.
  std::optional<double> lowest;
  std::optional<double> highest;
};

// Pixels of four bytes (red, green, blue, opacity), top row first. Nodes without a value are
// transparent.
struct Picture {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<std::uint8_t> pixels;
};

// Memory is needed for the picture and one row. Nothing when it was cancelled.
//
// Raises FilterError when there is no such plane or component, and for a file that is wrong.
std::optional<Picture> PreviewLattice(LatticeReader& reader, const PreviewOptions& options,
                                      corvel::IProgress* progress);

}  // namespace trovan::filters
