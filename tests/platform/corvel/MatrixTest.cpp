#include <corvel/Matrix.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <ostream>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace corvel {

void PrintTo(const Mat4d& matrix, std::ostream* out) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) *out << matrix(row, column) << ' ';
    *out << "/ ";
  }
}

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotFinite[] = {kNan, kInfinity, -kInfinity};

// Each element tells its own place.
Mat4d Numbered() {
  Mat4d m;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) m(row, column) = 10 * (row + 1) + column + 1;
  }
  return m;
}

Mat4d Random(std::mt19937& random, double range = 10) {
  std::uniform_real_distribution<double> element(-range, range);
  Mat4d m;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) m(row, column) = element(random);
  }
  return m;
}

Mat4d RandomAffine(std::mt19937& random) {
  Mat4d m = Random(random);
  m(0, 3) = m(1, 3) = m(2, 3) = 0;
  m(3, 3) = 1;
  return m;
}

Mat4d NaiveProduct(const Mat4d& a, const Mat4d& b) {
  Mat4d product;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      double sum = 0;
      for (int k = 0; k < 4; ++k) sum += a(row, k) * b(k, column);
      product(row, column) = sum;
    }
  }
  return product;
}

void ExpectNear(const Mat4d& actual, const Mat4d& expected, double tolerance) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      EXPECT_NEAR(actual(row, column), expected(row, column), tolerance)
          << "row " << row << ", column " << column;
    }
  }
}

Vec2d Map(const Mat4d& m, Vec2d p) {
  m.Transform(&p, &p, 1);
  return p;
}

Vec3d Map(const Mat4d& m, Vec3d p) {
  m.Transform(&p, &p, 1);
  return p;
}

Vec2d Map(const Mat3d& m, Vec2d p) {
  m.Transform(&p, &p, 1);
  return p;
}

void ExpectNear(Vec2d actual, Vec2d expected, double tolerance) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
}

void ExpectNear(Vec3d actual, Vec3d expected, double tolerance) {
  EXPECT_TRUE(actual.Equals(expected, tolerance))
      << actual.x << ", " << actual.y << ", " << actual.z << " is not near " << expected.x << ", "
      << expected.y << ", " << expected.z;
}

TEST(Mat3d, StartsAsTheIdentity) {
  EXPECT_EQ(Mat3d(), Mat3d(1, 0, 0, 1, 0, 0));
  EXPECT_EQ(Map(Mat3d(), Vec2d(3, 4)), Vec2d(3, 4));
}

TEST(Mat3d, KeepsTheTranslationInItsLastRow) {
  const Mat3d m(1, 2, 3, 4, 5, 6);
  const double expected[3][3] = {{1, 2, 0}, {3, 4, 0}, {5, 6, 1}};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) EXPECT_EQ(m(row, column), expected[row][column]);
  }
}

TEST(Mat3d, MapsRowVectors) {
  EXPECT_EQ(Map(Mat3d(1, 2, 3, 4, 5, 6), Vec2d(10, 100)), Vec2d(315, 426));
}

TEST(Mat3d, AppliesTheFirstFactorFirst) {
  const Mat3d scale(2, 0, 0, 3, 0, 0);
  const Mat3d shift(1, 0, 0, 1, 10, 20);
  EXPECT_EQ(Map(scale * shift, Vec2d(1, 1)), Vec2d(12, 23));
  EXPECT_EQ(Map(shift * scale, Vec2d(1, 1)), Vec2d(22, 63));
}

TEST(Mat3d, MultipliesAsTheFourByFourMatricesDo) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> element(-9, 9);
  const auto next = [&] { return static_cast<double>(element(random)); };
  for (int round = 0; round < 500; ++round) {
    const Mat3d a(next(), next(), next(), next(), next(), next());
    const Mat3d b(next(), next(), next(), next(), next(), next());
    ASSERT_EQ(Mat4d(a * b), Mat4d(a) * Mat4d(b)) << "round " << round;
  }
}

