// How lines and outlines are drawn from now on.
//
//   TrPen pen(TrPen::kSolid, Color4b(0, 0, 255, 255), 0.5);
#pragma once

#include <memory>
#include <string>

#include <corvel/Color.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// The width is in the units of the drawing; 0 draws the thinnest line that there is.
class QUILLON_API TrPen : public TrBase {
 public:
  enum Style : int {
    kDefault = 0,  // a solid line, too
    kSolid = 1,
    kNone = 2,  // draws no line
  };

  static const corvel::CTypeInfo* GetClassTypeId();

  // The thinnest solid line in transparent black: what a drawing starts with.
  TrPen() = default;
  TrPen(Style style, corvel::Color4b color, double width)
      : style_(style), color_(color), width_(width) {}

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless the width is finite.
  void AssertValid() const override;
  std::wstring Description() const override;

  Style GetStyle() const { return style_; }
  void SetStyle(Style style) { style_ = style; }
  corvel::Color4b Color() const { return color_; }
  void SetColor(corvel::Color4b color) { color_ = color; }
  double Width() const { return width_; }
  void SetWidth(double width) { width_ = width; }

  // Whether lines are drawn at all.
  bool Draws() const { return style_ != kNone; }

 private:
  Style style_ = kDefault;
  corvel::Color4b color_;
  double width_ = 0.0;
};

}  // namespace quillon
