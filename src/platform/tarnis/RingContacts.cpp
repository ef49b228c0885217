#include "RingContacts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <tuple>
#include <vector>

#include "Orientation.h"
#include "RegionIndex.h"

namespace tarnis {

namespace {

// How many pairs of edges are worth comparing.
constexpr std::size_t kMostPairsForAnEdge = 1024;

bool Overlap(double a, double b, double c, double d) {
  return std::max(a, b) >= std::min(c, d) && std::max(c, d) >= std::min(a, b);
}

bool DoBoxesOverlap(const Edge& one, const Edge& other) {
  return Overlap(one.a.x, one.b.x, other.a.x, other.b.x) &&
         Overlap(one.a.y, one.b.y, other.a.y, other.b.y);
}

// For edges whose boxes overlap.
bool Meet(const Edge& one, const Edge& other) {
  if (Orientation(one.a, one.b, other.a) * Orientation(one.a, one.b, other.b) > 0) return false;
  return Orientation(other.a, other.b, one.a) * Orientation(other.a, other.b, one.b) <= 0;
}

// For an edge and the one that goes on where it ends.
bool FoldBack(const Edge& one, const Edge& next) {
  const auto runsUp = [](const Edge& edge) {
    return std::tie(edge.a.x, edge.a.y) < std::tie(edge.b.x, edge.b.y);
  };
  return runsUp(one) != runsUp(next) && Orientation(one.a, one.b, next.b) == 0;
}

// Of each edge, the one that goes on where it ends.
std::vector<std::uint32_t> Successors(const EdgeRings& rings) {
  std::vector<std::uint32_t> next(rings.Size());
  std::iota(next.begin(), next.end(), 1U);
  for (std::uint32_t ring = 0; ring < rings.Rings(); ++ring) {
    next[rings.End(ring) - 1] = rings.Begin(ring);
  }
  return next;
}

// At a corner, or because the ring is a point.
bool HaveContactsInSequence(const EdgeRings& rings, const std::vector<std::uint32_t>& next) {
  for (std::uint32_t i = 0; i < rings.Size(); ++i) {
    if (rings[i].a == rings[i].b || FoldBack(rings[i], rings[next[i]])) return true;
  }
  return false;
}

}  // namespace

// Compares each edge with those that begin, from left to right, before it ends.
bool HaveContacts(const EdgeRings& rings) {
  const std::vector<std::uint32_t> next = Successors(rings);
  if (HaveContactsInSequence(rings, next)) return true;
  struct Reach {
    double left, right, low, high;
    std::uint32_t edge, next;
  };
  std::vector<Reach> order(rings.Size());
  for (std::uint32_t i = 0; i < rings.Size(); ++i) {
    const auto& [a, b] = rings[i];
    order[i] = {
        std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y), i, next[i]};
  }
  std::sort(order.begin(), order.end(),
            [](const Reach& one, const Reach& other) { return one.left < other.left; });
  for (auto one = order.begin(); one != order.end(); ++one) {
    for (auto other = one + 1; other != order.end() && other->left <= one->right; ++other) {
      if (other->low > one->high || other->high < one->low) continue;
      if (one->next == other->edge || other->next == one->edge) continue;
      if (Meet(rings[one->edge], rings[other->edge])) return true;
    }
  }
  return false;
}

bool HaveContacts(const RegionIndex& index) {
  const EdgeRings& rings = index.Rings();
  const std::vector<std::uint32_t> next = Successors(rings);
  if (HaveContactsInSequence(rings, next)) return true;
  const std::size_t mostPairs = kMostPairsForAnEdge * rings.Size();
  return index.AnyPairNear(mostPairs, [&](std::uint32_t one, std::uint32_t other) {
    if (next[one] == other || next[other] == one) return false;
    return DoBoxesOverlap(rings[one], rings[other]) && Meet(rings[one], rings[other]);
  });
}

}  // namespace tarnis
