#include "filters/lattice/NodeTypes.h"

#include <cmath>
#include <limits>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AnyLattice.h"

namespace trovan::filters {
namespace {

using test::kElementTypes;

TEST(NodeTypes, HaveNames) {
  EXPECT_EQ(NodeTypeName(corvel::kInt8), "int8");
  EXPECT_EQ(NodeTypeName(corvel::kUInt8), "uint8");
  EXPECT_EQ(NodeTypeName(corvel::kInt16), "int16");
  EXPECT_EQ(NodeTypeName(corvel::kUInt16), "uint16");
  EXPECT_EQ(NodeTypeName(corvel::kInt32), "int32");
  EXPECT_EQ(NodeTypeName(corvel::kUInt32), "uint32");
  EXPECT_EQ(NodeTypeName(corvel::kInt64), "int64");
  EXPECT_EQ(NodeTypeName(corvel::kFloat), "float");
  EXPECT_EQ(NodeTypeName(corvel::kDouble), "double");
  EXPECT_EQ(NodeTypeName(static_cast<corvel::PrimType>(9)), "unknown");
  EXPECT_EQ(NodeTypeName(static_cast<corvel::PrimType>(-1)), "unknown");
}

TEST(NodeTypes, AreFoundByTheirNames) {
  for (const corvel::PrimType type : kElementTypes) {
    EXPECT_EQ(NodeTypeNamed(NodeTypeName(type)), type);
    EXPECT_THAT(std::string(kNodeTypeNames), testing::HasSubstr(std::string(NodeTypeName(type))));
  }
  for (const char* name : {"", "Float", "float ", "int", "uint64", "unknown"}) {
    EXPECT_EQ(NodeTypeNamed(name), std::nullopt) << name;
  }
}

TEST(NodeTypes, StandForTypesOfTheLanguage) {
  for (const corvel::PrimType type : kElementTypes) {
    bool called = false;
    VisitElementType(type, [&](auto element) {
      using T = decltype(element);
      called = true;
      EXPECT_EQ(sizeof(T), static_cast<std::size_t>(corvel::CPrimType(type).Size()));
      EXPECT_EQ(std::numeric_limits<T>::is_integer, IsInteger(type));
      const T last = std::numeric_limits<T>::max();
      EXPECT_EQ(corvel::CPrimData::GetWideReal(type, &last), static_cast<double>(last));
      const T first = std::numeric_limits<T>::lowest();
      EXPECT_EQ(corvel::CPrimData::GetWideReal(type, &first), static_cast<double>(first));
    });
    EXPECT_TRUE(called) << NodeTypeName(type);
  }
}

TEST(StoredValue, IsWhatANodeOfTheTypeHolds) {
  constexpr double kMaxFloat = std::numeric_limits<float>::max();
  const struct {
    corvel::PrimType type;
    double value;
    std::optional<double> stored;
  } cases[] = {
      {corvel::kUInt8, 255.0, 255.0},
      {corvel::kUInt8, 256.0, std::nullopt},
      {corvel::kUInt8, -9999.0, std::nullopt},
      {corvel::kUInt8, 1.5, std::nullopt},
      {corvel::kUInt8, NAN, std::nullopt},
      {corvel::kInt8, -128.0, -128.0},
      {corvel::kInt16, -9999.0, -9999.0},
      {corvel::kInt32, -2147483648.0, -2147483648.0},
      {corvel::kUInt32, 4294967295.0, 4294967295.0},
      {corvel::kInt32, 2147483648.0, std::nullopt},
      {corvel::kInt64, 0x1p62, 0x1p62},
      {corvel::kInt64, 0x1p63, std::nullopt},
      {corvel::kInt64, INFINITY, std::nullopt},
      {corvel::kFloat, 0.1, static_cast<double>(0.1F)},
      {corvel::kFloat, -3.4028235e38, -kMaxFloat},  // as files shorten it: just beyond the floats
      {corvel::kFloat, 1e300, std::nullopt},
      {corvel::kFloat, NAN, std::nullopt},
      {corvel::kDouble, 0.1, 0.1},
      {corvel::kDouble, -std::numeric_limits<double>::infinity(), std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(StoredValue(c.type, c.value), c.stored) << NodeTypeName(c.type) << ' ' << c.value;
  }
}

}  // namespace
}  // namespace trovan::filters
