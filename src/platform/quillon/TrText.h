// A text, written with the current font in the colour of the font.
//
//   TrText name(L"Oslo", Vec2d(10.75, 59.91));
//   name.SetAlignment(TrText::kCenter, TrText::kBottom);
#pragma once

#include <memory>
#include <string>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

#include <quillon/Export.h>
#include <quillon/TrBase.h>

namespace quillon {

// The text is laid out in a space of its own, in which it runs along x from the anchor and y points
// up; the transform takes that space into the drawing.
class QUILLON_API TrText : public TrBase {
 public:
  // Which part of the text lies at the anchor.
  enum HorizontalAlignment : int { kLeft = 0, kCenter = 1, kRight = 2 };
  enum VerticalAlignment : int { kTop = 0, kBaseline = 1, kMiddle = 2, kBottom = 3 };

  static const corvel::CTypeInfo* GetClassTypeId();

  // Left of the baseline, not transformed, with the empty box for its bounds.
  explicit TrText(std::wstring string = {}, const corvel::Vec2d& anchor = {});

  const corvel::CTypeInfo* GetTypeId() const override;
  std::unique_ptr<TrBase> Clone() const override;

  // Raises unless anchor, bounds and transform are finite. An empty text is valid.
  void AssertValid() const override;
  std::wstring Description() const override;

  const std::wstring& String() const { return string_; }
  void SetString(std::wstring string);
  const corvel::Vec2d& Anchor() const { return anchor_; }
  void SetAnchor(const corvel::Vec2d& anchor) { anchor_ = anchor; }

  HorizontalAlignment GetHorizontalAlignment() const { return horizontal_; }
  VerticalAlignment GetVerticalAlignment() const { return vertical_; }
  void SetAlignment(HorizontalAlignment horizontal, VerticalAlignment vertical) {
    horizontal_ = horizontal;
    vertical_ = vertical;
  }

  // Whether the outlines of the letters are drawn with the current pen.
  bool HasOutline() const { return hasOutline_; }
  void SetOutline(bool hasOutline) { hasOutline_ = hasOutline; }

  // Around the text, in its own space.
  const corvel::Box2d& Bounds() const { return bounds_; }
  void SetBounds(const corvel::Box2d& bounds) { bounds_ = bounds; }
  const corvel::Mat4d& Transform() const { return transform_; }
  void SetTransform(const corvel::Mat4d& transform) { transform_ = transform; }

 private:
  std::wstring string_;
  corvel::Vec2d anchor_;
  HorizontalAlignment horizontal_ = kLeft;
  VerticalAlignment vertical_ = kBaseline;
  bool hasOutline_ = false;
  corvel::Box2d bounds_;
  corvel::Mat4d transform_;
};

}  // namespace quillon
