#include "SvgComputedStyle.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "SvgFontStyle.h"
#include "SvgScanner.h"

namespace trovan::filters {
namespace {

using Style = ComputedStyle;
using Value = std::string_view;

struct Place {
  const Style& parent;
  LengthBasis basis;  // its font size is that of the element, once that is known
};

// Takes a value over into the style, or leaves the style as it is where the value makes no sense.
using Apply = void (*)(Value value, const Place& place, Style& style);
using Copy = void (*)(const Style& from, Style& to);

struct Property {
  Value name;
  bool isInherited;
  Apply apply;
  Copy copy;
};

template <auto Member>
void CopyMember(const Style& from, Style& to) {
  to.*Member = from.*Member;
}

template <auto Member>
void ApplyPaint(Value value, const Place&, Style& style) {
  if (const auto paint = ParsePaint(value)) style.*Member = *paint;
}

template <auto Member>
void ApplyColor(Value value, const Place&, Style& style) {
  if (const auto color = ParseColor(value, style.color)) style.*Member = *color;
}

template <auto Member>
void ApplyOpacity(Value value, const Place&, Style& style) {
  if (const auto opacity = ParseOpacity(value)) style.*Member = *opacity;
}

template <auto Member>
void ApplyRule(Value value, const Place&, Style& style) {
  if (value == "evenodd") style.*Member = true;
  if (value == "nonzero") style.*Member = false;
}

// Whether the property has another value than "none".
template <auto Member>
void ApplyPresence(Value value, const Place&, Style& style) {
  style.*Member = value != "none";
}

// Any of the three kinds of markers counts.
void ApplyMarker(Value value, const Place&, Style& style) {
  if (value != "none") style.hasMarkers = true;
}

void ApplyFontSize(Value value, const Place& place, Style& style) {
  if (const auto size = ParseFontSize(value, place.parent.fontSize, place.basis)) {
    style.fontSize = *size;
  }
}

void ApplyStrokeWidth(Value value, const Place& place, Style& style) {
  const auto length = ParseLength(value);
  if (!length) return;
  const double width = InPixels(*length, place.basis, Axis::kDiagonal);
  if (width >= 0.0) style.strokeWidth = width;
}

void ApplyDashOffset(Value value, const Place& place, Style& style) {
  if (const auto length = ParseLength(value)) {
    style.dashOffset = InPixels(*length, place.basis, Axis::kDiagonal);
  }
}

// A negative length makes the whole list invalid; one whose sum is 0 draws a solid line.
void ApplyDashes(Value value, const Place& place, Style& style) {
  if (value == "none") return style.dashes.clear();
  std::vector<double> dashes;
  double sum = 0.0;
  SvgScanner scanner(value);
  while (!scanner.AtEnd()) {
    const auto length = ParseLength(scanner.ReadUntil(", \t\n\r\f"));
    if (!length) return;
    dashes.push_back(InPixels(*length, place.basis, Axis::kDiagonal));
    if (dashes.back() < 0.0) return;
    sum += dashes.back();
    scanner.SkipComma();
  }
  if (!(sum > 0.0)) dashes.clear();
  style.dashes = std::move(dashes);
}

void ApplyLineCap(Value value, const Place&, Style& style) {
  if (value == "butt" || value == "round" || value == "square") style.lineCap = std::string(value);
}

// The joins of SVG 2 look nearly as mitres do.
void ApplyLineJoin(Value value, const Place&, Style& style) {
  if (value == "miter" || value == "round" || value == "bevel") style.lineJoin = std::string(value);
  if (value == "miter-clip" || value == "arcs") style.lineJoin = "miter";
}

void ApplyMiterLimit(Value value, const Place&, Style& style) {
  const auto limit = ParseSvgNumber(value);
  if (limit && *limit >= 1.0) style.miterLimit = *limit;
}

void ApplyVisibility(Value value, const Place&, Style& style) {
  if (value == "visible") style.isVisible = true;
  if (value == "hidden" || value == "collapse") style.isVisible = false;
}

void ApplyDisplay(Value value, const Place&, Style& style) { style.isDisplayed = value != "none"; }

void ApplyClipPath(Value value, const Place&, Style& style) {
  style.clipPath = ParseReference(value);
  style.hasUnknownClip = style.clipPath.empty() && value != "none";
}

void CopyClipPath(const Style& from, Style& to) {
  to.clipPath = from.clipPath;
  to.hasUnknownClip = from.hasUnknownClip;
}

void ApplyOverflow(Value value, const Place&, Style& style) {
  style.isOverflowVisible = value == "visible" || value == "auto";
}

void ApplyFontWeight(Value value, const Place& place, Style& style) {
  if (const auto weight = ParseFontWeight(value, place.parent.fontWeight)) {
    style.fontWeight = *weight;
  }
}

void ApplyFontStyle(Value value, const Place&, Style& style) {
  if (value == "normal") style.isItalic = false;
  if (value.starts_with("italic") || value.starts_with("oblique")) style.isItalic = true;
}

void ApplyFontFamily(Value value, const Place&, Style& style) {
  if (!value.empty()) style.fontFamily = std::string(value);
}

// "italic bold 12px/30px Georgia, serif".
void ApplyFont(Value value, const Place& place, Style& style) {
  const auto font = ParseFontShorthand(value, place.parent.fontSize, place.basis);
  if (!font) return;
  style.fontSize = font->size;
  style.fontWeight = font->weight;
  style.isItalic = font->isItalic;
  style.fontFamily = font->family;
}

void CopyFont(const Style& from, Style& to) {
  to.fontSize = from.fontSize;
  to.fontWeight = from.fontWeight;
  to.isItalic = from.isItalic;
  to.fontFamily = from.fontFamily;
}

void ApplyTextAnchor(Value value, const Place&, Style& style) {
  if (value == "start") style.textAnchor = TextAnchor::kStart;
  if (value == "middle") style.textAnchor = TextAnchor::kMiddle;
  if (value == "end") style.textAnchor = TextAnchor::kEnd;
}

// The lines of an ancestor run on below and through the text of its descendants.
void ApplyTextDecoration(Value value, const Place&, Style& style) {
  if (value.find("underline") != Value::npos) style.isUnderlined = true;
  if (value.find("line-through") != Value::npos) style.isStruckOut = true;
}

void CopyTextDecoration(const Style& from, Style& to) {
  to.isUnderlined = from.isUnderlined;
  to.isStruckOut = from.isStruckOut;
}

void ApplySpace(Value value, const Place&, Style& style) {
  style.preservesSpace = value == "preserve";
}

// In this order: the size of the font and the colour are what other values are relative to.
constexpr Property kProperties[] = {
    {"font", true, ApplyFont, CopyFont},
    {"font-size", true, ApplyFontSize, CopyMember<&Style::fontSize>},
    {"color", true, ApplyColor<&Style::color>, CopyMember<&Style::color>},
    {"clip-path", false, ApplyClipPath, CopyClipPath},
    {"clip-rule", true, ApplyRule<&Style::clipsEvenOdd>, CopyMember<&Style::clipsEvenOdd>},
    {"display", false, ApplyDisplay, CopyMember<&Style::isDisplayed>},
    {"fill", true, ApplyPaint<&Style::fill>, CopyMember<&Style::fill>},
    {"fill-opacity", true, ApplyOpacity<&Style::fillOpacity>, CopyMember<&Style::fillOpacity>},
    {"fill-rule", true, ApplyRule<&Style::isEvenOdd>, CopyMember<&Style::isEvenOdd>},
    {"filter", false, ApplyPresence<&Style::hasFilter>, CopyMember<&Style::hasFilter>},
    {"font-family", true, ApplyFontFamily, CopyMember<&Style::fontFamily>},
    {"font-style", true, ApplyFontStyle, CopyMember<&Style::isItalic>},
    {"font-weight", true, ApplyFontWeight, CopyMember<&Style::fontWeight>},
    {"marker", true, ApplyPresence<&Style::hasMarkers>, CopyMember<&Style::hasMarkers>},
    {"marker-end", true, ApplyMarker, CopyMember<&Style::hasMarkers>},
    {"marker-mid", true, ApplyMarker, CopyMember<&Style::hasMarkers>},
    {"marker-start", true, ApplyMarker, CopyMember<&Style::hasMarkers>},
    {"mask", false, ApplyPresence<&Style::hasMask>, CopyMember<&Style::hasMask>},
    {"opacity", false, ApplyOpacity<&Style::opacity>, CopyMember<&Style::opacity>},
    {"overflow", false, ApplyOverflow, CopyMember<&Style::isOverflowVisible>},
    {"stop-color", false, ApplyColor<&Style::stopColor>, CopyMember<&Style::stopColor>},
    {"stop-opacity", false, ApplyOpacity<&Style::stopOpacity>, CopyMember<&Style::stopOpacity>},
    {"stroke", true, ApplyPaint<&Style::stroke>, CopyMember<&Style::stroke>},
    {"stroke-dasharray", true, ApplyDashes, CopyMember<&Style::dashes>},
    {"stroke-dashoffset", true, ApplyDashOffset, CopyMember<&Style::dashOffset>},
    {"stroke-linecap", true, ApplyLineCap, CopyMember<&Style::lineCap>},
    {"stroke-linejoin", true, ApplyLineJoin, CopyMember<&Style::lineJoin>},
    {"stroke-miterlimit", true, ApplyMiterLimit, CopyMember<&Style::miterLimit>},
    {"stroke-opacity", true, ApplyOpacity<&Style::strokeOpacity>,
     CopyMember<&Style::strokeOpacity>},
    {"stroke-width", true, ApplyStrokeWidth, CopyMember<&Style::strokeWidth>},
    {"text-anchor", true, ApplyTextAnchor, CopyMember<&Style::textAnchor>},
    {"text-decoration", true, ApplyTextDecoration, CopyTextDecoration},
    {"visibility", true, ApplyVisibility, CopyMember<&Style::isVisible>},
    {"xml:space", true, ApplySpace, CopyMember<&Style::preservesSpace>},
};
constexpr std::size_t kPropertyCount = std::size(kProperties);

constexpr unsigned kAttributePriority = 1;
constexpr unsigned kSheetPriority = 2;
constexpr unsigned kStylePriority = 3;
constexpr unsigned kImportant = 4;  // added

// Of each property the strongest value that was given.
class Winners {
 public:
  // A later value wins over an earlier one of the same priority.
  void Give(Value property, Value value, unsigned priority) {
    for (std::size_t i = 0; i < kPropertyCount; ++i) {
      if (kProperties[i].name != property) continue;
      if (priority >= winners_[i].priority) winners_[i] = {value, priority};
      return;
    }
  }

