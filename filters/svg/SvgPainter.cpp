#include "SvgPainter.h"

#include <utility>

#include <corvel/Text.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>

#include "filters/support/NumberText.h"

namespace trovan::filters {
namespace {

using corvel::Color4b;
using quillon::TrBrush;
using quillon::TrFont;
using quillon::TrPen;

bool IsSame(const TrPen& a, const TrPen& b) {
  return a.GetStyle() == b.GetStyle() && a.Color() == b.Color() && a.Width() == b.Width() &&
         a.Params() == b.Params();
}

bool IsSame(const TrBrush& a, const TrBrush& b) {
  return a.GetPattern() == b.GetPattern() && a.Color() == b.Color();
}

bool IsSame(const TrFont& a, const TrFont& b) {
  return a.FaceName() == b.FaceName() && a.Size() == b.Size() && a.Flags() == b.Flags() &&
         a.Color() == b.Color();
}

std::vector<corvel::Vec3d> Points3D(const std::vector<corvel::Vec2d>& points) {
  std::vector<corvel::Vec3d> raised;
  raised.reserve(points.size());
  for (const corvel::Vec2d& point : points) raised.emplace_back(point, 0.0);
  return raised;
}

}  // namespace

SvgPainter::SvgPainter(const tarnis::Polygon2& region, Deliver deliver)
    : deliver_(deliver), clips_(region, std::move(deliver)) {}

void SvgPainter::FillArea(const tarnis::Polygon2& area, const Color4b& color) {
  if (area.Points().empty()) return;
  UseFill(color);
  quillon::TrPolygon polygon(Points3D(area.Points()), area.Counts());
  Draw(polygon);
}

void SvgPainter::FillRectangle(const corvel::Box2d& box, double xRadius, double yRadius,
                               const Color4b& color) {
  UseFill(color);
  quillon::TrRectangle rectangle(box, xRadius, yRadius);
  Draw(rectangle);
}

void SvgPainter::FillEllipse(const corvel::Box2d& box, double angle, const Color4b& color) {
  UseFill(color);
  quillon::TrEllipse ellipse(box, angle);
  Draw(ellipse);
}

void SvgPainter::DrawLine(const std::vector<corvel::Vec2d>& points, const SvgStroke& stroke) {
  UseStroke(stroke);
  quillon::TrPolyline line(Points3D(points));
  Draw(line);
}

void SvgPainter::DrawText(quillon::TrText& text, const TrFont& font,
                          const std::optional<SvgStroke>& outline) {
  if (outline) UseStroke(*outline);
  if (!font_ || !IsSame(*font_, font)) {
    font_ = font;
    TrFont sent = font;
    deliver_(sent);
  }
  text.SetOutline(outline.has_value());
  Draw(text);
}

void SvgPainter::Draw(quillon::TrBase& object) {
  clips_.Update();
  deliver_(object);
}

void SvgPainter::End() { clips_.Update(); }

void SvgPainter::UseFill(const Color4b& color) {
  UsePen(TrPen(TrPen::kNone, Color4b(), 0.0));
  UseBrush(TrBrush(TrBrush::kSolid, color));
}

void SvgPainter::UseStroke(const SvgStroke& stroke) {
  UseBrush(TrBrush(TrBrush::kNone));
  TrPen pen(TrPen::kSolid, stroke.color, stroke.width);
  pen.Params().Set(L"line-cap", corvel::WideFromUtf8(stroke.cap));
  pen.Params().Set(L"line-join", corvel::WideFromUtf8(stroke.join));
  pen.Params().Set(L"miter-limit", corvel::WideFromUtf8(ShortestText(stroke.miterLimit)));
  UsePen(std::move(pen));
}

void SvgPainter::UsePen(TrPen pen) {
  if (pen_ && IsSame(*pen_, pen)) return;
  pen_ = pen;
  deliver_(pen);
}

void SvgPainter::UseBrush(TrBrush brush) {
  if (brush_ && IsSame(*brush_, brush)) return;
  brush_ = brush;
  deliver_(brush);
}

}  // namespace trovan::filters
