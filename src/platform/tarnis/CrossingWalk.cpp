#include "CrossingWalk.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Crossings.h"
#include "EdgeRings.h"
#include "Orientation.h"
#include "RingContacts.h"
#include "RingList.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// With more edges a polygon is asked through its index.
constexpr std::size_t kMostEdgesWithoutIndex = 256;

// Crossings that are nearer to each other on an edge, as a share of its length, have no sure order.
constexpr double kLeastGap = 0x1p-40;

bool IsWithin(const Vec2d& point, const Box2d& box) {
  return point.x >= box.min.x && point.x <= box.max.x && point.y >= box.min.y &&
         point.y <= box.max.y;
}

// The crossings along one of the boundaries.
class Track {
 public:
  // `which`: 0 for the subject's boundary, 1 for the region's.
  Track(const EdgeRings& rings, const std::vector<Crossing>& crossings, int which)
      : rings_(rings), crossings_(crossings), which_(which) {}

  // Returns false if some crossings lie too near to each other.
  bool Sort() {
    order_.resize(crossings_.size());
    for (std::uint32_t i = 0; i < order_.size(); ++i) order_[i] = i;
    std::sort(order_.begin(), order_.end(), [this](std::uint32_t one, std::uint32_t other) {
      return EdgeOf(one) != EdgeOf(other) ? EdgeOf(one) < EdgeOf(other)
                                          : ShareOf(one) < ShareOf(other);
    });
    ranks_.resize(order_.size());
    for (std::uint32_t i = 0; i < order_.size(); ++i) ranks_[order_[i]] = i;
    return std::adjacent_find(
               order_.begin(), order_.end(), [this](std::uint32_t one, std::uint32_t next) {
                 return EdgeOf(one) == EdgeOf(next) && ShareOf(next) - ShareOf(one) < kLeastGap;
               }) == order_.end();
  }

  std::uint32_t RingOf(std::uint32_t crossing) const { return rings_.RingOf(EdgeOf(crossing)); }

  bool IsCrossed(std::uint32_t ring) const {
    const std::uint32_t first = FirstRank(ring);
    return first < order_.size() && EdgeOf(order_[first]) < rings_.End(ring);
  }

  // Goes along the ring to the next crossing, and adds the corners on the way.
  std::uint32_t Follow(std::uint32_t from, bool isForward, RingList& out) const {
    const std::uint32_t to = isForward ? After(from) : Before(from);
    if (isForward) {
      AddCorners(from, to, out);
    } else {
      AddCornersBack(from, to, out);
    }
    return to;
  }

  void AddWhole(std::uint32_t ring, bool isForward, RingList& out) const {
    const std::uint32_t begin = rings_.Begin(ring);
    const std::uint32_t end = rings_.End(ring);
    for (std::uint32_t edge = begin; edge < end; ++edge)
      out.AddPoint(rings_[isForward ? edge : begin + (end - 1 - edge)].a);
    out.EndRing();
  }

 private:
  std::uint32_t EdgeOf(std::uint32_t crossing) const { return crossings_[crossing].edges[which_]; }
  double ShareOf(std::uint32_t crossing) const { return crossings_[crossing].shares[which_]; }

  // The crossings of a ring stand one after the other in their order.
  std::uint32_t FirstRank(std::uint32_t ring) const {
    const auto first = std::lower_bound(
        order_.begin(), order_.end(), rings_.Begin(ring),
        [this](std::uint32_t crossing, std::uint32_t edge) { return EdgeOf(crossing) < edge; });
    return static_cast<std::uint32_t>(first - order_.begin());
  }

  std::uint32_t After(std::uint32_t crossing) const {
    const std::uint32_t ring = RingOf(crossing);
    const std::uint32_t next = ranks_[crossing] + 1;
    const bool isInRing = next < order_.size() && EdgeOf(order_[next]) < rings_.End(ring);
    return order_[isInRing ? next : FirstRank(ring)];
  }

  std::uint32_t Before(std::uint32_t crossing) const {
    const std::uint32_t ring = RingOf(crossing);
    if (ranks_[crossing] > FirstRank(ring)) return order_[ranks_[crossing] - 1];
    const bool isLastRing = ring + 1 == rings_.Rings();
    return order_[(isLastRing ? static_cast<std::uint32_t>(order_.size()) : FirstRank(ring + 1)) -
                  1];
  }

  void AddCorners(std::uint32_t from, std::uint32_t to, RingList& out) const {
    const std::uint32_t ring = RingOf(from);
    const std::uint32_t last = EdgeOf(to);
    std::uint32_t edge = EdgeOf(from);
    if (edge == last && ShareOf(from) < ShareOf(to)) return;
    do {
      edge = edge + 1 < rings_.End(ring) ? edge + 1 : rings_.Begin(ring);
      out.AddPoint(rings_[edge].a);
    } while (edge != last);
  }

  void AddCornersBack(std::uint32_t from, std::uint32_t to, RingList& out) const {
    const std::uint32_t ring = RingOf(from);
    const std::uint32_t last = EdgeOf(to);
    std::uint32_t edge = EdgeOf(from);
    if (edge == last && ShareOf(to) < ShareOf(from)) return;
    do {
      out.AddPoint(rings_[edge].a);
      edge = edge > rings_.Begin(ring) ? edge - 1 : rings_.End(ring) - 1;
    } while (edge != last);
  }

