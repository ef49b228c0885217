#include "Finite.h"

namespace quillon {

bool IsFinite(const corvel::Mat4d& matrix) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      if (!IsFinite(matrix(row, column))) return false;
    }
  }
  return true;
}

std::string FaultOf(const std::vector<corvel::Vec3d>& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!IsFinite(points[i].x)) return "x of point " + std::to_string(i) + " is not finite";
    if (!IsFinite(points[i].y)) return "y of point " + std::to_string(i) + " is not finite";
  }
  return {};
}

std::string FaultOf(const std::vector<unsigned int>& counts, std::size_t points) {
  std::uint64_t sum = 0;
  for (const unsigned int count : counts) sum += count;
  if (sum <= points) return {};
  return "its rings have " + std::to_string(sum) + " points, but there are " +
         std::to_string(points);
}

}  // namespace quillon
