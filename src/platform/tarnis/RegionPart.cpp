#include "RegionPart.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "BorderWalk.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// Large enough that the cut edges differ from the whole ones by nothing that counts in the box.
Box2d Grown(const Box2d& box) {
  constexpr double kMost = std::numeric_limits<double>::max();
  const double half = std::fmax(box.max.x / 2 - box.min.x / 2, box.max.y / 2 - box.min.y / 2);
  const double largest = std::fmax(std::fmax(std::fabs(box.min.x), std::fabs(box.max.x)),
                                   std::fmax(std::fabs(box.min.y), std::fabs(box.max.y)));
  const double margin = std::fmax(half / 8, 4 * std::numeric_limits<double>::epsilon() * largest);
  return {std::fmax(box.min.x - margin, -kMost), std::fmax(box.min.y - margin, -kMost),
          std::fmin(box.max.x + margin, kMost), std::fmin(box.max.y + margin, kMost)};
}

// Adds lines of those edges of one ring that follow one another.
void AddEdgesOfRing(const RegionIndex& index, std::span<const std::uint32_t> edges,
                    BorderWalk& walk) {
  const std::uint32_t ring = index.Rings().RingOf(edges.front());
  const std::uint32_t first = index.Rings().Begin(ring);
  const std::uint32_t end = index.Rings().End(ring);
  std::vector<Vec2d> line;
  if (edges.size() == end - first) {
    for (const std::uint32_t edge : edges) line.push_back(index.EdgeAt(edge).a);
    walk.AddRing(line.data(), line.size());
    return;
  }
  // Starts behind a gap, so that what goes on from the last edge to the first is one line.
  const auto hasGap = [](std::uint32_t one, std::uint32_t next) { return one + 1 != next; };
  const auto gap = std::adjacent_find(edges.begin(), edges.end(), hasGap);
  const auto start =
      gap == edges.end() ? std::size_t{0} : static_cast<std::size_t>(gap - edges.begin()) + 1;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    const std::uint32_t edge = edges[(start + i) % edges.size()];
    const std::uint32_t next = edges[(start + i + 1) % edges.size()];
    if (line.empty()) line.push_back(index.EdgeAt(edge).a);
    line.push_back(index.EdgeAt(edge).b);
    const bool goesOn = next == (edge + 1 < end ? edge + 1 : first);
    if (goesOn && i + 1 < edges.size()) continue;
    walk.AddOpenLine(line);
    line.clear();
  }
}

}  // namespace

Polygon2 RegionPartAround(const RegionIndex& index, const Box2d& box) {
  const Box2d grown = Grown(box);
  std::vector<std::uint32_t> edges;
  index.EdgesNear(grown, edges);
  BorderWalk walk(grown);
  for (std::span<const std::uint32_t> rest(edges); !rest.empty();) {
    const auto ringEnd = index.Rings().End(index.Rings().RingOf(rest.front()));
    const auto count = static_cast<std::size_t>(
        std::lower_bound(rest.begin(), rest.end(), ringEnd) - rest.begin());
    AddEdgesOfRing(index, rest.first(count), walk);
    rest = rest.subspan(count);
  }
  return walk.Finish([&index](const Vec2d& point) { return index.IsPerturbedInside(point); });
}

}  // namespace tarnis
