// The edges of rings.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Polygon2.h>

namespace tarnis {

struct Edge {
  corvel::Vec2d a, b;
};

// The edges of each ring one after the other: each starts where the one before it ends, and the
// first of a ring where its last one ends. Edges without length are left out, unless the whole ring
// is one point: then it has a single one.
class EdgeRings {
 public:
  EdgeRings() = default;
  explicit EdgeRings(const Polygon2& polygon);

  std::uint32_t Size() const { return static_cast<std::uint32_t>(edges_.size()); }
  bool IsEmpty() const { return edges_.empty(); }
  const Edge& operator[](std::uint32_t edge) const { return edges_[edge]; }
  std::vector<Edge>::const_iterator begin() const { return edges_.begin(); }
  std::vector<Edge>::const_iterator end() const { return edges_.end(); }

  std::uint32_t Rings() const { return static_cast<std::uint32_t>(starts_.size()) - 1; }
  // The first edge of a ring, and the one behind its last.
  std::uint32_t Begin(std::uint32_t ring) const { return starts_[ring]; }
  std::uint32_t End(std::uint32_t ring) const { return starts_[ring + 1]; }
  std::uint32_t RingOf(std::uint32_t edge) const;

 private:
  std::vector<Edge> edges_;
  std::vector<std::uint32_t> starts_{0};
};

// Whether a point is inside, under the even-odd rule, that is a little further up than the given
// one, and again much less further right; as in PerturbedOrientation. Looks at every edge.
bool IsPerturbedInside(const EdgeRings& rings, const corvel::Vec2d& point);

// The edge that starts at the highest corner of a ring; of several, at the one furthest right.
std::uint32_t TopEdge(const EdgeRings& rings, std::uint32_t ring);

// REQUIRES: the ring neither crosses nor touches itself.
bool RunsCounterClockwise(const EdgeRings& rings, std::uint32_t ring);

}  // namespace tarnis
