#include "SvgTexts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <corvel/Text.h>

#include "SvgFontStyle.h"
#include "SvgTransform.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Mat3d;
using quillon::TrFont;
using quillon::TrText;

TrText::HorizontalAlignment Alignment(TextAnchor anchor) {
  if (anchor == TextAnchor::kMiddle) return TrText::kCenter;
  return anchor == TextAnchor::kEnd ? TrText::kRight : TrText::kLeft;
}

// Of the text's width, how much lies left of the anchor.
double PartBefore(TextAnchor anchor) {
  if (anchor == TextAnchor::kMiddle) return 0.5;
  return anchor == TextAnchor::kEnd ? 1.0 : 0.0;
}

Box2d GuessedBounds(const SvgTextRun& run, const corvel::Vec2d& anchor, double scale) {
  constexpr double kMargin = 0.15;  // of the width, on both sides
  const double size = run.context->style.fontSize * scale;
  const double width = run.width * scale;
  const double left = anchor.x - width * PartBefore(run.anchor);
  return {left - kMargin * width, anchor.y - 0.3 * size, left + (1.0 + kMargin) * width,
          anchor.y + size};
}

}  // namespace

TrFont FontOf(const SvgTextRun& run, const corvel::Color4b& color) {
  const ComputedStyle& style = run.context->style;
  TrFont font(corvel::WideFromUtf8(FirstFamily(style.fontFamily)));
  font.SetSize(style.fontSize * MeanScale(run.context->map));
  int flags = std::clamp((style.fontWeight + 50) / 100, 1, 9);
  if (style.isItalic) flags |= TrFont::kItalic;
  if (style.isUnderlined) flags |= TrFont::kUnderline;
  if (style.isStruckOut) flags |= TrFont::kStrikeOut;
  font.SetFlags(static_cast<std::uint16_t>(flags));
  font.SetColor(color);
  return font;
}

// The space of the text is user space with y up, in units of the drawing: only what is turned,
// sheared or mirrored in the document is so in the transform.
TrText TextOf(const SvgTextRun& run) {
  const double scale = MeanScale(run.context->map);
  const Mat3d toUser(1 / scale, 0, 0, -1 / scale, 0, 0);
  TrText text(run.text, {run.place.x * scale, -run.place.y * scale});
  text.SetAlignment(Alignment(run.anchor), TrText::kBaseline);
  text.SetBounds(GuessedBounds(run, text.Anchor(), scale));
  text.SetTransform(toUser * run.context->map);
  return text;
}

}  // namespace trovan::filters
