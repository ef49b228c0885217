// The "coordinates" of a GeoJSON geometry: positions, or arrays of them, as deep as the type says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <corvel/Geometry.h>

#include "filters/geometry/Geometry.h"

namespace trovan::filters {

// Takes the arrays and numbers as they stand in the file, and makes a geometry of them once the
// type is known, which may come later. Operations return what is wrong; the empty text: nothing.
class GeoJsonCoordinates {
 public:
  void Clear();

  std::string BeginArray();
  std::string AddNumber(double value);
  std::string EndArray();

  // Whether all arrays that began have ended.
  bool IsWhole() const { return depth_ == 0; }

  // Moves the positions into a geometry of a type of RFC 7946 that has coordinates; the object is
  // cleared then.
  std::string Take(std::string_view type, Geometry& geometry);

  static bool IsType(std::string_view type);

 private:
  static constexpr unsigned kDeepest = 4;  // MultiPolygon

  std::vector<corvel::Vec3d> points_;
  std::vector<unsigned int> counts_[kDeepest + 1];  // by depth: the items of each array that ended
  unsigned int items_[kDeepest + 1] = {};           // of the open arrays
  unsigned depth_ = 0;
  unsigned positionDepth_ = 0;  // 0: no position yet
  unsigned numbers_ = 0;        // of the open array
  corvel::Vec3d position_;
};

}  // namespace trovan::filters
