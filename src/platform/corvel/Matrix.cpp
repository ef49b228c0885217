#include <corvel/Matrix.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace corvel {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

bool IsFinite(const Mat4d& matrix) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      if (!std::isfinite(matrix(row, column))) return false;
    }
  }
  return true;
}

// A matrix whose rows and columns were multiplied by powers of two, so that the largest element of
// each is near 1. That costs no digit, and lets one threshold tell a small unit of length from a
// singular matrix: coordinates in the millions stand beside scales of a millionth.
struct Balanced {
  Mat4d matrix;
  int rowExponent[4];     // row i was divided by 2 to this power
  int columnExponent[4];  // column i, likewise
};

// The power of two that brings the magnitude to [0.5, 1).
int Exponent(double magnitude) {
  int exponent = 0;
  (void)std::frexp(magnitude, &exponent);
  return exponent;
}

// Nothing if a row or a column is zero.
std::optional<Balanced> Balance(const Mat4d& matrix) {
  Balanced balanced{matrix, {}, {}};
  Mat4d& m = balanced.matrix;
  for (int row = 0; row < 4; ++row) {
    double largest = 0;
    for (int column = 0; column < 4; ++column) {
      largest = std::max(largest, std::fabs(m(row, column)));
    }
    if (largest == 0) return std::nullopt;
    balanced.rowExponent[row] = Exponent(largest);
    for (int column = 0; column < 4; ++column) {
      m(row, column) = std::ldexp(m(row, column), -balanced.rowExponent[row]);
    }
  }
  for (int column = 0; column < 4; ++column) {
    double largest = 0;
    for (int row = 0; row < 4; ++row) largest = std::max(largest, std::fabs(m(row, column)));
    if (largest == 0) return std::nullopt;
    balanced.columnExponent[column] = Exponent(largest);
    for (int row = 0; row < 4; ++row) {
      m(row, column) = std::ldexp(m(row, column), -balanced.columnExponent[column]);
    }
  }
  return balanced;
}

// A place in a matrix.
struct Place {
  int row;
  int column;
};

// The largest element in the rows and columns that have had no pivot yet.
Place FindPivot(const Mat4d& matrix, const bool (&rowDone)[4], const bool (&columnDone)[4]) {
  Place pivot{-1, -1};
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      if (rowDone[row] || columnDone[column]) continue;
      if (pivot.row < 0 ||
          std::fabs(matrix(row, column)) > std::fabs(matrix(pivot.row, pivot.column))) {
        pivot = {row, column};
      }
    }
  }
  return pivot;
}

// Makes the pivot 1 and the rest of its column 0 by operations on rows, which `inverse` undergoes
// too.
void Eliminate(Mat4d& matrix, Mat4d& inverse, Place pivot) {
  const double divisor = matrix(pivot.row, pivot.column);
  for (int column = 0; column < 4; ++column) {
    matrix(pivot.row, column) /= divisor;
    inverse(pivot.row, column) /= divisor;
  }
  for (int row = 0; row < 4; ++row) {
    const double factor = matrix(row, pivot.column);
    if (row == pivot.row || factor == 0) continue;
    for (int column = 0; column < 4; ++column) {
      matrix(row, column) -= factor * matrix(pivot.row, column);
      inverse(row, column) -= factor * inverse(pivot.row, column);
    }
  }
}

// Gauss-Jordan elimination with full pivoting. REQUIRES: elements near 1, as Balance makes them.
// Nothing if the matrix is singular but for rounding.
std::optional<Mat4d> InverseOfBalanced(Mat4d matrix) {
  // What remains of a singular matrix after up to three eliminations is their rounding errors.
  constexpr double kSmallestPivot = 4 * kEpsilon;
  Mat4d inverse;
  int pivotRow[4] = {};  // of each column
  bool rowDone[4] = {};
  bool columnDone[4] = {};
  for (int step = 0; step < 4; ++step) {
    const Place pivot = FindPivot(matrix, rowDone, columnDone);
    if (std::fabs(matrix(pivot.row, pivot.column)) <= kSmallestPivot) return std::nullopt;
    Eliminate(matrix, inverse, pivot);
    pivotRow[pivot.column] = pivot.row;
    rowDone[pivot.row] = true;
    columnDone[pivot.column] = true;
  }
  // The matrix is now a permutation of the identity's rows; undo it.
  Mat4d ordered;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      ordered(row, column) = inverse(pivotRow[row], column);
    }
  }
  return ordered;
}

// REQUIRES: finite. Nothing if the matrix is singular but for rounding.
std::optional<Mat4d> InverseOfAny(const Mat4d& matrix) {
  const std::optional<Balanced> balanced = Balance(matrix);
  if (!balanced) return std::nullopt;
  std::optional<Mat4d> inverse = InverseOfBalanced(balanced->matrix);
  if (!inverse) return std::nullopt;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      // Rows of the matrix are columns of its inverse.
      const int exponent = balanced->columnExponent[row] + balanced->rowExponent[column];
      (*inverse)(row, column) = std::ldexp((*inverse)(row, column), -exponent);
    }
  }
  return inverse;
}