TEST(Mat4d, StartsAsTheIdentity) {
  const Mat4d m;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) EXPECT_EQ(m(row, column), row == column ? 1 : 0);
  }
}

TEST(Mat4d, IsCopiedWhole) {
  const Mat4d m = Numbered();
  const Mat4d copy(m);  // NOLINT: the copy is the subject
  EXPECT_EQ(copy, m);
  EXPECT_NE(copy, Mat4d());
}

TEST(Mat4d, TakesTheTranslationOfAMat3dIntoTheLastRow) {
  Mat4d m = Numbered();
  m = Mat3d(1, 2, 3, 4, 5, 6);
  const double expected[4][4] = {{1, 2, 0, 0}, {3, 4, 0, 0}, {0, 0, 1, 0}, {5, 6, 0, 1}};
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) EXPECT_EQ(m(row, column), expected[row][column]);
  }
  EXPECT_EQ(Mat4d(Mat3d(1, 2, 3, 4, 5, 6)), m);
}

TEST(Mat4d, MapsThePlaneAsTheMat3dDid) {
  const Mat3d plane(1, 2, 3, 4, 5, 6);
  EXPECT_EQ(Map(Mat4d(plane), Vec2d(10, 100)), Map(plane, Vec2d(10, 100)));
  EXPECT_EQ(Map(Mat4d(plane), Vec3d(10, 100, 7)), Vec3d(315, 426, 7));
}

TEST(Mat4d, AppliesTheFirstFactorFirst) {
  Mat4d scale;
  scale.Scale(2, 3, 4, Order::kAppend);
  Mat4d shift;
  shift.Translate(10, 20, 30, Order::kAppend);
  EXPECT_EQ(Map(scale * shift, Vec3d(1, 1, 1)), Vec3d(12, 23, 34));
  EXPECT_EQ(Map(shift * scale, Vec3d(1, 1, 1)), Vec3d(22, 63, 124));
}

TEST(Mat4d, MultipliesRowsByColumns) {
  std::mt19937 random(2);
  for (int round = 0; round < 500; ++round) {
    const Mat4d a = Random(random);
    const Mat4d b = Random(random);
    ASSERT_EQ(a * b, NaiveProduct(a, b)) << "round " << round;
  }
  EXPECT_EQ(Numbered() * Mat4d(), Numbered());
  EXPECT_EQ(Mat4d() * Numbered(), Numbered());
}

TEST(Mat4d, MapsAProductAsOneMapAfterTheOther) {
  std::mt19937 random(3);
  for (int round = 0; round < 500; ++round) {
    const Mat4d a = RandomAffine(random);
    const Mat4d b = RandomAffine(random);
    const Vec3d p(1.5, -2.5, 3.5);
    ExpectNear(Map(a * b, p), Map(b, Map(a, p)), 1e-11);
  }
}

TEST(Mat4d, OrderValueOneAppendsAndZeroPrepends) {
  EXPECT_EQ(static_cast<int>(Order::kAppend), 1);
  EXPECT_EQ(static_cast<int>(Order::kPrepend), 0);
  Mat4d m;
  m.Scale(2, 3, 4, Order(1));
  m.Translate(10, 20, 30, Order(1));
  EXPECT_EQ(Map(m, Vec3d(1, 1, 1)), Vec3d(12, 23, 34));
  m = Mat4d();
  m.Scale(2, 3, 4, Order(0));
  m.Translate(10, 20, 30, Order(0));
  EXPECT_EQ(Map(m, Vec3d(1, 1, 1)), Vec3d(22, 63, 124));
}

