#include "ShapeGeometry.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "filters/support/StoredNumbers.h"

namespace trovan::filters {
namespace {

using corvel::Vec3d;
using Bytes = std::span<const unsigned char>;

constexpr std::size_t kWord = 4;
constexpr std::size_t kDouble = 8;
constexpr std::size_t kTypeAndBox = kWord + 4 * kDouble;
constexpr std::size_t kPoint = 2 * kDouble;

bool HasHeights(ShapeType type) {
  return type == ShapeType::kPointZ || type == ShapeType::kPolyLineZ ||
         type == ShapeType::kPolygonZ || type == ShapeType::kMultiPointZ;
}

// The points of a shape, which begin at `start`, and their heights, behind their range at
// `rangeAt`. Both counts are 64-bit sums of what 32-bit words promise: nothing wraps.
class Decoder {
 public:
  Decoder(Bytes content, Shape& shape) : content_(content), shape_(shape) {}

  void DecodePoint() {
    if (!Require(kWord + kPoint)) return;
    Vec3d point = PointAt(kWord);
    if (HasHeights(shape_.type)) {
      const std::size_t heightAt = kWord + kPoint;
      if (Has(heightAt + kDouble)) {
        point.z = LoadDouble(&content_[heightAt]);
      } else {
        RemarkMissingHeights();
      }
    }
    shape_.geometry.points.push_back(point);
  }

  void DecodeMultiPoint() {
    if (!Require(kTypeAndBox + kWord)) return;
    const std::uint64_t points = LoadU32(&content_[kTypeAndBox]);
    DecodePoints(kTypeAndBox + kWord, points);
  }

  void DecodeParts(Geometry::Kind kind) {
    constexpr std::uint64_t kPartsAt = kTypeAndBox + 2 * kWord;
    if (!Require(kPartsAt)) return;
    const std::uint64_t parts = LoadU32(&content_[kTypeAndBox]);
    const std::uint64_t points = LoadU32(&content_[kTypeAndBox + kWord]);
    shape_.geometry.kind = kind;
    if (!DecodePoints(kPartsAt + parts * kWord, points)) return;
    DecodeCounts(kPartsAt, parts, points);
  }

 private:
  bool Has(std::uint64_t size) const { return content_.size() >= size; }

  bool Require(std::uint64_t size) {
    if (Has(size)) return true;
    Fail("it needs " + std::to_string(size) + " bytes, but has " + std::to_string(content_.size()));
    return false;
  }

  void Fail(std::string reason) {
    shape_.fault = std::move(reason);
    shape_.geometry = {};
  }

  void RemarkMissingHeights() { shape_.remark = "the heights are missing; 0 stands for them"; }

  Vec3d PointAt(std::size_t at) const {
    return {LoadDouble(&content_[at]), LoadDouble(&content_[at + kDouble]), 0.0};
  }

  bool DecodePoints(std::uint64_t start, std::uint64_t count) {
    const std::uint64_t end = start + count * kPoint;
    if (!Require(end)) return false;
    std::vector<Vec3d>& points = shape_.geometry.points;
    points.reserve(static_cast<std::size_t>(count));
    for (auto at = static_cast<std::size_t>(start); at < end; at += kPoint) {
      points.push_back(PointAt(at));
    }
    if (HasHeights(shape_.type)) DecodeHeights(end + 2 * kDouble);
    return true;
  }

  void DecodeHeights(std::uint64_t start) {
    std::vector<Vec3d>& points = shape_.geometry.points;
    if (!Has(start + points.size() * kDouble)) return RemarkMissingHeights();
    auto at = static_cast<std::size_t>(start);
    for (Vec3d& point : points) {
      point.z = LoadDouble(&content_[at]);
      at += kDouble;
    }
  }

  // The file tells where each part begins among the points.
  void DecodeCounts(std::size_t at, std::uint64_t parts, std::uint64_t points) {
    std::uint64_t begin = 0;
    for (std::uint64_t part = 0; part < parts; ++part, at += kWord) {
      const std::uint64_t first = LoadU32(&content_[at]);
      if (part == 0 ? first != 0 : first < begin || first > points) {
        return Fail("part " + std::to_string(part + 1) + " of " + std::to_string(parts) +
                    " begins at point " + std::to_string(first) + " of " + std::to_string(points) +
                    (part == 0 ? ", not at the first" : ", out of order"));
      }
      if (part > 0) shape_.geometry.counts.push_back(static_cast<unsigned int>(first - begin));
      begin = first;
    }
    if (parts > 0) shape_.geometry.counts.push_back(static_cast<unsigned int>(points - begin));
    if (parts == 0 && points > 0) {
      Fail("it has " + std::to_string(points) + " points, but no part");
    }
  }

  Bytes content_;
  Shape& shape_;
};

bool AllAreFinite(const std::vector<Vec3d>& points) {
  for (const Vec3d& point : points) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return false;
  }
  return true;
}

void Decode(Bytes content, Shape& shape) {
  Decoder decoder(content, shape);
  switch (shape.type) {
    case ShapeType::kNull:
      return;
    case ShapeType::kPoint:
    case ShapeType::kPointZ:
    case ShapeType::kPointM:
      return decoder.DecodePoint();
    case ShapeType::kMultiPoint:
    case ShapeType::kMultiPointZ:
    case ShapeType::kMultiPointM:
      return decoder.DecodeMultiPoint();
    case ShapeType::kPolyLine:
    case ShapeType::kPolyLineZ:
    case ShapeType::kPolyLineM:
      return decoder.DecodeParts(Geometry::Kind::kLines);
    case ShapeType::kPolygon:
    case ShapeType::kPolygonZ:
    case ShapeType::kPolygonM:
      return decoder.DecodeParts(Geometry::Kind::kArea);
    default:
      shape.fault = DescribeShapeType(shape.type) + " are not taken over";
  }
}

}  // namespace

Shape DecodeShape(Bytes content) {
  Shape shape;
  if (content.size() < kWord) {
    shape.fault = "it has " + std::to_string(content.size()) + " bytes, too few for a shape";
    return shape;
  }
  shape.type = ShapeType{LoadU32(content.data())};
  Decode(content, shape);
  if (!AllAreFinite(shape.geometry.points)) {
    shape.geometry = {};
    shape.fault = "a coordinate is no finite number";
  }
  return shape;
}

}  // namespace trovan::filters
