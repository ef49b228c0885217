#include "filters/geometry/WktPolygon.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ParseWktPolygon, ReadsRings) {
  const auto polygons = ParseWktPolygon("POLYGON ((0 0, 4 0, 4 4, 0 0), (2 1,3 1,3 2,2 1))");
  ASSERT_EQ(polygons.size(), 1U);
  EXPECT_THAT(polygons[0].Counts(), ElementsAre(4, 4));
  EXPECT_EQ(polygons[0].Points()[2], Vec2d(4, 4));
  EXPECT_EQ(polygons[0].Points()[6], Vec2d(3, 2));
}

TEST(ParseWktPolygon, ReadsSeveralPolygons) {
  const auto polygons =
      ParseWktPolygon("MULTIPOLYGON (((0 0,1 0,1 1)),EMPTY,((5 5,6 5,6 6),(5 5, 5 6, 6 6)))");
  ASSERT_EQ(polygons.size(), 2U);
  EXPECT_THAT(polygons[0].Counts(), ElementsAre(3));
  EXPECT_THAT(polygons[1].Counts(), ElementsAre(3, 3));
}

TEST(ParseWktPolygon, TakesAnyCaseAndBlanksAndNumbers) {
  const auto polygons = ParseWktPolygon("\n Polygon\t( ( -1.5e1 +.5 ,1. 2,\r\n3 4 ) )\n");
  ASSERT_EQ(polygons.size(), 1U);
  EXPECT_THAT(polygons[0].Points(), ElementsAre(Vec2d(-15, 0.5), Vec2d(1, 2), Vec2d(3, 4)));
}

TEST(ParseWktPolygon, PassesOverHeightsAndMeasures) {
  for (const char* text :
       {"POLYGON Z ((1 2 9, 3 4 9, 5 6 9))", "polygonz((1 2 9, 3 4 9, 5 6 9))",
        "POLYGON M ((1 2 9, 3 4 9, 5 6 9))", "POLYGONM((1 2 9, 3 4 9, 5 6 9))",
        "POLYGON ZM ((1 2 8 9, 3 4 8 9, 5 6 8 9))", "POLYGONZM((1 2 8 9,3 4 8 9,5 6 8 9))",
        "POLYGON((1 2 9, 3 4 9, 5 6 9))", "MULTIPOLYGON Z(((1 2 9, 3 4 9, 5 6 9)))"}) {
    SCOPED_TRACE(text);
    const auto polygons = ParseWktPolygon(text);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_THAT(polygons[0].Points(), ElementsAre(Vec2d(1, 2), Vec2d(3, 4), Vec2d(5, 6)));
  }
}

TEST(ParseWktPolygon, EmptyAreasHaveNoRings) {
  EXPECT_THAT(ParseWktPolygon("MULTIPOLYGON EMPTY"), IsEmpty());
  EXPECT_THAT(ParseWktPolygon("polygon z empty"), IsEmpty());
  EXPECT_THAT(ParseWktPolygon("MultiPolygonZM Empty"), IsEmpty());
}

TEST(ParseWktPolygon, TellsWhatIsWrongAndWhere) {
  struct Case {
    const char* text;
    const char* message;
  };
  constexpr Case kCases[] = {
      {"", "column 1: POLYGON or MULTIPOLYGON expected, the end of the text found"},
      {"LINESTRING (0 0, 1 1)", "column 1: POLYGON or MULTIPOLYGON expected, \"LINESTRING\" found"},
      {"POLYGON", "column 8: \"(\" expected, the end of the text found"},
      {"POLYGON (0 0, 1 1)", "column 10: \"(\" expected, \"0\" found"},
      {"POLYGON ((0, 1 1))", "column 12: a second coordinate expected, \",\" found"},
      {"POLYGON ((a 0))", "column 11: a coordinate expected, \"a\" found"},
      {"POLYGON ((0 inf))", "column 13: a second coordinate expected, \"inf\" found"},
      {"POLYGON ((0 1e999))", "column 13: a second coordinate expected, \"1e999\" found"},
      {"POLYGON ((0 0 x))", "column 15: a coordinate expected, \"x\" found"},
      {"POLYGON ((0 0 1 2 3))", "column 19: \",\" or \")\" expected, \"3\" found"},
      {"POLYGON ((0 0, 1 1)", "column 20: \",\" or \")\" expected, the end of the text found"},
      {"POLYGON ((0 0, 1 1)) ;", "column 22: the end of the text expected, \";\" found"},
      {"POLYGON (())", "column 11: a coordinate expected, \")\" found"},
  };
  for (const Case& test : kCases) {
    SCOPED_TRACE(test.text);
    try {
      ParseWktPolygon(test.text);
      ADD_FAILURE() << "no error";
    } catch (const FilterError& error) {
      EXPECT_EQ(error.what(), "well-known text, " + std::string(test.message));
    }
  }
}

TEST(ParseWktPolygon, RefusesTextsThatAreCutOff) {
  const std::string text = "MULTIPOLYGON Z (((0 0 1,1 0 1,1 1 1),(5 5 1,6 5 1,6 6 1)),EMPTY)";
  for (std::size_t length = 0; length < text.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_THROW(ParseWktPolygon(text.substr(0, length)), FilterError);
  }
  EXPECT_EQ(ParseWktPolygon(text).size(), 1U);
}

TEST(LooksLikeWktPolygon, GoesByTheFirstWord) {
  EXPECT_TRUE(LooksLikeWktPolygon("POLYGON ((0 0"));
  EXPECT_TRUE(LooksLikeWktPolygon("\n multipolygonz"));
  EXPECT_FALSE(LooksLikeWktPolygon("POINT (0 0)"));
  EXPECT_TRUE(LooksLikeWktPolygon("MultiPolygon(((0 0"));
  EXPECT_FALSE(LooksLikeWktPolygon("land/POLYGON"));
  EXPECT_FALSE(LooksLikeWktPolygon("polygons.geojson"));
  EXPECT_FALSE(LooksLikeWktPolygon("polygon_2.shp"));
  EXPECT_FALSE(LooksLikeWktPolygon(""));
}

}  // namespace
}  // namespace trovan::filters
