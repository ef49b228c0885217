#include <corvel/TypeInfo.h>

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace corvel {
namespace {

class Shape {
 public:
  virtual ~Shape() = default;
  static const CTypeInfo* GetClassTypeId() {
    static const CTypeInfo record("Shape");
    return &record;
  }
  virtual const CTypeInfo* GetTypeId() const { return GetClassTypeId(); }
};

class Polygon : public Shape {
 public:
  static const CTypeInfo* GetClassTypeId() {
    static const CTypeInfo record("Polygon", Shape::GetClassTypeId());
    return &record;
  }
  const CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
};

class Triangle : public Polygon {
 public:
  static const CTypeInfo* GetClassTypeId() {
    static const CTypeInfo record("Triangle", Polygon::GetClassTypeId());
    return &record;
  }
  const CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
};

TEST(CTypeInfo, KeepsTheNameAndTheBase) {
  EXPECT_STREQ(Shape::GetClassTypeId()->Name(), "Shape");
  EXPECT_EQ(Shape::GetClassTypeId()->Base(), nullptr);
  EXPECT_STREQ(Triangle::GetClassTypeId()->Name(), "Triangle");
  EXPECT_EQ(Triangle::GetClassTypeId()->Base(), Polygon::GetClassTypeId());
}

TEST(CTypeInfo, IsNeitherCopiedNorMoved) {
  static_assert(!std::is_copy_constructible_v<CTypeInfo> &&
                !std::is_move_constructible_v<CTypeInfo>);
  static_assert(!std::is_copy_assignable_v<CTypeInfo> && !std::is_move_assignable_v<CTypeInfo>);
}

TEST(CTypeInfo, TellsTheExactClassByItsAddress) {
  const Polygon polygon;
  const Shape& shape = polygon;
  EXPECT_EQ(shape.GetTypeId(), Polygon::GetClassTypeId());
  EXPECT_NE(shape.GetTypeId(), Shape::GetClassTypeId());
  EXPECT_NE(shape.GetTypeId(), Triangle::GetClassTypeId());
}

TEST(CTypeInfo, TellsTwoRecordsOfOneNameApart) {
  const CTypeInfo one("Pen");
  const CTypeInfo other("Pen");
  EXPECT_FALSE(one.IsKindOf(&other));
  EXPECT_TRUE(one.IsKindOf(&one));
}

TEST(CTypeInfo, IsAKindOfItselfAndOfItsBases) {
  const CTypeInfo* const shape = Shape::GetClassTypeId();
  const CTypeInfo* const polygon = Polygon::GetClassTypeId();
  const CTypeInfo* const triangle = Triangle::GetClassTypeId();
  EXPECT_TRUE(triangle->IsKindOf(triangle));
  EXPECT_TRUE(triangle->IsKindOf(polygon));
  EXPECT_TRUE(triangle->IsKindOf(shape));
  EXPECT_TRUE(polygon->IsKindOf(shape));
  EXPECT_FALSE(shape->IsKindOf(polygon));
  EXPECT_FALSE(polygon->IsKindOf(triangle));
}

TEST(CTypeInfo, IsNoKindOfNull) { EXPECT_FALSE(Triangle::GetClassTypeId()->IsKindOf(nullptr)); }

}  // namespace
}  // namespace corvel
