// The clip region, the pens, brushes and fonts, and which objects go which way.
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

class ClippedStateTest : public ClippedTest {};

TEST_F(ClippedStateTest, IsNotClippedWhereTheBaseDelivers) {
  Import(Square());
  const quillon::IoImportFilter& base = filter_;
  TrPolyline line({{-100, 1, 0}, {100, 1, 0}});
  base.ImportObject(line);
  EXPECT_EQ(manager_.Texts(), Unclipped());
  EXPECT_EQ(manager_.Address(0), &line);
}

TEST_F(ClippedStateTest, TwoFiltersHaveRegionsOfTheirOwn) {
  OpenFilter other(manager_);
  TrClipPath square = Square();
  other.ImportObject(square);
  EXPECT_EQ(Probe(), Unclipped());
}

// --- Without a clip region

template <class Object>
void ExpectWholeAndInOrder(RecordingManager& manager, OpenFilter& filter,
                           std::vector<Object*>& objects) {
  for (Object* object : objects) filter.ImportObject(*object);
  ASSERT_EQ(manager.Size(), objects.size());
  for (std::size_t i = 0; i < objects.size(); ++i) EXPECT_EQ(manager.Address(i), objects[i]) << i;
}

TEST_F(ClippedStateTest, DeliversEveryObjectAsItIsWithoutAClipPath) {
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
  std::vector<TrBase*> objects{&pen,       &brush,   &font,  &line,    &polygon,  &text,
                               &rectangle, &ellipse, &image, &markers, &metafile, &lattice};
  ExpectWholeAndInOrder(manager_, filter_, objects);
  EXPECT_TRUE(log.Messages().empty());
}

TEST_F(ClippedStateTest, DoesNotLookAtShapesWithoutAClipPath) {
  for (const double bad : kBad) {
    TrPolyline line({{bad, 0, 0}});
    manager_.Clear();
    filter_.ImportObject(line);
    ASSERT_EQ(manager_.Size(), 1U);
    EXPECT_EQ(manager_.Address(0), &line);
  }
}

// --- Clip paths

TEST_F(ClippedStateTest, KeepsClipPathsForItself) {
  Import(Square());
  Import(TrClipPath());
  EXPECT_EQ(manager_.Size(), 0U);
}

TEST_F(ClippedStateTest, ClipsToTheLastClipPath) {
  Import(Square());
  EXPECT_EQ(Probe(), Within("0", "10"));
  Import(TrClipPath({{2, 0, 0}, {5, 0, 0}, {5, 5, 0}, {2, 5, 0}}));
  EXPECT_EQ(Probe(), Within("2", "5"));
}

TEST_F(ClippedStateTest, WidensWithALargerClipPath) {
  Import(Square());
  Import(TrClipPath({{-50, 0, 0}, {50, 0, 0}, {50, 50, 0}, {-50, 50, 0}}));
  EXPECT_EQ(Probe(), Within("-50", "50"));
}

TEST_F(ClippedStateTest, StopsClippingWithAClipPathWithoutPoints) {
  for (const TrClipPath& none : {TrClipPath(), TrClipPath({}, {0, 0})}) {
    Import(Square());
    Import(none);
    EXPECT_EQ(Probe(), Unclipped());
  }
}

TEST_F(ClippedStateTest, ReplacesTheClipperOfLinesToo) {
  Import(Triangle());
  EXPECT_EQ(Probe(), Within("0", "9"));
  Import(TrClipPath({{0, 0, 0}, {20, 0, 0}, {0, 20, 0}}));
  EXPECT_EQ(Probe(), Within("0", "19"));
  Import(Square());
  EXPECT_EQ(Probe(), Within("0", "10"));
  Import(Triangle());
  EXPECT_EQ(Probe(), Within("0", "9"));
}

TEST_F(ClippedStateTest, DropsTheHeightsOfAClipPath) {
  Import(TrClipPath({{0, 0, 5}, {10, 0, kBad[0]}, {10, 10, 0}, {0, 10, -1}}));
  EXPECT_EQ(Probe(), Within("0", "10"));
}

