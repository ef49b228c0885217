// Files, pages, and documents that ask for too much.
#include "filters/svg/SvgImportFilter.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "SvgFixture.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SvgImport : public SvgTest {
 protected:
  std::wstring File(const std::string& content) {
    test::WriteBytes(folder_.Path() / "drawing.svg", content);
    return folder_.File(L"drawing.svg");
  }

  test::TempFolder folder_;
};

TEST_F(SvgImport, TellsWhatItReads) {
  EXPECT_EQ(filter_.GetFilterName(), L"Scalable Vector Graphics");
  EXPECT_THAT(filter_.GetFileExtensions(), ElementsAre(L".svg"));
  EXPECT_FALSE(filter_.HasDelayedImport());
}

TEST_F(SvgImport, KnowsItsFilesByTheirContent) {
  EXPECT_TRUE(filter_.CanImport(File("<?xml version='1.0'?><svg>")));
  EXPECT_FALSE(filter_.CanImport(File("<html><svg/></html>")));
  EXPECT_FALSE(filter_.CanImport(File("")));
  EXPECT_FALSE(filter_.CanImport(folder_.File(L"missing.svg")));
  EXPECT_FALSE(filter_.CanImport(folder_.Path().wstring()));
}

TEST_F(SvgImport, PlacesThePageInTheDrawing) {
  const struct {
    const char* root;
    Box2d viewBox;
    double scale;
  } cases[] = {
      {"viewBox='0 0 1000 500'", {0, 0, 1000, 500}, 1},
      {"viewBox='0 0 999 500'", {0, 0, 999, 500}, 2},
      {"viewBox='-10 -20 100 200'", {-10, -20, 90, 180}, 8},
      {"viewBox='0 0 100 100' width='6400'", {0, 0, 100, 100}, 64},
      {"viewBox='0 0 100 100' width='100%'", {0, 0, 100, 100}, 16},
      {"width='20' height='10'", {0, 0, 20, 10}, 64},
      {"width='1in' height='2in'", {0, 0, 96, 192}, 8},
      {"width='20' height='10' viewBox='nonsense'", {0, 0, 20, 10}, 64},
      {"viewBox='0 0 8000 10'", {0, 0, 8000, 10}, 0.125},
      {"", {100, 200, 350, 300}, 4},  // what it shows
      {"width='-50' height='-100'", {100, 200, 350, 300}, 4},
  };
  for (const auto& c : cases) {
    filter_.Open(File(std::string("<svg ") + c.root +
                      "><rect x='100' y='200' width='250' height='100'/></svg>"));
    EXPECT_EQ(filter_.Page().viewBox, c.viewBox) << c.root;
    EXPECT_EQ(filter_.Scale(), c.scale) << c.root;
    EXPECT_EQ(filter_.Page().scale, c.scale);
  }
}

TEST_F(SvgImport, KeepsTheSizeAsItIsGiven) {
  filter_.Open(File("<svg viewBox='0 0 1 1' width='210mm' height='x'/>"));
  EXPECT_EQ(filter_.Page().width, "210mm");
  EXPECT_EQ(filter_.Page().height, "");
  EXPECT_EQ(filter_.Page().aspectRatio, "");
}

TEST_F(SvgImport, KeepsHowThePageIsFittedIntoItsSize) {
  filter_.Open(File("<svg viewBox='0 0 1 1' width='2' height='1' preserveAspectRatio='none'/>"));
  EXPECT_EQ(filter_.Page().aspectRatio, "none");
}

TEST_F(SvgImport, ScalesAndMirrorsTheDrawing) {
  ImportDocument("<svg viewBox='0 0 100 100'><rect x='1' y='2' width='3' height='4'/></svg>");
  EXPECT_EQ(manager_.Texts().back(), "TrRectangle 16 -96, 64 -32, 0 0");
}

TEST_F(SvgImport, ReadsAFileThatIsOpenOnce) {
  const std::wstring file = File("<svg viewBox='0 0 1000 1000'><rect width='1' height='1'/></svg>");
  filter_.Open(file);
  (void)File("<svg viewBox='0 0 1000 1000'><rect width='2' height='2'/></svg>");
  filter_.ImportFromFile(file, false);
  EXPECT_EQ(manager_.Texts().back(), "TrRectangle 0 -1, 1 0, 0 0");
  filter_.ImportFromFile(file, false);
  EXPECT_EQ(manager_.Texts().back(), "TrRectangle 0 -2, 2 0, 0 0");
}

