#include "BorderWalk.h"

#include <algorithm>

#include "Between.h"
#include "Orientation.h"

namespace tarnis {

using corvel::Vec2d;

bool BorderWalk::IsWithin(const Vec2d& point) const {
  return point.x > box_.min.x && point.x < box_.max.x && point.y > box_.min.y &&
         point.y < box_.max.y;
}

BorderWalk::Station BorderWalk::At(int side, const Vec2d& point) const {
  const double along[] = {point.x, point.y, -point.x, -point.y};
  return {side, along[side], point};
}

// Where the way from a point outside comes to the border last before it is within.
BorderWalk::Station BorderWalk::StationTowards(const Vec2d& outside, const Vec2d& other,
                                               double& share) const {
  Vec2d point = outside;
  int sideMet = -1;
  share = -1.0;
  const auto meet = [&](int side, double Vec2d::*along, double Vec2d::*across, double line) {
    const double here = ShareAt(outside.*along, other.*along, line);
    if (!(here > share)) return;
    const double rest = ShareAt(other.*along, outside.*along, line);
    share = here;
    sideMet = side;
    point.*along = line;
    point.*across = Between(outside.*across, other.*across, here, rest);
  };
  if (outside.y <= box_.min.y) meet(0, &Vec2d::y, &Vec2d::x, box_.min.y);
  if (outside.x >= box_.max.x) meet(1, &Vec2d::x, &Vec2d::y, box_.max.x);
  if (outside.y >= box_.max.y) meet(2, &Vec2d::y, &Vec2d::x, box_.max.y);
  if (outside.x <= box_.min.x) meet(3, &Vec2d::x, &Vec2d::y, box_.min.x);
  point.x = std::clamp(point.x, box_.min.x, box_.max.x);
  point.y = std::clamp(point.y, box_.min.y, box_.max.y);
  return At(std::max(sideMet, 0), point);
}

// Between two points that are not within. Near a corner rounding may decide; then what is left or
// added there is as small.
bool BorderWalk::PassesThrough(const Vec2d& a, const Vec2d& b, Station& in, Station& out) const {
  const auto isBeside = [](double one, double other, double low, double high) {
    return (one <= low && other <= low) || (one >= high && other >= high);
  };
  if (isBeside(a.x, b.x, box_.min.x, box_.max.x)) return false;
  if (isBeside(a.y, b.y, box_.min.y, box_.max.y)) return false;
  double share = 0.0;
  double rest = 0.0;
  in = StationTowards(a, b, share);
  out = StationTowards(b, a, rest);
  return share + rest < 1.0 && in.point != out.point;
}

void BorderWalk::BeginPiece(const Station& station) {
  crossings_.push_back({station, pieces_.size(), false});
  pieces_.push_back({points_.size(), 0});
  points_.push_back(station.point);
}

void BorderWalk::EndPiece(const Station& station) {
  points_.push_back(station.point);
  crossings_.push_back({station, pieces_.size() - 1, true});
  pieces_.back().count = points_.size() - pieces_.back().first;
}

void BorderWalk::AddEdge(const Vec2d& a, const Vec2d& b) {
  const bool startsWithin = IsWithin(a);
  const bool endsWithin = IsWithin(b);
  double share = 0.0;
  if (startsWithin && endsWithin) {
    points_.push_back(b);
  } else if (endsWithin) {
    BeginPiece(StationTowards(a, b, share));
    points_.push_back(b);
  } else if (startsWithin) {
    EndPiece(StationTowards(b, a, share));
  } else {
    Station in{};
    Station out{};
    if (!PassesThrough(a, b, in, out)) return;
    BeginPiece(in);
    EndPiece(out);
  }
}

void BorderWalk::AddOpenLine(const std::vector<Vec2d>& line) {
  for (std::size_t i = 1; i < line.size(); ++i) AddEdge(line[i - 1], line[i]);
}

void BorderWalk::AddRing(const Vec2d* points, std::size_t count) {
  const auto outside =
      std::find_if(points, points + count, [this](const Vec2d& point) { return !IsWithin(point); });
  const auto start = static_cast<std::size_t>(outside - points);
  if (start == count) {
    innerRings_.push_back({points_.size(), count});
    points_.insert(points_.end(), points, points + count);
    return;
  }
  for (std::size_t i = start; i + 1 < count; ++i) AddEdge(points[i], points[i + 1]);
  AddEdge(points[count - 1], points[0]);
  for (std::size_t i = 0; i < start; ++i) AddEdge(points[i], points[i + 1]);
}

// The next corner of the piece.
Vec2d BorderWalk::Inward(const Crossing& crossing) const {
  const Piece& piece = pieces_[crossing.piece];
  return points_[crossing.isEnd ? piece.first + piece.count - 2 : piece.first + 1];
}

// Where pieces end at the same place, a walk a little further in meets the one that turns back most
// first.
bool BorderWalk::IsBefore(const Crossing& one, const Crossing& other) const {
  if (one.station < other.station) return true;
  if (other.station < one.station) return false;
  return Orientation(one.station.point, Inward(one), Inward(other)) < 0;
}

void BorderWalk::SortCrossings() {
  std::sort(crossings_.begin(), crossings_.end(),
            [this](const Crossing& one, const Crossing& other) { return IsBefore(one, other); });
  for (std::size_t i = 0; i < crossings_.size(); ++i) {
    Piece& piece = pieces_[crossings_[i].piece];
    (crossings_[i].isEnd ? piece.end : piece.start) = i;
  }
}

// The middle of the widest gap between crossings at the bottom or at the left: further from any
// crossing than these can be wrong. There, a little further up and right is further in.
BorderWalk::Station BorderWalk::Reference() const {
  Station widest = At(0, box_.min);
  double width = -1.0;
  for (const int side : {0, 3}) {
    const bool isBottom = side == 0;
    const double half =
        isBottom ? box_.max.x / 2 - box_.min.x / 2 : box_.max.y / 2 - box_.min.y / 2;
    double from = isBottom ? box_.min.x : -box_.max.y;
    const auto note = [&](double to) {
      if ((to / 2 - from / 2) / half > width) {
        width = (to / 2 - from / 2) / half;
        const double middle = from / 2 + to / 2;
        widest = At(side, isBottom ? Vec2d(middle, box_.min.y) : Vec2d(box_.min.x, -middle));
      }
      from = to;
    };
    for (const Crossing& crossing : crossings_) {
      if (crossing.station.side == side) note(crossing.station.along);
    }
    note(isBottom ? box_.max.x : -box_.min.y);
  }
  return widest;
}

Polygon2 BorderWalk::Finish(const IsInside& isInside) {
  SortCrossings();
  const Station reference = Reference();
  const bool isReferenceInside = isInside(reference.point);
  if (crossings_.empty() && isReferenceInside) {
    for (int side = 0; side < 4; ++side) rings_.AddPoint(CornerBehind(side));
    rings_.EndRing();
  }
  // Part i of the border lies between crossings i - 1 and i.
  const auto isAfter = [&](const Crossing& crossing) { return reference < crossing.station; };
  const auto next = std::find_if(crossings_.begin(), crossings_.end(), isAfter);
  const bool isReferenceOdd = (next - crossings_.begin()) % 2 == 1;
  const bool isOddInside = isReferenceOdd == isReferenceInside;
  std::vector<bool> isDone(crossings_.size(), false);
  for (std::size_t i = isOddInside ? 0 : 1; i < crossings_.size(); i += 2) {
    if (!isDone[i]) FollowRing(i, isOddInside, isDone);
  }
  for (const Piece& ring : innerRings_) AddInnerRing(ring, isInside);
  return rings_.Take();
}

// From a crossing where an inside part of the border begins: along that part, then along the piece
// that ends where it does, and so on.
void BorderWalk::FollowRing(std::size_t crossing, bool isOddInside, std::vector<bool>& isDone) {
  std::size_t at = crossing;
  do {
    // An inside part begins at even crossings if parts of odd number are inside.
    const bool isForward = (at % 2 == 0) == isOddInside;
    const std::size_t count = crossings_.size();
    const std::size_t across = isForward ? (at + 1) % count : (at + count - 1) % count;
    isDone[at] = isDone[across] = true;
    AddCorners(at, across, isForward);
    const Piece& piece = pieces_[crossings_[across].piece];
    TakePiece(piece, !crossings_[across].isEnd);
    at = crossings_[across].isEnd ? piece.start : piece.end;
  } while (at != crossing);
  rings_.EndRing();
}

// The corner at the end of a side.
Vec2d BorderWalk::CornerBehind(int side) const {
  const Vec2d corners[] = {{box_.max.x, box_.min.y}, box_.max, {box_.min.x, box_.max.y}, box_.min};
  return corners[side];
}

void BorderWalk::AddCorners(std::size_t from, std::size_t to, bool isForward) {
  const std::size_t first = isForward ? from : to;
  const std::size_t last = isForward ? to : from;
  const int firstSide = crossings_[first].station.side;
  const int lastSide = crossings_[last].station.side;
  // The part from the last crossing goes over the lower left corner to the first one.
  const int sides = (last < first ? 4 : 0) + lastSide - firstSide;
  for (int i = 0; i < sides; ++i) {
    rings_.AddPoint(CornerBehind((firstSide + (isForward ? i : sides - 1 - i)) % 4));
  }
}

void BorderWalk::TakePiece(const Piece& piece, bool isForward) {
  for (std::size_t i = 0; i < piece.count; ++i) {
    rings_.AddPoint(points_[piece.first + (isForward ? i : piece.count - 1 - i)]);
  }
}

// An outer ring if it is outside there where it reaches furthest up.
void BorderWalk::AddInnerRing(const Piece& ring, const IsInside& isInside) {
  const auto first = points_.begin() + static_cast<std::ptrdiff_t>(ring.first);
  const auto end = first + static_cast<std::ptrdiff_t>(ring.count);
  const auto top = std::max_element(first, end, [](const Vec2d& one, const Vec2d& other) {
    return one.y != other.y ? one.y < other.y : one.x < other.x;
  });
  // A ring that neither crosses nor touches itself turns there as it does on the whole.
  const auto next = [&](auto p) { return p + 1 == end ? first : p + 1; };
  const auto before = [&](auto p) { return (p == first ? end : p) - 1; };
  auto from = before(top);
  while (*from == *top && from != top) from = before(from);
  auto to = next(top);
  while (*to == *top && to != top) to = next(to);
  const bool isOuter = !isInside(*top);
  TakePiece(ring, (Orientation(*from, *top, *to) > 0) == isOuter);
  rings_.EndRing();
}

}  // namespace tarnis