  void Give(const std::vector<SvgDeclaration>& declarations, unsigned priority) {
    for (const SvgDeclaration& d : declarations) {
      Give(d.property, d.value, priority + (d.isImportant ? kImportant : 0));
    }
  }

  void ApplyTo(Style& style, Place& place) const {
    for (std::size_t i = 0; i < kPropertyCount; ++i) {
      place.basis.fontSize = style.fontSize;
      if (winners_[i].priority > 0) ApplyOne(kProperties[i], winners_[i].value, place, style);
    }
  }

 private:
  struct Winner {
    Value value;
    unsigned priority = 0;  // 0: none was given
  };

  static void ApplyOne(const Property& property, Value value, const Place& place, Style& style) {
    value = TrimSpace(value);
    const bool isUnset = value == "unset" || value == "revert";
    if (value == "inherit" || (isUnset && property.isInherited)) {
      property.copy(place.parent, style);
    } else if (value == "initial" || isUnset) {
      property.copy(Style(), style);
    } else {
      property.apply(value, place, style);
    }
  }

  std::array<Winner, kPropertyCount> winners_;
};

// What an element starts with: the inherited properties of its parent.
Style Inherited(const Style& parent) {
  Style style = parent;
  const Style initial;
  for (const Property& property : kProperties) {
    if (!property.isInherited) property.copy(initial, style);
  }
  return style;
}

}  // namespace

ComputedStyle ComputeStyle(const pugi::xml_node& node, const ComputedStyle& parent,
                           const SvgStyleSheet& sheet, const LengthBasis& basis) {
  Winners winners;
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    winners.Give(attribute.name(), attribute.value(), kAttributePriority);
  }
  if (!sheet.IsEmpty()) {
    for (const auto* declarations : sheet.Matches(node)) {
      winners.Give(*declarations, kSheetPriority);
    }
  }
  const auto own = ParseDeclarations(node.attribute("style").value());
  winners.Give(own, kStylePriority);

  Style style = Inherited(parent);
  Place place{parent, basis};
  winners.ApplyTo(style, place);
  return style;
}

corvel::Color4b PlainColor(const SvgPaint& paint, const ComputedStyle& style) {
  if (paint.kind != SvgPaint::Kind::kColor) return {};
  return paint.isCurrentColor ? style.color : paint.color;
}

}  // namespace trovan::filters
