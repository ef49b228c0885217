// The pen, the brush and the font of a drawing as attributes of SVG (W3C, "Scalable Vector Graphics
// 1.1", second edition).
#pragma once

#include <string>

#include <quillon/TrBrush.h>
#include <quillon/TrFont.h>
#include <quillon/TrPen.h>

#include "filters/drawing/PageCoordinates.h"

namespace trovan::filters {

// Each style is a text of attributes, each with a blank in front; the empty text says that there is
// nothing to be seen. What surrounds the elements neither fills nor draws.
//
// A pen may carry the parameters "line-cap", "line-join" and "miter-limit" with the values of SVG.
class SvgStyle {
 public:
  // `coordinates` are borrowed.
  explicit SvgStyle(const PageCoordinates& coordinates) : coordinates_(coordinates) {}

  void Set(const quillon::TrPen& pen) { pen_ = pen; }
  void Set(const quillon::TrBrush& brush) { brush_ = brush; }
  void Set(const quillon::TrFont& font) { font_ = font; }

  std::string OfAreas() const;
  std::string OfLines() const;
  std::string OfMarkers() const;
  std::string OfTexts(bool hasOutline) const;

  // The attribute of each element that the pen draws with its thinnest line, which no group can
  // hand down; empty when the pen does not.
  std::string ThinLine() const;

 private:
  void AppendFill(std::string& style, corvel::Color4b color) const;
  void AppendStroke(std::string& style) const;
  void AppendFont(std::string& style) const;
  bool PenIsSeen() const { return pen_.Draws() && pen_.Color().alpha > 0; }

  const PageCoordinates& coordinates_;
  quillon::TrPen pen_;
  quillon::TrBrush brush_;
  quillon::TrFont font_;
};

}  // namespace trovan::filters
