#include "RingContacts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Orientation.h"
#include "RegionIndex.h"

namespace tarnis {

using corvel::Vec2d;

namespace {

// How many pairs of edges are worth comparing.
constexpr std::size_t kMostPairsForAnEdge = 1024;

bool Overlap(double a, double b, double c, double d) {
  return std::max(a, b) >= std::min(c, d) && std::max(c, d) >= std::min(a, b);
}

bool Meet(const Edge& one, const Edge& other) {
  if (!Overlap(one.a.x, one.b.x, other.a.x, other.b.x)) return false;
  if (!Overlap(one.a.y, one.b.y, other.a.y, other.b.y)) return false;
  if (Orientation(one.a, one.b, other.a) * Orientation(one.a, one.b, other.b) > 0) return false;
  return Orientation(other.a, other.b, one.a) * Orientation(other.a, other.b, one.b) <= 0;
}

// For an edge and the one that goes on where it ends.
bool FoldBack(const Edge& one, const Edge& next) {
  if (Orientation(one.a, one.b, next.b) != 0) return false;
  const Vec2d way = one.b - one.a;
  const Vec2d on = next.b - next.a;
  return way.x * on.x + way.y * on.y < 0.0;
}

// Whether the second edge goes on where the first one ends.
bool IsFollowed(const EdgeRings& rings, std::uint32_t one, std::uint32_t next) {
  if (rings[one].b != rings[next].a) return false;
  const std::uint32_t ring = rings.RingOf(one);
  return next == (one + 1 < rings.End(ring) ? one + 1 : rings.Begin(ring));
}

bool AreInContact(const EdgeRings& rings, std::uint32_t one, std::uint32_t other) {
  const bool isFollowed = IsFollowed(rings, one, other);
  const bool follows = IsFollowed(rings, other, one);
  if (isFollowed && FoldBack(rings[one], rings[other])) return true;
  if (follows && FoldBack(rings[other], rings[one])) return true;
  return !isFollowed && !follows && Meet(rings[one], rings[other]);
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
