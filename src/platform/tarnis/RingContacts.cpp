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

// How many edges near each edge, on the whole, are worth comparing.
constexpr std::size_t kMostNeighbours = 256;

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

// For two edges, the second one of a higher number.
bool AreInContact(const EdgeRings& rings, std::uint32_t one, std::uint32_t other) {
  const Edge& edge = rings[one];
  const Edge& next = rings[other];
  const std::uint32_t ring = rings.RingOf(one);
  const bool isFollowed = other == one + 1 && other < rings.End(ring);
  const bool follows = one == rings.Begin(ring) && other + 1 == rings.End(ring);
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
    double left, right;
    std::uint32_t edge;
  };
  std::vector<Reach> order;
  order.reserve(rings.Size());
  for (std::uint32_t i = 0; i < rings.Size(); ++i) {
    const auto [left, right] = std::minmax(rings[i].a.x, rings[i].b.x);
    order.push_back({left, right, i});
  }
  std::sort(order.begin(), order.end(),
            [](const Reach& one, const Reach& other) { return one.left < other.left; });
  for (auto one = order.begin(); one != order.end(); ++one) {
    for (auto other = one + 1; other != order.end() && other->left <= one->right; ++other) {
      const auto [low, high] = std::minmax(one->edge, other->edge);
      if (AreInContact(rings, low, high)) return true;
    }
  }
  return false;
}

// Compares each edge with those near it.
bool HaveContacts(const RegionIndex& index) {
  const EdgeRings& rings = index.Rings();
  if (HavePoints(rings)) return true;
  std::size_t left = kMostNeighbours * rings.Size();
  std::vector<std::uint32_t> near;
  for (std::uint32_t i = 0; i < rings.Size(); ++i) {
    index.EdgesNear(rings[i], near);
    const auto isContact = [&](std::uint32_t other) {
      return other > i && AreInContact(rings, i, other);
    };
    if (near.size() > left || std::any_of(near.begin(), near.end(), isContact)) return true;
    left -= near.size();
  }
  return false;
}

}  // namespace tarnis
