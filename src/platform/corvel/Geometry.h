// Points and axis-parallel boxes: plain values that lie packed in arrays and are copied as bytes.
//
//   const Vec2d corners[] = {{0, 0}, {4, 1}, {2, 3}};
//   Box2d box;
//   box.BoundPoints(corners, 3);  // (0, 0) to (4, 3)
//   box.Center();                 // (2, 1.5)
#pragma once

#include <cmath>
#include <concepts>
#include <cstddef>
#include <limits>
#include <type_traits>

namespace corvel {

// A point of the plane, or a displacement.
template <typename T>
struct Vec2 {
  T x{};
  T y{};

  constexpr Vec2() = default;
  constexpr Vec2(T xValue, T yValue) : x(xValue), y(yValue) {}

  // From another component type. REQUIRES: each value fits T once its fraction is dropped.
  template <typename U>
  requires(!std::same_as<T, U>) constexpr explicit Vec2(const Vec2<U>& other)
      : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)) {}

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Vec2&, const Vec2&) = default;

  friend constexpr Vec2 operator+(const Vec2& a, const Vec2& b) { return {a.x + b.x, a.y + b.y}; }
  friend constexpr Vec2 operator-(const Vec2& a, const Vec2& b) { return {a.x - b.x, a.y - b.y}; }
  friend constexpr Vec2 operator*(const Vec2& a, T factor) { return {a.x * factor, a.y * factor}; }
};

// A point of space, or a displacement.
template <typename T>
struct Vec3 {
  T x{};
  T y{};
  T z{};

  constexpr Vec3() = default;
  constexpr Vec3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}
  constexpr Vec3(const Vec2<T>& point, T zValue) : x(point.x), y(point.y), z(zValue) {}

  // From another component type. REQUIRES: each value fits T once its fraction is dropped.
  template <typename U>
  requires(!std::same_as<T, U>) constexpr explicit Vec3(const Vec3<U>& other)
      : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}

  // Whether each coordinate differs by at most `tolerance`. A difference that is NaN is never
  // within it: neither that of a NaN nor that of two equal infinities.
  constexpr bool Equals(const Vec3& other, T tolerance) const {
    return Near(x, other.x, tolerance) && Near(y, other.y, tolerance) &&
           Near(z, other.z, tolerance);
  }

  // The unit vector of the same direction, for every finite length, however small or large. The
  // zero vector has no direction and stays as it is. A component that is not finite makes all
  // three NaN.
  Vec3 Normalized() const requires std::floating_point<T> {
    if (x == 0 && y == 0 && z == 0) return *this;
    // Scaled to a largest component of 1, no square overflows, and none that counts underflows.
    const T largest = std::fmax(std::fmax(std::fabs(x), std::fabs(y)), std::fabs(z));
    const Vec3 scaled(x / largest, y / largest, z / largest);
    const T length = std::sqrt(scaled.x * scaled.x + scaled.y * scaled.y + scaled.z * scaled.z);
    return {scaled.x / length, scaled.y / length, scaled.z / length};
  }

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Vec3&, const Vec3&) = default;

  friend constexpr Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
  }
  friend constexpr Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
  }
  friend constexpr Vec3 operator*(const Vec3& a, T factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
  }

 private:
  static constexpr bool Near(T a, T b, T tolerance) { return (a < b ? b - a : a - b) <= tolerance; }
};

// An axis-parallel box, which keeps the two corners that it was given. One whose `min` exceeds its
// `max` along an axis is flipped, and stays so: it says how a picture is turned. Exactly one state
// is empty: the one of Box2().
template <typename T>
struct Box2 {
  Vec2<T> min{std::numeric_limits<T>::max(), std::numeric_limits<T>::max()};
  Vec2<T> max{std::numeric_limits<T>::lowest(), std::numeric_limits<T>::lowest()};

  // The empty box.
  constexpr Box2() = default;
  constexpr Box2(T xMin, T yMin, T xMax, T yMax) : min(xMin, yMin), max(xMax, yMax) {}
  constexpr Box2(const Vec2<T>& minCorner, const Vec2<T>& maxCorner)
      : min(minCorner), max(maxCorner) {}

  constexpr bool IsEmpty() const { return *this == Box2(); }

  // Becomes the smallest box that holds the `count` points; the empty box if there are none. A NaN
  // coordinate is passed over; where a whole axis has no other, the bounds of that axis are NaN.
  //
  // REQUIRES: `points` points to `count` points; it may be null when count is 0.
  constexpr void BoundPoints(const Vec2<T>* points, std::size_t count) {
    *this = count == 0 ? Box2() : Box2(points[0], points[0]);
    for (std::size_t i = 1; i < count; ++i) {
      min = Lesser(min, points[i]);
      max = Greater(max, points[i]);
    }
  }

  // Becomes the smallest box that holds both boxes. An empty one adds nothing: the other is kept as
  // it is. A flipped one covers what lies between its two corners, as if it were not flipped, so
  // the union of two boxes that are not empty is never flipped.
  constexpr Box2& operator|=(const Box2& other) {
    if (other.IsEmpty()) return *this;
    if (IsEmpty()) return *this = other;
    const Vec2<T> corners[] = {min, max, other.min, other.max};
    BoundPoints(corners, 4);
    return *this;
  }

  // The point halfway between the corners. Halved before they are added: the sum may overflow.
  constexpr Vec2<T> Center() const {
    return {static_cast<T>(min.x / 2 + max.x / 2), static_cast<T>(min.y / 2 + max.y / 2)};
  }

  // Along each axis the way from `min` to `max`: negative where the box is flipped.
  constexpr T Width() const { return static_cast<T>(max.x - min.x); }
  constexpr T Height() const { return static_cast<T>(max.y - min.y); }

  // The four corners as a ring: (min x, min y), (max x, min y), (max x, max y), (min x, max y).
  constexpr void GetCorners(Vec2<T> corners[4]) const {
    corners[0] = min;
    corners[1] = {max.x, min.y};
    corners[2] = max;
    corners[3] = {min.x, max.y};
  }

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Box2&, const Box2&) = default;

 private:
  // NOLINTNEXTLINE(misc-redundant-expression): only a NaN differs from itself.
  static constexpr bool IsNan(T value) { return value != value; }

  static constexpr Vec2<T> Lesser(const Vec2<T>& a, const Vec2<T>& b) {
    return {b.x < a.x || IsNan(a.x) ? b.x : a.x, b.y < a.y || IsNan(a.y) ? b.y : a.y};
  }
  static constexpr Vec2<T> Greater(const Vec2<T>& a, const Vec2<T>& b) {
    return {b.x > a.x || IsNan(a.x) ? b.x : a.x, b.y > a.y || IsNan(a.y) ? b.y : a.y};
  }
};

using Vec2d = Vec2<double>;
using Vec3d = Vec3<double>;
using Box2d = Box2<double>;

// Whole arrays of these are read and written as sequences of numbers.
static_assert(sizeof(Vec2d) == 2 * sizeof(double) && std::is_trivially_copyable_v<Vec2d> &&
              std::is_standard_layout_v<Vec2d>);
static_assert(sizeof(Vec3d) == 3 * sizeof(double) && std::is_trivially_copyable_v<Vec3d> &&
              std::is_standard_layout_v<Vec3d>);
static_assert(sizeof(Box2d) == 4 * sizeof(double) && std::is_trivially_copyable_v<Box2d> &&
              std::is_standard_layout_v<Box2d>);

}  // namespace corvel
