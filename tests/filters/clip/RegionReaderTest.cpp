#include "filters/clip/RegionReader.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/IoFilter.h>

#include "filters/support/FilterError.h"
#include "support/ShapeImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using tarnis::Polygon2;
using test::PartsContent;
using test::ShapeContent;
using test::ShapeImage;
using testing::ElementsAre;
using testing::HasSubstr;

class RegionReaderTest : public testing::Test {
 protected:
  std::wstring Save(const std::string& name, const std::string& bytes) const {
    test::WriteBytes(folder_.Path() / name, bytes);
    return folder_.File(std::wstring(name.begin(), name.end()));
  }

  static Polygon2 Read(const std::wstring& argument) { return ReadRegion(argument, nullptr); }

  static std::string ErrorOf(const std::wstring& argument) {
    try {
      Read(argument);
    } catch (const FilterError& error) {
      return error.what();
    }
    return "no error";
  }

  test::TempFolder folder_;
};

TEST_F(RegionReaderTest, TakesABox) {
  const Polygon2 region = Read(L"-1.5, 2,3e1,4");
  EXPECT_THAT(region.Points(),
              ElementsAre(Vec2d(-1.5, 2), Vec2d(30, 2), Vec2d(30, 4), Vec2d(-1.5, 4)));
  EXPECT_THAT(region.Counts(), ElementsAre(4));
}

TEST_F(RegionReaderTest, RefusesABoxWithoutWidthOrHeight) {
  EXPECT_THAT(ErrorOf(L"5,0,5,9"), HasSubstr("no width: xmin has to be below xmax"));
  EXPECT_THAT(ErrorOf(L"6,0,5,9"), HasSubstr("no width"));
  EXPECT_THAT(ErrorOf(L"0,9,5,9"), HasSubstr("no height: ymin has to be below ymax"));
  EXPECT_THAT(ErrorOf(L"0,nan,5,9"), HasSubstr("has to be finite"));
  EXPECT_THAT(ErrorOf(L"0,0,inf,9"), HasSubstr("has to be finite"));
}

TEST_F(RegionReaderTest, TakesWellKnownText) {
  const Polygon2 region = Read(L"POLYGON ((0 0, 9 0, 9 9, 0 0), (5 1, 6 1, 6 2, 5 1))");
  EXPECT_THAT(region.Counts(), ElementsAre(4, 4));
  EXPECT_EQ(region.Points()[4], Vec2d(5, 1));
}

TEST_F(RegionReaderTest, UnitesSeveralPolygons) {
  const Polygon2 region =
      Read(L"MULTIPOLYGON (((0 0, 4 0, 4 4, 0 4)), ((2 2, 6 2, 6 6, 2 6)), ((8 8, 9 8, 9 9)))");
  EXPECT_TRUE(PointInPolygon({3, 3}, region));
  EXPECT_TRUE(PointInPolygon({1, 1}, region));
  EXPECT_TRUE(PointInPolygon({5, 5}, region));
  EXPECT_TRUE(PointInPolygon({8.9, 8.5}, region));
  EXPECT_FALSE(PointInPolygon({5, 1}, region));
}

TEST_F(RegionReaderTest, TakesAFileWithWellKnownText) {
  const Polygon2 region = Read(Save("r.wkt", "\nPolygon ((0 0, 9 0,\n 9 9, 0 0))\n"));
  EXPECT_EQ(GetBoundingBox(region), Box2d(0, 0, 9, 9));
}

TEST_F(RegionReaderTest, PassesOverAByteOrderMarkInFrontOfText) {
  const Polygon2 region = Read(Save("r.wkt", "\xEF\xBB\xBFPOLYGON ((0 0, 9 0, 9 9, 0 0))\r\n"));
  EXPECT_EQ(GetBoundingBox(region), Box2d(0, 0, 9, 9));
}

TEST_F(RegionReaderTest, UnitesThePolygonsOfGeoJson) {
  const Polygon2 region = Read(
      Save("r.geojson",
           R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[50,50]},)"
           R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,4],[0,0]]]},)"
           R"({"type":"LineString","coordinates":[[50,50],[60,60]]},)"
           R"({"type":"Polygon","coordinates":[[[2,2],[6,2],[6,6],[2,6],[2,2]]]}]})"));
  EXPECT_EQ(GetBoundingBox(region), Box2d(0, 0, 6, 6));
  EXPECT_TRUE(PointInPolygon({3, 3}, region));
  EXPECT_FALSE(PointInPolygon({5, 1}, region));
}

