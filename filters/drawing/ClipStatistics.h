// What became of the objects of a drawing on their way through a region.
#pragma once

#include <cstdint>

namespace trovan::filters {

// Objects are things that are drawn: pens, brushes, fonts and clip paths do not count.
struct ClipStatistics {
  std::uint64_t whole = 0;    // arrived as they were
  std::uint64_t clipped = 0;  // went through the scissors: arrived as one or more other objects
  std::uint64_t dropped = 0;  // left nothing

  std::uint64_t Objects() const { return whole + clipped + dropped; }
};

}  // namespace trovan::filters
