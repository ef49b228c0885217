#include "SvgWriterFixture.h"

#include <numbers>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrFont.h>
#include <quillon/TrText.h>

namespace trovan::filters {
namespace {

using corvel::Order;
using quillon::TrFont;
using quillon::TrText;
using testing::HasSubstr;
using SvgWriterTextTest = SvgWriterTest;

constexpr corvel::Color4b kRed(255, 0, 0, 255);

TEST_F(SvgWriterTextTest, WritesTexts) {
  TrFont font(L"Deja \"Vu\"");
  font.SetSize(9);
  font.SetFlags(TrFont::kItalic | TrFont::kUnderline | TrFont::kStrikeOut | 7);
  Add(font);
  TrText text(L"A < B & C", {10, 20});
  text.SetAlignment(TrText::kCenter, TrText::kTop);
  Add(text);
  EXPECT_EQ(
      Body(),
      "<text fill=\"#000\" font-family=\"'Deja &quot;Vu&quot;'\" font-size=\"9\" "
      "font-weight=\"700\" font-style=\"italic\" "
      "text-decoration=\"underline line-through\" x=\"10\" y=\"-20\" "
      "text-anchor=\"middle\" dominant-baseline=\"text-before-edge\">A &lt; B &amp; C</text>\n");
}

TEST_F(SvgWriterTextTest, FacesThatAreNoPlainNamesStandInQuotes) {
  const struct {
    const wchar_t* face;
    const char* family;
  } cases[] = {
      {L"Times New Roman", "Times New Roman"},
      {L"sans-serif", "sans-serif"},
      {L"Caf\u00e9_2", "Caf\u00e9_2"},
      {L"Exo 2", "'Exo 2'"},
      {L"3of9", "'3of9'"},
      {L"A, B", "'A, B'"},
      {L"Tom's \\", "'Tom\\'s \\\\'"},
      {L" ", "' '"},
  };
  for (const auto& c : cases) {
    Add(TrFont(c.face));
    Add(TrText(L"a"));
  }
  const std::string body = Body();
  for (const auto& c : cases) {
    EXPECT_THAT(body, HasSubstr(std::string(" font-family=\"") + c.family + "\" "));
  }
}

TEST_F(SvgWriterTextTest, TextsKeepTheirBlanksAndOutlines) {
  Pen(kRed, 0);
  Add(TrFont());
  TrText text(L"a  b");
  text.SetOutline(true);
  text.SetAlignment(TrText::kRight, TrText::kBottom);
  Add(text);
  Add(TrText());
  EXPECT_EQ(Body(),
            "<text fill=\"#000\" stroke=\"#f00\" font-size=\"12\" "
            "vector-effect=\"non-scaling-stroke\" x=\"0\" y=\"0\" text-anchor=\"end\" "
            "dominant-baseline=\"text-after-edge\" xml:space=\"preserve\">a  b</text>\n");
}

TEST_F(SvgWriterTextTest, TextsAreTransformedAsInTheDrawing) {
  TrText text(L"up", {10, 0});
  corvel::Mat4d quarter;
  quarter.RotateZ(std::numbers::pi / 2, Order::kAppend);
  quarter(0, 0) = quarter(1, 1) = 0.0;  // not just nearly
  quarter.Translate(0, 5, 0, Order::kAppend);
  text.SetTransform(quarter);
  Add(text);
  TrText moved(L"moved", {10, 0});
  corvel::Mat4d shift;
  shift.Translate(1, 2, 0, Order::kAppend);
  moved.SetTransform(shift);
  Add(moved);
  // Upward in the drawing is upward on the page: (10, 0) goes to (0, 15), which is (0, -15) there.
  EXPECT_EQ(Body(),
            "<g fill=\"#000\" font-size=\"12\">\n"
            "  <text transform=\"matrix(0 -1 1 0 0 -5)\" x=\"10\" y=\"0\">up</text>\n"
            "  <text x=\"11\" y=\"-2\">moved</text>\n"
            "</g>\n");
}

}  // namespace
}  // namespace trovan::filters
