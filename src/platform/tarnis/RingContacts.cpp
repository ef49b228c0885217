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

// With more edges it is faster to order them by their places in both directions.
constexpr std::size_t kMostEdgesInStrips = 256;

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

class Contacts {
 public:
  explicit Contacts(const Polygon2& rings) {
    const Vec2d* ring = rings.Points().data();
    for (const unsigned int count : rings.Counts()) {
      const std::size_t first = edges_.size();
      for (unsigned int i = 0; i < count; ++i) {
        edges_.push_back({ring[i], ring[i + 1 < count ? i + 1 : 0]});
        next_.push_back(first + (i + 1 < count ? i + 1 : 0));
      }
      ring += count;
    }
  }

  // Compares each edge with those that begin, from left to right, before it ends.
  bool AnyInStrips() const {
    std::vector<std::size_t> order(edges_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    const auto left = [this](std::size_t i) { return std::min(edges_[i].a.x, edges_[i].b.x); };
    std::sort(order.begin(), order.end(),
              [&](std::size_t one, std::size_t other) { return left(one) < left(other); });
    for (std::size_t i = 0; i < order.size(); ++i) {
      const double right = std::max(edges_[order[i]].a.x, edges_[order[i]].b.x);
      for (std::size_t j = i + 1; j < order.size() && left(order[j]) <= right; ++j) {
        if (AreInContact(order[i], order[j])) return true;
      }
    }
    return false;
  }

  // Compares each edge with those near it. The index numbers the edges as this class does.
  bool AnyNear(const RegionIndex& index) const {
    std::vector<std::uint32_t> near;
    for (std::size_t i = 0; i < edges_.size(); ++i) {
      index.EdgesNear(edges_[i], near);
      for (const std::uint32_t other : near) {
        if (other > i && AreInContact(i, other)) return true;
      }
    }
    return false;
  }

 private:
  bool AreInContact(std::size_t one, std::size_t other) const {
    const bool isFollowed = next_[one] == other;
    const bool follows = next_[other] == one;
    if (isFollowed && FoldBack(edges_[one], edges_[other])) return true;
    if (follows && FoldBack(edges_[other], edges_[one])) return true;
    return !isFollowed && !follows && Meet(edges_[one], edges_[other]);
  }

  std::vector<Edge> edges_;
  std::vector<std::size_t> next_;
};

}  // namespace

bool HaveContacts(const Polygon2& rings) {
  const Contacts contacts(rings);
  const bool isLarge = rings.Points().size() > kMostEdgesInStrips;
  return isLarge ? contacts.AnyNear(rings.Index()) : contacts.AnyInStrips();
}

}  // namespace tarnis
