#include "SvgDashes.h"

#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>

#include "SvgTransform.h"

namespace trovan::filters {
namespace {

using corvel::Mat3d;
using corvel::Vec2d;

// Where along the pattern a line has come to.
class Pattern {
 public:
  explicit Pattern(const SvgDashes& dashes) : lengths_(dashes.lengths) {
    // A pattern of an odd number of lengths is repeated, so that gaps become dashes.
    if (lengths_.size() % 2 != 0) {
      lengths_.insert(lengths_.end(), dashes.lengths.begin(), dashes.lengths.end());
    }
    const double sum = std::accumulate(lengths_.begin(), lengths_.end(), 0.0);
    double start = std::fmod(dashes.offset, sum);
    if (start < 0.0) start += sum;
    rest_ = lengths_[0];
    while (start >= rest_ && start > 0.0) {
      start -= rest_;
      Next();
    }
    rest_ -= start;
  }

  bool IsDash() const { return index_ % 2 == 0; }
  double Rest() const { return rest_; }
  void Advance(double way) { rest_ -= way; }
  void Next() {
    index_ = (index_ + 1) % lengths_.size();
    rest_ = lengths_[index_];
  }

 private:
  std::vector<double> lengths_;
  std::size_t index_ = 0;
  double rest_ = 0.0;  // of the dash or gap
};

class Cutter {
 public:
  Cutter(const SvgDashes& dashes, const Mat3d& inverse) : pattern_(dashes), inverse_(inverse) {}

  std::vector<std::vector<Vec2d>> Cut(const FlatLine& line) {
    const auto& points = line.points;
    const bool startsWithDash = pattern_.IsDash();
    if (startsWithDash) dash_.push_back(points.front());
    for (std::size_t i = 1; i < points.size(); ++i) CutPiece(points[i - 1], points[i]);
    if (dash_.size() > 1) {
      if (line.isClosed && startsWithDash && !dashes_.empty()) {
        GoOnAsFirstDash();
      } else {
        EndDash();
      }
    }
    return std::move(dashes_);
  }

  double Length(const Vec2d& from, const Vec2d& to) const {
    const Vec2d way = to - from;
    return std::hypot(way.x * inverse_(0, 0) + way.y * inverse_(1, 0),
                      way.x * inverse_(0, 1) + way.y * inverse_(1, 1));
  }

 private:
  void CutPiece(const Vec2d& from, const Vec2d& to) {
    const double length = Length(from, to);
    if (!(length > 0.0)) return;
    double done = 0.0;
    while (length - done > pattern_.Rest()) {
      done += pattern_.Rest();
      const Vec2d here = from + (to - from) * (done / length);
      const bool wasDash = pattern_.IsDash();
      pattern_.Next();
      // Without a gap one dash goes on as the next.
      const bool goesOn = wasDash && pattern_.Rest() == 0.0;
      if (goesOn) {
        pattern_.Next();
        continue;
      }
      if (wasDash) {
        AddPoint(here, to - from);
        EndDash();
      }
      if (pattern_.IsDash()) dash_.push_back(here);
    }
    pattern_.Advance(length - done);
    if (pattern_.IsDash()) dash_.push_back(to);
  }

  void AddPoint(const Vec2d& point, const Vec2d& direction) {
    const bool isDot = dash_.size() == 1 && dash_.front() == point;
    if (isDot) {
      const double size = std::hypot(direction.x, direction.y);
      dash_.push_back(point + Vec2d(direction.x / size, direction.y / size) * kDotLength);
    } else if (dash_.back() != point) {
      dash_.push_back(point);
    }
  }

  void EndDash() {
    dashes_.push_back(std::move(dash_));
    dash_.clear();
  }

  // The start of a closed line is no end of a dash.
  void GoOnAsFirstDash() {
    auto& first = dashes_.front();
    dash_.insert(dash_.end(), first.begin() + 1, first.end());
    first = std::move(dash_);
    dash_.clear();
  }

  Pattern pattern_;
  const Mat3d& inverse_;
  std::vector<Vec2d> dash_;  // the points so far; none in a gap
  std::vector<std::vector<Vec2d>> dashes_;
};

}  // namespace

std::optional<std::vector<std::vector<Vec2d>>> CutIntoDashes(const FlatLine& line,
                                                             const SvgDashes& dashes,
                                                             const Mat3d& map, std::size_t most) {
  const Mat3d inverse = Inverted(map);
  if (!IsFinite(inverse)) return {};
  Cutter cutter(dashes, inverse);
  double length = 0.0;
  for (std::size_t i = 1; i < line.points.size(); ++i) {
    length += cutter.Length(line.points[i - 1], line.points[i]);
  }
  const double sum = std::accumulate(dashes.lengths.begin(), dashes.lengths.end(), 0.0);
  const double count = length / sum * static_cast<double>(dashes.lengths.size());
  if (!(count <= static_cast<double>(most))) return {};
  return cutter.Cut(line);
}

}  // namespace trovan::filters
