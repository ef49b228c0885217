// Pictures in files beside the document.
#include <filesystem>

#include "SvgImageFixture.h"
#include "filters/drawing/SvgWriter.h"
#include "filters/support/StringSink.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using quillon::TrImage;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SvgImageFile : public SvgImage {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(folder_.Path() / "pages");
    std::filesystem::create_directories(folder_.Path() / "pictures");
  }

  void Write(const std::string& name, unsigned width) {
    test::WriteBytes(folder_.Path() / name, PngOf(width, 1));
  }

  // Reads a page in the folder "pages" that refers to the picture. How wide that is; 0: there is
  // none.
  unsigned WidthOf(const std::string& reference) {
    test::WriteBytes(folder_.Path() / "pages/page.svg", Page("<image href='" + reference + "'/>"));
    manager_.Clear();
    SvgImportFilter filter(manager_);
    filter.ImportFromFile(folder_.File(L"pages/page.svg"), false);
    remarks_ = filter.Remarks().First();
    FindImage();
    return image_ == nullptr ? 0 : image_->Bitmap()->GetWidth();
  }

  test::TempFolder folder_;
  std::vector<std::string> remarks_;
};

TEST_F(SvgImageFile, IsFoundFromTheFolderOfTheDocument) {
  Write("pages/a.png", 1);
  Write("pages/a b.png", 2);
  Write("pages/100%.png", 3);
  Write("pictures/b.png", 4);
  Write("pages/\xC3\xA4.png", 5);
  const std::string absolute = (folder_.Path() / "pictures/b.png").string();
  const struct {
    std::string reference;
    unsigned width;
  } cases[] = {{"a.png", 1},
               {"./a.png", 1},
               {"a b.png", 2},
               {"a%20b.png", 2},
               {"100%.png", 3},
               {"../pictures/b.png", 4},
               {absolute, 4},
               {"file://" + absolute, 4},
               {"FILE:" + absolute, 4},
               {"file://localhost" + absolute, 4},
               {"\xC3\xA4.png", 5},
               {"%c3%A4.png", 5},
               {"file:a.png", 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(WidthOf(c.reference), c.width) << c.reference;
    EXPECT_THAT(remarks_, IsEmpty()) << c.reference;
  }
}

TEST_F(SvgImageFile, IsLeftOutWithARemarkWhereItCannotBeRead) {
  test::WriteBytes(folder_.Path() / "pages/text.png", "no picture");
  test::WriteBytes(folder_.Path() / "pages/empty.png", "");
  const struct {
    const char* reference;
    const char* remark;
  } cases[] = {
      {"none.png", "the picture \"none.png\" is left out: there is no such file"},
      {"../pictures", "there is no such file"},
      {"text.png", "it is neither a PNG nor a JPEG file"},
      {"empty.png", "it is neither a PNG nor a JPEG file"},
      {"%00.png", "it has no name of a file"},
      {"/dev/null", "device"},
      {"http://example.com/a.png", "only files of this computer are read"},
      {"//example.com/a.png", "only files of this computer are read"},
      {"file://example.com/a.png", "only files of this computer are read"},
      {"file:", "it has no name of a file"},
      {"#id", "there is no such file"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(WidthOf(c.reference), 0U) << c.reference;
    EXPECT_THAT(remarks_, ElementsAre(HasSubstr(c.remark))) << c.reference;
  }
  (void)WidthOf(std::string(300, 'x'));
  EXPECT_THAT(remarks_, ElementsAre(HasSubstr(std::string(100, 'x') + "...\" is left out")));
}

TEST_F(SvgImageFile, IsWrittenIntoTheDocument) {
  Write("pages/a.png", 6);
  test::WriteBytes(folder_.Path() / "pages/page.svg",
                   Page("<image x='.1' y='.2' width='.6' height='.1' href='a.png'/>"
                        "<image transform='rotate(90)' href='a.png'/>"));
  StringSink sink;
  SvgWriter writer(sink);
  SvgImportFilter filter(writer);
  filter.Open(folder_.File(L"pages/page.svg"));
  writer.Begin(filter.Page());
  filter.ImportFromFile(folder_.File(L"pages/page.svg"), false);
  writer.End();
  EXPECT_THAT(sink.text, HasSubstr("<image x=\"0.1\" y=\"0.2\" width=\"0.6\" height=\"0.1\" "
                                   "preserveAspectRatio=\"none\" href=\"data:image/png;base64,"));
  // What was written reads back as the same.
  ImportDocument(sink.text);
  ASSERT_EQ(manager_.Size(), 2U);
  FindImage();
  EXPECT_EQ(image_->Placement(), Box2d(.1, -(.2 + .1), .1 + .6, -.2));
  EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(24, 255));
  image_ = dynamic_cast<const TrImage*>(&manager_.At(1));
  EXPECT_NEAR(Corner(1, 1).x, -1, 1e-9);
  EXPECT_NEAR(Corner(1, 1).y, -6, 1e-9);
}

}  // namespace
}  // namespace trovan::filters
