#include "filters/geometry/ShapeImportFilter.h"

#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filters/drawing/DrawnObjects.h"
#include "filters/support/FilterError.h"
#include "support/DbfImage.h"
#include "support/ShapeImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using test::DbfImage;
using test::DrawnObjects;
using test::PartsContent;
using test::ShapeContent;
using test::ShapeImage;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ShapeImportFilterTest : public testing::Test {
 protected:
  std::wstring Save(const std::string& bytes, const char* name = "map.shp") const {
    test::WriteBytes(folder_.Path() / name, bytes);
    return folder_.File(L"map.shp");
  }

  std::vector<std::string> Import(const ShapeImage& image) { return Import(image.Bytes()); }
  std::vector<std::string> Import(const std::string& bytes) {
    filter_.ImportFromFile(Save(bytes), false);
    return objects_.Drawables();
  }

  // One record alone.
  std::vector<std::string> Import(const ShapeContent& content) {
    return Import(ShapeImage(5).Record(content));
  }

  const std::vector<std::string>& Losses() const { return filter_.Losses().First(); }
  const std::vector<std::string>& Remarks() const { return filter_.Remarks().First(); }

  test::TempFolder folder_;
  DrawnObjects objects_;
  ShapeImportFilter filter_{objects_};
};

TEST_F(ShapeImportFilterTest, SendsPenAndBrushFirst) {
  Import(ShapeContent(1).Points({{1, 2}}));
  EXPECT_THAT(objects_.Texts(), ElementsAre("pen 0", "brush", "markers 1 2"));
}

TEST_F(ShapeImportFilterTest, ImportsPoints) {
  EXPECT_THAT(Import(ShapeImage(1)
                         .Record(ShapeContent(1).Points({{1, 2}}))
                         .Record(ShapeContent(11).Reals({3, 4, 5, 6}))
                         .Record(ShapeContent(21).Reals({7, 8, 9}))),
              ElementsAre("markers 1 2", "markers 3 4 5", "markers 7 8"));
  EXPECT_THAT(Losses(), IsEmpty());
}

TEST_F(ShapeImportFilterTest, ImportsSetsOfPoints) {
  EXPECT_THAT(
      Import(ShapeImage(8)
                 .Record(ShapeContent(8).Box().Words({2}).Points({{1, 2}, {3, 4}}))
                 .Record(ShapeContent(18).Box().Words({1}).Points({{1, 2}}).Reals({9, 9, 9}))
                 .Record(ShapeContent(28).Box().Words({1}).Points({{5, 6}}))
                 .Record(ShapeContent(8).Box().Words({0}))),
      ElementsAre("markers 1 2, 3 4", "markers 1 2 9", "markers 5 6"));
}

TEST_F(ShapeImportFilterTest, ImportsALineForEachPart) {
  ShapeContent heights = PartsContent(13, {{{1, 2}, {3, 4}}});
  heights.Reals({7, 8, 7, 8});
  EXPECT_THAT(
      Import(ShapeImage(3)
                 .Record(PartsContent(3, {{{1, 2}, {3, 4}}, {}, {{5, 6}, {7, 8}, {9, 0}}}))
                 .Record(heights)
                 .Record(PartsContent(23, {{{1, 1}, {2, 2}}}))),
      ElementsAre("line 1 2, 3 4", "line 5 6, 7 8, 9 0", "line 1 2 7, 3 4 8", "line 1 1, 2 2"));
  EXPECT_THAT(Losses(), IsEmpty());
}

TEST_F(ShapeImportFilterTest, ImportsOnePolygonWithAllRings) {
  ShapeContent heights = PartsContent(15, {{{1, 2}, {3, 4}, {5, 5}}});
  heights.Reals({7, 9, 7, 8, 9});
  EXPECT_THAT(
      Import(ShapeImage(5)
                 .Record(PartsContent(5, {{{0, 0}, {0, 9}, {9, 9}}, {{1, 1}, {2, 1}, {2, 2}}}))
                 .Record(heights)
                 .Record(PartsContent(25, {{{1, 1}, {2, 2}, {3, 1}}}))),
      ElementsAre("polygon 0 0, 0 9, 9 9 | 1 1, 2 1, 2 2", "polygon 1 2 7, 3 4 8, 5 5 9",
                  "polygon 1 1, 2 2, 3 1"));
}

