// Which objects go which way, and those that are not clipped.
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <brindle/MemoryBitmap.h>
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
#include <trovan/IoClippedImportFilter.h>

#include "ClippedFixture.h"
#include "platform/quillon/Slots.h"
#include "support/CapturedLog.h"

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using quillon::InvalidObject;
using quillon::TrBase;
using quillon::TrBrush;
using quillon::TrClipPath;
using quillon::TrEllipse;
using quillon::TrFont;
using quillon::TrImage;
using quillon::TrMarkerSet;
using quillon::TrMetafile;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using quillon::TrText;
using quillon::TrUniformLattice;

constexpr double kBad[] = {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};

// --- The class

template <class Filter>
concept DeliversWhereItIsConst = requires(const Filter& filter, TrBase& object) {
  filter.ImportObject(object);
};

TEST(IoClippedImportFilter, LeavesTheNameAndKindOfFilesToConcreteFilters) {
  static_assert(std::is_abstract_v<IoClippedImportFilter>);
  static_assert(std::has_virtual_destructor_v<IoClippedImportFilter>);
  static_assert(std::is_base_of_v<quillon::IoImportFilter, IoClippedImportFilter>);
}

TEST(IoClippedImportFilter, HidesTheDeliveryOfItsBase) {
  static_assert(DeliversWhereItIsConst<quillon::IoImportFilter>);
  static_assert(!DeliversWhereItIsConst<IoClippedImportFilter>);
}

TEST(IoClippedImportFilter, AddsNoVirtualOperation) {
#if defined(QUILLON_TEST_KNOWS_SLOTS)
  class Next : public IoClippedImportFilter {
   public:
    virtual void Operation() {}
  };
  EXPECT_EQ(quillon::SlotOf(&Next::Operation), 13U);
#else
  GTEST_SKIP() << "the tables of this system are not known here";
#endif
}

class ClippedDispatchTest : public ClippedTest {};

TEST_F(ClippedDispatchTest, IsNotClippedWhereTheBaseDelivers) {
  Import(Square());
  const quillon::IoImportFilter& base = filter_;
  TrPolyline line({{-100, 1, 0}, {100, 1, 0}});
  base.ImportObject(line);
  EXPECT_EQ(manager_.Texts(), Unclipped());
  EXPECT_EQ(manager_.Address(0), &line);
}

// --- Without a clip region

TEST_F(ClippedDispatchTest, DeliversEveryObjectAsItIsWithoutAClipPath) {
  const CapturedLog log;
  TrPen pen;
  TrBrush brush;
  TrFont font;
  TrPolyline line({{1, 1, 1}});
  TrPolygon polygon({{1, 1, 1}});
  TrText text(L"Oslo");
  TrRectangle rectangle;
  TrEllipse ellipse;
  TrImage image;
  TrMarkerSet markers;
  TrMetafile metafile;
  TrUniformLattice lattice;
  const std::vector<TrBase*> objects{&pen,       &brush,   &font,  &line,    &polygon,  &text,
                                     &rectangle, &ellipse, &image, &markers, &metafile, &lattice};
  ExpectWholeAndInOrder(objects);
  EXPECT_TRUE(log.Messages().empty());
}

TEST_F(ClippedDispatchTest, DoesNotLookAtShapesWithoutAClipPath) {
  for (const double bad : kBad) {
    TrPolyline line({{bad, 0, 0}});
    manager_.Clear();
    filter_.ImportObject(line);
    ASSERT_EQ(manager_.Size(), 1U);
    EXPECT_EQ(manager_.Address(0), &line);
  }
}

// --- Other classes

template <class Object>
class Derived : public Object {
 public:
  using Object::Object;
  static const corvel::CTypeInfo* GetClassTypeId() {
    static const corvel::CTypeInfo record("Derived", Object::GetClassTypeId());
    return &record;
  }
  const corvel::CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
};

template <class Object>
class ClippedDerivedTest : public ClippedTest {};
using Dispatched = testing::Types<TrClipPath, TrPen, TrBrush, TrFont, TrPolyline, TrPolygon, TrText,
                                  TrRectangle, TrEllipse, TrImage, TrMarkerSet, TrMetafile>;
