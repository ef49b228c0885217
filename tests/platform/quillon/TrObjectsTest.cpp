// What holds for the objects of all classes.
#include <memory>
#include <set>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrFont.h>
#include <quillon/TrImage.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrMetafile.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <quillon/TrText.h>
#include <quillon/TrUniformLattice.h>

#include "Fault.h"
#include "Slots.h"

namespace quillon {
namespace {

template <class Object>
class TrObjects : public testing::Test {};

using Classes =
    testing::Types<TrBrush, TrClipPath, TrEllipse, TrFont, TrImage, TrMarkerSet, TrMetafile, TrPen,
                   TrPolygon, TrPolyline, TrRectangle, TrText, TrUniformLattice>;
TYPED_TEST_SUITE(TrObjects, Classes);

template <class Object>
class Derived : public Object {
 public:
  static const corvel::CTypeInfo* GetClassTypeId() {
    static const corvel::CTypeInfo record("Derived", Object::GetClassTypeId());
    return &record;
  }
  const corvel::CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
};

TYPED_TEST(TrObjects, AreOfTheirExactClass) {
  const TypeParam object;
  const TrBase& base = object;
  EXPECT_EQ(base.GetTypeId(), TypeParam::GetClassTypeId());
  EXPECT_TRUE(base.GetTypeId()->IsKindOf(TrBase::GetClassTypeId()));
}

TYPED_TEST(TrObjects, AreTheirOwnClassWhenDerived) {
  const Derived<TypeParam> object;
  const TrBase& base = object;
  EXPECT_NE(base.GetTypeId(), TypeParam::GetClassTypeId());
  EXPECT_TRUE(base.GetTypeId()->IsKindOf(TypeParam::GetClassTypeId()));
}

TYPED_TEST(TrObjects, AreValidAtFirst) { EXPECT_EQ(Fault(TypeParam()), ""); }

TYPED_TEST(TrObjects, HaveNoParametersAtFirst) { EXPECT_TRUE(TypeParam().Params().IsEmpty()); }

TYPED_TEST(TrObjects, DescribeThemselves) { EXPECT_NE(TypeParam().Description(), L""); }

TYPED_TEST(TrObjects, AreClonedWithTheirParameters) {
  TypeParam object;
  object.Params().Set(L"layer", L"roads");
  const std::unique_ptr<TrBase> clone = object.Clone();
  EXPECT_EQ(clone->GetTypeId(), TypeParam::GetClassTypeId());
  EXPECT_EQ(clone->Params(), object.Params());
  object.Params().Set(L"layer", L"rivers");
  EXPECT_EQ(clone->Params().Get(L"layer"), L"roads") << "a clone stands for itself";
}

TYPED_TEST(TrObjects, AreAssignedWithTheirParameters) {
  TypeParam object;
  object.Params().Set(L"layer", L"roads");
  TypeParam other;
  other.Params().Set(L"name", L"B 12");
  other = object;
  EXPECT_EQ(other.Params(), object.Params());
}

TEST(TrObjectClasses, HaveDifferentRecords) {
  const std::set<const corvel::CTypeInfo*> records = {
      TrBase::GetClassTypeId(),      TrBrush::GetClassTypeId(),
      TrClipPath::GetClassTypeId(),  TrEllipse::GetClassTypeId(),
      TrFont::GetClassTypeId(),      TrImage::GetClassTypeId(),
      TrMarkerSet::GetClassTypeId(), TrMetafile::GetClassTypeId(),
      TrPen::GetClassTypeId(),       TrPolygon::GetClassTypeId(),
      TrPolyline::GetClassTypeId(),  TrRectangle::GetClassTypeId(),
      TrText::GetClassTypeId(),      TrUniformLattice::GetClassTypeId()};
  EXPECT_EQ(records.size(), 14U);
}

TEST(TrBase, KeepsTheOrderOfItsVirtualOperations) {
#if defined(QUILLON_TEST_KNOWS_SLOTS)
  static_assert(std::has_virtual_destructor_v<TrBase>);
  EXPECT_EQ(SlotOf(&TrBase::GetTypeId), 1U);
  EXPECT_EQ(SlotOf(&TrBase::Clone), 2U);
  EXPECT_EQ(SlotOf(&TrBase::AssertValid), 3U);
  EXPECT_EQ(SlotOf(&TrBase::Description), 4U);
#else
  GTEST_SKIP() << "the tables of this system are not known here";
#endif
}

}  // namespace
}  // namespace quillon
