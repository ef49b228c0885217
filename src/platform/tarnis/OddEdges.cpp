#include "OddEdges.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

#include <corvel/Geometry.h>

#include "Orientation.h"

namespace tarnis {

using corvel::Vec2d;

namespace {

bool IsBefore(const Vec2d& one, const Vec2d& other) {
  return std::tie(one.x, one.y) < std::tie(other.x, other.y);
}

// Each edge from its lesser end on, without pairs of equal ones.
std::vector<Edge> WithoutPairs(const RegionIndex& index, const std::vector<std::uint32_t>& edges) {
  std::vector<Edge> all;
  for (const std::uint32_t i : edges) {
    Edge edge = index.EdgeAt(i);
    if (IsBefore(edge.b, edge.a)) std::swap(edge.a, edge.b);
    if (edge.a != edge.b) all.push_back(edge);
  }
  std::sort(all.begin(), all.end(), [](const Edge& one, const Edge& other) {
    return one.a == other.a ? IsBefore(one.b, other.b) : IsBefore(one.a, other.a);
  });
  std::vector<Edge> odd;
  for (const Edge& edge : all) {
    const bool isPaired = !odd.empty() && odd.back().a == edge.a && odd.back().b == edge.b;
    if (isPaired) {
      odd.pop_back();
    } else {
      odd.push_back(edge);
    }
  }
  return odd;
}

// Those that share a part of their line with the edge, itself among them.
std::vector<Edge> OnTheSameLine(const Edge& edge, const std::vector<Edge>& edges) {
  std::vector<Edge> same;
  for (const Edge& other : edges) {
    if (!IsBefore(other.a, edge.b) || !IsBefore(edge.a, other.b)) continue;
    if (Orientation(edge.a, edge.b, other.a) != 0) continue;
    if (Orientation(edge.a, edge.b, other.b) == 0) same.push_back(other);
  }
  return same;
}

// Between any two neighbouring ends that lie on the edge, the edges of its line lie on one another
// in the same number.
bool HasOddPart(const Edge& edge, const std::vector<Edge>& line,
                const std::function<bool(const Edge&)>& isMet) {
  std::vector<Vec2d> ends;
  for (const Edge& other : line) {
    ends.push_back(IsBefore(other.a, edge.a) ? edge.a : other.a);
    ends.push_back(IsBefore(edge.b, other.b) ? edge.b : other.b);
  }
  std::sort(ends.begin(), ends.end(), IsBefore);
  for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
    const Edge part{ends[i], ends[i + 1]};
    if (part.a == part.b) continue;
    const auto covers = std::count_if(line.begin(), line.end(), [&](const Edge& other) {
      return !IsBefore(part.a, other.a) && !IsBefore(other.b, part.b);
    });
    if (covers % 2 == 1 && isMet(part)) return true;
  }
  return false;
}

}  // namespace

bool HasOddEdge(const RegionIndex& index, const std::vector<std::uint32_t>& edges,
                const std::function<bool(const Edge&)>& isMet) {
  const std::vector<Edge> odd = WithoutPairs(index, edges);
  return std::any_of(odd.begin(), odd.end(), [&](const Edge& edge) {
    return isMet(edge) && HasOddPart(edge, OnTheSameLine(edge, odd), isMet);
  });
}

}  // namespace tarnis
