#include <trovan/InvalidNodes.h>

#include <cfloat>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArrayModel.h"
#include "NodeArray.h"
#include "VectorKinds.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace trovan {
namespace {

using corvel::PrimType;
using enum corvel::PrimType;
using test::NodeArray;
using test::OnEachKindOfVectors;
using testing::ElementsAre;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool FilterInvalid(NodeArray& nodes, double replacement) {
  return FilterInvalidNodes(nodes.Data(), nodes.Type().Type(), nodes.Count(), replacement);
}

bool FilterRange(NodeArray& nodes, double replacement, double minValue, double maxValue) {
  return FilterOutOfRangeNodes(nodes.Data(), nodes.Type().Type(), nodes.Count(), replacement,
                               minValue, maxValue);
}

TEST(FilterInvalidNodes, ReplacesNanAndInfinities) {
  OnEachKindOfVectors([] {
    NodeArray doubles(kDouble, std::vector<double>{1, kNaN, kInfinity, -kInfinity, 2});
    EXPECT_TRUE(FilterInvalid(doubles, 0.0));
    EXPECT_THAT(doubles.Values<double>(), ElementsAre(1, 0, 0, 0, 2));
    constexpr float kInf = std::numeric_limits<float>::infinity();
    NodeArray floats(kFloat, std::vector<float>{1, NAN, kInf, -kInf, 2});
    EXPECT_TRUE(FilterInvalid(floats, -9999.25));
    EXPECT_THAT(floats.Values<float>(), ElementsAre(1, -9999.25F, -9999.25F, -9999.25F, 2));
  });
}

TEST(FilterInvalidNodes, LeavesEveryFiniteNumber) {
  OnEachKindOfVectors([] {
    const std::vector<double> finite{1,    2,    DBL_MAX,    -DBL_MAX, 5e-324,
                                     -0.0, 1e38, 1.70141e38, 1e300};
    NodeArray nodes(kDouble, finite);
    const NodeArray before = nodes;
    EXPECT_FALSE(FilterInvalid(nodes, 7.0));
    EXPECT_TRUE(nodes == before);
    NodeArray floats(kFloat, std::vector<float>{FLT_MAX, -FLT_MAX, 1e-45F, -0.0F});
    const NodeArray floatsBefore = floats;
    EXPECT_FALSE(FilterInvalid(floats, 7.0));
    EXPECT_TRUE(floats == floatsBefore);
  });
}

TEST(FilterInvalidNodes, StoresTheNearestFloat) {
  NodeArray nodes(kFloat, std::vector<float>{NAN});
  EXPECT_TRUE(FilterInvalid(nodes, 0.1));
  EXPECT_EQ(nodes.Get<float>(0), 0.1F);
  nodes.Set(0, NAN);
  EXPECT_TRUE(FilterInvalid(nodes, 1e300));
  EXPECT_EQ(nodes.Get<float>(0), std::numeric_limits<float>::infinity());
}

TEST(FilterInvalidNodes, SaysThatItReplacedThoughTheReplacementIsInvalidToo) {
  NodeArray nodes(kDouble, std::vector<double>{kNaN, 1});
  EXPECT_TRUE(FilterInvalid(nodes, kInfinity));
  EXPECT_THAT(nodes.Values<double>(), ElementsAre(kInfinity, 1));
  EXPECT_TRUE(FilterInvalid(nodes, 0.0));
}

TEST(FilterInvalidNodes, ReadsNoNodesOfOtherTypes) {
  for (const PrimType type : {kInt8, kUInt8, kInt16, kUInt16, kInt32, kUInt32, kInt64}) {
    EXPECT_FALSE(FilterInvalidNodes(nullptr, type, 1000, 0.0)) << type;
  }
  for (const int number : test::kUnknownTypes) {
    EXPECT_FALSE(FilterInvalidNodes(nullptr, PrimType{number}, 1000, 0.0)) << number;
  }
}

TEST(FilterInvalidNodes, FindsNothingAmongNoNodes) {
  EXPECT_FALSE(FilterInvalidNodes(nullptr, kDouble, 0, 0.0));
  EXPECT_FALSE(FilterInvalidNodes(nullptr, kFloat, 0, 0.0));
}

TEST(FilterInvalidNodes, FindsTheInvalidNodeAtEveryPlace) {
  OnEachKindOfVectors([] {
    for (std::size_t n = 1; n <= 140; ++n) {
      for (std::size_t bad = 0; bad < n; ++bad) {
        NodeArray doubles(kDouble, n, 1);
        NodeArray floats(kFloat, n, 3);
        for (std::size_t i = 0; i < n; ++i) {
          doubles.Set(i, i == bad ? kNaN : static_cast<double>(i));
          floats.Set(i, i == bad ? -INFINITY : static_cast<float>(i));
        }
        ASSERT_TRUE(FilterInvalid(doubles, -1)) << n << ": " << bad;
        ASSERT_TRUE(FilterInvalid(floats, -1)) << n << ": " << bad;
        for (std::size_t i = 0; i < n; ++i) {
          const double expected = i == bad ? -1.0 : static_cast<double>(i);
          ASSERT_EQ(doubles.Get<double>(i), expected) << n << ": " << bad;
          ASSERT_EQ(floats.Get<float>(i), static_cast<float>(expected)) << n << ": " << bad;
        }
        ASSERT_TRUE(doubles.IsGuardIntact() && floats.IsGuardIntact()) << n << ": " << bad;
        ASSERT_FALSE(FilterInvalid(doubles, -1)) << n << ": " << bad;
      }
    }
  });
}

#if defined(__linux__)
// A page that may not be written: whoever tries is killed.
TEST(FilterInvalidNodes, WritesNothingIntoACleanArray) {
  constexpr std::size_t kCount = 4096 / sizeof(double);
  void* const page =
      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(page, MAP_FAILED);
  ASSERT_EQ(mprotect(page, 4096, PROT_READ), 0);
  OnEachKindOfVectors([page] {
    for (const std::size_t n : {kCount, kCount - 1, std::size_t{1}}) {
      EXPECT_FALSE(FilterInvalidNodes(page, kDouble, n, 1.0));
      EXPECT_FALSE(FilterInvalidNodes(page, kFloat, 2 * n, 1.0));
      EXPECT_FALSE(FilterOutOfRangeNodes(page, kDouble, n, 1.0, 0.0, 0.0));
      EXPECT_FALSE(FilterOutOfRangeNodes(page, kFloat, 2 * n, 1.0, 0.0, 0.0));
      EXPECT_FALSE(FilterOutOfRangeNodes(page, kInt32, 2 * n, 1.0, 0.0, 0.0));
    }
  });
  munmap(page, 4096);
}
#endif

TEST(FilterOutOfRangeNodes, ReplacesWhatLiesStrictlyOutside) {
  OnEachKindOfVectors([] {
    NodeArray floats(kFloat, std::vector<float>{0, 5, 10, 11, -1});
    EXPECT_TRUE(FilterRange(floats, 3, 0, 10));
    EXPECT_THAT(floats.Values<float>(), ElementsAre(0, 5, 10, 3, 3));
    NodeArray doubles(kDouble, std::vector<double>{0, 5, 10, 10.000000000000002, -5e-324});
    EXPECT_TRUE(FilterRange(doubles, 3, 0, 10));
    EXPECT_THAT(doubles.Values<double>(), ElementsAre(0, 5, 10, 3, 3));
    EXPECT_FALSE(FilterRange(doubles, 3, 0, 10));
  });
}

TEST(FilterOutOfRangeNodes, LeavesNanAndReplacesInfinities) {
  OnEachKindOfVectors([] {
    NodeArray nodes(kDouble, std::vector<double>{kNaN, 100, kInfinity, -kInfinity});
    EXPECT_TRUE(FilterRange(nodes, 1, 0, 10));
    EXPECT_TRUE(std::isnan(nodes.Get<double>(0)));
    EXPECT_EQ(nodes.Get<double>(1), 1);
    EXPECT_EQ(nodes.Get<double>(2), 1);
    EXPECT_EQ(nodes.Get<double>(3), 1);
    NodeArray floats(kFloat, std::vector<float>{NAN, INFINITY, 5});
    EXPECT_TRUE(FilterRange(floats, 1, -1e300, 1e300));
    EXPECT_TRUE(std::isnan(floats.Get<float>(0)));
    EXPECT_EQ(floats.Get<float>(1), 1);
    EXPECT_EQ(floats.Get<float>(2), 5);
  });
}

TEST(FilterOutOfRangeNodes, ComparesFloatsWithTheBoundsAsDoubles) {
  OnEachKindOfVectors([] {
    // The float 0.1 is a little more than the double.
    NodeArray nodes(kFloat, std::vector<float>(40, 0.1F));
    EXPECT_TRUE(FilterRange(nodes, 7, 0.0, 0.1));
    nodes = NodeArray(kFloat, std::vector<float>(40, 0.1F));
    EXPECT_FALSE(FilterRange(nodes, 7, 0.1, 1.0));
    EXPECT_FALSE(FilterRange(nodes, 7, 0.0, static_cast<double>(0.1F)));
  });
}

TEST(FilterOutOfRangeNodes, TakesWhatEveryBoundSays) {
  OnEachKindOfVectors([] {
    NodeArray nodes(kDouble, std::vector<double>{1, 2, 3});
    EXPECT_FALSE(FilterRange(nodes, 0, kNaN, kNaN));
    EXPECT_TRUE(FilterRange(nodes, 9, kNaN, 2));
    EXPECT_THAT(nodes.Values<double>(), ElementsAre(1, 2, 9));
    EXPECT_TRUE(FilterRange(nodes, 5, 10, 0));  // crossed: everything is outside
    EXPECT_THAT(nodes.Values<double>(), ElementsAre(5, 5, 5));
  });
}

TEST(FilterOutOfRangeNodes, TruncatesTheReplacementOfIntegers) {
  NodeArray uint16(kUInt16, std::vector<std::uint16_t>{5, 100});
  EXPECT_TRUE(FilterRange(uint16, -1.5, 0, 10));
  EXPECT_THAT(uint16.Values<std::uint16_t>(), ElementsAre(5, 65535));
  NodeArray int16(kInt16, std::vector<std::int16_t>{-20, 5});
  EXPECT_TRUE(FilterRange(int16, 65537.9, 0, 10));
  EXPECT_THAT(int16.Values<std::int16_t>(), ElementsAre(1, 5));
  NodeArray int32(kInt32, std::vector<std::int32_t>{5, 11});
  EXPECT_TRUE(FilterRange(int32, 1e20, 0, 10));
  EXPECT_THAT(int32.Values<std::int32_t>(), ElementsAre(5, std::numeric_limits<int>::min()));
  NodeArray uint32(kUInt32, std::vector<std::uint32_t>{4294967295U, 5});
  EXPECT_TRUE(FilterRange(uint32, -2.5, 0, 10));
  EXPECT_THAT(uint32.Values<std::uint32_t>(), ElementsAre(4294967294U, 5U));
}

TEST(FilterOutOfRangeNodes, ReadsNoNodesOfOtherTypes) {
  for (const PrimType type : {kInt8, kUInt8, kInt64}) {
    EXPECT_FALSE(FilterOutOfRangeNodes(nullptr, type, 1000, 1, 0, 0)) << type;
  }
  for (const int number : test::kUnknownTypes) {
    EXPECT_FALSE(FilterOutOfRangeNodes(nullptr, PrimType{number}, 1000, 1, 0, 0)) << number;
  }
  NodeArray bytes(kInt8, std::vector<std::int8_t>{-100, 100});
  EXPECT_FALSE(FilterRange(bytes, 1, 0, 10));
  EXPECT_THAT(bytes.Values<std::int8_t>(), ElementsAre(-100, 100));
}

TEST(FilterOutOfRangeNodes, FindsNothingAmongNoNodes) {
  for (const PrimType type : {kInt16, kUInt16, kInt32, kUInt32, kFloat, kDouble}) {
    EXPECT_FALSE(FilterOutOfRangeNodes(nullptr, type, 0, 1, 0, 0)) << type;
  }
}

TEST(FilterOutOfRangeNodes, FindsTheNodeAtEveryPlace) {
  OnEachKindOfVectors([] {
    for (std::size_t n = 1; n <= 140; ++n) {
      for (std::size_t bad = 0; bad < n; ++bad) {
        NodeArray doubles(kDouble, n, 5);
        NodeArray floats(kFloat, n, 1);
        for (std::size_t i = 0; i < n; ++i) {
          doubles.Set(i, i == bad ? -9999.0 : static_cast<double>(i));
          floats.Set(i, i == bad ? 9999.0F : static_cast<float>(i));
        }
        ASSERT_TRUE(FilterRange(doubles, 0.5, 0, 200)) << n << ": " << bad;
        ASSERT_TRUE(FilterRange(floats, 0.5, 0, 200)) << n << ": " << bad;
        for (std::size_t i = 0; i < n; ++i) {
          const double expected = i == bad ? 0.5 : static_cast<double>(i);
          ASSERT_EQ(doubles.Get<double>(i), expected) << n << ": " << bad;
          ASSERT_EQ(floats.Get<float>(i), static_cast<float>(expected)) << n << ": " << bad;
        }
        ASSERT_TRUE(doubles.IsGuardIntact() && floats.IsGuardIntact()) << n << ": " << bad;
      }
    }
  });
}

}  // namespace
}  // namespace trovan
