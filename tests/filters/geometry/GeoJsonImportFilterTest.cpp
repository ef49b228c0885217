#include "filters/geometry/GeoJsonImportFilter.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filters/drawing/DrawnObjects.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using test::DrawnObjects;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Import(const std::string& text, bool withProperties = false) {
  DrawnObjects objects;
  GeoJsonImportFilter filter(objects);
  filter.SetKeepAttributes(withProperties);
  filter.ImportFromMemory(reinterpret_cast<const unsigned char*>(text.data()),
                          static_cast<unsigned int>(text.size()), false);
  return objects.Drawables();
}

// A feature with the given geometry and properties as the only one of a collection.
std::string Collection(const std::string& geometry, const std::string& properties = "null") {
  return R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":)" + geometry +
         R"(,"properties":)" + properties + "}]}";
}

std::string Geometry(const std::string& type, const std::string& coordinates) {
  return R"({"type":")" + type + R"(","coordinates":)" + coordinates + "}";
}

std::string ErrorOf(const std::string& text) {
  try {
    Import(text, true);
  } catch (const FilterError& error) {
    return error.what();
  }
  return "no error";
}

TEST(GeoJsonImportFilter, ImportsEachTypeOfGeometry) {
  EXPECT_THAT(Import(Geometry("Point", "[1,2]")), ElementsAre("markers 1 2"));
  EXPECT_THAT(Import(Geometry("MultiPoint", "[[1,2],[3,4]]")), ElementsAre("markers 1 2, 3 4"));
  EXPECT_THAT(Import(Geometry("LineString", "[[1,2],[3,4]]")), ElementsAre("line 1 2, 3 4"));
  EXPECT_THAT(Import(Geometry("MultiLineString", "[[[1,2],[3,4]],[[5,6],[7,8],[9,0]]]")),
              ElementsAre("line 1 2, 3 4", "line 5 6, 7 8, 9 0"));
  EXPECT_THAT(Import(Geometry("Polygon", "[[[0,0],[9,0],[9,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]")),
              ElementsAre("polygon 0 0, 9 0, 9 9, 0 0 | 1 1, 2 1, 2 2, 1 1"));
  EXPECT_THAT(Import(Geometry("MultiPolygon",
                              "[[[[0,0],[9,0],[9,9]],[[1,1],[2,1],[2,2]]],"
                              "[[[10,0],[19,0],[19,9]]]]")),
              ElementsAre("polygon 0 0, 9 0, 9 9 | 1 1, 2 1, 2 2 | 10 0, 19 0, 19 9"));
}

TEST(GeoJsonImportFilter, TakesTheLastOfMembersThatStandTwice) {
  const std::string feature = R"({"type":"Feature","geometry":)" + Geometry("Point", "[1,2]") +
                              R"(,"properties":{"a":1},"geometry":)";
  EXPECT_THAT(Import(feature + Geometry("Point", "[3,4]") + "}"), ElementsAre("markers 3 4"));
  EXPECT_THAT(Import(feature + "null}"), IsEmpty());
  EXPECT_THAT(Import(feature + Geometry("Point", "[3,4]") + R"(,"properties":null})", true),
              ElementsAre("markers 3 4"));
}

TEST(GeoJsonImportFilter, SendsPenAndBrushFirst) {
  DrawnObjects objects;
  GeoJsonImportFilter filter(objects);
  const std::string text = Geometry("Point", "[1,2]");
  filter.ImportFromMemory(reinterpret_cast<const unsigned char*>(text.data()),
                          static_cast<unsigned int>(text.size()), false);
  EXPECT_THAT(objects.Texts(), ElementsAre("pen 0", "brush", "markers 1 2"));
}

TEST(GeoJsonImportFilter, ImportsFeaturesAndCollectionsOfThem) {
  const std::string feature =
      R"({"type":"Feature","properties":{},"geometry":)" + Geometry("Point", "[1,2]") + "}";
  EXPECT_THAT(Import(feature), ElementsAre("markers 1 2"));
  EXPECT_THAT(
      Import(R"({"features":[)" + feature + "," + feature + R"(],"type":"FeatureCollection"})"),
      ElementsAre("markers 1 2", "markers 1 2"));
  EXPECT_THAT(Import(R"({"type":"FeatureCollection","features":[]})"), IsEmpty());
}

