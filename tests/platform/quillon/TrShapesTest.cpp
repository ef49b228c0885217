// Objects that are no lists of points: pens, brushes, fonts, texts, boxes.
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrBrush.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrFont.h>
#include <quillon/TrMetafile.h>
#include <quillon/TrPen.h>
#include <quillon/TrRectangle.h>
#include <quillon/TrText.h>

#include "Fault.h"

namespace quillon {
namespace {

using corvel::Box2d;
using corvel::Color4b;
using corvel::Vec2d;
using testing::HasSubstr;

constexpr double kBad[] = {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};
const Color4b kRed(255, 0, 0, 255);

TEST(TrPen, HasTheNumbersThatFiltersPass) {
  EXPECT_EQ(TrPen::kDefault, 0);
  EXPECT_EQ(TrPen::kSolid, 1);
  EXPECT_EQ(TrPen::kNone, 2);
}

TEST(TrPen, KeepsWhatItIsMadeOf) {
  const TrPen pen(TrPen::kSolid, kRed, 2.5);
  EXPECT_EQ(pen.GetStyle(), TrPen::kSolid);
  EXPECT_EQ(pen.Color(), kRed);
  EXPECT_EQ(pen.Width(), 2.5);
}

TEST(TrPen, IsThinAndTransparentAtFirst) {
  const TrPen pen;
  EXPECT_EQ(pen.GetStyle(), TrPen::kDefault);
  EXPECT_EQ(pen.Color(), Color4b(0));
  EXPECT_EQ(pen.Width(), 0.0);
}

TEST(TrPen, DrawsInEveryStyleButOne) {
  EXPECT_TRUE(TrPen(TrPen::kDefault, kRed, 1.0).Draws());
  EXPECT_TRUE(TrPen(TrPen::kSolid, kRed, 1.0).Draws());
  EXPECT_FALSE(TrPen(TrPen::kNone, kRed, 1.0).Draws());
}

TEST(TrPen, IsInvalidWithoutAFiniteWidth) {
  for (const double bad : kBad) {
    EXPECT_THAT(Fault(TrPen(TrPen::kSolid, kRed, bad)), HasSubstr("width"));
  }
  EXPECT_EQ(Fault(TrPen(TrPen::kSolid, kRed, -1.0)), "");
}

TEST(TrBrush, HasTheNumbersThatFiltersPass) {
  EXPECT_EQ(TrBrush::kNone, 1);
  EXPECT_EQ(TrBrush::kSolid, 2);
}

TEST(TrBrush, FillsInEveryPatternButOne) {
  EXPECT_FALSE(TrBrush().Fills());
  EXPECT_TRUE(TrBrush(TrBrush::kSolid, kRed).Fills());
  EXPECT_EQ(TrBrush(TrBrush::kSolid, kRed).Color(), kRed);
  EXPECT_EQ(TrBrush(TrBrush::kSolid).Color(), Color4b(0));
}

TEST(TrFont, StartsAsTheDefaultFace) {
  const TrFont font;
  EXPECT_EQ(font.FaceName(), L"");
  EXPECT_EQ(font.Size(), 12.0);
  EXPECT_EQ(font.Aspect(), 0.0);
  EXPECT_EQ(font.Flags(), 4) << "weight 400";
  EXPECT_EQ(font.GetPitchAndFamily(), 0);
  EXPECT_EQ(font.Color(), Color4b(0, 0, 0, 255));
}

TEST(TrFont, IsInvalidWithoutAFiniteSizeAndAspect) {
  for (const double bad : kBad) {
    TrFont font(L"Arial");
    font.SetSize(bad);
    EXPECT_THAT(Fault(font), HasSubstr("size"));
    font.SetSize(-8.0);
    EXPECT_EQ(Fault(font), "") << "a negative size is valid";
    font.SetAspect(bad);
    EXPECT_THAT(Fault(font), HasSubstr("aspect"));
  }
}

// For the shapes that a box holds.
template <class Object>
void ExpectABoxThatIsFinite() {
  for (const double bad : kBad) {
    EXPECT_NE(Fault(Object(Box2d(bad, 0, 1, 1))), "");
    EXPECT_NE(Fault(Object(Box2d(0, bad, 1, 1))), "");
    EXPECT_NE(Fault(Object(Box2d(0, 0, bad, 1))), "");
    EXPECT_NE(Fault(Object(Box2d(0, 0, 1, bad))), "");
  }
  EXPECT_EQ(Fault(Object(Box2d(3, 4, 1, 2))), "") << "a flipped box is valid";
  EXPECT_EQ(Fault(Object(Box2d())), "") << "so is the empty one";
}

TEST(TrRectangle, IsInvalidWithoutAFiniteBox) { ExpectABoxThatIsFinite<TrRectangle>(); }

TEST(TrRectangle, IsInvalidWithoutFiniteRadii) {
  for (const double bad : kBad) {
    EXPECT_THAT(Fault(TrRectangle(Box2d(0, 0, 1, 1), bad, 0)), HasSubstr("radius"));
    EXPECT_THAT(Fault(TrRectangle(Box2d(0, 0, 1, 1), 0, bad)), HasSubstr("radius"));
  }
}

TEST(TrRectangle, KeepsBoxAndRadii) {
  TrRectangle rectangle(Box2d(3, 4, 1, 2), 5, 6);
  EXPECT_EQ(rectangle.Box(), Box2d(3, 4, 1, 2)) << "as it was given";
  EXPECT_EQ(rectangle.XRadius(), 5.0);
  EXPECT_EQ(rectangle.YRadius(), 6.0);
  rectangle.SetRadii(7, 8);
  EXPECT_EQ(rectangle.XRadius(), 7.0);
  EXPECT_EQ(rectangle.YRadius(), 8.0);
}

TEST(TrEllipse, IsInvalidWithoutAFiniteBox) { ExpectABoxThatIsFinite<TrEllipse>(); }

TEST(TrEllipse, IsInvalidWithoutAFiniteAngle) {
  for (const double bad : kBad) {
    EXPECT_THAT(Fault(TrEllipse(Box2d(0, 0, 1, 1), bad)), HasSubstr("angle"));
  }
}

TEST(TrText, HasTheNumbersOfItsAlignments) {
  EXPECT_EQ(TrText::kLeft, 0);
  EXPECT_EQ(TrText::kCenter, 1);
  EXPECT_EQ(TrText::kRight, 2);
  EXPECT_EQ(TrText::kTop, 0);
  EXPECT_EQ(TrText::kBaseline, 1);
  EXPECT_EQ(TrText::kMiddle, 2);
  EXPECT_EQ(TrText::kBottom, 3);
}

TEST(TrText, KeepsWhatItIsGiven) {
  TrText text(L"Oslo", Vec2d(10.75, 59.91));
  text.SetAlignment(TrText::kRight, TrText::kTop);
  text.SetOutline(true);
  text.SetBounds(Box2d(1, 2, 3, 4));
  const auto clone = text.Clone();
  const auto& copy = dynamic_cast<const TrText&>(*clone);
  EXPECT_EQ(copy.String(), L"Oslo");
  EXPECT_EQ(copy.Anchor(), Vec2d(10.75, 59.91));
  EXPECT_EQ(copy.GetHorizontalAlignment(), TrText::kRight);
  EXPECT_EQ(copy.GetVerticalAlignment(), TrText::kTop);
  EXPECT_TRUE(copy.HasOutline());
  EXPECT_EQ(copy.Bounds(), Box2d(1, 2, 3, 4));
}

TEST(TrText, IsInvalidWhereItIsNotFinite) {
  for (const double bad : kBad) {
    TrText text(L"Oslo", Vec2d(0, bad));
    EXPECT_THAT(Fault(text), HasSubstr("anchor"));
    text = TrText(L"");
    text.SetBounds(Box2d(0, 0, bad, 1));
    EXPECT_THAT(Fault(text), HasSubstr("bounds"));
    text = TrText(L"");
    corvel::Mat4d transform;
    transform(3, 2) = bad;
    text.SetTransform(transform);
    EXPECT_THAT(Fault(text), HasSubstr("transform"));
  }
}

TEST(TrMetafile, KeepsItsBytes) {
  const TrMetafile picture({1, 2, 3}, Box2d(0, 0, 4, 2));
  const auto clone = picture.Clone();
  EXPECT_EQ(dynamic_cast<const TrMetafile&>(*clone).Bytes(), (std::vector<unsigned char>{1, 2, 3}));
  EXPECT_NE(Fault(TrMetafile({}, Box2d(0, 0, kBad[0], 2))), "");
}

}  // namespace
}  // namespace quillon