  const EdgeRings& rings_;
  const std::vector<Crossing>& crossings_;
  int which_;
  std::vector<std::uint32_t> order_;  // crossings along the boundary
  std::vector<std::uint32_t> ranks_;  // of each crossing in that order
};

class Walk {
 public:
  Walk(const Polygon2& subject, const RegionIndex& region)
      : polygon_(subject),
        subject_(subject),
        region_(region),
        box_(GetBoundingBox(subject)),
        isLarge_(subject_.Size() > kMostEdgesWithoutIndex) {}

  std::optional<Polygon2> Run() {
    if (region_.HasContacts()) return {};
    if (isLarge_ ? polygon_.Index().HasContacts() : HaveContacts(subject_)) return {};
    region_.EdgesNear(box_, near_);
    if (!FindCrossings(subject_, region_, near_, crossings_)) return {};
    if (!ofSubject_.Sort() || !ofRegion_.Sort()) return {};
    if (!FollowCrossings()) return {};
    AddRingsOfSubject();
    AddRingsOfRegion();
    return out_.Take();
  }

 private:
  bool IsInsideSubject(const Vec2d& point) const {
    return isLarge_ ? polygon_.Index().IsPerturbedInside(point)
                    : IsPerturbedInside(subject_, point);
  }

  // The walk has the inside on its left.
  bool IsSubjectForward(std::uint32_t ring) const {
    if (isLarge_) return polygon_.Index().IsLeftInside(ring);
    const bool isOuter =
        subject_.Rings() == 1 || !IsInsideSubject(subject_[TopEdge(subject_, ring)].a);
    return RunsCounterClockwise(subject_, ring) == isOuter;
  }

  // Where a walk along the subject comes into the region.
  bool Enters(std::uint32_t crossing) const {
    const bool isForward = isSubjectForward_[ofSubject_.RingOf(crossing)];
    const bool isRegionForward = region_.IsLeftInside(ofRegion_.RingOf(crossing));
    return (crossings_[crossing].turn > 0) == (isForward == isRegionForward);
  }

  bool FollowCrossings() {
    for (std::uint32_t ring = 0; ring < subject_.Rings(); ++ring)
      isSubjectForward_.push_back(IsSubjectForward(ring));
    isDone_.assign(crossings_.size(), false);
    for (std::uint32_t i = 0; i < crossings_.size(); ++i) {
      if (!isDone_[i] && Enters(i) && !FollowRing(i)) return false;
    }
    return std::find(isDone_.begin(), isDone_.end(), false) == isDone_.end();
  }

  // False where the crossings do not follow one another as they should, in and out.
  bool FollowRing(std::uint32_t start) {
    std::uint32_t at = start;
    do {
      if (isDone_[at] || !Enters(at)) return false;
      isDone_[at] = true;
      out_.AddPoint(crossings_[at].point);
      at = ofSubject_.Follow(at, isSubjectForward_[ofSubject_.RingOf(at)], out_);
      if (isDone_[at] || Enters(at)) return false;
      isDone_[at] = true;
      out_.AddPoint(crossings_[at].point);
      at = ofRegion_.Follow(at, region_.IsLeftInside(ofRegion_.RingOf(at)), out_);
    } while (at != start);
    out_.EndRing();
    return true;
  }

  void AddRingsOfSubject() {
    for (std::uint32_t ring = 0; ring < subject_.Rings(); ++ring) {
      if (ofSubject_.IsCrossed(ring)) continue;
      if (region_.PlaceOf(subject_[subject_.Begin(ring)].a) == Place::kInside)
        ofSubject_.AddWhole(ring, isSubjectForward_[ring], out_);
    }
  }

  // A ring that is inside the subject has edges near it.
  void AddRingsOfRegion() {
    const EdgeRings& rings = region_.Rings();
    for (auto edge = near_.begin(); edge != near_.end();) {
      const std::uint32_t ring = rings.RingOf(*edge);
      const Vec2d& corner = rings[*edge].a;
      if (!ofRegion_.IsCrossed(ring) && IsWithin(corner, box_) && IsInsideSubject(corner))
        ofRegion_.AddWhole(ring, region_.IsLeftInside(ring), out_);
      edge = std::lower_bound(edge, near_.end(), rings.End(ring));
    }
  }

  const Polygon2& polygon_;
  const EdgeRings subject_;
  const RegionIndex& region_;
  const Box2d box_;
  const bool isLarge_;
  std::vector<std::uint32_t> near_;  // edges of the region near the subject
  std::vector<Crossing> crossings_;
  Track ofSubject_{subject_, crossings_, 0};
  Track ofRegion_{region_.Rings(), crossings_, 1};
  std::vector<bool> isSubjectForward_;  // of each ring
  std::vector<bool> isDone_;            // of each crossing
  RingList out_;
};

}  // namespace

std::optional<Polygon2> WalkCrossings(const Polygon2& subject, const RegionIndex& region) {
  return Walk(subject, region).Run();
}

}  // namespace tarnis
