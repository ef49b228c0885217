#include "filters/text/PointsExport.h"

#include <random>
#include <string>

#include "ExportFixture.h"
#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

using testing::StartsWith;

class PointsExportTest : public ExportFixture {};

TEST_F(PointsExportTest, WritesACollectionOfFeatures) {
  Save("name,lon,lat\nOslo,10.75,59.91\n\"R\"\"om\",12.5,41.9\n");
  EXPECT_EQ(PointsText({"lon", "lat"}),
            "{\"type\":\"FeatureCollection\",\"features\":[\n"
            "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Point\",\"coordinates\":[10.75,59.91]},"
            "\"properties\":{\"name\":\"Oslo\"}},\n"
            "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Point\",\"coordinates\":[12.5,41.9]},"
            "\"properties\":{\"name\":\"R\\\"om\"}}\n]}\n");
  EXPECT_EQ(result_.rows, 2U);
}

TEST_F(PointsExportTest, WritesACollectionOfNothing) {
  Save("x,y\n");
  EXPECT_EQ(Points({"x", "y"}).dump(), R"({"type":"FeatureCollection","features":[]})");
}

TEST_F(PointsExportTest, TakesHeightsAndDecimalCommas) {
  Save("y;x;z\n1,5;2;-3,25\n");
  options_.format.format.delimiters = ";";
  options_.decimal = ',';
  const auto feature = Points({"x", "1", "z"})["features"][0];
  EXPECT_EQ(feature["geometry"]["coordinates"].dump(), "[2,1.5,-3.25]");
  EXPECT_EQ(feature["properties"].dump(), "{}");
}

TEST_F(PointsExportTest, WritesCoordinatesThatReadBackTheSame) {
  std::mt19937_64 random(20240612);
  std::uniform_real_distribution<double> any(-180.0, 180.0);
  std::vector<double> numbers = {0.1, 1.0 / 3.0, 1e-300, -1e300, 5e-324, 123456789.123456789};
  for (int i = 0; i < 1000; ++i) numbers.push_back(any(random));
  std::string text = "x,y\n";
  for (const double number : numbers) text += ShortestText(number) + ",0\n";
  Save(text);
  const auto features = Points({"x", "y"})["features"];
  ASSERT_EQ(features.size(), numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_EQ(features[i]["geometry"]["coordinates"][0].get<double>(), numbers[i]);
  }
}

TEST_F(PointsExportTest, WritesNoGeometryWhereAllCoordinatesAreEmpty) {
  Save("name,x,y\na,,\nb, ,\"\"\nc\nd,1,2\n");
  const auto features = Points({"x", "y"})["features"];
  ASSERT_EQ(features.size(), 4U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(features[i]["geometry"].is_null()) << i;
  EXPECT_EQ(features[2]["properties"]["name"], "c");
  EXPECT_TRUE(features[3]["geometry"].is_object());
  EXPECT_EQ(result_.withoutPlace.count, 3U);
  EXPECT_EQ(result_.withoutPlace.firstLine, 2U);
}

TEST_F(PointsExportTest, RefusesAPlaceOfWhichAPartIsMissing) {
  const auto refusal = [this](const char* text) {
    Save(text);
    return Refusal([this] { Points({"x", "y"}); });
  };
  EXPECT_EQ(refusal("x,y\n1,\n"),
            "t.csv, line 2, column 2 (\"y\"): this coordinate is missing beside others");
  EXPECT_EQ(refusal("x,y\n1\n"),
            "t.csv, line 2, column 2 (\"y\"): this coordinate is missing beside others");
  EXPECT_EQ(refusal("x,y\n,1\n"),
            "t.csv, line 2, column 1 (\"x\"): this coordinate is missing beside others");
  EXPECT_EQ(refusal("x,y\n1,abc\n"), "t.csv, line 2, column 2 (\"y\"): \"abc\" is no number");
  EXPECT_THAT(refusal("x,y\n1,nan\n"), StartsWith("t.csv, line 2, column 2"));
}

TEST_F(PointsExportTest, LeavesBadPlacesOutWhenToldToKeepGoing) {
  Save("x,y,n\n1,,1\n2,2,x\n3,3,3\n");
  options_.numbers = {"n"};
  options_.keepGoing = true;
  const auto features = Points({"x", "y"})["features"];
  ASSERT_EQ(features.size(), 1U);
  EXPECT_EQ(features[0]["properties"].dump(), "{\"n\":3}");
  EXPECT_EQ(result_.badRows.Count(), 2U);
}

TEST_F(PointsExportTest, BringsChosenColumnsAndNamesValuesBeyondThem) {
  Save("x,a,y,b\n1,2,3,4,5,6\n");
  EXPECT_EQ(Points({"x", "y"})["features"][0]["properties"].dump(),
            R"({"a":"2","b":"4","column_5":"5","column_6":"6"})");
  options_.columns = {"b", "x"};
  EXPECT_EQ(Points({"x", "y"})["features"][0]["properties"].dump(), R"({"b":"4","x":"1"})");
}

TEST_F(PointsExportTest, RefusesCoordinatesThatAreNoColumns) {
  Save("x,y\n1,2\n");
  EXPECT_EQ(Refusal([this] {
              Points({"x", "lat"});
            }),
            "there is no column \"lat\"; there are: x, y");
}

class Stop : public corvel::IProgress {
 public:
  bool Update(double) override { return false; }
};

TEST_F(PointsExportTest, EndsWellFormedWhenToldToStop) {
  Save("x,y\n1,2\n");
  Stop stop;
  progress_ = &stop;
  EXPECT_EQ(Points({"x", "y"})["features"].size(), 0U);
  EXPECT_TRUE(result_.cancelled);
}

}  // namespace
}  // namespace trovan::filters
