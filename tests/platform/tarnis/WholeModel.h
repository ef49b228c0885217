// Lines and areas with corners on small whole numbers, told by fractions: without any rounding.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include <tarnis/Polygon2.h>

namespace tarnis::testing {

using Big = __int128;

struct WholePoint {
  std::int64_t x, y;
  friend bool operator==(const WholePoint&, const WholePoint&) = default;
};

struct WholeEdge {
  WholePoint a, b;
};

// above / below, with below > 0.
struct Fraction {
  std::int64_t above, below;
  friend bool operator<(const Fraction& one, const Fraction& other) {
    return Big{one.above} * other.below < Big{other.above} * one.below;
  }
  friend bool operator==(const Fraction& one, const Fraction& other) {
    return Big{one.above} * other.below == Big{other.above} * one.below;
  }
  double Value() const { return static_cast<double>(above) / static_cast<double>(below); }
};

inline Fraction MakeFraction(std::int64_t above, std::int64_t below) {
  return below < 0 ? Fraction{-above, -below} : Fraction{above, below};
}

inline Fraction Middle(const Fraction& one, const Fraction& other) {
  return {one.above * other.below + other.above * one.below, 2 * one.below * other.below};
}

inline std::int64_t Cross(const WholePoint& a, const WholePoint& b, const WholePoint& p) {
  return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

inline std::vector<WholeEdge> WholeEdges(const Polygon2& polygon) {
  std::vector<WholeEdge> edges;
  const corvel::Vec2d* ring = polygon.Points().data();
  const auto whole = [](const corvel::Vec2d& point) {
    return WholePoint{static_cast<std::int64_t>(point.x), static_cast<std::int64_t>(point.y)};
  };
  for (const unsigned int count : polygon.Counts()) {
    for (unsigned int i = 0; i < count; ++i)
      edges.push_back({whole(ring[i]), whole(ring[(i + 1) % count])});
    ring += count;
  }
  return edges;
}

// Whether the closed area holds the point (x / scale, y / scale).
inline bool IsInClosedArea(Big x, Big y, Big scale, const std::vector<WholeEdge>& edges) {
  bool isInside = false;
  for (const auto& [a, b] : edges) {
    const Big cross = (b.x - a.x) * (y - a.y * scale) - (b.y - a.y) * (x - a.x * scale);
    const bool isInBox = std::min(a.x, b.x) * scale <= x && x <= std::max(a.x, b.x) * scale &&
                         std::min(a.y, b.y) * scale <= y && y <= std::max(a.y, b.y) * scale;
    if (cross == 0 && isInBox) return true;
    if ((a.x * scale <= x) == (b.x * scale <= x)) continue;
    const bool isAbove = b.x > a.x ? cross < 0 : cross > 0;
    isInside = isInside != isAbove;
  }
  return isInside;
}

inline bool IsInClosedArea(const WholeEdge& segment, const Fraction& t,
                           const std::vector<WholeEdge>& edges) {
  const auto& [p, q] = segment;
  return IsInClosedArea(Big{p.x} * t.below + Big{q.x - p.x} * t.above,
                        Big{p.y} * t.below + Big{q.y - p.y} * t.above, t.below, edges);
}

struct FractionSpan {
  Fraction from, to;
};

// The parts of a segment of two different points that lie in the closed area, longer than a point.
inline std::vector<FractionSpan> SpansInside(const WholeEdge& segment,
                                             const std::vector<WholeEdge>& edges) {
  const auto& [p, q] = segment;
  std::vector<Fraction> events{{0, 1}, {1, 1}};
  const auto note = [&](std::int64_t above, std::int64_t below) {
    const Fraction t = MakeFraction(above, below);
    if (Fraction{0, 1} < t && t < Fraction{1, 1}) events.push_back(t);
  };
  for (const auto& [a, b] : edges) {
    const std::int64_t ofA = Cross(p, q, a);
    const std::int64_t ofB = Cross(p, q, b);
    if (ofA == 0 || ofB == 0) {
      // An end on the line: by its place along it.
      for (const auto& [side, end] : {std::pair(ofA, a), std::pair(ofB, b)}) {
        if (side == 0)
          note((end.x - p.x) * (q.x - p.x) + (end.y - p.y) * (q.y - p.y),
               (q.x - p.x) * (q.x - p.x) + (q.y - p.y) * (q.y - p.y));
      }
    } else if ((ofA > 0) != (ofB > 0)) {
      const std::int64_t ofP = Cross(a, b, p);
      note(ofP, ofP - Cross(a, b, q));
    }
  }
  std::sort(events.begin(), events.end());
  std::vector<FractionSpan> spans;
  for (std::size_t i = 0; i + 1 < events.size(); ++i) {
    if (events[i] == events[i + 1]) continue;
    if (!IsInClosedArea(segment, Middle(events[i], events[i + 1]), edges)) continue;
    const bool goesOn = !spans.empty() && spans.back().to == events[i];
    if (goesOn) {
      spans.back().to = events[i + 1];
    } else {
      spans.push_back({events[i], events[i + 1]});
    }
  }
  return spans;
}

using Piece = std::vector<corvel::Vec2d>;

// The pieces of a line that lie in the closed area.
inline std::vector<Piece> PiecesInside(const std::vector<WholePoint>& line,
                                       const std::vector<WholeEdge>& edges) {
  std::vector<Piece> pieces;
  const auto place = [](const WholePoint& point) {
    return corvel::Vec2d(static_cast<double>(point.x), static_cast<double>(point.y));
  };
  const bool isPoint =
      std::all_of(line.begin(), line.end(), [&](const WholePoint& p) { return p == line[0]; });
  if (isPoint) {
    if (!line.empty() && IsInClosedArea(line[0].x, line[0].y, 1, edges))
      pieces.emplace_back(line.size(), place(line[0]));
    return pieces;
  }
  bool goesOn = false;  // the last piece, from the corner where the next segment starts
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    if (line[i] == line[i + 1]) {
      if (!IsInClosedArea(line[i].x, line[i].y, 1, edges)) continue;
      if (!goesOn) pieces.push_back({place(line[i])});
      pieces.back().push_back(place(line[i]));
      goesOn = true;
      continue;
    }
    const WholeEdge segment{line[i], line[i + 1]};
    const auto at = [&](const Fraction& t) {
      const corvel::Vec2d from = place(segment.a);
      return from + (place(segment.b) - from) * t.Value();
    };
    bool reachesEnd = false;
    for (const FractionSpan& span : SpansInside(segment, edges)) {
      const bool joins = goesOn && span.from == Fraction{0, 1};
      if (!joins) pieces.push_back({at(span.from)});
      pieces.back().push_back(at(span.to));
      reachesEnd = span.to == Fraction{1, 1};
    }
    goesOn = reachesEnd;
  }
  // What never left a point is none.
  std::erase_if(pieces, [](const Piece& piece) {
    return std::all_of(piece.begin(), piece.end(), [&](const auto& p) { return p == piece[0]; });
  });
  return pieces;
}

}  // namespace tarnis::testing