TEST_F(ClippedStateTest, TakesAllPointsForOneRingWhereAClipPathHasNoCounts) {
  Import(TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 5, 0}}));
  EXPECT_EQ(Probe(), Within("0", "10"));
}

TEST_F(ClippedStateTest, TakesTheRingsOfAClipPath) {
  Import(
      TrClipPath({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {20, 0, 0}, {30, 0, 0}, {30, 10, 0}}, {3, 3}));
  EXPECT_EQ(Probe(), (Texts{"TrPolyline 0 1 0, 9 1 0", "TrPolyline 21 1 0, 30 1 0"}));
}

TEST_F(ClippedStateTest, LeavesOutPointsOfAClipPathThatNoRingHas) {
  Import(
      TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {50, 50, 0}, {-50, 50, 0}}, {4}));
  EXPECT_EQ(Probe(), Within("0", "10"));
}

TEST_F(ClippedStateTest, ClipsEverythingAwayWhereNoRingHasPoints) {
  Import(TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {0}));
  EXPECT_EQ(Probe(), Texts());
  EXPECT_EQ(Delivered(TrRectangle(Box2d(1, 1, 2, 2))), Texts());
}

TEST_F(ClippedStateTest, ClipsToARegionWithAHole) {
  Import(TrClipPath({{0, 0, 0},
                     {10, 0, 0},
                     {10, 10, 0},
                     {0, 10, 0},  //
                     {4, 0.5, 0},
                     {6, 0.5, 0},
                     {6, 6, 0},
                     {4, 6, 0}},
                    {4, 4}));
  EXPECT_EQ(Probe(), (Texts{"TrPolyline 0 1 0, 4 1 0", "TrPolyline 6 1 0, 10 1 0"}));
}