TEST_F(ShapeImportFilterTest, NullAndEmptyShapesAreNotDrawn) {
  EXPECT_THAT(Import(ShapeImage(5).Record(ShapeContent(0)).Record(PartsContent(5, {}))), IsEmpty());
  EXPECT_THAT(Losses(), IsEmpty());
  EXPECT_THAT(Remarks(), IsEmpty());
}

TEST_F(ShapeImportFilterTest, MissingHeightsAreZero) {
  EXPECT_THAT(Import(ShapeImage(15)
                         .Record(PartsContent(15, {{{1, 2}, {3, 4}, {5, 5}}}))
                         .Record(ShapeContent(11).Points({{1, 2}}))),
              ElementsAre("polygon 1 2, 3 4, 5 5", "markers 1 2"));
  EXPECT_THAT(Losses(), IsEmpty());
  EXPECT_THAT(Remarks(),
              ElementsAre("record 1 at byte 100: the heights are missing; 0 stands for them",
                          HasSubstr("record 2")));
}

TEST_F(ShapeImportFilterTest, BytesBehindAShapeMeanNothing) {
  EXPECT_THAT(Import(ShapeContent(1).Points({{1, 2}}).Reals({3, 4, 5})),
              ElementsAre("markers 1 2"));
}

TEST_F(ShapeImportFilterTest, LeavesOutDamagedShapesAndGoesOn) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(
      Import(ShapeImage(5)
                 .Record(ShapeContent(31).Box())
                 .Record(ShapeContent(4))
                 .Record("ab")
                 .Record("")
                 .Record(ShapeContent(1).Reals({1}))
                 .Record(ShapeContent(1).Reals({1, nan}))
                 .Record(ShapeContent(5).Box().Words({1, 4}).Words({0}).Points({{1, 1}}))
                 .Record(ShapeContent(5).Box().Words({0xFFFFFFFF, 0xFFFFFFFF}))
                 .Record(ShapeContent(8).Box().Words({0xFFFFFFFF}))
                 .Record(ShapeContent(5).Box().Words({2, 2, 0, 3}).Points({{1, 1}, {2, 2}}))
                 .Record(ShapeContent(5).Box().Words({3, 2, 0, 2, 1}).Points({{1, 1}, {2, 2}}))
                 .Record(ShapeContent(3).Box().Words({1, 2, 1}).Points({{1, 1}, {2, 2}}))
                 .Record(ShapeContent(3).Box().Words({0, 2}).Points({{1, 1}, {2, 2}}))
                 .Record(ShapeContent(1).Points({{1, 2}}))),
      ElementsAre("markers 1 2"));
  EXPECT_EQ(filter_.Losses().Count(), 13U);
  EXPECT_THAT(
      Losses(),
      ElementsAre(
          "record 1 at byte 100 is left out: surfaces of patches are not taken over",
          "record 2 at byte 144 is left out: shapes of type 4 are not taken over",
          "record 3 at byte 156 is left out: it has 2 bytes, too few for a shape",
          "record 4 at byte 166 is left out: it has 0 bytes, too few for a shape",
          "record 5 at byte 174 is left out: it needs 20 bytes, but has 12",
          "record 6 at byte 194 is left out: a coordinate is no finite number",
          "record 7 at byte 222 is left out: it needs 112 bytes, but has 64",
          "record 8 at byte 294 is left out: it needs 85899345944 bytes, but has 44",
          "record 9 at byte 346 is left out: it needs 68719476760 bytes, but has 40",
          "record 10 at byte 394 is left out: part 2 of 2 begins at point 3 of 2, out of order"));
}

TEST_F(ShapeImportFilterTest, LeavesOutPartsThatAreOutOfOrder) {
  Import(ShapeImage(5)
             .Record(ShapeContent(5).Box().Words({3, 2, 0, 2, 1}).Points({{1, 1}, {2, 2}}))
             .Record(ShapeContent(3).Box().Words({1, 2, 1}).Points({{1, 1}, {2, 2}}))
             .Record(ShapeContent(3).Box().Words({0, 2}).Points({{1, 1}, {2, 2}})));
  EXPECT_THAT(Losses(),
              ElementsAre(HasSubstr("part 3 of 3 begins at point 1 of 2, out of order"),
                          HasSubstr("part 1 of 1 begins at point 1 of 2, not at the first"),
                          HasSubstr("it has 2 points, but no part")));
  EXPECT_THAT(objects_.Drawables(), IsEmpty());
}

