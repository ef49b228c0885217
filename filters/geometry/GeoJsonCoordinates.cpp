#include "GeoJsonCoordinates.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace trovan::filters {
namespace {

struct Type {
  std::string_view name;
  unsigned positionDepth;  // of the arrays that are positions; the outermost has 1
  Geometry::Kind kind;
};

constexpr Type kTypes[] = {
    {"Point", 1, Geometry::Kind::kPlaces},     {"MultiPoint", 2, Geometry::Kind::kPlaces},
    {"LineString", 2, Geometry::Kind::kLines}, {"MultiLineString", 3, Geometry::Kind::kLines},
    {"Polygon", 3, Geometry::Kind::kArea},     {"MultiPolygon", 4, Geometry::Kind::kArea},
};

const Type* FindType(std::string_view name) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                   [name](const Type& type) { return type.name == name; });
  return found == std::end(kTypes) ? nullptr : found;
}

constexpr const char* kMixed = "numbers and arrays are mixed in the coordinates";
constexpr const char* kUneven = "the positions of the coordinates are not all equally deep";

}  // namespace

bool GeoJsonCoordinates::IsType(std::string_view type) { return FindType(type) != nullptr; }

void GeoJsonCoordinates::Clear() { *this = {}; }

std::string GeoJsonCoordinates::BeginArray() {
  if (numbers_ > 0) return kMixed;
  if (depth_ == kDeepest) return "the coordinates are nested too deeply";
  ++items_[depth_];
  items_[++depth_] = 0;
  return {};
}

std::string GeoJsonCoordinates::AddNumber(double value) {
  if (items_[depth_] > 0) return kMixed;
  if (numbers_ == 0) position_ = {};
  if (numbers_ == 0) position_.x = value;
  if (numbers_ == 1) position_.y = value;
  if (numbers_ == 2) position_.z = value;
  if (numbers_ < 3) ++numbers_;  // more are allowed, and mean nothing
  return {};
}

std::string GeoJsonCoordinates::EndArray() {
  if (numbers_ == 1) return "a position has one number; it needs two";
  if (numbers_ > 1) {
    if (positionDepth_ != 0 && positionDepth_ != depth_) return kUneven;
    positionDepth_ = depth_;
    points_.push_back(position_);
    numbers_ = 0;
  } else {
    counts_[depth_].push_back(items_[depth_]);
  }
  --depth_;
  return {};
}

std::string GeoJsonCoordinates::Take(std::string_view typeName, Geometry& geometry) {
  const Type& type = *FindType(typeName);
  std::string fault;
  if (positionDepth_ != 0 && positionDepth_ != type.positionDepth) {
    fault = "the coordinates are not nested as those of a " + std::string(typeName);
  } else if (positionDepth_ != 0 && !counts_[positionDepth_].empty()) {
    fault = "a position has no numbers";
  }
  geometry = {type.kind, {}, {}};
  if (fault.empty() && positionDepth_ != 0) {
    geometry.points = std::move(points_);
    if (type.kind != Geometry::Kind::kPlaces) {
      geometry.counts = std::move(counts_[positionDepth_ - 1]);
    }
  }
  Clear();
  return fault;
}

}  // namespace trovan::filters
