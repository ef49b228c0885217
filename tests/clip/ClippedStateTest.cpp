// The clip region, and the pens, brushes and fonts.
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillon/TrBrush.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrFont.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <trovan/IoClippedImportFilter.h>

#include "ClippedFixture.h"

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using quillon::InvalidObject;
using quillon::TrBase;
using quillon::TrBrush;
using quillon::TrClipPath;
using quillon::TrFont;
using quillon::TrPen;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;

constexpr double kBad[] = {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};

class ClippedStateTest : public ClippedTest {};

TEST_F(ClippedStateTest, TwoFiltersHaveRegionsOfTheirOwn) {
  OpenFilter other(manager_);
  TrClipPath square = Square();
  other.ImportObject(square);
  EXPECT_EQ(Probe(), Unclipped());
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
                     {0, 10, 0},
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
  const std::vector<TrBase*> objects{&pen, &brush, &font};
  ExpectWholeAndInOrder(objects);
  Import(Square());
  ExpectWholeAndInOrder(objects);
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

}  // namespace
}  // namespace trovan::test
