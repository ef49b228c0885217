// `trovan clip` as a person runs it.
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Process.h"
#include "TextCommandFixture.h"
#include "support/FileSizeLimit.h"
#include "support/ShapeImage.h"

namespace trovan::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ClipCommandTest : public TextCommandFixture {
 protected:
  static Outcome Clip(const std::vector<std::string>& arguments,
                      const std::string& outputFile = "") {
    std::vector<std::string> all = {"clip"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunTrovan(all, outputFile);
  }

  std::string SaveMap() const { return Save("map.geojson", Squares(3)); }

  // Squares in a row, each of two by two units, four units apart.
  static std::string Squares(int count) {
    std::string text = R"({"type":"FeatureCollection","features":[)";
    for (int i = 0; i < count; ++i) {
      const std::string left = std::to_string(4 * i);
      const std::string right = std::to_string(4 * i + 2);
      if (i > 0) text += ",\n";
      text += R"({"type":"Feature","properties":{"name":"N)" + std::to_string(i) +
              R"("},"geometry":{"type":"Polygon","coordinates":[[[)" + left + ",0],[" + right +
              ",0],[" + right + ",2],[" + left + ",2],[" + left + ",0]]]}}";
    }
    return text + "]}";
  }
};

TEST_F(ClipCommandTest, WritesWhatRemains) {
  const Outcome outcome = Clip({SaveMap(), Path("o.svg"), "--region", "-1,-1,5,5"});
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(Bytes("o.svg"), StartsWith("<?xml"));
  EXPECT_THAT(Bytes("o.svg"), HasSubstr("</svg>\n"));
  EXPECT_THAT(Files(), ElementsAre("map.geojson", "o.svg"));
}

TEST_F(ClipCommandTest, WritesToStandardOutputWithoutAName) {
  const std::string map = SaveMap();
  const Outcome outcome = Clip({map, "--region=-1,-1,5,5"});
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  Clip({map, Path("o.svg"), "--region=-1,-1,5,5"});
  EXPECT_EQ(outcome.output, Bytes("o.svg"));
}

TEST_F(ClipCommandTest, TellsWhatBecameOfTheObjects) {
  const Outcome outcome = Clip({SaveMap(), Path("o.svg"), "--region=-1,-1,5,5", "--stats"});
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  EXPECT_THAT(outcome.output,
              StartsWith(Path("map.geojson") + "\n  Objects        3\n  Passed whole   1\n"
                                               "  Clipped        1\n  Dropped        1\n  Time "));
}

TEST_F(ClipCommandTest, TellsTheSameToPrograms) {
  const Outcome outcome =
      Clip({SaveMap(), Path("o.svg"), "--region=-1,-1,5,5", "--stats", "--format", "json"});
  EXPECT_EQ(outcome.code, 0) << outcome.errors;
  const auto json = nlohmann::json::parse(outcome.output);
  EXPECT_EQ(json["file"], Path("map.geojson"));
  EXPECT_EQ(json["objects"], 3);
  EXPECT_EQ(json["whole"], 1);
  EXPECT_EQ(json["clipped"], 1);
  EXPECT_EQ(json["dropped"], 1);
  EXPECT_GE(json["seconds"], 0.0);
}

TEST_F(ClipCommandTest, KeepsAttributesWhenAsked) {
  const std::string map = SaveMap();
  EXPECT_THAT(Clip({map, "--region=-1,-1,3,3", "--keep-attributes"}).output,
              HasSubstr("data-name=\"N0\""));
  EXPECT_THAT(Clip({map, "--region=-1,-1,3,3"}).output, testing::Not(HasSubstr("data-")));
}

TEST_F(ClipCommandTest, TakesRegionsFromFiles) {
  const std::string region = Save("r.wkt", "POLYGON ((-1 -1, 3 -1, 3 3, -1 3))");
  const Outcome outcome =
      Clip({SaveMap(), Path("o.svg"), "--region", region, "--stats", "--format", "json"});
  EXPECT_EQ(nlohmann::json::parse(outcome.output)["whole"], 1) << outcome.errors;
}

TEST_F(ClipCommandTest, TellsWhatIsLostAndReturnsOne) {
  const std::string map = Save("map.shp", ShapeImage(1)
                                              .Extent({0, 0}, {9, 9})
                                              .Record(ShapeContent(1).Points({{1, 1}}))
                                              .Record(ShapeContent(31))
                                              .Bytes());
  const Outcome outcome = Clip({map, Path("o.svg"), "--region=0,0,9,9"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.errors, "trovan: " + map +
                                ": record 2 at byte 128 is left out: surfaces of patches are not "
                                "taken over\n");
  EXPECT_THAT(Bytes("o.svg"), HasSubstr("<circle"));
}

TEST_F(ClipCommandTest, TellsWhenNothingLiesInTheRegion) {
  const std::string map = SaveMap();
  Outcome outcome = Clip({map, Path("o.svg"), "--region=100,200,300,400.5"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors,
            "trovan: nothing of " + map +
                " lies in the region: the drawing covers x from 0 to 10 and y from 0 to 2, the "
                "region covers x from 100 to 300 and y from 200 to 400.5; are they in the same "
                "coordinates?\n");
  const std::string document =
      Save("d.svg", "<svg viewBox='5 -6 70 80'><rect width='9' height='9'/></svg>");
  outcome = Clip({document, Path("o.svg"), "--region=10,10,20,20"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.errors, HasSubstr("x from 5 to 75 and y from -6 to 74, the region covers x "
                                        "from 10 to 20 and y from 10 to 20;"));
}

TEST_F(ClipCommandTest, SaysNothingAboutADrawingWithoutObjects) {
  const std::string empty = Save("e.geojson", R"({"type":"FeatureCollection","features":[]})");
  const Outcome outcome = Clip({empty, Path("o.svg"), "--region=0,0,1,1"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(ClipCommandTest, RefusesArgumentsThatMakeNoSense) {
  const std::string map = SaveMap();
  EXPECT_EQ(Clip({map, Path("o.svg")}).code, 2);
  EXPECT_EQ(Clip({"--region=0,0,1,1"}).code, 2);
  EXPECT_EQ(Clip({map, "--region=0,0,1,1", "--stats"}).code, 2);
  EXPECT_EQ(Clip({map, Path("o.svg"), "--region=0,0,1,1", "--format", "json"}).code, 2);
  const Outcome outcome = Clip({map, Path("o.geojson"), "--region=0,0,1,1"});
  EXPECT_EQ(outcome.code, 2);
  EXPECT_THAT(outcome.errors, HasSubstr("the output is SVG and has to be named so"));
  EXPECT_THAT(Files(), ElementsAre("map.geojson"));
}

TEST_F(ClipCommandTest, TellsWhatIsWrongWithARegionOrADrawing) {
  const std::string map = SaveMap();
  Outcome outcome = Clip({map, Path("o.svg"), "--region=5,0,5,9"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, StartsWith("trovan: the box of the region has no width"));
  outcome = Clip({Path("missing.svg"), Path("o.svg"), "--region=0,0,1,1"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("missing.svg: there is no file of this name"));
  outcome = Clip({Save("bad.json", "{\"type\":\"Feature\""), Path("o.svg"), "--region=0,0,1,1"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("bad.json, byte 18: this is no JSON"));
  EXPECT_THAT(Files(), ElementsAre("bad.json", "map.geojson"));
}

TEST_F(ClipCommandTest, LeavesAnOlderOutputWhenTheDrawingIsBroken) {
  std::string broken = Squares(10'000);
  broken.pop_back();
  Save("o.svg", "an older file");
  EXPECT_EQ(Clip({Save("map.geojson", broken), Path("o.svg"), "--region=0,0,1,1"}).code, 1);
  EXPECT_EQ(Bytes("o.svg"), "an older file");
  EXPECT_THAT(Files(), ElementsAre("map.geojson", "o.svg"));
}

TEST_F(ClipCommandTest, LeavesNothingBehindWhenFilesMayNotBecomeSoLarge) {
  const std::string map = Save("map.geojson", Squares(20'000));
  const FileSizeLimit limit(200'000);
  const Outcome outcome = Clip({map, Path("o.svg"), "--region=-1,-1,100000,5"});
  EXPECT_EQ(outcome.signal, 0);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write \"" + Path("o.svg") + "\""));
  EXPECT_THAT(Files(), ElementsAre("map.geojson"));
}

TEST_F(ClipCommandTest, FailsWhenTheOutputIsFull) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  const Outcome outcome = Clip({SaveMap(), "--region=0,0,9,9"}, "/dev/full");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write the output: No space left on device"));
}

TEST_F(ClipCommandTest, TellsWhatItCannotTakeOverOfTheRegion) {
  const std::string region =
      Save("r.svg", R"(<svg xmlns="http://www.w3.org/2000/svg"><path d="M0 0h9v9h-9zq"/></svg>)");
  const Outcome outcome = Clip({SaveMap(), "--region", region});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.errors,
              HasSubstr("the region " + region + ": Line 1: a path is drawn up to the fault"));
}

TEST_F(ClipCommandTest, EndsQuietlyWhenNobodyReadsOn) {
  Process process({"clip", Save("map.geojson", Squares(20'000)), "--region=-1,-1,100000,5"});
  EXPECT_EQ(process.ReadOutput(5), "<?xml");
  process.CloseOutput();
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.errors, "");
}

// The signals come as soon as the output has its first name; the drawing takes far longer. Whoever
// is in a hurry presses the keys twice.
TEST_F(ClipCommandTest, LeavesNothingBehindOnCtrlC) {
  const std::string map = Save("map.geojson", Squares(150'000));
  for (const int signal : {SIGINT, SIGTERM}) {
    SCOPED_TRACE(signal);
    Process process({"clip", map, Path("o.svg"), "--region", "POLYGON ((0 0, 1e6 0, 0 9, 0 0))"});
    while (Files().size() == 1) ASSERT_FALSE(process.HasEnded());
    process.Signal(signal);
    process.Signal(signal);
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.code, 130) << outcome.errors;
    EXPECT_THAT(Files(), ElementsAre("map.geojson"));
  }
}

TEST_F(ClipCommandTest, HelpsInWords) {
  const Outcome outcome = Clip({"--help"});
  EXPECT_EQ(outcome.code, 0);
  for (const char* word : {"--region", "--keep-attributes", "--code-page", "--stats", "--format",
                           "xmin,ymin,xmax,ymax", "MULTIPOLYGON", "shapefile", "GeoJSON", "SVG"}) {
    EXPECT_THAT(outcome.output, HasSubstr(word));
  }
}

}  // namespace
}  // namespace trovan::test