bool IsAffine(const Mat4d& matrix) {
  return matrix(0, 3) == 0 && matrix(1, 3) == 0 && matrix(2, 3) == 0 && matrix(3, 3) == 1;
}

// The translation is undone apart from the rest, so that places far from the origin cost the rest
// no digits. REQUIRES: affine and finite.
std::optional<Mat4d> InverseOfAffine(const Mat4d& matrix) {
  Mat4d linear = matrix;
  for (int column = 0; column < 3; ++column) linear(3, column) = 0;
  std::optional<Mat4d> inverse = InverseOfAny(linear);
  if (!inverse) return std::nullopt;
  Mat4d& m = *inverse;
  for (int column = 0; column < 3; ++column) {
    m(3, column) =
        -(matrix(3, 0) * m(0, column) + matrix(3, 1) * m(1, column) + matrix(3, 2) * m(2, column));
  }
  return inverse;
}

// The rotation that a quaternion of any length stands for.
Mat4d RotationMatrix(const Quat4d& quaternion) {
  if (quaternion == Quat4d{0, 0, 0, 0}) return Mat4d();
  const double largest = std::max({std::fabs(quaternion.x), std::fabs(quaternion.y),
                                   std::fabs(quaternion.z), std::fabs(quaternion.w)});
  // Scaled to a largest component of 1, the square of the length neither over- nor underflows.
  const double x = quaternion.x / largest;
  const double y = quaternion.y / largest;
  const double z = quaternion.z / largest;
  const double w = quaternion.w / largest;
  const double s = 2 / (x * x + y * y + z * z + w * w);
  Mat4d matrix;
  matrix(0, 0) = 1 - s * (y * y + z * z);
  matrix(0, 1) = s * (x * y + w * z);
  matrix(0, 2) = s * (x * z - w * y);
  matrix(1, 0) = s * (x * y - w * z);
  matrix(1, 1) = 1 - s * (x * x + z * z);
  matrix(1, 2) = s * (y * z + w * x);
  matrix(2, 0) = s * (x * z + w * y);
  matrix(2, 1) = s * (y * z - w * x);
  matrix(2, 2) = 1 - s * (x * x + y * y);
  return matrix;
}

// One axis of a map: t goes to t * scale + offset.
struct AxisMap {
  double scale;
  double offset;
};

AxisMap MapEnds(double from0, double from1, double to0, double to1) {
  const double scale = from0 == from1 ? 0 : (to1 - to0) / (from1 - from0);
  return {scale, to0 - from0 * scale};
}

// Half of the sum, without overflow.
double Middle(double a, double b) { return a / 2 + b / 2; }

AxisMap MapMiddle(double from0, double from1, double to0, double to1, double scale) {
  return {scale, Middle(to0, to1) - Middle(from0, from1) * scale};
}

// The smaller scale of the axes that have one; 0 if none has.
double CommonScale(const Box2d& from, double xScale, double yScale) {
  if (from.min.x == from.max.x) return std::fabs(yScale);
  if (from.min.y == from.max.y) return std::fabs(xScale);
  return std::min(std::fabs(xScale), std::fabs(yScale));
}

Mat3d MapBox(const Box2d& from, const Box2d& to, bool keepAspect) {
  AxisMap x = MapEnds(from.min.x, from.max.x, to.min.x, to.max.x);
  AxisMap y = MapEnds(from.min.y, from.max.y, to.min.y, to.max.y);
  if (keepAspect) {
    const double scale = CommonScale(from, x.scale, y.scale);
    x = MapMiddle(from.min.x, from.max.x, to.min.x, to.max.x, std::copysign(scale, x.scale));
    y = MapMiddle(from.min.y, from.max.y, to.min.y, to.max.y, std::copysign(scale, y.scale));
  }
  return {x.scale, 0, 0, y.scale, x.offset, y.offset};
}

// Width and height of a picture in pixels and fractions. A product of four ordinary numbers may be
// beyond a double; a long double has, on most systems, the range for it.
struct Extents {
  long double width;
  long double height;
};

// Nothing if the linear part is singular but for rounding, or the result is not finite.
std::optional<Extents> ExtentsWithoutScale(const Box2d& source, const Mat4d& matrix) {
  const auto element = [&matrix](int row, int column) -> long double {
    return matrix(row, column);
  };
  const long double main = element(0, 0) * element(1, 1);
  const long double counter = element(0, 1) * element(1, 0);
  const long double determinant = std::fabs(main - counter);
  if (!(determinant > 4 * kEpsilon * (std::fabs(main) + std::fabs(counter)))) return std::nullopt;

  const long double width = std::fabs(static_cast<long double>(source.max.x) - source.min.x);
  const long double height = std::fabs(static_cast<long double>(source.max.y) - source.min.y);
  const long double scale = std::sqrt(determinant);
  const Extents extents = {
      (width * std::fabs(element(0, 0)) + height * std::fabs(element(1, 0))) / scale,
      (width * std::fabs(element(0, 1)) + height * std::fabs(element(1, 1))) / scale};
  if (!std::isfinite(extents.width) || !std::isfinite(extents.height)) return std::nullopt;
  return extents;
}