TEST_F(ShapeImportFilterTest, EndsAtARecordThatTheFileCutsOff) {
  EXPECT_THAT(Import(ShapeImage(1)
                         .Record(ShapeContent(1).Points({{1, 2}}))
                         .RecordOfLength(ShapeContent(1).Points({{3, 4}}).Bytes(), 0xFFFFFFFF)
                         .Record(ShapeContent(1).Points({{5, 6}}))),
              ElementsAre("markers 1 2"));
  EXPECT_THAT(Losses(), ElementsAre("byte 128: record 2 should have 8589934590 bytes, but the file "
                                    "ends after 48; nothing behind this place can be read"));
}

// Whatever is missing at the end of a file, something is said of it.
TEST_F(ShapeImportFilterTest, ReadsFilesThatAreCutAtEveryLength) {
  const std::string bytes = ShapeImage(5)
                                .Record(ShapeContent(1).Points({{1, 2}}))
                                .Record(PartsContent(5, {{{0, 0}, {0, 9}, {9, 9}}}))
                                .Record(ShapeContent(0))
                                .Bytes();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    SCOPED_TRACE(length);
    DrawnObjects objects;
    ShapeImportFilter filter(objects);
    const std::wstring path = Save(bytes.substr(0, length));
    if (length < 100) {
      EXPECT_THROW(filter.ImportFromFile(path, false), FilterError);
      continue;
    }
    filter.ImportFromFile(path, false);
    const std::size_t whole = length < 128 ? 0 : length < 232 ? 1 : 2;
    EXPECT_EQ(objects.Drawables().size(), whole);
    const bool betweenRecords = length == 100 || length == 128 || length == 232;
    EXPECT_EQ(filter.Losses().Count(), betweenRecords ? 0U : 1U);
  }
}

TEST_F(ShapeImportFilterTest, RefusesOtherFiles) {
  EXPECT_THROW(Import(std::string(200, '\0')), FilterError);
  std::string version = ShapeImage(5).Bytes();
  version[28] = 1;
  EXPECT_THROW(Import(version), FilterError);
  EXPECT_THROW(filter_.ImportFromFile(folder_.File(L"missing.shp"), false), std::exception);
  EXPECT_FALSE(filter_.CanImport(Save("nothing of the kind")));
  EXPECT_TRUE(filter_.CanImport(Save(ShapeImage(5).Bytes())));
}

TEST_F(ShapeImportFilterTest, TellsTheExtentOfTheHeader) {
  const std::wstring path = Save(ShapeImage(5).Extent({1, 2}, {3, 4}).Bytes());
  const auto info = filter_.GetImportFileInfo(ShapeImportFilter::kScanHeader, path);
  EXPECT_TRUE(info.isKnown);
  EXPECT_EQ(info.extent, corvel::Box2d(1, 2, 3, 4));
  EXPECT_EQ(info.summary, L"Shapefile: polygons");
}

TEST_F(ShapeImportFilterTest, FindsTheExtentWhereTheHeaderHasNone) {
  const std::wstring path = Save(ShapeImage(1)
                                     .Extent({9, 9}, {-9, -9})
                                     .Record(ShapeContent(1).Points({{1, 2}}))
                                     .Record(ShapeContent(1).Points({{-3, 4}}))
                                     .Bytes());
  const auto scan = [&](ShapeImportFilter::FileScanMode mode) {
    return filter_.GetImportFileInfo(mode, path).extent;
  };
  EXPECT_EQ(scan(ShapeImportFilter::kScanFile), corvel::Box2d(-3, 2, 1, 4));
  EXPECT_TRUE(scan(ShapeImportFilter::kScanHeader).IsEmpty());
}