TEST(GeoJsonImportFilter, ImportsCollectionsOfGeometries) {
  const std::string inner = R"({"type":"GeometryCollection","geometries":[)" +
                            Geometry("Point", "[1,2]") + "," +
                            Geometry("LineString", "[[0,0],[1,1]]") + "]}";
  EXPECT_THAT(Import(inner), ElementsAre("markers 1 2", "line 0 0, 1 1"));
  EXPECT_THAT(Import(Collection(R"({"type":"GeometryCollection","geometries":[)" + inner + "," +
                                Geometry("Point", "[3,4]") + "]}")),
              ElementsAre("markers 1 2", "line 0 0, 1 1", "markers 3 4"));
}

TEST(GeoJsonImportFilter, MembersComeInAnyOrder) {
  EXPECT_THAT(Import(R"({"coordinates":[[[0,0],[9,0],[9,9]]],"type":"Polygon"})"),
              ElementsAre("polygon 0 0, 9 0, 9 9"));
  EXPECT_THAT(Import(R"({"properties":{"a":1},"geometry":{"coordinates":[1,2],"type":"Point"},)"
                     R"("id":7,"type":"Feature"})",
                     true),
              ElementsAre("markers 1 2 {a=1, id=7}"));
}

TEST(GeoJsonImportFilter, TakesHeightsAndPassesOverWhatFollowsThem) {
  EXPECT_THAT(Import(Geometry("LineString", "[[1,2,3],[4,5,6,7,8],[9,10]]")),
              ElementsAre("line 1 2 3, 4 5 6, 9 10"));
}

TEST(GeoJsonImportFilter, TakesNumbersInEveryForm) {
  EXPECT_THAT(Import(Geometry("MultiPoint", "[[-1,18446744073709551615],[1.5e3,-0.25E-1]]")),
              ElementsAre("markers -1 18446744073709551616, 1500 -0.025"));
}

TEST(GeoJsonImportFilter, WhatHasNoPlaceIsNotDrawn) {
  EXPECT_THAT(Import(Collection("null")), IsEmpty());
  for (const char* type :
       {"Point", "MultiPoint", "LineString", "MultiLineString", "Polygon", "MultiPolygon"}) {
    EXPECT_THAT(Import(Geometry(type, "[]")), IsEmpty()) << type;
  }
  EXPECT_THAT(Import(Geometry("MultiPolygon", "[[],[[]],[[[0,0],[9,0],[9,9]]]]")),
              ElementsAre("polygon | 0 0, 9 0, 9 9"));
}

TEST(GeoJsonImportFilter, PassesOverForeignMembers) {
  EXPECT_THAT(Import(R"({"type":"Point","bbox":[1,2,3,4],"crs":{"type":"name","coordinates":"x",)"
                     R"("features":[[{}]]},"x":null,"y":true,"z":"","coordinates":[1,2]})"),
              ElementsAre("markers 1 2"));
}

TEST(GeoJsonImportFilter, PropertiesBecomeParameters) {
  const std::string text = Collection(
      Geometry("Point", "[1,2]"),
      R"({"name":"S\u00f8r","pop":1.50,"n":-7,"is":true,"no":false,"none":null,"empty":"",)"
      R"("list":[1,[],{"a":"\"b\"","c":[null,false,2.5]},{}],"o":{"x":{}}})");
  EXPECT_THAT(
      Import(text, true),
      ElementsAre("markers 1 2 {name=S\xC3\xB8r, pop=1.50, n=-7, is=true, no=false, empty=, "
                  R"(list=[1,[],{"a":"\"b\"","c":[null,false,2.5]},{}], o={"x":{}}})"));
  EXPECT_THAT(Import(text, false), ElementsAre("markers 1 2"));
}

TEST(GeoJsonImportFilter, EachObjectOfAFeatureHasItsProperties) {
  EXPECT_THAT(
      Import(Collection(Geometry("MultiLineString", "[[[1,2],[3,4]],[[5,6],[7,8]]]"), R"({"a":1})"),
             true),
      ElementsAre("line 1 2, 3 4 {a=1}", "line 5 6, 7 8 {a=1}"));
}

