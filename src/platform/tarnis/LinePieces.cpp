#include "LinePieces.h"

#include <algorithm>

namespace tarnis {

using corvel::Vec2d;

void LinePieces::Add(const Span& span) {
  if (!goesOn_ || span.from.t > 0.0) {
    End();
    points_.push_back(span.from.point);
  }
  points_.push_back(span.to.point);
  goesOn_ = span.to.t == 1.0;
}

void LinePieces::Repeat(const Vec2d& point) {
  if (!goesOn_) {
    End();
    points_.push_back(point);
    goesOn_ = true;
  }
  points_.push_back(point);
}

void LinePieces::End() {
  goesOn_ = false;
  const auto first = points_.begin() + static_cast<std::ptrdiff_t>(start_);
  const bool isPoint =
      std::all_of(first, points_.end(), [&](const Vec2d& point) { return point == *first; });
  if (isPoint) {
    points_.resize(start_);
    return;
  }
  counts_.push_back(static_cast<unsigned int>(points_.size() - start_));
  start_ = points_.size();
}

void LinePieces::AddPoint(const Vec2d* points, std::size_t count) {
  points_.insert(points_.end(), points, points + count);
  counts_.push_back(static_cast<unsigned int>(count));
  start_ = points_.size();
}

}  // namespace tarnis