TEST(Mat4d, ComposesEachOperationBeforeOrAfterWhatIsThere) {
  const Quat4d turn{0.1, -0.2, 0.3, 0.4};
  const struct {
    const char* name;
    void (*compose)(Mat4d&, Order);
  } operations[] = {
      {"Translate", [](Mat4d& m, Order order) { m.Translate(2, 3, 5, order); }},
      {"Scale", [](Mat4d& m, Order order) { m.Scale(2, -3, 0.5, order); }},
      {"RotateZ", [](Mat4d& m, Order order) { m.RotateZ(0.75, order); }},
      {"Rotate",
       [](Mat4d& m, Order order) {
         m.Rotate({0.1, -0.2, 0.3, 0.4}, order);
       }},
  };
  std::mt19937 random(4);
  for (const auto& operation : operations) {
    SCOPED_TRACE(operation.name);
    Mat4d alone;
    operation.compose(alone, Order::kAppend);
    EXPECT_NE(alone, Mat4d());
    for (int round = 0; round < 50; ++round) {
      const Mat4d before = Random(random);
      Mat4d m = before;
      operation.compose(m, Order::kAppend);
      ASSERT_EQ(m, NaiveProduct(before, alone));
      m = before;
      operation.compose(m, Order::kPrepend);
      ASSERT_EQ(m, NaiveProduct(alone, before));
    }
  }
  Mat4d defaulted = Numbered();
  defaulted.Rotate(turn);
  Mat4d appended = Numbered();
  appended.Rotate(turn, Order::kAppend);
  EXPECT_EQ(defaulted, appended);
}

TEST(Mat4d, TranslatesAndScalesEachAxis) {
  Mat4d m;
  m.Translate(1, 2, 3, Order::kAppend);
  EXPECT_EQ(Map(m, Vec3d(10, 20, 30)), Vec3d(11, 22, 33));
  EXPECT_EQ(Map(m, Vec2d(10, 20)), Vec2d(11, 22));
  m = Mat4d();
  m.Scale(2, 3, 0, Order::kAppend);
  EXPECT_EQ(Map(m, Vec3d(10, 20, 30)), Vec3d(20, 60, 0));
  EXPECT_EQ(Map(m, Vec2d(10, 20)), Vec2d(20, 60));
}

TEST(Mat4d, RotatesCounterClockwiseInRadians) {
  Mat4d quarter;
  quarter.RotateZ(kPi / 2, Order::kAppend);
  ExpectNear(Map(quarter, Vec2d(1, 0)), Vec2d(0, 1), 1e-15);
  ExpectNear(Map(quarter, Vec2d(0, 1)), Vec2d(-1, 0), 1e-15);
  ExpectNear(Map(quarter, Vec3d(1, 0, 5)), Vec3d(0, 1, 5), 1e-15);
  Mat4d sixth;
  sixth.RotateZ(kPi / 6, Order::kAppend);
  ExpectNear(Map(sixth, Vec2d(2, 0)), Vec2d(std::sqrt(3.0), 1), 1e-15);
}

