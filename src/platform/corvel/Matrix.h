// Affine maps of the plane and of space as matrices that act on row vectors: a point (x, y, z) goes
// to (x, y, z, 1) times the matrix. The translation is the last row, and A * B applies A first.
//
//   Mat4d turned;  // the identity
//   turned.Translate(-2, -1, 0, Order::kAppend);
//   turned.RotateZ(std::numbers::pi / 2, Order::kAppend);
//   turned.Translate(2, 1, 0, Order::kAppend);  // a quarter turn about (2, 1)
//   Vec2d point(3, 1);
//   turned.Transform(&point, &point, 1);  // (2, 2), but for rounding
#pragma once

#include <cstddef>
#include <type_traits>

#include <corvel/Export.h>
#include <corvel/Geometry.h>

namespace corvel {

// Where a new operation goes among those that a matrix is already made of.
enum class Order : int {
  kPrepend = 0,  // applied before them
  kAppend = 1,   // applied after them
};

// A rotation of space as a quaternion x i + y j + z k + w. Its length does not matter: it stands
// for the unit quaternion of its direction, and zero for no rotation.
//
// A turn by an angle about a unit axis (a, b, c), counter-clockwise for who looks against the axis:
// with s the sine and w the cosine of half the angle it is {a * s, b * s, c * s, w}.
struct Quat4d {
  double x = 0;
  double y = 0;
  double z = 0;
  double w = 1;

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Quat4d&, const Quat4d&) = default;
};

// An affine map of the plane: (x, y, 1) times the matrix, whose last column is 0, 0, 1.
class CORVEL_API Mat3d {
 public:
  // The identity.
  constexpr Mat3d() = default;

  // (x, y) goes to (x * xx + y * yx + dx, x * xy + y * yy + dy).
  constexpr Mat3d(double xx, double xy, double yx, double yy, double dx, double dy)
      : elements_{{xx, xy, 0}, {yx, yy, 0}, {dx, dy, 1}} {}

  // REQUIRES: row and column are 0 to 2.
  constexpr double operator()(int row, int column) const { return elements_[row][column]; }

  // Maps `count` points; `in` and `out` are the same array or do not overlap.
  void Transform(const Vec2d* in, Vec2d* out, std::size_t count) const;

  // The map that applies `first`, then `second`.
  friend CORVEL_API Mat3d operator*(const Mat3d& first, const Mat3d& second);

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Mat3d&, const Mat3d&) = default;

 private:
  double elements_[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
};

// An affine map of space, or a 4 by 4 matrix with any elements.
class CORVEL_API Mat4d {
 public:
  // The identity.
  constexpr Mat4d() = default;

  // The map of the plane, with z left as it is. Its translation becomes that of the last row.
  constexpr Mat4d(const Mat3d& plane)  // NOLINT: nothing is lost
      : elements_{{plane(0, 0), plane(0, 1), 0, 0},
                  {plane(1, 0), plane(1, 1), 0, 0},
                  {0, 0, 1, 0},
                  {plane(2, 0), plane(2, 1), 0, 1}} {}
  // Also for what converts to a Mat3d, as a CRectTransformer does.
  constexpr Mat4d& operator=(const Mat3d& plane) { return *this = Mat4d(plane); }

  // REQUIRES: row and column are 0 to 3.
  constexpr double operator()(int row, int column) const { return elements_[row][column]; }
  constexpr double& operator()(int row, int column) { return elements_[row][column]; }

  // Becomes its inverse. Returns false, and leaves the matrix as it is, when there is none in
  // doubles: the matrix is singular but for rounding, an element is not finite, or an element of
  // the inverse is too large.
  bool Inverse();

  // Each adds one operation before or after those that the matrix is made of.
  void Translate(double x, double y, double z, Order order);
  void Scale(double x, double y, double z, Order order);
  // About the z axis by an angle in radians, from the x axis toward the y axis.
  void RotateZ(double angle, Order order);
  // A quaternion that is not finite makes every mapped coordinate NaN.
  void Rotate(const Quat4d& rotation, Order order = Order::kAppend);

  // Map `count` points; `in` and `out` are the same array or do not overlap. A point of the plane
  // has z = 0, and the z that it is mapped to is dropped.
  //
  // Maps are affine: the last column of the matrix is not read, and nothing is divided by it.
  void Transform(const Vec2d* in, Vec2d* out, std::size_t count) const;
  void Transform(const Vec3d* in, Vec3d* out, std::size_t count) const;

  // The map that applies `first`, then `second`: the product of the matrices, all columns included.
  friend CORVEL_API Mat4d operator*(const Mat4d& first, const Mat4d& second);

  // Exact; a NaN equals nothing.
  friend constexpr bool operator==(const Mat4d&, const Mat4d&) = default;

 private:
  void Compose(const Mat4d& operation, Order order);

  double elements_[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

static_assert(sizeof(Quat4d) == 4 * sizeof(double) && std::is_trivially_copyable_v<Quat4d> &&
              std::is_aggregate_v<Quat4d>);
static_assert(sizeof(Mat3d) == 9 * sizeof(double) && std::is_trivially_copyable_v<Mat3d>);
static_assert(sizeof(Mat4d) == 16 * sizeof(double) && std::is_trivially_copyable_v<Mat4d>);

// The map of one rectangle onto another, axis by axis, without rotation.
//
//   // Drawing units, y up, to the pixels of a picture of 200 by 100, row 0 at the top:
//   const Mat3d toPixels = CRectTransformer(drawing, Box2d(0, 100, 200, 0), false);
class CORVEL_API CRectTransformer {
 public:
  // Without `keepAspect` the first corner of `from` goes to the first of `to` and the second to the
  // second: where just one of the two is flipped, the map mirrors. An axis along which `from` has
  // no extent gets scale 0, and all of it goes to the first corner of `to`.
  //
  // With `keepAspect` both axes get the smaller of their two scales, and the centre goes to the
  // centre: `from` comes to lie inside `to`, as large as its shape allows. Mirroring is as without.
  // An axis along which `from` has no extent sets no limit; if neither has one, the scale is 0.
  CRectTransformer(const Box2d& from, const Box2d& to, bool keepAspect);

  operator Mat3d() const { return map_; }  // NOLINT: a map of rectangles is an affine map

 private:
  Mat3d map_;
};

// Suggests how many pixels a bitmap needs that shows the picture `source` (in pixels) after
// `matrix` has placed it in the box `world`, at about the picture's own resolution.
//
// They are the extents of the source box under the linear part of the matrix (its upper left 2 by
// 2 elements), divided by the square root of the part's absolute determinant, so that the scale of
// the matrix does not count, only its rotation, shear and stretch. They are rounded, and at least
// 1. If one exceeds 32767, both shrink by the factor that brings the larger to 32767.
//
//   // A picture of 300 by 200 pixels, turned by 45 degrees: 354 by 354.
//
// Both are 0, and nothing is to be drawn, when `world` or `source` is empty, when an element of the
// matrix or a bound of the source is not finite, or when the linear part is singular but for
// rounding.
CORVEL_API void SuggestDestBmpSize(const Box2d& source, const Box2d& world, const Mat4d& matrix,
                                   unsigned& width, unsigned& height);

}  // namespace corvel
