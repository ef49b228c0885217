// What the checks of the objects have in common: whether numbers are finite, and whether the counts
// of rings fit their points.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

namespace quillon {

inline bool IsFinite(double value) { return std::isfinite(value); }
inline bool IsFinite(const corvel::Vec2d& point) { return IsFinite(point.x) && IsFinite(point.y); }
inline bool IsFinite(const corvel::Box2d& box) { return IsFinite(box.min) && IsFinite(box.max); }
bool IsFinite(const corvel::Mat4d& matrix);

// What is wrong with the points of an object; empty: nothing. Heights are not looked at.
std::string FaultOf(const std::vector<corvel::Vec3d>& points);

// The same of the counts of rings: they may leave points over, but not have more than there are.
std::string FaultOf(const std::vector<unsigned int>& counts, std::size_t points);

}  // namespace quillon