TEST(Mat4d, RotatesAboutTheAxisOfAQuaternion) {
  const double s = std::sqrt(0.5);  // sine and cosine of half a quarter turn
  const struct {
    const char* name;
    Quat4d rotation;
    Vec3d point;
    Vec3d expected;
  } cases[] = {
      {"about x: y goes to z", {s, 0, 0, s}, {1, 2, 3}, {1, -3, 2}},
      {"about y: z goes to x", {0, s, 0, s}, {1, 2, 3}, {3, 2, -1}},
      {"about z: x goes to y", {0, 0, s, s}, {1, 2, 3}, {-2, 1, 3}},
      {"half a turn about z", {0, 0, 1, 0}, {1, 2, 3}, {-1, -2, 3}},
      {"a third of a turn about (1, 1, 1)", {1, 1, 1, 1}, {1, 2, 3}, {3, 1, 2}},
      {"no rotation", {0, 0, 0, 1}, {1, 2, 3}, {1, 2, 3}},
      {"no rotation, negative", {0, 0, 0, -2}, {1, 2, 3}, {1, 2, 3}},
      {"zero", {0, 0, 0, 0}, {1, 2, 3}, {1, 2, 3}},
      {"long", {0, 0, 1e300, 1e300}, {1, 2, 3}, {-2, 1, 3}},
      {"short", {0, 0, 5e-324, 5e-324}, {1, 2, 3}, {-2, 1, 3}},
      {"the opposite quaternion is the same rotation", {0, 0, -s, -s}, {1, 2, 3}, {-2, 1, 3}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Mat4d m;
    m.Rotate(c.rotation);
    ExpectNear(Map(m, c.point), c.expected, 1e-14);
  }
}

TEST(Mat4d, RotatesByAQuaternionAboutZAsByTheAngle) {
  for (double angle = -7; angle < 7; angle += 0.37) {
    Mat4d quaternion;
    quaternion.Rotate({0, 0, std::sin(angle / 2), std::cos(angle / 2)});
    Mat4d plain;
    plain.RotateZ(angle, Order::kAppend);
    ExpectNear(quaternion, plain, 1e-14);
  }
}

// The product q v conj(q) of quaternions, written out, for a unit q.
Vec3d TurnByDefinition(const Quat4d& q, const Vec3d& v) {
  const auto product = [](const Quat4d& a, const Quat4d& b) {
    return Quat4d{a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
                  a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
                  a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
                  a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
  };
  const Quat4d turned = product(product(q, {v.x, v.y, v.z, 0}), {-q.x, -q.y, -q.z, q.w});
  return {turned.x, turned.y, turned.z};
}

TEST(Mat4d, RotatesByAnyQuaternionAsItsUnitQuaternionIsDefinedTo) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> component(-3, 3);
  const auto next = [&] { return component(random); };
  for (int round = 0; round < 1'000; ++round) {
    const Quat4d q{next(), next(), next(), next()};
    const double length = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    const Quat4d unit{q.x / length, q.y / length, q.z / length, q.w / length};
    const Vec3d p(next(), next(), next());
    Mat4d m;
    m.Rotate(q);
    ExpectNear(Map(m, p), TurnByDefinition(unit, p), 1e-13);
  }
}

TEST(Mat4d, AQuaternionThatIsNotFiniteMakesEveryCoordinateNan) {
  for (const double bad : kNotFinite) {
    for (const Quat4d& q :
         {Quat4d{bad, 0, 0, 0}, Quat4d{0, bad, 0, 1}, Quat4d{0, 0, bad, 0}, Quat4d{1, 2, 3, bad}}) {
      Mat4d m;
      m.Rotate(q);
      const Vec3d p = Map(m, Vec3d(1, 2, 3));
      EXPECT_TRUE(std::isnan(p.x) && std::isnan(p.y) && std::isnan(p.z));
    }
  }
}

TEST(Quat4d, StartsAsNoRotationAndIsStoredInOrder) {
  EXPECT_EQ(Quat4d(), (Quat4d{0, 0, 0, 1}));
  EXPECT_EQ(offsetof(Quat4d, x), 0U);
  EXPECT_EQ(offsetof(Quat4d, y), 8U);
  EXPECT_EQ(offsetof(Quat4d, z), 16U);
  EXPECT_EQ(offsetof(Quat4d, w), 24U);
}

TEST(Mat4d, MapsPointsOfThePlaneAtHeightZeroAndDropsTheirHeight) {
  // x * 11 + y * 21 + 41 and x * 12 + y * 22 + 42
  EXPECT_EQ(Map(Numbered(), Vec2d(1, 100)), Vec2d(2152, 2254));
}

TEST(Mat4d, MapsPointsOfSpace) {
  EXPECT_EQ(Map(Numbered(), Vec3d(1, 100, 1000)), Vec3d(33152, 34254, 35356));
}

TEST(Mat4d, NeverReadsTheLastColumnWhenItMaps) {
  Mat4d m = Numbered();
  for (int row = 0; row < 4; ++row) m(row, 3) = kNan;
  EXPECT_EQ(Map(m, Vec2d(1, 100)), Vec2d(2152, 2254));
  EXPECT_EQ(Map(m, Vec3d(1, 100, 1000)), Vec3d(33152, 34254, 35356));
}

TEST(Mat4d, MapsArraysInPlaceAsElsewhere) {
  std::mt19937 random(6);
  const Mat4d m = RandomAffine(random);
  std::vector<Vec2d> flat;
  std::vector<Vec3d> solid;
  for (int i = 0; i < 17; ++i) {
    flat.push_back(Vec2d(i, 100 - i));
    solid.push_back(Vec3d(i, 100 - i, i * i));
  }
  std::vector<Vec2d> flatOut(flat.size());
  m.Transform(flat.data(), flatOut.data(), flat.size());
  m.Transform(flat.data(), flat.data(), flat.size());
  EXPECT_EQ(flat, flatOut);
  EXPECT_EQ(flat[16], Map(m, Vec2d(16, 84)));
  std::vector<Vec3d> solidOut(solid.size());
  m.Transform(solid.data(), solidOut.data(), solid.size());
  m.Transform(solid.data(), solid.data(), solid.size());
  EXPECT_EQ(solid, solidOut);
  EXPECT_EQ(solid[16], Map(m, Vec3d(16, 84, 256)));
}

TEST(Mat4d, MapsNoPointsAndNoMoreThanAsked) {
  Numbered().Transform(static_cast<const Vec2d*>(nullptr), nullptr, 0);
  Numbered().Transform(static_cast<const Vec3d*>(nullptr), nullptr, 0);
  Vec2d points[] = {{1, 2}, {3, 4}};
  Numbered().Transform(points, points, 1);
  EXPECT_NE(points[0], Vec2d(1, 2));
  EXPECT_EQ(points[1], Vec2d(3, 4));
}

TEST(Mat4dInverse, UndoesTheMap) {
  std::mt19937 random(8);
  for (int round = 0; round < 2'000; ++round) {
    const Mat4d m = round % 2 == 0 ? Random(random) : RandomAffine(random);
    Mat4d inverse = m;
    ASSERT_TRUE(inverse.Inverse()) << "round " << round;
    double largest = 1;
    for (int i = 0; i < 16; ++i) largest = std::max(largest, std::fabs(inverse(i / 4, i % 4)));
    // Rounding grows with the elements that cancel.
    SCOPED_TRACE(testing::Message() << "round " << round);
    ExpectNear(m * inverse, Mat4d(), 1e-13 * largest * largest);
    ExpectNear(inverse * m, Mat4d(), 1e-13 * largest * largest);
  }
}

TEST(Mat4dInverse, IsExactForWhatNeedsNoRounding) {
  Mat4d m;
  m.Scale(2, -4, 0.5, Order::kAppend);
  m.Translate(3, 5, -7, Order::kAppend);
  Mat4d expected;
  expected.Translate(-3, -5, 7, Order::kAppend);
  expected.Scale(0.5, -0.25, 2, Order::kAppend);
  ASSERT_TRUE(m.Inverse());
  EXPECT_EQ(m, expected);
  Mat4d identity;
  ASSERT_TRUE(identity.Inverse());
  EXPECT_EQ(identity, Mat4d());
}

TEST(Mat4dInverse, NeedsNoLargeDiagonal) {
  // Every permutation of the identity's rows, the inverse of which is its transpose.
  std::array<int, 4> place = {0, 1, 2, 3};
  do {
    Mat4d m;
    Mat4d transpose;
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) {
        const double element = place[static_cast<std::size_t>(row)] == column ? 1 : 0;
        m(row, column) = element;
        transpose(column, row) = element;
      }
    }
    ASSERT_TRUE(m.Inverse());
    EXPECT_EQ(m, transpose);
  } while (std::next_permutation(place.begin(), place.end()));
}

