#include "filters/clip/DrawingClip.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/IoFilter.h>

#include "filters/clip/RegionReader.h"
#include "filters/support/FilterError.h"
#include "filters/support/StringSink.h"
#include "support/DbfImage.h"
#include "support/ShapeImage.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using test::PartsContent;
using test::ShapeContent;
using test::ShapeImage;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kMap =
    R"({"type":"FeatureCollection","features":[)"
    R"({"type":"Feature","properties":{"n":"a"},"geometry":{"type":"Polygon",)"
    R"("coordinates":[[[1,1],[3,1],[3,3],[1,3],[1,1]]]}},)"
    R"({"type":"Feature","properties":{"n":"b"},"geometry":{"type":"LineString",)"
    R"("coordinates":[[2,2],[20,2]]}},)"
    R"({"type":"Feature","properties":{"n":"c"},"geometry":{"type":"Point",)"
    R"("coordinates":[20,20]}}]})";

class DrawingClipTest : public testing::Test {
 protected:
  std::wstring Save(const std::string& name, const std::string& bytes) const {
    test::WriteBytes(folder_.Path() / name, bytes);
    return folder_.File(std::wstring(name.begin(), name.end()));
  }

  DrawingClipResult Clip(const std::wstring& path, const std::wstring& region,
                         corvel::IProgress* progress = nullptr) {
    sink_.text.clear();
    return ClipDrawing(path, options_, ReadRegion(region, nullptr), sink_, progress);
  }

  test::TempFolder folder_;
  StringSink sink_;
  DrawingOptions options_;
};

TEST_F(DrawingClipTest, DrawsWhatRemainsOfAMap) {
  options_.keepAttributes = true;
  const DrawingClipResult result = Clip(Save("map.geojson", kMap), L"0,0,10.8,10.8");
  EXPECT_EQ(sink_.text,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1000\" height=\"1000\" "
            "viewBox=\"0 0 1000 1000\" fill=\"none\" fill-rule=\"evenodd\">\n"
            "<path fill=\"#e4ead8\" stroke=\"#4a5548\" data-n=\"a\" "
            "vector-effect=\"non-scaling-stroke\" d=\"M10 990 210 990 210 790 10 790Z\"/>\n"
            "<path stroke=\"#4a5548\" data-n=\"b\" vector-effect=\"non-scaling-stroke\" "
            "d=\"M110 890 990 890\"/>\n"
            "</svg>\n");
  EXPECT_EQ(result.statistics.whole, 1U);
  EXPECT_EQ(result.statistics.clipped, 1U);
  EXPECT_EQ(result.statistics.dropped, 1U);
}

TEST_F(DrawingClipTest, TheEdgeOfTheRegionGetsNoLine) {
  Clip(Save("map.geojson", kMap), L"2,0,4,4");
  EXPECT_THAT(sink_.text, HasSubstr("<path fill=\"#e4ead8\" d="));
  EXPECT_THAT(sink_.text, HasSubstr("<path vector-effect=\"non-scaling-stroke\" d="));
}

TEST_F(DrawingClipTest, ADrawingOutsideTheRegionIsAnEmptyDocument) {
  const DrawingClipResult result = Clip(Save("map.geojson", kMap), L"100,100,101,101");
  EXPECT_EQ(result.statistics.dropped, 3U);
  EXPECT_THAT(sink_.text, Not(HasSubstr("<path")));
  EXPECT_THAT(sink_.text, HasSubstr("viewBox=\"0 0 1000 1000\""));
}

TEST_F(DrawingClipTest, KeepsThePageAndTheCoordinatesOfADocument) {
  const DrawingClipResult result =
      Clip(Save("d.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="20cm" height="10cm" )"
                         R"(viewBox="-10 0 200 100"><path fill="#123456" d="M.1 .2h100v50.7z"/>)"
                         R"(<path fill="red" d="M150 0h9v9z"/></svg>)"),
           L"0,0,120,90");
  EXPECT_EQ(sink_.text,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20cm\" height=\"10cm\" "
            "viewBox=\"-10 0 200 100\" fill=\"none\" fill-rule=\"evenodd\">\n"
            "<path fill=\"#123456\" d=\"M0.1 0.2 100.1 0.2 100.1 50.900000000000006Z\"/>\n"
            "</svg>\n");
  EXPECT_EQ(result.statistics.whole, 1U);
  EXPECT_EQ(result.statistics.dropped, 1U);
}

TEST_F(DrawingClipTest, TellsWhatIsLostOfAShapefile) {
  const std::wstring path = Save("map.shp", ShapeImage(5)
                                                .Extent({0, 0}, {9, 9})
                                                .Record(PartsContent(5, {{{0, 0}, {0, 9}, {9, 9}}}))
                                                .Record(ShapeContent(31).Box())
                                                .Bytes());
  Save("map.dbf", test::DbfImage().Field("N", 'C', 1).Record("\xE5").Record("b").Text());
  options_.keepAttributes = true;
  options_.codePage = 437;
  const DrawingClipResult result = Clip(path, L"-1,-1,10,10");
  EXPECT_EQ(result.losses.Count(), 1U);
  EXPECT_THAT(sink_.text, HasSubstr("data-N=\"\xCF\x83\""));
}

TEST_F(DrawingClipTest, TheNameTellsTheFormatAndElseTheContent) {
  EXPECT_EQ(Clip(Save("map", kMap), L"0,0,10,10").statistics.Objects(), 3U);
  EXPECT_EQ(Clip(Save("map.SHP", ShapeImage(1).Bytes()), L"0,0,1,1").statistics.Objects(), 0U);
  EXPECT_EQ(Clip(Save("a.xml", R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9">)"
                               R"(<path d="M0 0h1v1z"/></svg>)"),
                 L"0,0,9,9")
                .statistics.Objects(),
            1U);
  EXPECT_THROW(Clip(Save("wrong.svg", kMap), L"0,0,1,1"), FilterError);
  EXPECT_THROW(Clip(Save("map.txt", "x,y\n1,2\n"), L"0,0,1,1"), FilterError);
  EXPECT_THROW(Clip(folder_.File(L"missing.shp"), L"0,0,1,1"), FilterError);
}

class Watcher : public corvel::IProgress {
 public:
  bool Update(double fraction) override {
    fractions.push_back(fraction);
    return fraction < last;
  }

  double last = 2.0;
  std::vector<double> fractions;
};

TEST_F(DrawingClipTest, ProgressNeverFalls) {
  Watcher watcher;
  Clip(Save("map.geojson", kMap), L"0,0,10,10", &watcher);
  EXPECT_TRUE(std::is_sorted(watcher.fractions.begin(), watcher.fractions.end()));
  EXPECT_EQ(watcher.fractions.back(), 1.0);
  watcher.last = 0.5;
  EXPECT_THROW(Clip(Save("map.geojson", kMap), L"0,0,10,10", &watcher), quillon::AbortError);
}

}  // namespace
}  // namespace trovan::filters