// REQUIRES: finite and within the range of unsigned.
unsigned WholePixels(long double extent) {
  return static_cast<unsigned>(std::max(std::round(extent), 1.0L));
}

}  // namespace

void Mat3d::Transform(const Vec2d* in, Vec2d* out, std::size_t count) const {
  const auto& m = elements_;
  for (std::size_t i = 0; i < count; ++i) {
    const Vec2d p = in[i];
    out[i] = {p.x * m[0][0] + p.y * m[1][0] + m[2][0], p.x * m[0][1] + p.y * m[1][1] + m[2][1]};
  }
}

Mat3d operator*(const Mat3d& first, const Mat3d& second) {
  const auto sum = [&](int row, int column) {
    return first(row, 0) * second(0, column) + first(row, 1) * second(1, column);
  };
  return {sum(0, 0),
          sum(0, 1),
          sum(1, 0),
          sum(1, 1),
          sum(2, 0) + second(2, 0),
          sum(2, 1) + second(2, 1)};
}

Mat4d operator*(const Mat4d& first, const Mat4d& second) {
  Mat4d product;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      product(row, column) = first(row, 0) * second(0, column) + first(row, 1) * second(1, column) +
                             first(row, 2) * second(2, column) + first(row, 3) * second(3, column);
    }
  }
  return product;
}

bool Mat4d::Inverse() {
  if (!IsFinite(*this)) return false;
  const std::optional<Mat4d> inverse =
      IsAffine(*this) ? InverseOfAffine(*this) : InverseOfAny(*this);
  if (!inverse || !IsFinite(*inverse)) return false;
  *this = *inverse;
  return true;
}

void Mat4d::Compose(const Mat4d& operation, Order order) {
  *this = order == Order::kPrepend ? operation * *this : *this * operation;
}

void Mat4d::Translate(double x, double y, double z, Order order) {
  Mat4d translation;
  translation(3, 0) = x;
  translation(3, 1) = y;
  translation(3, 2) = z;
  Compose(translation, order);
}

void Mat4d::Scale(double x, double y, double z, Order order) {
  Mat4d scale;
  scale(0, 0) = x;
  scale(1, 1) = y;
  scale(2, 2) = z;
  Compose(scale, order);
}

void Mat4d::RotateZ(double angle, Order order) {
  Mat4d rotation;
  rotation(0, 0) = rotation(1, 1) = std::cos(angle);
  rotation(0, 1) = std::sin(angle);
  rotation(1, 0) = -rotation(0, 1);
  Compose(rotation, order);
}

void Mat4d::Rotate(const Quat4d& rotation, Order order) {
  Compose(RotationMatrix(rotation), order);
}

void Mat4d::Transform(const Vec2d* in, Vec2d* out, std::size_t count) const {
  const auto& m = elements_;
  for (std::size_t i = 0; i < count; ++i) {
    const Vec2d p = in[i];
    out[i] = {p.x * m[0][0] + p.y * m[1][0] + m[3][0], p.x * m[0][1] + p.y * m[1][1] + m[3][1]};
  }
}

void Mat4d::Transform(const Vec3d* in, Vec3d* out, std::size_t count) const {
  const auto& m = elements_;
  for (std::size_t i = 0; i < count; ++i) {
    const Vec3d p = in[i];
    out[i] = {p.x * m[0][0] + p.y * m[1][0] + p.z * m[2][0] + m[3][0],
              p.x * m[0][1] + p.y * m[1][1] + p.z * m[2][1] + m[3][1],
              p.x * m[0][2] + p.y * m[1][2] + p.z * m[2][2] + m[3][2]};
  }
}

CRectTransformer::CRectTransformer(const Box2d& from, const Box2d& to, bool keepAspect)
    : map_(MapBox(from, to, keepAspect)) {}

void SuggestDestBmpSize(const Box2d& source, const Box2d& world, const Mat4d& matrix,
                        unsigned& width, unsigned& height) {
  constexpr long double kLongestSide = 32767;
  width = height = 0;
  if (world.IsEmpty() || source.IsEmpty() || !IsFinite(matrix)) return;
  std::optional<Extents> extents = ExtentsWithoutScale(source, matrix);
  if (!extents) return;
  const long double longer = std::max(extents->width, extents->height);
  if (std::round(longer) > kLongestSide) {
    // The ratio first: it is at most 1, while the factor to the limit may be too small for a
    // double.
    extents->width = extents->width / longer * kLongestSide;
    extents->height = extents->height / longer * kLongestSide;
  }
  width = WholePixels(extents->width);
  height = WholePixels(extents->height);
}

}  // namespace corvel