TEST(Mat4dInverse, WorksWhateverTheUnitsOfTheAxes) {
  const double units[] = {1e-300, 1e-20, 1, 1e20, 1e300};
  for (const double x : units) {
    for (const double y : units) {
      SCOPED_TRACE(testing::Message() << "x " << x << ", y " << y);
      Mat4d m;
      m.Scale(x, y, 1, Order::kAppend);
      m.Translate(x, -y, 1e6, Order::kAppend);
      ASSERT_TRUE(m.Inverse());
      const Vec3d p = Map(m, Vec3d(3 * x, 2 * y, 1e6 + 5));
      ExpectNear(p, Vec3d(2, 3, 5), 1e-9);
    }
  }
}

TEST(Mat4dInverse, RefusesSingularMatricesAndLeavesThem) {
  Mat4d zero;
  zero.Scale(0, 0, 0, Order::kAppend);
  zero(3, 3) = 0;
  Mat4d flat;
  flat.Scale(1, -1, 0, Order::kAppend);
  Mat4d sameRows = Numbered();
  for (int column = 0; column < 4; ++column) sameRows(2, column) = sameRows(0, column);
  Mat4d noColumn;
  noColumn(2, 2) = 0;
  noColumn(2, 1) = 1;
  // Rows in arithmetic progression: rank 2, but no element is 0.
  const Mat4d progression = Numbered();
  const Mat4d* const singular[] = {&zero, &flat, &sameRows, &noColumn, &progression};
  for (const Mat4d* m : singular) {
    Mat4d inverse = *m;
    EXPECT_FALSE(inverse.Inverse());
    EXPECT_EQ(inverse, *m);
  }
}

