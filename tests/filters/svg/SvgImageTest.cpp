// Pictures in documents.
#include <cmath>
#include <cstdint>

#include "SvgImageFixture.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using quillon::TrImage;
using test::FaultOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(SvgImage, ArrivesWithItsPixels) {
  const std::string png = PngOf(2, 1, {1, 2, 3, 4, 5, 6, 7, 8});
  Import("<image x='10' y='20' width='30' height='15' href='" + AddressOf(png) + "'/>");
  ASSERT_NE(image_, nullptr);
  EXPECT_EQ(image_->Placement(), Box2d(10, -35, 40, -20));
  EXPECT_EQ(image_->Transform(), corvel::Mat4d());
  EXPECT_TRUE(image_->OwnsBitmap());
  EXPECT_THAT(Pixels(), ElementsAre(3, 2, 1, 4, 7, 6, 5, 8));
  EXPECT_THAT(Remarks(), IsEmpty());
  EXPECT_EQ(filter_.Statistics().whole, 1U);
}

TEST_F(SvgImage, IsFoundByTheOlderReferenceToo) {
  Import("<image width='9' height='9' xlink:href=' " + AddressOf(PngOf(1, 1)) + "\n'/>");
  EXPECT_NE(image_, nullptr);
}

TEST_F(SvgImage, IsKnownByItsContent) {
  std::string address = AddressOf(PngOf(1, 1));
  address.replace(0, std::string("data:image/png").size(), "data:text/plain");
  Import("<image width='9' height='9' href='" + address + "'/>");
  EXPECT_NE(image_, nullptr);
}

TEST_F(SvgImage, TakesMissingSizesFromThePicture) {
  const struct {
    const char* attributes;
    Box2d expected;
  } cases[] = {
      {"", {0, -20, 40, 0}},
      {"width='auto' height='auto' x='5' y='6'", {5, -26, 45, -6}},
      {"width='10'", {0, -5, 10, 0}},
      {"height='10'", {0, -10, 20, 0}},
      {"width='10%' height='auto'", {0, -50, 100, 0}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Placement(Image(40, 20, c.attributes)), c.expected) << c.attributes;
  }
}

TEST_F(SvgImage, IsFittedIntoItsSpace) {
  const struct {
    const char* ratio;
    Box2d wide;  // 100 by 50 in a space of 100 by 100
    Box2d high;  // 50 by 100
  } cases[] = {
      {"", {0, -75, 100, -25}, {25, -100, 75, 0}},
      {"xMinYMin", {0, -50, 100, 0}, {0, -100, 50, 0}},
      {"xMidYMid meet", {0, -75, 100, -25}, {25, -100, 75, 0}},
      {"xMaxYMax meet", {0, -100, 100, -50}, {50, -100, 100, 0}},
      {"xMinYMin slice", {0, -100, 200, 0}, {0, -200, 100, 0}},
      {"xMidYMid slice", {-50, -100, 150, 0}, {0, -150, 100, 50}},
      {"xMaxYMax slice", {-100, -100, 100, 0}, {0, -100, 100, 100}},
      {"none", {0, -100, 100, 0}, {0, -100, 100, 0}},
  };
  for (const auto& c : cases) {
    const std::string attributes =
        std::string("width='100' height='100' preserveAspectRatio='") + c.ratio + "'";
    EXPECT_EQ(Placement(Image(100, 50, attributes)), c.wide) << c.ratio;
    EXPECT_EQ(Placement(Image(50, 100, attributes)), c.high) << c.ratio;
  }
}

// Nine by three in 0.9 by 0.3 is no exact fit in binary.
TEST_F(SvgImage, HasTheCornersOfASpaceThatItFills) {
  EXPECT_EQ(Placement(Image(9, 3, "x='.1' y='.2' width='.9' height='.3'")),
            Box2d(.1, -(.2 + .3), .1 + .9, -.2));
  EXPECT_THAT(Remarks(), IsEmpty());
}

