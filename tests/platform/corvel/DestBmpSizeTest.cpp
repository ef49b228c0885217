#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <numbers>
#include <ostream>
#include <random>

#include <gtest/gtest.h>

#include <corvel/Matrix.h>

namespace corvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotFinite[] = {kNan, kInfinity, -kInfinity};

Mat4d Random(std::mt19937& random, double range = 10) {
  std::uniform_real_distribution<double> element(-range, range);
  Mat4d m;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) m(row, column) = element(random);
  }
  return m;
}

struct Size {
  unsigned width;
  unsigned height;

  friend bool operator==(const Size&, const Size&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Size& size) {
    return out << size.width << " x " << size.height;
  }
};

constexpr Size kNothing = {0, 0};
const Box2d kWorld(0, 0, 1, 1);

Size Suggest(const Box2d& source, const Mat4d& matrix, const Box2d& world = kWorld) {
  Size size{77, 88};
  SuggestDestBmpSize(source, world, matrix, size.width, size.height);
  return size;
}

Mat4d Linear(double xx, double xy, double yx, double yy) {
  return Mat4d(Mat3d(xx, xy, yx, yy, 0, 0));
}

Mat4d Turned(double degrees) {
  Mat4d m;
  m.RotateZ(degrees * kPi / 180, Order::kAppend);
  return m;
}

TEST(SuggestDestBmpSize, IsThatOfThePictureWhereItIsOnlyMovedOrScaledEvenly) {
  const Box2d picture(0, 0, 300, 200);
  EXPECT_EQ(Suggest(picture, Mat4d()), (Size{300, 200}));
  Mat4d moved;
  moved.Scale(1e-7, 1e-7, 1, Order::kAppend);
  moved.Translate(5e6, -4e6, 3, Order::kAppend);
  EXPECT_EQ(Suggest(picture, moved), (Size{300, 200}));
}

TEST(SuggestDestBmpSize, GrowsByRotationShearAndStretch) {
  const Box2d picture(0, 0, 300, 200);
  const struct {
    const char* name;
    Mat4d matrix;
    Size expected;
  } cases[] = {
      {"45 degrees", Turned(45), {354, 354}},  // 500 / sqrt(2) = 353.55
      {"90 degrees", Turned(90), {200, 300}},
      {"30 degrees", Turned(30), {360, 323}},  // 359.81, 323.21
      {"mirrored", Linear(-1, 0, 0, 1), {300, 200}},
      {"sheared along x", Linear(1, 0, 0.5, 1), {400, 200}},
      {"sheared along y", Linear(1, -0.5, 0, 1), {300, 350}},
      {"four times as wide", Linear(4, 0, 0, 1), {600, 100}},
      {"nine times as high, mirrored", Linear(1, 0, 0, -9), {100, 600}},
      {"axes exchanged", Linear(0, 2, 2, 0), {200, 300}},
  };
  for (const auto& c : cases) EXPECT_EQ(Suggest(picture, c.matrix), c.expected) << c.name;
}

TEST(SuggestDestBmpSize, BoundsTheFourCornersUnderAnyLinearPart) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> element(-5, 5);
  std::uniform_real_distribution<double> coordinate(-400, 400);
  const auto next = [&] { return element(random); };
  const auto place = [&] { return coordinate(random); };
  for (int round = 0; round < 2'000; ++round) {
    Mat4d m = Random(random);
    const Box2d source(place(), place(), place(), place());
    Vec2d corners[4];
    source.GetCorners(corners);
    const Mat3d linear(m(0, 0), m(0, 1), m(1, 0), m(1, 1), 0, 0);
    linear.Transform(corners, corners, 4);
    Box2d bounds;
    bounds.BoundPoints(corners, 4);
    const double scale = std::sqrt(std::fabs(m(0, 0) * m(1, 1) - m(0, 1) * m(1, 0)));
    const double width = bounds.Width() / scale;
    const double height = bounds.Height() / scale;
    if (std::max(width, height) > 32767) continue;
    const Size size = Suggest(source, m, Box2d(next(), next(), next(), next()));
    ASSERT_NEAR(size.width, std::max(width, 1.0), 0.5 + 1e-6) << "round " << round;
    ASSERT_NEAR(size.height, std::max(height, 1.0), 0.5 + 1e-6) << "round " << round;
  }
}

TEST(SuggestDestBmpSize, TakesTheExtentsOfAFlippedSource) {
  EXPECT_EQ(Suggest(Box2d(0, 200, 300, 0), Turned(45)), (Size{354, 354}));
  EXPECT_EQ(Suggest(Box2d(300, 0, 0, 200), Mat4d()), (Size{300, 200}));
}

TEST(SuggestDestBmpSize, CountsExtentsNotPlaces) {
  EXPECT_EQ(Suggest(Box2d(1000, -500, 1300, -300), Turned(45)), (Size{354, 354}));
}

TEST(SuggestDestBmpSize, RoundsToTheNearestPixel) {
  EXPECT_EQ(Suggest(Box2d(0, 0, 10.5, 20.49), Mat4d()), (Size{11, 20}));
}

