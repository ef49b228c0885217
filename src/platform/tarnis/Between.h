// Numbers between two others, whatever their size.
#pragma once

#include <cmath>

namespace tarnis {

// How far along the way between two different numbers a third one is: 0 at `from`, 1 at `to`.
inline double ShareAt(double from, double to, double number) {
  const double way = to - from;
  if (std::isfinite(way)) return (number - from) / way;
  return (number / 2 - from / 2) / (to / 2 - from / 2);
}

// The number at a share of the way, from the nearer end, where the numbers are finer.
//
// REQUIRES: `share` and `rest` are not negative and add up to 1, but for rounding.
inline double Between(double from, double to, double share, double rest) {
  // Halves: the way may be longer than any double.
  const double half = to / 2 - from / 2;
  return share <= rest ? from + half * (2 * share) : to - half * (2 * rest);
}

}  // namespace tarnis
