// Lines and rings as the path data of SVG: "M0 0 4 0 4 4Z".
#pragma once

#include <cstddef>
#include <string>

#include <corvel/Geometry.h>

#include "filters/drawing/PageCoordinates.h"

namespace trovan::filters {

// On a page that rounds, a point that comes to lie on the one before is left out.
class PathData {
 public:
  // `coordinates` are borrowed.
  explicit PathData(const PageCoordinates& coordinates) : coordinates_(coordinates) {}

  // Without points, both add nothing. A ring may repeat its first point at its end; a line that
  // does so becomes a ring. A single point becomes a line of no length.
  void AddRing(const corvel::Vec3d* points, std::size_t count);
  void AddLine(const corvel::Vec3d* points, std::size_t count);

  const std::string& Text() const { return text_; }

 private:
  bool IsClosed(const corvel::Vec3d* points, std::size_t count) const;
  std::size_t AddPoints(const corvel::Vec3d* points, std::size_t count);

  const PageCoordinates& coordinates_;
  std::string text_;
  std::string point_;     // the one that comes
  std::string previous_;  // the one before
};

}  // namespace trovan::filters