TEST(SuggestDestBmpSize, IsAtLeastOnePixel) {
  EXPECT_EQ(Suggest(Box2d(0, 0, 0.1, 40), Mat4d()), (Size{1, 40}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 40, 0), Mat4d()), (Size{40, 1}));
  EXPECT_EQ(Suggest(Box2d(5, 5, 5, 5), Mat4d()), (Size{1, 1}));
}

TEST(SuggestDestBmpSize, ShrinksBothSidesToTheLongestOne) {
  EXPECT_EQ(Suggest(Box2d(0, 0, 32767, 5), Mat4d()), (Size{32767, 5}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 32767.4, 5), Mat4d()), (Size{32767, 5}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 32768, 32768), Mat4d()), (Size{32767, 32767}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 65534, 1000), Mat4d()), (Size{32767, 500}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 1000, 327670), Mat4d()), (Size{100, 32767}));
  EXPECT_EQ(Suggest(Box2d(0, 0, 1e9, 1), Mat4d()), (Size{32767, 1}));
}

TEST(SuggestDestBmpSize, TakesHugeAndTinyNumbers) {
  const struct {
    const char* name;
    Box2d source;
    Mat4d matrix;
    Size expected;
  } cases[] = {
      {"huge scale", {0, 0, 300, 200}, Linear(1e300, 0, 0, 1e300), {300, 200}},
      {"tiny scale", {0, 0, 300, 200}, Linear(1e-300, 0, 0, 1e-300), {300, 200}},
      {"opposite scales", {0, 0, 300, 200}, Linear(1e200, 0, 0, 1e-200), {32767, 1}},
      {"scales that make up for the shape",
       {0, 0, 1e150, 1e-150},
       Linear(1e-150, 0, 0, 1e150),
       {1, 1}},
      {"whole range", {-DBL_MAX, -DBL_MAX, DBL_MAX, DBL_MAX}, Mat4d(), {32767, 32767}},
      {"whole range, half as high", {-DBL_MAX, 0, DBL_MAX, DBL_MAX}, Mat4d(), {32767, 16384}},
      {"smallest doubles", {0, 0, 5e-324, 5e-324}, Mat4d(), {1, 1}},
  };
  for (const auto& c : cases) EXPECT_EQ(Suggest(c.source, c.matrix), c.expected) << c.name;
}

TEST(SuggestDestBmpSize, IsNothingForASingularLinearPart) {
  const struct {
    const char* name;
    Mat4d matrix;
  } cases[] = {
      {"zero", Linear(0, 0, 0, 0)},
      {"no width", Linear(0, 0, 0, 1)},
      {"no height", Linear(1, 0, 0, 0)},
      {"onto a slanted line", Linear(0.1, 0.2, 0.3, 0.6)},
      {"tiny, onto a line", Linear(1e-300, 2e-300, 2e-300, 4e-300)},
  };
  for (const auto& c : cases) EXPECT_EQ(Suggest(Box2d(0, 0, 9, 9), c.matrix), kNothing) << c.name;
}

TEST(SuggestDestBmpSize, IsNothingForWhatIsSingularButForRounding) {
  for (double angle = 1; angle < 360; angle += 7) {
    Mat4d m = Turned(angle);
    m.Scale(1, 0, 1, Order::kAppend);
    m.RotateZ(angle / 3, Order::kAppend);
    EXPECT_EQ(Suggest(Box2d(0, 0, 300, 200), m), kNothing) << angle;
  }
}

TEST(SuggestDestBmpSize, DoesNotMindAFlatZAxis) {
  Mat4d flat;
  flat.Scale(1, -1, 0, Order::kAppend);
  EXPECT_EQ(Suggest(Box2d(0, 0, 300, 200), flat), (Size{300, 200}));
}

TEST(SuggestDestBmpSize, IsNothingWhereAnythingIsNotFinite) {
  for (const double bad : kNotFinite) {
    for (int place = 0; place < 16; ++place) {
      Mat4d m;
      m(place / 4, place % 4) = bad;
      EXPECT_EQ(Suggest(Box2d(0, 0, 300, 200), m), kNothing) << bad << " at " << place;
    }
    EXPECT_EQ(Suggest(Box2d(bad, 0, 300, 200), Mat4d()), kNothing) << bad;
    EXPECT_EQ(Suggest(Box2d(0, 0, 300, bad), Mat4d()), kNothing) << bad;
    EXPECT_EQ(Suggest(Box2d(0, bad, 300, bad), Mat4d()), kNothing) << bad;
  }
}

TEST(SuggestDestBmpSize, IsNothingForAnEmptyBox) {
  EXPECT_EQ(Suggest(Box2d(0, 0, 300, 200), Mat4d(), Box2d()), kNothing);
  EXPECT_EQ(Suggest(Box2d(), Mat4d()), kNothing);
}

TEST(SuggestDestBmpSize, AsksOfTheWorldOnlyThatItIsNotEmpty) {
  for (const Box2d& world : {Box2d(0, 0, 0, 0), Box2d(9, 9, -9, -9), Box2d(1e9, 1e9, 2e9, 2e9)}) {
    EXPECT_EQ(Suggest(Box2d(0, 0, 300, 200), Mat4d(), world), (Size{300, 200}));
  }
}

}  // namespace
}  // namespace corvel