TEST_F(SvgImage, FollowsTransforms) {
  const struct {
    const char* transform;
    Vec2d topLeft;
    Vec2d topRight;
    Vec2d bottomLeft;
  } cases[] = {
      {"translate(10 20)", {10, -20}, {14, -20}, {10, -22}},
      {"scale(3 2)", {0, 0}, {12, 0}, {0, -4}},
      {"rotate(90)", {0, 0}, {0, -4}, {-2, 0}},
      {"scale(-1 1)", {0, 0}, {-4, 0}, {0, -2}},
      {"scale(1 -1)", {0, 0}, {4, 0}, {0, 2}},
      {"matrix(1 2 3 4 5 6)", {5, -6}, {9, -14}, {11, -14}},
  };
  const auto isAt = [](const Vec2d& a, const Vec2d& b) {
    return std::abs(a.x - b.x) < 1e-12 && std::abs(a.y - b.y) < 1e-12;
  };
  for (const auto& c : cases) {
    Import(Image(4, 2, std::string("transform='") + c.transform + "'"));
    ASSERT_NE(image_, nullptr) << c.transform;
    image_->AssertValid();
    EXPECT_TRUE(isAt(Corner(0, 0), c.topLeft)) << c.transform;
    EXPECT_TRUE(isAt(Corner(1, 0), c.topRight)) << c.transform;
    EXPECT_TRUE(isAt(Corner(0, 1), c.bottomLeft)) << c.transform;
    const Box2d& box = image_->Placement();
    EXPECT_TRUE(box.Width() > 0.0 && box.Height() > 0.0) << c.transform;  // never flipped
  }
}

TEST_F(SvgImage, FadesByItsOpacityAndThatOfItsGroups) {
  const std::string png = AddressOf(PngOf(2, 1, {1, 2, 3, 255, 5, 6, 7, 101}));
  Import("<g opacity='.5'><image opacity='.4' href='" + png + "'/></g>");
  EXPECT_THAT(Pixels(), ElementsAre(3, 2, 1, 51, 7, 6, 5, 20));
  // An opaque grey gets room for its opacity.
  const std::string grey =
      "data:;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGNoAAAAggCBd8"
      "1ytgAAAABJRU5ErkJggg==";
  Import("<image href='" + grey + "'/>");
  ASSERT_NE(image_, nullptr);
  EXPECT_THAT(Pixels(), ElementsAre(128));
  Import("<image opacity='.2' href='" + grey + "'/>");
  EXPECT_THAT(Pixels(), ElementsAre(128, 128, 128, 51));
}

TEST_F(SvgImage, DrawsNothingWhereItIsHidden) {
  const char* hiding[] = {"width='0' height='9'", "width='9' height='0'",  "width='-1' height='9'",
                          "opacity='0'",          "visibility='hidden'",   "display='none'",
                          "transform='scale(0)'", "transform='scale(1 0)'"};
  for (const char* attributes : hiding) {
    Import(Image(4, 2, attributes));
    EXPECT_EQ(manager_.Size(), 0U) << attributes;
    // What is not shown is not opened.
    Import(std::string("<image href='none.png' ") + attributes + "/>");
    EXPECT_THAT(Remarks(), IsEmpty()) << attributes;
  }
}

TEST_F(SvgImage, SaysWhatIsWrongWithThePicture) {
  const std::string png = PngOf(3, 3);
  const struct {
    std::string reference;
    const char* remark;
  } cases[] = {
      {"", "a picture is left out: it has no address"},
      {"data:image/png;base64,!!", "a picture is left out: character 1 of its data"},
      {"data:image/webp;base64,UklGRg==", "it is neither a PNG nor a JPEG file"},
      {AddressOf(png.substr(0, png.size() - 1)), "a picture is left out: the PNG file is damaged"},
      {"beside.png", "the picture \"beside.png\" is left out: the document lies in no folder"},
      {"/etc/hostname", "the document lies in no folder"},
      {"http://example.com/a.png", "only files of this computer are read"},
  };
  for (const auto& c : cases) {
    SvgImportFilter filter(manager_);
    const std::string document = Page("\n<image href='" + c.reference +
                                      "'/><rect width='9' "
                                      "height='9'/>");
    manager_.Clear();
    filter.ImportFromMemory(reinterpret_cast<const unsigned char*>(document.data()),
                            static_cast<unsigned>(document.size()), false);
    EXPECT_THAT(filter.Remarks().First(), ElementsAre(HasSubstr(c.remark)));
    EXPECT_THAT(filter.Remarks().First(), ElementsAre(testing::StartsWith("Line 3: ")));
    EXPECT_EQ(manager_.Size(), 3U) << "the rectangle is drawn all the same";
  }
}

