#include "RingContacts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

// For edges whose boxes overlap.
bool Meet(const Edge& one, const Edge& other) {
  if (Orientation(one.a, one.b, other.a) * Orientation(one.a, one.b, other.b) > 0) return false;
  return Orientation(other.a, other.b, one.a) * Orientation(other.a, other.b, one.b) <= 0;
}

// For an edge and the one that goes on where it ends.
bool FoldBack(const Edge& one, const Edge& next) {
  if (Orientation(one.a, one.b, next.b) != 0) return false;
  const auto runsUp = [](const Edge& edge) {
    return std::tie(edge.a.x, edge.a.y) < std::tie(edge.b.x, edge.b.y);
  };
  return runsUp(one) != runsUp(next);
}

// Whether the second edge goes on where the first one ends.
bool IsFollowed(const EdgeRings& rings, std::uint32_t one, std::uint32_t next) {
  if (rings[one].b != rings[next].a) return false;
  const std::uint32_t ring = rings.RingOf(one);
  return next == (one + 1 < rings.End(ring) ? one + 1 : rings.Begin(ring));
}

bool AreInContact(const EdgeRings& rings, std::uint32_t one, std::uint32_t other) {
  const Edge& edge = rings[one];
  const Edge& next = rings[other];
  if (!Overlap(edge.a.x, edge.b.x, next.a.x, next.b.x)) return false;
  if (!Overlap(edge.a.y, edge.b.y, next.a.y, next.b.y)) return false;
  const bool isFollowed = IsFollowed(rings, one, other);
  const bool follows = IsFollowed(rings, other, one);
  if (isFollowed && FoldBack(edge, next)) return true;
  if (follows && FoldBack(next, edge)) return true;
  return !isFollowed && !follows && Meet(edge, next);
}

bool HavePoints(const EdgeRings& rings) {
  return std::any_of(rings.begin(), rings.end(), [](const Edge& edge) { return edge.a == edge.b; });
}

}  // namespace

// Compares each edge with those that begin, from left to right, before it ends.
bool HaveContacts(const EdgeRings& rings) {
  if (HavePoints(rings)) return true;
  struct Reach {
    double left, right, low, high;
    std::uint32_t edge;
  };
  std::vector<Reach> order;
  order.reserve(rings.Size());
  for (std::uint32_t i = 0; i < rings.Size(); ++i) {
    const auto [left, right] = std::minmax(rings[i].a.x, rings[i].b.x);
    const auto [low, high] = std::minmax(rings[i].a.y, rings[i].b.y);
    order.push_back({left, right, low, high, i});
  }
  std::sort(order.begin(), order.end(),
            [](const Reach& one, const Reach& other) { return one.left < other.left; });
  for (auto one = order.begin(); one != order.end(); ++one) {
    for (auto other = one + 1; other != order.end() && other->left <= one->right; ++other) {
      if (other->low > one->high || other->high < one->low) continue;
      if (AreInContact(rings, one->edge, other->edge)) return true;
    }
  }
  return false;
}

bool HaveContacts(const RegionIndex& index) {
  const EdgeRings& rings = index.Rings();
  if (HavePoints(rings)) return true;
  const std::size_t mostPairs = kMostPairsForAnEdge * rings.Size();
  return index.AnyPairNear(mostPairs, [&](std::uint32_t one, std::uint32_t other) {
    return AreInContact(rings, one, other);
  });
}

}  // namespace tarnis
