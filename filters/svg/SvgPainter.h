// Draws areas, lines and texts by translator objects, with as few changes of pen, brush, font and
// clip path as can be.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Color.h>
#include <corvel/Geometry.h>
#include <quillon/TrBase.h>
#include <quillon/TrBrush.h>
#include <quillon/TrFont.h>
#include <quillon/TrPen.h>
#include <quillon/TrText.h>
#include <tarnis/Polygon2.h>

#include "filters/svg/SvgClipStack.h"

namespace trovan::filters {

// How a line is drawn; lengths are in units of the drawing.
struct SvgStroke {
  corvel::Color4b color;
  double width = 1.0;
  std::string cap = "butt";
  std::string join = "miter";
  double miterLimit = 4.0;
};

class SvgPainter {
 public:
  using Deliver = SvgClipStack::Deliver;

  // `region` is what the receiver clips to already.
  SvgPainter(const tarnis::Polygon2& region, Deliver deliver);

  SvgClipStack& Clips() { return clips_; }

  void FillArea(const tarnis::Polygon2& area, const corvel::Color4b& color);
  void FillRectangle(const corvel::Box2d& box, double xRadius, double yRadius,
                     const corvel::Color4b& color);
  // The angle is in radians, in the axes of the drawing.
  void FillEllipse(const corvel::Box2d& box, double angle, const corvel::Color4b& color);
  void DrawLine(const std::vector<corvel::Vec2d>& points, const SvgStroke& stroke);
  // With a stroke, the outlines of the letters are drawn.
  void DrawText(quillon::TrText& text, const quillon::TrFont& font,
                const std::optional<SvgStroke>& outline);
  void Draw(quillon::TrBase& object);

  // Leaves the receiver with the region that it began with.
  void End();

 private:
  void UseFill(const corvel::Color4b& color);
  void UseStroke(const SvgStroke& stroke);
  void UsePen(quillon::TrPen pen);
  void UseBrush(quillon::TrBrush brush);

  Deliver deliver_;
  SvgClipStack clips_;
  // What the receiver has; nothing: not known.
  std::optional<quillon::TrPen> pen_;
  std::optional<quillon::TrBrush> brush_;
  std::optional<quillon::TrFont> font_;
};

}  // namespace trovan::filters