TEST_F(ClippedStateTest, KeepsTheRegionWhenAClipPathIsInvalid) {
  Import(Square());
  for (const double bad : kBad) {
    EXPECT_THROW(Import(TrClipPath({{0, 0, 0}, {bad, 0, 0}, {1, 1, 0}})), InvalidObject);
    EXPECT_THROW(Import(TrClipPath({{0, 0, 0}, {0, bad, 0}, {1, 1, 0}})), InvalidObject);
  }
  EXPECT_THROW(Import(TrClipPath({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {4})), InvalidObject);
  EXPECT_THROW(Import(TrClipPath({}, {1})), InvalidObject);
  EXPECT_EQ(manager_.Size(), 0U);
  EXPECT_EQ(Probe(), Within("0", "10"));
}

// --- Pens, brushes, fonts

// A square that reaches out of the region: its outline is drawn with the current pen.
TrPolygon CrossingSquare() { return TrPolygon({{5, 5, 0}, {15, 5, 0}, {15, 15, 0}, {5, 15, 0}}); }

TEST_F(ClippedStateTest, DeliversPensBrushesAndFontsAlways) {
  TrPen pen;
  TrBrush brush;
  TrFont font;
  std::vector<TrBase*> objects{&pen, &brush, &font};
  ExpectWholeAndInOrder(manager_, filter_, objects);
  Import(Square());
  manager_.Clear();
  ExpectWholeAndInOrder(manager_, filter_, objects);
}

TEST_F(ClippedStateTest, StartsWithTheThinnestPen) {
  Import(Square());
  EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 0 00000000 0");
}

TEST_F(ClippedStateTest, KeepsItsOwnCopyOfTheLastPen) {
  Import(TrPen(TrPen::kSolid, Color4b(9, 9, 9, 9), 9.0));
  TrPen pen(TrPen::kSolid, Color4b(255, 0, 1, 128), 0.5);
  pen.Params().Set(L"line-cap", L"round");
  filter_.ImportObject(pen);
  pen.SetWidth(77.0);
  pen.Params().Clear();
  Import(Square());
  manager_.Clear();
  Import(CrossingSquare());
  EXPECT_EQ(TextOf(manager_.At(2)), "TrPen 1 ff000180 0.5 line-cap=round");
  EXPECT_NE(manager_.Address(2), &pen);
}

TEST_F(ClippedStateTest, KeepsThePenWhenTheNextOneIsInvalid) {
  Import(Square());
  Import(TrPen(TrPen::kSolid, Color4b(1, 2, 3, 4), 0.5));
  manager_.Clear();
  EXPECT_THROW(Import(TrPen(TrPen::kSolid, Color4b(), kBad[0])), InvalidObject);
  EXPECT_EQ(manager_.Size(), 0U);
  EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 1 01020304 0.5");
}

TEST_F(ClippedStateTest, DeliversNoInvalidFont) {
  TrFont font(L"Arial");
  font.SetSize(kBad[1]);
  EXPECT_THROW(Import(font), InvalidObject);
  EXPECT_EQ(manager_.Size(), 0U);
}

// Counts the looks at it and its clones; of the exact class, as far as its record says.
template <class Object>
class Counted : public Object {
 public:
  explicit Counted(std::vector<std::string>& calls) : calls_(&calls) {}
  std::unique_ptr<TrBase> Clone() const override {
    calls_->push_back("Clone");
    return Object::Clone();
  }
  void AssertValid() const override {
    calls_->push_back("AssertValid");
    Object::AssertValid();
  }

 private:
  std::vector<std::string>* calls_;
};

template <class Object>
class ClippedStateObjectTest : public ClippedTest {};
using StateObjects = testing::Types<TrPen, TrBrush, TrFont>;
TYPED_TEST_SUITE(ClippedStateObjectTest, StateObjects);

TYPED_TEST(ClippedStateObjectTest, IsCheckedThenClonedThenDelivered) {
  std::vector<std::string> calls;
  Counted<TypeParam> object(calls);
  this->manager_.onDelivery = [&](std::size_t) { calls.push_back("delivered"); };
  this->filter_.ImportObject(object);
  calls.resize(3);  // the manager of the test makes another clone
  EXPECT_EQ(calls, (std::vector<std::string>{"AssertValid", "Clone", "delivered"}));
  EXPECT_EQ(this->manager_.Address(0), &object);
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

TEST_F(ClippedStateTest, TakesNoDerivedPenForTheCurrentOne) {
  Import(Square());
  Derived<TrPen> pen(TrPen::kSolid, Color4b(1, 2, 3, 4), 5.0);
  filter_.ImportObject(pen);
  EXPECT_EQ(Delivered(CrossingSquare()).at(2), "TrPen 0 00000000 0");
}

TEST_F(ClippedStateTest, DeliversOtherObjectsAsTheyAre) {
  Import(Square());
  TrUniformLattice lattice;
  filter_.ImportObject(lattice);
  ASSERT_EQ(manager_.Size(), 1U);
  EXPECT_EQ(manager_.Address(0), &lattice);
}

// --- Texts, images, metafiles

TEST_F(ClippedStateTest, DeliversTextsAndImagesAsTheyAre) {
  Import(Square());
  EXPECT_TRUE(PassesWhole(TrText(L"far away", {500, 500})));
  EXPECT_TRUE(PassesWhole(TrText(L"")));
  EXPECT_TRUE(PassesWhole(TrImage(new brindle::MemoryBitmap(2, 1, corvel::kColorFormat8), true)));
}

TEST_F(ClippedStateTest, ChecksTextsImagesAndMetafilesWithinARegion) {
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

TEST_F(ClippedStateTest, WarnsOfEachMetafileWithinARegion) {
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

TEST_F(ClippedStateTest, DoesNotWarnOfMetafilesOnceClippingHasStopped) {
  const CapturedLog log;
  Import(Square());
  Import(TrClipPath());
  EXPECT_TRUE(PassesWhole(TrMetafile()));
  EXPECT_TRUE(log.Messages().empty());
}

TEST_F(ClippedStateTest, DeliversAMetafileThoughTheLogFails) {
  Import(Square());
  corvel::g_Logger.SetSink([](int, const std::wstring&) { throw std::string("disk full"); });
  EXPECT_TRUE(PassesWhole(TrMetafile()));
  corvel::g_Logger.SetSink({});
}

}  // namespace
}  // namespace trovan::test
