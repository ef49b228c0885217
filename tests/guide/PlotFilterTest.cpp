#include "PlotFilter.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <corvel/Exception.h>
#include <quillon/IoManager.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

#include "SvgPicture.h"
#include "support/TempFolder.h"

namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::Vec3d;
using quillon::TrBrush;
using quillon::TrPen;
using testing::HasSubstr;
using testing::ThrowsMessage;

class Recorder : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override { objects_.push_back(object.Clone()); }
  std::size_t Size() const { return objects_.size(); }

  // The only object there is.
  template <class Object>
  const Object& Only() const {
    EXPECT_EQ(objects_.size(), 1U);
    return dynamic_cast<const Object&>(*objects_.at(0));
  }

 private:
  std::vector<std::unique_ptr<quillon::TrBase>> objects_;
};

class PlotFilterTest : public testing::Test {
 protected:
  void Import(const std::string& text) {
    filter_.ImportFromMemory(reinterpret_cast<const unsigned char*>(text.data()),
                             static_cast<unsigned int>(text.size()), false);
  }

  Recorder manager_;
  PlotFilter filter_{manager_};
};

TEST_F(PlotFilterTest, SetsPens) {
  Import("PEN 255 0 12.7 0.5");
  const auto& pen = manager_.Only<TrPen>();
  EXPECT_EQ(pen.GetStyle(), TrPen::kSolid);
  EXPECT_EQ(pen.Color(), Color4b(255, 0, 12, 255));
  EXPECT_EQ(pen.Width(), 32.0);
}

TEST_F(PlotFilterTest, KeepsColoursWithinBytes) {
  Import("FILL -1 256 1e9");
  EXPECT_EQ(manager_.Only<TrBrush>().Color(), Color4b(0, 255, 255, 255));
}

TEST_F(PlotFilterTest, StopsFilling) {
  Import("FILL");
  EXPECT_FALSE(manager_.Only<TrBrush>().Fills());
}

TEST_F(PlotFilterTest, DrawsLines) {
  Import("LINE 0 0 10 5 20.5 -1e1");
  EXPECT_EQ(manager_.Only<quillon::TrPolyline>().Points(),
            (std::vector<Vec3d>{{0, 0, 0}, {640, 320, 0}, {1312, -640, 0}}));
}

TEST_F(PlotFilterTest, DrawsAreasOfManyRings) {
  Import("AREA 0 0 9 0 0 9 / 1 1 2 1 1 2 1 1");
  const auto& area = manager_.Only<quillon::TrPolygon>();
  EXPECT_EQ(area.Counts(), (std::vector<unsigned int>{3, 4}));
  EXPECT_EQ(area.Points().back(), Vec3d(64, 64, 0));
}

TEST_F(PlotFilterTest, DrawsDiscs) {
  Import("DISC 10 20 4");
  EXPECT_EQ(manager_.Only<quillon::TrEllipse>().Box(), Box2d(384, 1024, 896, 1536));
}

TEST_F(PlotFilterTest, ClipsUntilItIsTold) {
  Import("CLIP 0 0 10 0 10 10 0 10\nLINE 5 5 15 5\nCLIP\n");
  EXPECT_EQ(manager_.Only<quillon::TrPolyline>().Points(),
            (std::vector<Vec3d>{{320, 320, 0}, {640, 320, 0}}));
  Import("LINE 50 50 60 60");
  EXPECT_EQ(manager_.Size(), 2U);
}

TEST_F(PlotFilterTest, PassesOverBlankLinesAndRemarks) {
  Import("\n  \t\r\n# LINE\r\nPEN 0 0 0 1 # black\r\n\n");
  EXPECT_EQ(manager_.Size(), 1U);
}

TEST_F(PlotFilterTest, NamesTheLineThatItDoesNotUnderstand) {
  const struct {
    const char* text;
    const char* fault;
  } cases[] = {
      {"\nCIRCLE 1 2 3", "line 2: \"CIRCLE\" is no order"},
      {"pen 0 0 0 1", "line 1: \"pen\" is no order"},
      {"PEN 1 2 3", "line 1: PEN takes 4 numbers"},
      {"DISC 1 2 3 4", "line 1: DISC takes 3 numbers"},
      {"LINE 1 2 3", "line 1: the last point has no y"},
      {"LINE 1 2x", "line 1: \"2x\" is no number"},
      {"LINE 1 nan", "line 1: \"nan\" is no number"},
      {"LINE 1 1e999", "line 1: \"1e999\" is no number"},
      {"LINE 1 -1e308", "line 1: \"-1e308\" is no number"},
      {"DISC 0 0 1.1e9", "line 1: \"1.1e9\" is no number"},
      {"AREA 1 / 2", "line 1: \"/\" is no number"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT([&] { Import(c.text); }, ThrowsMessage<std::runtime_error>(c.fault)) << c.text;
  }
  EXPECT_EQ(manager_.Size(), 0U);
}

TEST_F(PlotFilterTest, LetsTheManagerStop) {
  class Stopping : public quillon::IoManager {
   public:
    void ImportObject(quillon::TrBase&) override { quillon::IoFilter::Throw_ABORT("Test", 1); }
  };
  Stopping manager;
  PlotFilter filter(manager);
  const unsigned char text[] = {'F', 'I', 'L', 'L'};
  EXPECT_THROW(filter.ImportFromMemory(text, 4, false), quillon::AbortError);
}

TEST_F(PlotFilterTest, SurvivesEveryTruncation) {
  const std::string whole = "PEN 1 2 3 0.5\nCLIP 0 0 1 0 0 1\nAREA 0 0 9 0 0 9 / 1 1 2 1 1 2\n";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::vector<unsigned char> cut(whole.begin(),
                                         whole.begin() + static_cast<std::ptrdiff_t>(size));
    try {
      filter_.ImportFromMemory(cut.data(), static_cast<unsigned int>(size), false);
    } catch (const std::runtime_error& fault) {
      EXPECT_THAT(fault.what(), HasSubstr("line ")) << size;
    }
  }
}

TEST_F(PlotFilterTest, IsForPlots) {
  EXPECT_EQ(filter_.GetFileExtensions(), std::vector<std::wstring>{L".plot"});
  EXPECT_TRUE(filter_.CanImport(L"a.plot"));
  EXPECT_FALSE(filter_.CanImport(L".plot"));
  EXPECT_FALSE(filter_.CanImport(L"a.plots"));
}

TEST_F(PlotFilterTest, ReadsFiles) {
  const trovan::test::TempFolder folder;
  const std::filesystem::path path = folder.Path() / "a.plot";
  std::ofstream(path, std::ios::binary) << "DISC 0 0 1";
  filter_.ImportFromFile(path.wstring(), false);
  EXPECT_EQ(manager_.Size(), 1U);
  EXPECT_THROW(filter_.ImportFromFile((folder.Path() / "none.plot").wstring(), false),
               corvel::Exception);
}

std::string TextOfFile(const std::string& path) {
  std::ifstream file(TROVAN_SOURCE_DIR "/" + path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(SvgPicture, ShowsTheGardenOfTheGuide) {
  SvgPicture picture;
  PlotFilter filter(picture);
  filter.ImportFromFile(
      std::filesystem::path(TROVAN_SOURCE_DIR "/samples/filter/garden.plot").wstring(), false);
  EXPECT_EQ(picture.Text(), TextOfFile("docs/images/garden.svg"));
}

TEST(SvgPicture, IsSmallWithoutShapes) {
  EXPECT_EQ(
      SvgPicture().Text(),
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"-0.025 -1.025 1.05 1.05\">\n</svg>\n");
}

}  // namespace
