#include "filters/drawing/DrawingFilter.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrFont.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>

#include "DrawnObjects.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec3d;
using quillon::TrMarkerSet;
using quillon::TrPolygon;
using quillon::TrPolyline;
using tarnis::Polygon2;
using test::DrawnObjects;
using testing::ElementsAre;
using testing::IsEmpty;

class SomeFilter : public DrawingFilter {
 public:
  explicit SomeFilter(quillon::IoManager& manager) : DrawingFilter(manager) {}
  std::wstring GetFilterName() const override { return L"Some"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {L".some"}; }
  bool CanImport(const std::wstring&) const override { return true; }

  using DrawingFilter::LossList;
  using DrawingFilter::NoteLoss;
  using DrawingFilter::Region;
  using DrawingFilter::Remark;
  using DrawingFilter::ReportProgress;
  using DrawingFilter::Send;
};

class DrawingFilterTest : public testing::Test {
 protected:
  // Whole, clipped, dropped.
  std::vector<unsigned> Counts() const {
    const ClipStatistics& counts = filter_.Statistics();
    return {static_cast<unsigned>(counts.whole), static_cast<unsigned>(counts.clipped),
            static_cast<unsigned>(counts.dropped)};
  }

  template <typename T>
  void Send(T object) {
    filter_.Send(object);
  }

  DrawnObjects objects_;
  SomeFilter filter_{objects_};
  const Polygon2 square_{{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {4}};
  const Polygon2 triangle_{{{0, 0}, {8, 0}, {0, 8}}, {3}};
};

TEST_F(DrawingFilterTest, WithoutARegionAllPassesWhole) {
  Send(TrPolygon({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}}));
  Send(TrPolyline({{0, 0, 1}, {9, 0, 2}}));
  Send(TrPolyline());
  EXPECT_THAT(Counts(), ElementsAre(3, 0, 0));
  EXPECT_THAT(objects_.Texts(), ElementsAre("polygon 0 0, 9 0, 9 9", "line 0 0 1, 9 0 2", "line"));
}

TEST_F(DrawingFilterTest, CountsObjectsByWhatArrives) {
  filter_.SetRegion(square_);
  Send(TrPolygon({{1, 1, 0}, {2, 1, 0}, {2, 2, 0}}));
  Send(TrPolygon({{1, 1, 0}, {9, 1, 0}, {9, 2, 0}}));
  Send(TrPolygon({{6, 1, 0}, {9, 1, 0}, {9, 2, 0}}));
  EXPECT_THAT(Counts(), ElementsAre(1, 1, 1));
  EXPECT_EQ(filter_.Statistics().Objects(), 3U);
}

TEST_F(DrawingFilterTest, ALineThatComesBackPointForPointIsWhole) {
  filter_.SetRegion(triangle_);
  Send(TrPolyline({{1, 1, 7}, {2, 1, 8}, {2, 2, 9}}));
  EXPECT_THAT(Counts(), ElementsAre(1, 0, 0));
  EXPECT_THAT(objects_.Texts(), ElementsAre("line 1 1, 2 1, 2 2"));
}

TEST_F(DrawingFilterTest, ALineThatComesInPiecesIsClipped) {
  filter_.SetRegion(square_);
  Send(TrPolyline({{1, 1, 0}, {9, 1, 0}, {9, 2, 0}, {1, 2, 0}}));
  EXPECT_THAT(Counts(), ElementsAre(0, 1, 0));
  EXPECT_THAT(objects_.Texts(), ElementsAre("line 1 1, 4 1", "line 4 2, 1 2"));
}

TEST_F(DrawingFilterTest, MarkersAreWholeWhenNoneIsMissing) {
  filter_.SetRegion(square_);
  Send(TrMarkerSet({{1, 1, 5}, {2, 2, 5}}));
  Send(TrMarkerSet({{1, 1, 5}, {9, 2, 5}}));
  Send(TrMarkerSet({{9, 9, 5}}));
  EXPECT_THAT(Counts(), ElementsAre(1, 1, 1));
}

TEST_F(DrawingFilterTest, OtherShapesAreWholeWhenTheyArriveThemselves) {
  filter_.SetRegion(square_);
  Send(quillon::TrRectangle(Box2d(1, 1, 2, 2)));
  Send(quillon::TrRectangle(Box2d(1, 1, 9, 2)));
  EXPECT_THAT(Counts(), ElementsAre(1, 1, 0));
}

TEST_F(DrawingFilterTest, PensBrushesFontsAndClipPathsDoNotCount) {
  filter_.SetRegion(square_);
  Send(quillon::TrPen(quillon::TrPen::kSolid, {}, 1));
  Send(quillon::TrBrush());
  Send(quillon::TrFont());
  Send(quillon::TrClipPath({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}));
  EXPECT_EQ(filter_.Statistics().Objects(), 0U);
  EXPECT_EQ(objects_.Texts().size(), 3U);
}

TEST_F(DrawingFilterTest, ARegionWithHolesKeepsItsRings) {
  const Polygon2 frame({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {1, 1}, {8, 1}, {8, 8}, {1, 8}}, {4, 4});
  filter_.SetRegion(frame);
  EXPECT_EQ(filter_.Region().Points(), frame.Points());
  EXPECT_EQ(filter_.Region().Counts(), frame.Counts());
  Send(TrPolyline({{0.5, 4, 0}, {8.5, 4, 0}}));
  EXPECT_THAT(objects_.Texts(), ElementsAre("line 0.5 4, 1 4", "line 8 4, 8.5 4"));
}

TEST_F(DrawingFilterTest, ARegionWithoutAreaLeavesNoArea) {
  filter_.SetRegion(Polygon2({{5, 5}}, {1}));
  Send(TrPolygon({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}}));
  Send(TrPolyline({{0, 0, 0}, {9, 0, 0}}));
  EXPECT_THAT(Counts(), ElementsAre(0, 0, 2));
  EXPECT_THAT(objects_.Texts(), IsEmpty());
}

TEST_F(DrawingFilterTest, ARegionWithoutRingsEndsTheClipping) {
  filter_.SetRegion(square_);
  filter_.SetRegion(Polygon2());
  Send(TrPolyline({{0, 0, 3}, {9, 0, 3}}));
  EXPECT_THAT(Counts(), ElementsAre(1, 0, 0));
}

class Stop : public corvel::IProgress {
 public:
  bool Update(double fraction) override { return fraction < 0.5; }
};

TEST_F(DrawingFilterTest, StopsWhenTheUserDoes) {
  filter_.ReportProgress(1.0);  // nobody waits
  Stop stop;
  filter_.SetProgress(&stop);
  filter_.ReportProgress(0.2);
  EXPECT_THROW(filter_.ReportProgress(0.5), quillon::AbortError);
}

TEST_F(DrawingFilterTest, KeepsLossesAndRemarksApart) {
  filter_.NoteLoss("a circle");
  filter_.LossList().Add("a square");
  filter_.Remark("is crooked");
  EXPECT_THAT(filter_.Losses().First(), ElementsAre("a circle", "a square"));
  EXPECT_THAT(filter_.Remarks().First(), ElementsAre("is crooked"));
}

}  // namespace
}  // namespace trovan::filters