TEST_F(SvgImport, TellsTheExtentOfThePage) {
  const std::wstring file = File("<svg viewBox='0 10 1000 500'><g></svg>");
  const auto info = filter_.GetImportFileInfo(SvgImportFilter::kScanHeader, file);
  EXPECT_TRUE(info.isKnown);
  EXPECT_EQ(info.extent, Box2d(0, -510, 1000, -10));
  EXPECT_EQ(info.summary, L"Scalable Vector Graphics, 1000 by 500");
  EXPECT_THROW(filter_.GetImportFileInfo(SvgImportFilter::kScanFile, file), FilterError);
  EXPECT_FALSE(filter_.GetImportFileInfo(SvgImportFilter::kScanHeader, File("<a/>")).isKnown);
}

TEST_F(SvgImport, ReadsAllOfADocumentThatDoesNotTellItsPage) {
  const std::wstring file = File("<svg><rect x='100' width='500' height='1000'/></svg>");
  const auto head = filter_.GetImportFileInfo(SvgImportFilter::kScanHeader, file);
  EXPECT_TRUE(head.isKnown);
  EXPECT_TRUE(head.extent.IsEmpty());
  EXPECT_EQ(head.summary, L"Scalable Vector Graphics");
  EXPECT_EQ(filter_.GetImportFileInfo(SvgImportFilter::kScanFile, file).extent,
            Box2d(100, -1000, 600, 0));
}

TEST_F(SvgImport, DrawsNothingOnAPageWithoutExtent) {
  ImportDocument("<svg viewBox='0 0 0 10'><rect width='9' height='9'/></svg>");
  EXPECT_THAT(manager_.Texts(), IsEmpty());
}

TEST_F(SvgImport, CountsWhatBecomesOfObjects) {
  SetRegion(0, -5, 5, 0);
  (void)Delivered("<path d='M1 1h1v1z'/><path d='M3 3h9v9z'/><path d='M50 50h9v9z'/>");
  EXPECT_EQ(filter_.Statistics().whole, 1U);
  EXPECT_EQ(filter_.Statistics().clipped, 1U);
  EXPECT_EQ(filter_.Statistics().dropped, 1U);
}

TEST_F(SvgImport, LeavesOutElementsThatReferToThemselves) {
  EXPECT_THAT(Drawn("<g id='a'><use href='#a'/><rect width='1' height='1'/></g>"
                    "<use id='b' href='#c'/><use id='c' href='#b'/>"),
              ElementsAre("TrRectangle 0 -1, 1 0, 0 0"));
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("refers to itself")));
}

TEST_F(SvgImport, LeavesOutWhatIsNestedTooDeep) {
  const auto nested = [](int depth) {
    std::string content;
    for (int i = 0; i < depth; ++i) content += "<g>";
    content += "<rect width='1' height='1'/>";
    for (int i = 0; i < depth; ++i) content += "</g>";
    return content;
  };
  EXPECT_EQ(Drawn(nested(254)).size(), 1U);
  EXPECT_THAT(Remarks(), IsEmpty());
  EXPECT_THAT(Drawn(nested(255)), IsEmpty());
  EXPECT_THAT(Remarks(), ElementsAre(HasSubstr("more than 256")));
  EXPECT_THAT(Drawn(nested(100000)), IsEmpty());
}

// Ten of the one before, ten times.
std::string Repetitions(const char* tag) {
  std::string content = "<rect id='u0' width='1' height='1'/>";
  for (int i = 1; i <= 10; ++i) {
    content += std::string("<") + tag + " id='u" + std::to_string(i) + "'>";
    for (int k = 0; k < 10; ++k) content += "<use href='#u" + std::to_string(i - 1) + "'/>";
    content += std::string("</") + tag + ">";
  }
  return content;
}

TEST_F(SvgImport, RefusesToRepeatPartsWithoutEnd) {
  EXPECT_THROW(Delivered("<defs>" + Repetitions("g") + "</defs><use href='#u10'/>"), FilterError);
}

TEST_F(SvgImport, RefusesClipPathsThatRepeatEachOther) {
  std::string content = "<clipPath id='c0'><rect width='9' height='9'/></clipPath>";
  for (int i = 1; i < 60; ++i) {
    const std::string before = "clip-path='url(#c" + std::to_string(i - 1) + ")'";
    content += "<clipPath id='c" + std::to_string(i) + "'><rect width='9' height='9' " + before +
               "/><rect width='9' height='9' " + before + "/></clipPath>";
  }
  EXPECT_THROW(Delivered(content + "<rect width='9' height='9' clip-path='url(#c59)'/>"),
               FilterError);
}

