// The properties of an element, after inheritance and all rules.
#pragma once

#include <string>
#include <vector>

#include <pugixml.hpp>
#include <corvel/Color.h>

#include "filters/svg/SvgColor.h"
#include "filters/svg/SvgNumbers.h"
#include "filters/svg/SvgStyleSheet.h"

namespace trovan::filters {

enum class TextAnchor { kStart, kMiddle, kEnd };

// Lengths are in user units.
struct ComputedStyle {
  // Inherited:
  corvel::Color4b color{0, 0, 0, 255};
  SvgPaint fill{SvgPaint::Kind::kColor, {0, 0, 0, 255}, false, {}, false};
  double fillOpacity = 1.0;
  bool isEvenOdd = false;  // the fill rule; otherwise nonzero
  SvgPaint stroke;
  double strokeOpacity = 1.0;
  double strokeWidth = 1.0;
  std::string lineCap = "butt";
  std::string lineJoin = "miter";
  double miterLimit = 4.0;
  std::vector<double> dashes;  // none: not dashed
  double dashOffset = 0.0;
  bool clipsEvenOdd = false;  // the rule of a shape in a clip path
  bool isVisible = true;
  bool hasMarkers = false;
  std::string fontFamily;  // a list
  double fontSize = 16.0;
  int fontWeight = 400;
  bool isItalic = false;
  TextAnchor textAnchor = TextAnchor::kStart;
  bool preservesSpace = false;

  // Not inherited, but for the lines of a text's ancestors:
  bool isUnderlined = false;
  bool isStruckOut = false;
  bool isDisplayed = true;
  double opacity = 1.0;
  std::string clipPath;         // the id; empty: none
  bool hasUnknownClip = false;  // clipped by something else than a clip path
  bool hasMask = false;
  bool hasFilter = false;
  bool isOverflowVisible = false;
  corvel::Color4b stopColor{0, 0, 0, 255};
  double stopOpacity = 1.0;
};

// The style of `node` below an element of style `parent`: the attributes of the element are weaker
// than the rules of the sheet, these weaker than its attribute "style". Values that make no sense
// count as not given, so that weaker ones hold. Of `basis` the size of the font is not read.
ComputedStyle ComputeStyle(const pugi::xml_node& node, const ComputedStyle& parent,
                           const SvgStyleSheet& sheet, const LengthBasis& basis);

// The colour that is painted; nothing for none and for references.
corvel::Color4b PlainColor(const SvgPaint& paint, const ComputedStyle& style);

}  // namespace trovan::filters