TYPED_TEST_SUITE(ClippedDerivedTest, Dispatched);

TYPED_TEST(ClippedDerivedTest, PassesUnclippedAndUnlookedAt) {
  const CapturedLog log;
  this->Import(this->Square());
  Derived<TypeParam> object;
  this->filter_.ImportObject(object);
  ASSERT_EQ(this->manager_.Size(), 1U);
  EXPECT_EQ(this->manager_.Address(0), &object);
  EXPECT_TRUE(log.Messages().empty());
  EXPECT_EQ(this->Probe(), this->Within("0", "10")) << "the region is as it was";
}

TEST_F(ClippedDispatchTest, TakesNoDerivedPenForTheCurrentOne) {
  Import(Square());
  Derived<TrPen> pen(TrPen::kSolid, Color4b(1, 2, 3, 4), 5.0);
  filter_.ImportObject(pen);
  EXPECT_EQ(Delivered(TrPolygon({{5, 5, 0}, {15, 5, 0}, {5, 15, 0}})).at(2), "TrPen 0 00000000 0");
}

TEST_F(ClippedDispatchTest, DeliversOtherObjectsAsTheyAre) {
  Import(Square());
  TrUniformLattice lattice;
  filter_.ImportObject(lattice);
  ASSERT_EQ(manager_.Size(), 1U);
  EXPECT_EQ(manager_.Address(0), &lattice);
}

// --- Texts, images, metafiles

TEST_F(ClippedDispatchTest, DeliversTextsAndImagesAsTheyAre) {
  Import(Square());
  EXPECT_TRUE(PassesWhole(TrText(L"far away", {500, 500})));
  EXPECT_TRUE(PassesWhole(TrText(L"")));
  EXPECT_TRUE(PassesWhole(TrImage(new brindle::MemoryBitmap(2, 1, corvel::kColorFormat8), true)));
}

TEST_F(ClippedDispatchTest, ChecksTextsImagesAndMetafilesWithinARegion) {
  const CapturedLog log;
  Import(Square());
  EXPECT_THROW(Import(TrText(L"Oslo", {kBad[0], 0})), InvalidObject);
  TrImage image;
  image.SetPlacement(Box2d(0, 0, kBad[1], 0));
  EXPECT_THROW(Import(image), InvalidObject);
  EXPECT_THROW(Import(TrMetafile({}, Box2d(0, 0, 0, kBad[2]))), InvalidObject);
  EXPECT_EQ(manager_.Size(), 0U);
  EXPECT_TRUE(log.Messages().empty());
}

TEST_F(ClippedDispatchTest, WarnsOfEachMetafileWithinARegion) {
  const CapturedLog log;
  Import(Square());
  EXPECT_TRUE(PassesWhole(TrMetafile({1}, Box2d(0, 0, 400, 20))));
  EXPECT_TRUE(PassesWhole(TrMetafile({2}, Box2d(1, 1, 2, 2)))) << "though it lies inside";
  ASSERT_EQ(log.Messages().size(), 2U);
  for (const auto& message : log.Messages()) {
    EXPECT_EQ(message.level, 1);
    EXPECT_EQ(message.text,
              L"Import of TrMetafile with clipping region! [Module Trovan, File "
              L"IoClippedImportFilter, Line 557]");
  }
}

TEST_F(ClippedDispatchTest, DoesNotWarnOfMetafilesOnceClippingHasStopped) {
  const CapturedLog log;
  Import(Square());
  Import(TrClipPath());
  EXPECT_TRUE(PassesWhole(TrMetafile()));
  EXPECT_TRUE(log.Messages().empty());
}

TEST_F(ClippedDispatchTest, DeliversAMetafileThoughTheLogFails) {
  Import(Square());
  corvel::g_Logger.SetSink([](int, const std::wstring&) { throw std::string("disk full"); });
  EXPECT_TRUE(PassesWhole(TrMetafile()));
  corvel::g_Logger.SetSink({});
}

}  // namespace
}  // namespace trovan::test
