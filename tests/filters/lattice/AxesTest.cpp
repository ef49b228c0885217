#include "filters/lattice/Axes.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeErrors.h"
#include "LatticeFakes.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr double kTolerance = 0.01;

TEST(MeasureAxis, TellsStepsAndTheirLargestDeviation) {
  const struct {
    const char* what;
    std::vector<double> coordinates;
    double step;
    bool equal;
    double deviation;
  } cases[] = {
      {"one coordinate", {7.0}, 1.0, true, 0.0},
      {"two coordinates", {7.0, 9.5}, 2.5, true, 0.0},
      {"equal steps", {-1.0, 0.0, 1.0, 2.0}, 1.0, true, 0.0},
      {"one step off", {0.0, 1.0, 2.05, 3.0}, 1.0, false, 5.0},
      {"within the tolerance", {0.0, 1.0, 2.00005, 3.0}, 1.0, true, 0.005},
      {"descending", {3.0, 2.0, 1.0}, -1.0, true, 0.0},
      {"descending, within the tolerance", {3.0, 2.0, 0.99995, 0.0}, -1.0, true, 0.005},
      {"descending, one step off", {3.0, 2.0, 0.95, 0.0}, -1.0, false, 5.0},
      {"back and forth", {0.0, 1.0, 0.0}, 0.0, false, INFINITY},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto header = test::RectilinearHeader(corvel::kFloat, c.coordinates, {0.0}, {0.0});
    const AxisSpacing axis = MeasureAxis(header, 0, kTolerance);
    EXPECT_EQ(axis.count, c.coordinates.size());
    EXPECT_EQ(axis.first, c.coordinates.front());
    EXPECT_EQ(axis.last, c.coordinates.back());
    EXPECT_EQ(axis.step, c.step);
    EXPECT_EQ(axis.equal, c.equal);
    if (std::isinf(c.deviation)) {
      EXPECT_EQ(axis.deviationInPercent, c.deviation);
    } else {
      EXPECT_NEAR(axis.deviationInPercent, c.deviation, 1e-9);
    }
  }
}

TEST(MeasureAxis, MeasuresEachAxisByItsOwnCount) {
  const auto header =
      test::RectilinearHeader(corvel::kFloat, {0.0, 1.0}, {5.0, 7.0, 9.0}, {1.0, 1.5, 2.0, 2.5});
  EXPECT_EQ(MeasureAxis(header, 0, kTolerance).last, 1.0);
  EXPECT_EQ(MeasureAxis(header, 1, kTolerance).last, 9.0);
  EXPECT_EQ(MeasureAxis(header, 1, kTolerance).step, 2.0);
  EXPECT_EQ(MeasureAxis(header, 2, kTolerance).count, 4U);
  EXPECT_EQ(MeasureAxis(header, 2, kTolerance).step, 0.5);
}

TEST(MeasureAxis, WantsIntegersExactWhateverTheTolerance) {
  LatticeHeader header = test::RectilinearHeader(corvel::kFloat, {0, 0, 0}, {0.0}, {0.0});
  header.coordType = corvel::kInt16;
  header.axes[0] = test::Packed<std::int16_t>({1000, 0, -1000});
  EXPECT_TRUE(MeasureAxis(header, 0, 0.0).equal);
  EXPECT_EQ(MeasureAxis(header, 0, 0.0).step, -1000.0);
  header.axes[0] = test::Packed<std::int16_t>({0, 1000, 2001});
  EXPECT_FALSE(MeasureAxis(header, 0, 50.0).equal);
}

TEST(AsUniform, TakesTheMeanStepsOfTheAxes) {
  auto header = test::RectilinearHeader(corvel::kFloat, {10.0, 12.0, 14.0}, {5.0, 4.0}, {100.0});
  header.components = 3;
  header.voidValue = -1.0;
  const LatticeHeader uniform = AsUniform(header, kTolerance);
  EXPECT_EQ(uniform.type, LatticeResequencer::Uniform);
  EXPECT_EQ(uniform.origin, corvel::Vec3d(10.0, 5.0, 100.0));
  EXPECT_EQ(uniform.spacing, corvel::Vec3d(2.0, -1.0, 1.0));
  EXPECT_EQ(uniform.components, 3U);
  EXPECT_EQ(uniform.voidValue, -1.0);
  for (const auto& axis : uniform.axes) EXPECT_TRUE(axis.empty());
}

TEST(AsUniform, NamesTheAxisThatIsNotEquallySpacedAndItsDeviation) {
  const std::vector<double> even = {0.0, 1.0, 2.0, 3.0};
  const std::vector<double> uneven = {0.0, 1.0, 2.05, 3.0};
  const struct {
    LatticeHeader header;
    const char* name;
  } cases[] = {
      {test::RectilinearHeader(corvel::kFloat, uneven, even, even), "columns (X)"},
      {test::RectilinearHeader(corvel::kFloat, even, uneven, even), "rows (Y)"},
      {test::RectilinearHeader(corvel::kFloat, even, even, uneven), "planes (Z)"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(test::FilterErrorOf([&] { AsUniform(c.header, 0.25); }),
                AllOf(HasSubstr(c.name), HasSubstr(" 5 % off"), HasSubstr("0.25 % are allowed"),
                      HasSubstr(".vtk")));
    EXPECT_EQ(AsUniform(c.header, 5.1).spacing, corvel::Vec3d(1.0, 1.0, 1.0)) << c.name;
  }
}

}  // namespace
}  // namespace trovan::filters