TEST(Mat4dInverse, RefusesWhatIsSingularButForRounding) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> factor(-1, 1);
  for (int round = 0; round < 2'000; ++round) {
    Mat4d m = Random(random);
    const double f0 = factor(random);
    const double f1 = factor(random);
    for (int column = 0; column < 4; ++column) {
      m(3, column) = f0 * m(0, column) + f1 * m(1, column);
    }
    const Mat4d before = m;
    ASSERT_FALSE(m.Inverse()) << "round " << round;
    ASSERT_EQ(m, before) << "round " << round;
  }
}

TEST(Mat4dInverse, RefusesElementsThatAreNotFinite) {
  for (const double bad : kNotFinite) {
    for (int place = 0; place < 16; ++place) {
      Mat4d m;
      m(place / 4, place % 4) = bad;
      EXPECT_FALSE(m.Inverse()) << bad << " at " << place;
      for (int other = 0; other < 16; ++other) {
        if (other == place) {
          EXPECT_FALSE(std::isfinite(m(other / 4, other % 4)));
        } else {
          EXPECT_EQ(m(other / 4, other % 4), other % 5 == 0 ? 1 : 0);
        }
      }
    }
  }
}

TEST(Mat4dInverse, RefusesAnInverseBeyondTheRangeOfDoubles) {
  Mat4d m;
  m.Scale(1e-310, 1, 1, Order::kAppend);
  const Mat4d before = m;
  EXPECT_FALSE(m.Inverse());
  EXPECT_EQ(m, before);
}

