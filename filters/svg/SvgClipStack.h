// The regions to which groups within groups are clipped.
#pragma once

#include <functional>
#include <vector>

#include <quillon/TrBase.h>
#include <tarnis/Polygon2.h>

namespace trovan::filters {

class SvgClipStack {
 public:
  using Deliver = std::function<void(quillon::TrBase&)>;

  // `outer` is what the receiver clips to already; no rings: it does not clip.
  SvgClipStack(const tarnis::Polygon2& outer, Deliver deliver);

  // What is drawn from now on is clipped to the area as well, until Pop. An area without rings
  // leaves nothing.
  void Push(const tarnis::Polygon2& area);
  void Pop() { regions_.pop_back(); }

  // What all of them leave; no rings: all of the plane.
  const tarnis::Polygon2& Region() const { return regions_.back(); }

  // Whether more than the outer region clips.
  bool IsInner() const { return regions_.size() > 1; }

  // Delivers the region as a clip path, unless the receiver has it.
  void Update();

 private:
  Deliver deliver_;
  std::vector<tarnis::Polygon2> regions_;  // the first one is the outer one
  tarnis::Polygon2 delivered_;
};

}  // namespace trovan::filters
