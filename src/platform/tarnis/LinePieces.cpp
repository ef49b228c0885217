#include "LinePieces.h"

#include <algorithm>

namespace tarnis {

using corvel::Vec2d;

void LinePieces::AddSegment(const std::vector<Span>& parts) {
  for (const Span& part : parts) {
    if (!goesOn_ || part.from.t > 0.0) BeginPiece(part.from.point);
    points_.push_back(part.to.point);
  }
  goesOn_ = !parts.empty() && parts.back().to.t == 1.0;
}

void LinePieces::Repeat(const Vec2d& point) {
  if (!goesOn_) BeginPiece(point);
  points_.push_back(point);
}

void LinePieces::End() {
  EndPiece();
  goesOn_ = false;
}

void LinePieces::BeginPiece(const Vec2d& point) {
  EndPiece();
  points_.push_back(point);
  goesOn_ = true;
}

// A piece that is only a point falls out.
void LinePieces::EndPiece() {
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