TEST(CRectTransformer, MapsCornersToCornersAlongEachAxis) {
  const struct {
    const char* name;
    Box2d from;
    Box2d to;
  } cases[] = {
      {"plain", {0, 0, 10, 20}, {100, 200, 300, 1000}},
      {"flipped to", {0, 0, 10, 20}, {0, 100, 200, 0}},
      {"flipped from", {0, 20, 10, 0}, {100, 200, 300, 1000}},
      {"both flipped alike", {10, 20, 0, 0}, {300, 1000, 100, 200}},
      {"x of from, y of to flipped", {10, 0, 0, 20}, {1, 8, 3, 4}},
      {"onto itself", {-3, -4, 5, 6}, {-3, -4, 5, 6}},
      {"onto a segment", {0, 0, 2, 4}, {7, 1, 7, 9}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Mat3d m = CRectTransformer(c.from, c.to, false);
    EXPECT_EQ(Map(m, c.from.min), c.to.min);
    EXPECT_EQ(Map(m, c.from.max), c.to.max);
    EXPECT_EQ(Map(m, c.from.Center()), c.to.Center());
    EXPECT_EQ(m(0, 1), 0);
    EXPECT_EQ(m(1, 0), 0);
  }
}

TEST(CRectTransformer, BecomesAMat4d) {
  Mat4d m;
  m = CRectTransformer({0, 0, 2, 2}, {10, 20, 14, 26}, false);
  EXPECT_EQ(Map(m, Vec2d(1, 1)), Vec2d(12, 23));
}

TEST(CRectTransformer, GivesScaleZeroToAnAxisWithoutExtent) {
  const Mat3d flat = CRectTransformer({0, 5, 10, 5}, {100, 200, 300, 400}, false);
  EXPECT_EQ(flat, Mat3d(20, 0, 0, 0, 100, 200));
  EXPECT_EQ(Map(flat, Vec2d(10, 5)), Vec2d(300, 200));
  const Mat3d upright = CRectTransformer({7, 0, 7, 10}, {100, 200, 300, 400}, false);
  EXPECT_EQ(upright, Mat3d(0, 0, 0, 20, 100, 200));
  const Mat3d point = CRectTransformer({7, 8, 7, 8}, {100, 200, 300, 400}, false);
  EXPECT_EQ(Map(point, Vec2d(7, 8)), Vec2d(100, 200));
}

TEST(CRectTransformer, MapsRandomBoxesWithinRounding) {
  std::mt19937 random(10);
  std::uniform_real_distribution<double> coordinate(-1000, 1000);
  const auto next = [&] { return coordinate(random); };
  for (int round = 0; round < 1'000; ++round) {
    const Box2d from(next(), next(), next(), next());
    const Box2d to(next(), next(), next(), next());
    const Mat3d m = CRectTransformer(from, to, false);
    const double tolerance = 1e-12 * (1 + std::fabs(m(0, 0)) + std::fabs(m(1, 1))) * 1000;
    SCOPED_TRACE(testing::Message() << "round " << round);
    ExpectNear(Map(m, from.min), to.min, tolerance);
    ExpectNear(Map(m, from.max), to.max, tolerance);
  }
}

TEST(CRectTransformer, KeepsTheAspectCentredInside) {
  const struct {
    const char* name;
    Box2d from;
    Box2d to;
    Vec2d min;  // where the corners of `from` go
    Vec2d max;
  } cases[] = {
      {"height limits", {0, 0, 10, 10}, {0, 0, 40, 20}, {10, 0}, {30, 20}},
      {"width limits", {0, 0, 10, 10}, {0, 0, 20, 60}, {0, 20}, {20, 40}},
      {"same shape", {0, 0, 10, 5}, {100, 100, 120, 110}, {100, 100}, {120, 110}},
      {"y of to flipped", {0, 0, 10, 10}, {0, 20, 40, 0}, {10, 20}, {30, 0}},
      {"x of from flipped", {10, 0, 0, 10}, {0, 0, 40, 20}, {10, 0}, {30, 20}},
      {"from without height", {0, 5, 10, 5}, {0, 0, 40, 20}, {0, 10}, {40, 10}},
      {"from without width", {5, 0, 5, 10}, {0, 0, 40, 20}, {20, 0}, {20, 20}},
      {"from a point", {5, 5, 5, 5}, {0, 0, 40, 20}, {20, 10}, {20, 10}},
      {"to without height", {0, 0, 10, 10}, {0, 7, 40, 7}, {20, 7}, {20, 7}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Mat3d m = CRectTransformer(c.from, c.to, true);
    EXPECT_EQ(Map(m, c.from.min), c.min);
    EXPECT_EQ(Map(m, c.from.max), c.max);
    EXPECT_EQ(std::fabs(m(0, 0)), std::fabs(m(1, 1)));
  }
}

}  // namespace
}  // namespace corvel