TEST_F(SvgImport, LeavesOutWhatIsNotFinite) {
  EXPECT_THAT(Drawn("<rect width='1e308' height='1' transform='scale(1e10)'/>"
                    "<g transform='scale(1e200)'><g transform='scale(1e200)'>"
                    "<rect width='1' height='1'/></g></g>"
                    "<circle r='1e308' transform='scale(9)'/><rect x='1e999' width='1' height='1'/>"
                    "<path d='M0 0L1e308 0L0 1e308z' transform='scale(9)'/>"
                    "<text x='1e308' transform='scale(9)'>a</text>"),
              ElementsAre("TrRectangle 0 -1, 1 0, 0 0"));  // the x that is no number counts as 0
  EXPECT_THAT(Remarks(), testing::Not(IsEmpty()));
}

TEST_F(SvgImport, LeavesOutWhatIsTooFarAwayToBeClipped) {
  for (const char* path :
       {"M0 0H1e300V1e300L5 9z", "M4 565v236t-1e300 1e300c319 494 1 855 1 406"}) {
    EXPECT_THAT(Drawn("<clipPath id='c'><rect width='9' height='9'/></clipPath><path stroke='red' "
                      "clip-path='url(#c)' d='" +
                      std::string(path) + "'/>"),
                IsEmpty());
    EXPECT_THAT(Remarks(), testing::Contains("Line 2: what lies beyond all bounds is left out"));
  }
}

TEST_F(SvgImport, LeavesOutLinesThatAreTooWideToBeClipped) {
  EXPECT_THAT(Drawn("<clipPath id='c'/><ellipse rx='246' ry='9' fill='none' stroke='red' "
                    "stroke-width='1e300' clip-path='url(#c)'/>"),
              IsEmpty());
  EXPECT_THAT(Remarks(), ElementsAre("Line 2: what lies beyond all bounds is left out"));
}

TEST_F(SvgImport, StaysInOrderAfterAFault) {
  EXPECT_THROW(ImportDocument("<svg><g></svg>"), FilterError);
  EXPECT_THAT(Drawn("<rect width='1' height='1'/>"), ElementsAre("TrRectangle 0 -1, 1 0, 0 0"));
}

TEST_F(SvgImport, StartsAnewAfterTheApplicationHasStoppedIt) {
  manager_.onDelivery = [](std::size_t count) {
    if (count == 2) throw std::runtime_error("full");  // behind the pen and the brush
  };
  EXPECT_THROW(Delivered("<clipPath id='c'><rect width='5' height='5'/></clipPath>"
                         "<rect width='9' height='9' clip-path='url(#c)'/>"),
               std::runtime_error);
  manager_.onDelivery = nullptr;
  EXPECT_THAT(Drawn("<rect width='9' height='9'/>"), ElementsAre("TrRectangle 0 -9, 9 0, 0 0"));
}

// Cut anywhere, a document is refused or drawn, but never read past its end.
TEST_F(SvgImport, SurvivesEveryTruncation) {
  const std::string whole =
      "<!DOCTYPE svg [<!ENTITY e 'M0 0h9'>]>" +
      Page(
          "<style>rect,.a>b{fill:url(#g) red;font:1em x}</style>"
          "<linearGradient id='g'><stop offset='0'/></linearGradient><clipPath id='c'><circle "
          "r='9'/>"
          "</clipPath><g clip-path='url(#c)' transform='rotate(3,4 5)'><path d='M1 1a1 1 0 0110 "
          "10zT4 "
          "5' style='stroke:#abc;stroke-dasharray:1 2px'/><rect rx='1%' width='5em' "
          "height='6'/></g>"
          "<text x='1 2'>a<tspan dy='3'>b</tspan></text><path d='&e;'/><use href='#g'/>");
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SCOPED_TRACE(testing::Message() << "cut to " << size << " bytes");
    const auto cut = std::make_unique<unsigned char[]>(size);
    std::memcpy(cut.get(), whole.data(), size);
    try {
      filter_.ImportFromMemory(cut.get(), static_cast<unsigned>(size), false);
      EXPECT_EQ(size, whole.size());
    } catch (const FilterError&) {
      EXPECT_LT(size, whole.size());
    }
  }
}

}  // namespace
}  // namespace trovan::filters