TEST_F(SvgImage, IsDrawnAsOftenAsItIsUsed) {
  const std::string picture = Image(1, 1, "id='i'");
  const std::string other = Image(2, 2, "id='j'");
  Import("<defs>" + picture + other +
         "</defs><use href='#i'/><use href='#j'/><use href='#i' x='5'/>");
  ASSERT_EQ(manager_.Size(), 3U);
  FindImage();
  EXPECT_EQ(image_->Bitmap()->GetWidth(), 1U);
  EXPECT_EQ(dynamic_cast<const TrImage&>(manager_.At(2)).Placement(), Box2d(5, -1, 6, 0));
}

TEST_F(SvgImage, RefusesToRepeatLargePicturesWithoutEnd) {
  std::string content = "<defs><image id='i' width='9' height='9' href='" +
                        AddressOf(PngOf(1000, 1000)) + "'/><g id='a'>";
  for (int i = 0; i < 100; ++i) content += "<use href='#i'/>";
  content += "</g><g id='b'>";
  for (int i = 0; i < 100; ++i) content += "<use href='#a'/>";
  content += "</g></defs><use href='#b'/><use href='#b'/>";
  class Forgetting : public quillon::IoManager {
   public:
    void ImportObject(quillon::TrBase&) override { ++count; }
    int count = 0;
  } manager;
  SvgImportFilter filter(manager);
  const std::string document = Page(content);
  EXPECT_NE(FaultOf([&] {
              filter.ImportFromMemory(reinterpret_cast<const unsigned char*>(document.data()),
                                      static_cast<unsigned>(document.size()), false);
            }),
            "");
  EXPECT_GT(manager.count, 100);
  EXPECT_LT(manager.count, 20'000);
}

TEST_F(SvgImage, HasABoxForClipPathsInPartsOfIt) {
  Import(
      "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1'/></clipPath>" +
      Image(1, 1, "width='50' height='50' clip-path='url(#c)'"));
  EXPECT_NE(image_, nullptr);
  EXPECT_THAT(Remarks(), IsEmpty());
  ImportDocument("<svg xmlns='http://www.w3.org/2000/svg'>" +
                 Image(1, 1, "x='10' y='20' width='200' height='100'") + "</svg>");
  EXPECT_EQ(filter_.Page().viewBox, Box2d(10, 20, 210, 120));
}

// --- Clipping ------------------------------------------------------------------------------------

constexpr const char* kNotCut = "pictures are drawn whole, even where a clip path cuts them";

TEST_F(SvgImage, RemarksOnceThatItIsNotCut) {
  SetRegion(0, -10, 10, 0);
  Import(Image(8, 8, "x='1' y='1'"));
  EXPECT_THAT(Remarks(), IsEmpty());
  Import(Image(8, 8, "x='5' y='1'") + Image(8, 8, "x='50' y='1'"));
  EXPECT_EQ(manager_.Size(), 2U);
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr(kNotCut)));
}

TEST_F(SvgImage, RemarksOnClipPathsOfTheDocument) {
  Import("<clipPath id='c'><circle r='5'/></clipPath>" + Image(8, 8, "clip-path='url(#c)'"));
  ASSERT_NE(image_, nullptr);
  EXPECT_EQ(image_->Bitmap()->GetWidth(), 8U);
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr(kNotCut)));
}

TEST_F(SvgImage, IsCutToItsSpaceWhenItCoversMore) {
  const char* slice = "width='10' height='10' preserveAspectRatio='xMidYMid slice'";
  Import(Image(8, 8, slice));
  EXPECT_THAT(Remarks(), IsEmpty());
  Import(Image(8, 4, slice + std::string(" overflow='visible'")));
  EXPECT_THAT(Remarks(), IsEmpty());
  Import(Image(8, 4, slice));
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr(kNotCut)));
  // The space is that of this image alone.
  EXPECT_THAT(DrawnAreas(Image(8, 4, slice) + "<path d='M0 0v100h100v-100z'/>"),
              ElementsAre("TrPolygon 0 -100 0, 100 -100 0, 100 0 0, 0 0 0 (4)"));
}

}  // namespace
}  // namespace trovan::filters
