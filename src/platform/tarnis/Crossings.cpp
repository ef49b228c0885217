#include "Crossings.h"

#include <algorithm>
#include <span>

#include "Between.h"
#include "Orientation.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// With more pairs of edges, the region is asked for those near each edge.
constexpr std::size_t kMostPairs = 8192;

// Of the place where two edges cross, if they do.
class EdgePair {
 public:
  EdgePair(const Edge& one, const Edge& other) : one_(one), other_(other) {}

  // Whether both lie so that they share nothing.
  bool IsApart() {
    ofOtherA_ = Orientation(one_.a, one_.b, other_.a);
    ofOtherB_ = Orientation(one_.a, one_.b, other_.b);
    if (ofOtherA_ * ofOtherB_ > 0) return true;
    ofOneA_ = Orientation(other_.a, other_.b, one_.a);
    ofOneB_ = Orientation(other_.a, other_.b, one_.b);
    return ofOneA_ * ofOneB_ > 0;
  }

  bool Crosses() const { return ofOtherA_ * ofOtherB_ < 0 && ofOneA_ * ofOneB_ < 0; }

  int Turn() const { return ofOneB_; }

  void Locate(Crossing& crossing) const {
    const auto [share, rest] = SharesAtLine(other_.a, other_.b, one_.a, one_.b);
    crossing.point = {Between(one_.a.x, one_.b.x, share, rest),
                      Between(one_.a.y, one_.b.y, share, rest)};
    for (const Edge& edge : {one_, other_}) {
      if (edge.a.x == edge.b.x) crossing.point.x = edge.a.x;
      if (edge.a.y == edge.b.y) crossing.point.y = edge.a.y;
    }
    crossing.shares[0] = share;
    crossing.shares[1] = SharesAtLine(one_.a, one_.b, other_.a, other_.b).before;
  }

 private:
  const Edge& one_;
  const Edge& other_;
  int ofOtherA_ = 0, ofOtherB_ = 0, ofOneA_ = 0, ofOneB_ = 0;
};

Box2d BoxOf(const Edge& edge) {
  return {std::min(edge.a.x, edge.b.x), std::min(edge.a.y, edge.b.y), std::max(edge.a.x, edge.b.x),
          std::max(edge.a.y, edge.b.y)};
}

bool Overlap(const Box2d& box, const Edge& edge) {
  return !((edge.a.x < box.min.x && edge.b.x < box.min.x) ||
           (edge.a.x > box.max.x && edge.b.x > box.max.x) ||
           (edge.a.y < box.min.y && edge.b.y < box.min.y) ||
           (edge.a.y > box.max.y && edge.b.y > box.max.y));
}

// Compares an edge of the subject with some of the region.
bool CrossEdges(const EdgeRings& subject, std::uint32_t edge, const EdgeRings& region,
                std::span<const std::uint32_t> others, std::vector<Crossing>& crossings) {
  const Box2d box = BoxOf(subject[edge]);
  for (const std::uint32_t other : others) {
    if (!Overlap(box, region[other])) continue;
    EdgePair pair(subject[edge], region[other]);
    if (pair.IsApart()) continue;
    if (!pair.Crosses()) return false;
    crossings.push_back({{}, {edge, other}, {}, pair.Turn()});
    pair.Locate(crossings.back());
  }
  return true;
}

}  // namespace

bool FindCrossings(const EdgeRings& subject, const RegionIndex& region,
                   const std::vector<std::uint32_t>& near, std::vector<Crossing>& crossings) {
  crossings.clear();
  const bool areFew = subject.Size() * near.size() <= kMostPairs;
  std::vector<std::uint32_t> buffer;
  for (std::uint32_t edge = 0; edge < subject.Size(); ++edge) {
    const auto others = areFew ? std::span(near) : region.EdgesNear(subject[edge], buffer);
    if (!CrossEdges(subject, edge, region.Rings(), others, crossings)) return false;
  }
  return true;
}

}  // namespace tarnis