TEST_F(ShapeImportFilterTest, FindsTheExtentWhereTheHeaderHasAnOldOne) {
  for (const double old : {0.0, 500.0}) {
    const std::wstring path = Save(ShapeImage(1)
                                       .Extent({old, old}, {old, old})
                                       .Record(ShapeContent(1).Points({{1, 2}}))
                                       .Record(ShapeContent(1).Points({{-3, 4}}))
                                       .Bytes());
    EXPECT_EQ(filter_.GetImportFileInfo(ShapeImportFilter::kScanFile, path).extent,
              corvel::Box2d(-3, 2, 1, 4));
  }
}

class Stop : public corvel::IProgress {
 public:
  bool Update(double) override { return false; }
};

TEST_F(ShapeImportFilterTest, StopsWhenTheUserDoes) {
  Stop stop;
  filter_.SetProgress(&stop);
  EXPECT_THROW(Import(ShapeContent(0)), quillon::AbortError);
}

// --- Attributes ----------------------------------------------------------------------------------

class ShapeAttributesTest : public ShapeImportFilterTest {
 protected:
  ShapeAttributesTest() { filter_.SetKeepAttributes(true); }

  static ShapeImage ThreePoints() {
    return ShapeImage(1)
        .Record(ShapeContent(1).Points({{1, 1}}))
        .Record(ShapeContent(0))
        .Record(ShapeContent(1).Points({{3, 3}}));
  }
};

TEST_F(ShapeAttributesTest, AreTheRecordsOfTheTable) {
  Save(DbfImage()
           .Field("NAME", 'C', 4)
           .Field("POP", 'N', 5)
           .Field("CITY", 'L', 1)
           .Record("Oslo  700T")
           .Record("Rome 2800T")
           .DeletedRecord("Bonn     ?")
           .Text(),
       "map.dbf");
  EXPECT_THAT(Import(ThreePoints()), ElementsAre("markers 1 1 {NAME=Oslo, POP=700, CITY=true}",
                                                 "markers 3 3 {NAME=Bonn}"));
  EXPECT_THAT(Losses(), IsEmpty());
}

TEST_F(ShapeAttributesTest, AreLeftOutUnlessAskedFor) {
  Save(DbfImage().Field("NAME", 'C', 4).Record("Oslo").Text(), "map.dbf");
  filter_.SetKeepAttributes(false);
  EXPECT_THAT(Import(ShapeContent(1).Points({{1, 1}})), ElementsAre("markers 1 1"));
}

TEST_F(ShapeAttributesTest, AreReadInTheCodePageOfTheTableOrTheOneAskedFor) {
  Save(DbfImage().Field("NAME", 'C', 4).Record("S\xF8r").Text(), "map.dbf");
  EXPECT_THAT(Import(ShapeContent(1).Points({{1, 1}})),
              ElementsAre("markers 1 1 {NAME=S\xC3\xB8r}"));
  filter_.SetCodePage(65001);
  EXPECT_THAT(Import(ShapeContent(1).Points({{1, 1}})).back(), "markers 1 1 {NAME=S\xEF\xBF\xBDr}");
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("1 places of the attributes are no text of code "
                                               "page 65001")));
}

TEST_F(ShapeAttributesTest, OfATableInCapitalsAreFound) {
  Save(DbfImage().Field("NAME", 'C', 4).Record("Oslo").Text(), "map.DBF");
  EXPECT_THAT(Import(ShapeContent(1).Points({{1, 1}})), ElementsAre("markers 1 1 {NAME=Oslo}"));
}

TEST_F(ShapeAttributesTest, ThatAreMissingAreToldOnce) {
  Save(DbfImage().Field("NAME", 'C', 4).Record("Oslo").Text(), "map.dbf");
  EXPECT_THAT(Import(ThreePoints().Record(ShapeContent(1).Points({{4, 4}}))),
              ElementsAre("markers 1 1 {NAME=Oslo}", "markers 3 3", "markers 4 4"));
  EXPECT_THAT(Losses(), ElementsAre("there are no attributes from record 3 on"));
}

TEST_F(ShapeAttributesTest, OfNoTableAreRemarkedOn) {
  EXPECT_THAT(Import(ThreePoints()), ElementsAre("markers 1 1", "markers 3 3"));
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("no .dbf file lies beside")));
}

TEST_F(ShapeAttributesTest, OfABrokenTableRaise) {
  Save("no table", "map.dbf");
  EXPECT_THROW(Import(ThreePoints()), FilterError);
}

}  // namespace
}  // namespace trovan::filters
