#include <quillon/TrFont.h>
#include <quillon/TrText.h>

#include <cmath>

#include <corvel/Text.h>

#include "SvgFixture.h"

namespace trovan::filters {
namespace {

using quillon::TrFont;
using quillon::TrText;
using testing::ElementsAre;

class SvgText : public SvgTest {
 protected:
  template <class Object>
  std::vector<const Object*> All() const {
    std::vector<const Object*> found;
    for (std::size_t i = 0; i < manager_.Size(); ++i) {
      if (const auto* object = dynamic_cast<const Object*>(&manager_.At(i))) {
        found.push_back(object);
      }
    }
    return found;
  }

  // The texts of a page, each with where it stands.
  Texts Runs(const std::string& content) {
    ImportDocument(Page(content));
    Texts runs;
    for (const TrText* text : All<TrText>()) {
      runs.push_back("'" + corvel::Utf8FromWide(text->String()) + "' " +
                     std::to_string(std::lround(text->Anchor().x)) + " " +
                     std::to_string(std::lround(text->Anchor().y)));
    }
    return runs;
  }
};

TEST_F(SvgText, SendsTheFontInFrontOfTheText) {
  ImportDocument(
      Page("<text x='10' y='20' font-family='Arial, serif' font-size='12' "
           "font-weight='bold' font-style='italic' fill='red' "
           "text-decoration='underline'>Hi</text>"));
  ASSERT_EQ(All<TrFont>().size(), 1U);
  const TrFont& font = *All<TrFont>().front();
  EXPECT_EQ(font.FaceName(), L"Arial");
  EXPECT_EQ(font.Size(), 12);
  EXPECT_EQ(font.Flags(), 7 | TrFont::kItalic | TrFont::kUnderline);
  EXPECT_EQ(font.Color(), corvel::Color4b(255, 0, 0, 255));
  ASSERT_EQ(All<TrText>().size(), 1U);
  const TrText& text = *All<TrText>().front();
  EXPECT_EQ(text.String(), L"Hi");
  EXPECT_EQ(text.Anchor(), corvel::Vec2d(10, -20));
  EXPECT_EQ(text.Transform(), corvel::Mat4d());
  EXPECT_EQ(text.GetVerticalAlignment(), TrText::kBaseline);
  EXPECT_FALSE(text.HasOutline());
}

TEST_F(SvgText, AlignsAtTheAnchor) {
  ImportDocument(Page("<text text-anchor='middle'>a</text><text text-anchor='end'>b</text>"));
  EXPECT_EQ(All<TrText>().at(0)->GetHorizontalAlignment(), TrText::kCenter);
  EXPECT_EQ(All<TrText>().at(1)->GetHorizontalAlignment(), TrText::kRight);
}

TEST_F(SvgText, ScalesTheFontAndTurnsTheText) {
  ImportDocument(Page("<text font-size='10' transform='rotate(90) scale(2)'>a</text>"));
  EXPECT_EQ(All<TrFont>().front()->Size(), 20);
  const auto& turn = All<TrText>().front()->Transform();
  EXPECT_DOUBLE_EQ(turn(0, 1), -1);  // clockwise on the page, whose y points down
  EXPECT_DOUBLE_EQ(turn(1, 0), 1);
}

TEST_F(SvgText, CollapsesSpace) {
  EXPECT_THAT(Runs("<text>  a \n  b  </text>"), ElementsAre("'a b' 0 0"));
  EXPECT_THAT(Runs("<text xml:space='preserve'> a\t b </text>"), ElementsAre("' a  b ' 0 0"));
  EXPECT_THAT(Runs("<text>  </text>"), ElementsAre());
}

TEST_F(SvgText, StartsRunsWhereElementsSay) {
  EXPECT_THAT(Runs("<text x='1' y='2'>a<tspan x='30' y='40'>b</tspan></text>"),
              ElementsAre("'a' 1 -2", "'b' 30 -40"));
  EXPECT_THAT(Runs("<text x='1 20 30'>abcd</text>"),
              ElementsAre("'a' 1 0", "'b' 20 0", "'cd' 30 0"));
  EXPECT_THAT(Runs("<text x='5' dx='10' dy='-3'>a</text>"), ElementsAre("'a' 15 3"));
}

TEST_F(SvgText, GoesOnBehindTheRunBefore) {
  const Texts runs = Runs("<text x='10'>mm<tspan fill='red'>b</tspan></text>");
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_GT(All<TrText>().at(1)->Anchor().x, 20);
  EXPECT_EQ(All<TrFont>().size(), 2U);
}

TEST_F(SvgText, DrawsOutlinesWhereThereIsAStroke) {
  ImportDocument(Page("<text fill='none' stroke='red'>a</text>"));
  EXPECT_TRUE(All<TrText>().front()->HasOutline());
  EXPECT_EQ(All<TrFont>().front()->Color(), corvel::Color4b());
}

TEST_F(SvgText, RemarksWhatTextsLose) {
  (void)Runs(
      "<path id='p' d='M0 0h9'/><text letter-spacing='2'>a<textPath href='#p'>b</textPath>"
      "</text>");
  EXPECT_THAT(Remarks(),
              ElementsAre("Line 2: distances between letters and words are those of the font",
                          "Line 2: texts along paths are left out"));
}

TEST_F(SvgText, LeavesTheRoomOfHiddenLetters) {
  const Texts shown = Runs("<text x='10' y='20'>a<tspan>bbb</tspan>c</text>");
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_THAT(Runs("<text x='10' y='20'>a<tspan visibility='hidden'>bbb</tspan>c</text>"),
              ElementsAre(shown[0], shown[2]));
}

}  // namespace
}  // namespace trovan::filters