TEST(GeoJsonImportFilter, TellsWhatIsWrongAndWhere) {
  struct Case {
    std::string text;
    const char* message;
  };
  const Case cases[] = {
      {"", "byte 1: this is no JSON: syntax error"},
      {"{\"type\":\"Point\",}", "byte 17: this is no JSON: syntax error"},
      {"[1,2]", "byte 2: an array is no GeoJSON; an object was expected"},
      {"null", "an object was expected"},
      {"7", "an object was expected"},
      {"{}", "an object has no \"type\""},
      {R"({"type":"Circle"})", "\"Circle\" is no type of GeoJSON"},
      {R"({"type":7})", "\"type\" has a value of the wrong kind"},
      {R"({"type":"Point"})", "a Point has no \"coordinates\""},
      {R"({"type":"GeometryCollection"})", "a GeometryCollection has no \"geometries\""},
      {R"({"type":"FeatureCollection"})", "a FeatureCollection has no \"features\""},
      {R"({"type":"Feature","properties":{}})", "a Feature has no \"geometry\""},
      {R"({"type":"Feature","geometry":[1]})", "\"geometry\" is an array"},
      {R"({"type":"Feature","geometry":7})", "\"geometry\" has a value of the wrong kind"},
      {R"({"type":"Point","coordinates":null})", "\"coordinates\" has a value of the wrong kind"},
      {R"({"type":"Point","coordinates":{}})", "\"coordinates\" is an object"},
      {R"({"type":"Point","coordinates":[1,2],"features":[]})", "a Point has \"features\""},
      {R"({"type":"Feature","geometry":null,"coordinates":[1,2]})",
       "a Feature has \"coordinates\""},
      {R"({"type":"FeatureCollection","features":[7]})", "a single value stands where"},
      {R"({"type":"FeatureCollection","features":[null]})", "a single value stands where"},
      {R"({"type":"FeatureCollection","features":[[]]})", "an array stands where"},
      {R"({"type":"FeatureCollection","features":[{"type":"Point","coordinates":[1,2]}]})",
       "a Feature was expected, not a \"Point\""},
      {Collection(R"({"type":"Feature","geometry":null})"),
       "a geometry was expected, not a \"Feature\""},
      {Geometry("Point", "[1]"), "a position has one number"},
      {Geometry("Point", "[1,\"2\"]"), "something other than numbers"},
      {Geometry("Point", "[1,null]"), "something other than numbers"},
      {Geometry("Point", "[1,true]"), "something other than numbers"},
      {Geometry("Point", "[1,{}]"), "an object stands among coordinates"},
      {Geometry("Point", "[1,[2]]"), "numbers and arrays are mixed"},
      {Geometry("Point", "[[1,2],3]"), "numbers and arrays are mixed"},
      {Geometry("Point", "[[1,2]]"), "not nested as those of a Point"},
      {Geometry("Polygon", "[[1,2],[3,4]]"), "not nested as those of a Polygon"},
      {Geometry("LineString", "[[1,2],[[3,4]]]"), "not all equally deep"},
      {Geometry("LineString", "[[1,2],[]]"), "a position has no numbers"},
      {Geometry("MultiPolygon", "[[[[[1,2]]]]]"), "nested too deeply"},
      {Geometry("Point", "[1,1e999]"), "this is no JSON: "},
      {"{\"type\":\"Point\",\"x\":\"\xFF\"}", "this is no JSON: "},
      {Collection("null") + " x", "this is no JSON: "},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.text);
    EXPECT_THAT(ErrorOf(test.text), HasSubstr(test.message));
  }
}

TEST(GeoJsonImportFilter, NestingIsLimited) {
  const auto nested = [](int depth) {
    const auto count = static_cast<std::size_t>(depth);
    return R"({"type":"Point","coordinates":[1,2],"x":)" + std::string(count, '[') +
           std::string(count, ']') + "}";
  };
  EXPECT_THAT(Import(nested(99)), ElementsAre("markers 1 2"));
  EXPECT_THAT(ErrorOf(nested(100)), HasSubstr("nested more than 100 deep"));
  EXPECT_THAT(ErrorOf(nested(1'000'000)), HasSubstr("nested more than 100 deep"));
}

