#include "PathData.h"

namespace trovan::filters {

using corvel::Vec3d;

void PathData::AddRing(const Vec3d* points, std::size_t count) {
  if (count == 0) return;
  AddPoints(points, IsClosed(points, count) ? count - 1 : count);
  text_ += 'Z';
}

void PathData::AddLine(const Vec3d* points, std::size_t count) {
  if (count == 0) return;
  if (IsClosed(points, count)) return AddRing(points, count);
  // A place alone draws nothing, but a line of no length shows its ends.
  if (AddPoints(points, count) == 1) text_ += ' ' + previous_;
}

bool PathData::IsClosed(const Vec3d* points, std::size_t count) const {
  return count > 1 && coordinates_.ToPage(points[0]) == coordinates_.ToPage(points[count - 1]);
}

// How many were added: at least the first.
std::size_t PathData::AddPoints(const Vec3d* points, std::size_t count) {
  std::size_t added = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const corvel::Vec2d place = coordinates_.ToPage(points[i]);
    point_.clear();
    coordinates_.AppendPlace(point_, place.x);
    point_ += ' ';
    coordinates_.AppendPlace(point_, place.y);
    if (added > 0 && coordinates_.Rounds() && point_ == previous_) continue;
    text_ += added == 0 ? 'M' : ' ';
    text_ += point_;
    previous_.swap(point_);
    ++added;
  }
  return added;
}

}  // namespace trovan::filters