TEST_F(RegionReaderTest, TakesTheFirstPolygonOfAShapefile) {
  const Polygon2 region =
      Read(Save("r.shp", ShapeImage(5)
                             .Record(ShapeContent(0))
                             .Record(PartsContent(5, {{{0, 0}, {0, 9}, {9, 9}}}))
                             .Record(PartsContent(5, {{{5, 5}, {5, 9}, {9, 9}}}))
                             .Bytes()));
  EXPECT_THAT(region.Points(), ElementsAre(Vec2d(0, 0), Vec2d(0, 9), Vec2d(9, 9)));
}

TEST_F(RegionReaderTest, TakesNoOtherPolygonForADamagedFirstOne) {
  const std::string damaged = PartsContent(5, {{{0, 0}, {0, 9}, {9, 9}}}).Bytes().substr(0, 60);
  EXPECT_THAT(ErrorOf(Save("r.shp", ShapeImage(5)
                                        .Record(damaged)
                                        .Record(PartsContent(5, {{{5, 5}, {5, 9}, {9, 9}}}))
                                        .Bytes())),
              HasSubstr("record 1 at byte 100: it needs 96 bytes, but has 60"));
}

// User units of the document, y down.
TEST_F(RegionReaderTest, TakesWhatAnSvgDocumentFills) {
  const Polygon2 region =
      Read(Save("r.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 100">)"
                         R"(<rect x="10" y="20" width="30" height="5"/>)"
                         R"(<path d="M40 20h10v10h-10z"/>)"
                         R"(<path d="M0 0h90v90h-90z" fill="none" stroke="red"/></svg>)"));
  EXPECT_EQ(GetBoundingBox(region), Box2d(10, 20, 50, 30));
  EXPECT_TRUE(PointInPolygon({45, 28}, region));
  EXPECT_FALSE(PointInPolygon({15, 28}, region));
}

TEST_F(RegionReaderTest, CurvesOfAnSvgDocumentAreFlattened) {
  const Polygon2 region =
      Read(Save("r.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 100">)"
                         R"(<ellipse cx="50" cy="50" rx="40" ry="20"/></svg>)"));
  EXPECT_GT(region.Points().size(), 16U);
  const Box2d box = GetBoundingBox(region);
  EXPECT_NEAR(box.min.x, 10, 0.25);
  EXPECT_NEAR(box.max.y, 70, 0.25);
}

TEST_F(RegionReaderTest, TellsWhatIsWrong) {
  EXPECT_THAT(ErrorOf(L"1,2,3"), HasSubstr("the region 1,2,3: there is no file of this name, and"));
  EXPECT_THAT(ErrorOf(L"1,2,3,x"), HasSubstr("neither a box"));
  EXPECT_THAT(ErrorOf(L"missing.geojson"), HasSubstr("missing.geojson: there is no file"));
  EXPECT_THAT(ErrorOf(L"POLYGON ((0 0, 1 1"), HasSubstr("the region: well-known text, column 19"));
  EXPECT_THAT(ErrorOf(L"POLYGON ((0 0, 9 9, 0 0))"), HasSubstr("the region: it has no area"));
  EXPECT_THAT(ErrorOf(L"MULTIPOLYGON EMPTY"), HasSubstr("it has no area"));
  EXPECT_THAT(ErrorOf(Save("t.txt", "no region")),
              HasSubstr("neither a drawing (SVG, GeoJSON, a shapefile) nor a POLYGON"));
  EXPECT_THAT(ErrorOf(L"polygons.geojson"), HasSubstr("polygons.geojson: there is no file"));
  EXPECT_THAT(ErrorOf(Save("p.json", R"({"type":"Point","coordinates":[1,2]})")),
              HasSubstr("it holds no filled area"));
  EXPECT_THAT(ErrorOf(Save("p.shp", ShapeImage(1).Record(ShapeContent(0)).Bytes())),
              HasSubstr("it holds no polygon"));
  EXPECT_THAT(ErrorOf(Save("c.shp", ShapeImage(1).RecordOfLength("", 99).Bytes())),
              HasSubstr("should have 198 bytes"));
}

TEST_F(RegionReaderTest, RemarksWhatItCannotTakeOverOfADrawing) {
  Problems remarks;
  ReadRegion(Save("r.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9">)"
                           R"(<path d="M0 0h9v9h-9z M1 1 q"/></svg>)"),
             nullptr, &remarks);
  EXPECT_THAT(remarks.First(), ElementsAre(HasSubstr("a path is drawn up to the fault")));
}

class Stop : public corvel::IProgress {
 public:
  bool Update(double) override { return false; }
};

TEST_F(RegionReaderTest, StopsWhenTheUserDoes) {
  Stop stop;
  EXPECT_THROW(ReadRegion(Save("p.json", R"({"type":"Point","coordinates":[1,2]})"), &stop),
               quillon::AbortError);
}

}  // namespace
}  // namespace trovan::filters