TEST(GeoJsonImportFilter, RefusesTextsThatAreCutOff) {
  const std::string text =
      Collection(R"({"type":"GeometryCollection","geometries":[)" +
                     Geometry("MultiPolygon", "[[[[0,0],[9.5,0],[9,9,1e1]]]]") + "]}",
                 R"({"a":"b\u00e5","c":[true,{"d":null}]})");
  for (std::size_t length = 0; length < text.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_THROW(Import(text.substr(0, length), true), FilterError);
  }
  EXPECT_EQ(Import(text, true).size(), 1U);
}

class GeoJsonFile : public testing::Test {
 protected:
  std::wstring Save(const std::string& text) const {
    test::WriteBytes(folder_.Path() / "map.geojson", text);
    return folder_.File(L"map.geojson");
  }

  test::TempFolder folder_;
  DrawnObjects objects_;
  GeoJsonImportFilter filter_{objects_};
};

TEST_F(GeoJsonFile, IsReadInPieces) {
  std::string features;
  std::vector<std::string> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string place = std::to_string(i) + ",0";
    features += (i == 0 ? "" : ",\n") + (R"({"type":"Feature","properties":null,"geometry":)" +
                                         Geometry("Point", "[" + place + "]") + "}");
    expected.push_back("markers " + std::to_string(i) + " 0");
  }
  filter_.ImportFromFile(
      Save("\xEF\xBB\xBF{\"type\":\"FeatureCollection\",\"features\":[" + features + "]}"), false);
  EXPECT_EQ(objects_.Drawables(), expected);
}

TEST_F(GeoJsonFile, ErrorsNameTheFile) {
  const std::wstring path = Save("{\"type\":\"Point\"}");
  try {
    filter_.ImportFromFile(path, false);
    FAIL() << "no error";
  } catch (const FilterError& error) {
    EXPECT_THAT(error.what(), HasSubstr("map.geojson, byte 16: a Point has no \"coordinates\""));
  }
}

TEST_F(GeoJsonFile, TellsItsExtentWhenAllOfItMayBeRead) {
  const std::wstring path = Save(Geometry("MultiPoint", "[[1,8],[3,4],[-5,6]]"));
  EXPECT_FALSE(filter_.GetImportFileInfo(GeoJsonImportFilter::kScanHeader, path).isKnown);
  const auto info = filter_.GetImportFileInfo(GeoJsonImportFilter::kScanFile, path);
  EXPECT_TRUE(info.isKnown);
  EXPECT_EQ(info.extent, corvel::Box2d(-5, 4, 3, 8));
  EXPECT_EQ(info.summary, L"GeoJSON, features: 1");
  EXPECT_THAT(objects_.Texts(), IsEmpty());
}

TEST_F(GeoJsonFile, IsKnownByItsStart) {
  EXPECT_TRUE(filter_.CanImport(Save("\xEF\xBB\xBF \n{\"type\": \"FeatureCollection\", ")));
  EXPECT_TRUE(filter_.CanImport(Save("{\"coordinates\":[1,2],\"type\":\"Point\"}")));
  EXPECT_FALSE(filter_.CanImport(Save("{\"kind\":\"something else\"}")));
  EXPECT_FALSE(filter_.CanImport(Save("[\"Point\"]")));
  EXPECT_FALSE(filter_.CanImport(Save("")));
  EXPECT_FALSE(filter_.CanImport(folder_.File(L"missing.json")));
}

class Stop : public corvel::IProgress {
 public:
  bool Update(double) override { return false; }
};

TEST_F(GeoJsonFile, StopsWhenTheUserDoes) {
  Stop stop;
  filter_.SetProgress(&stop);
  EXPECT_THROW(filter_.ImportFromFile(Save(Geometry("Point", "[1,2]")), false),
               quillon::AbortError);
}

}  // namespace
}  // namespace trovan::filters
