#include "SvgComputedStyle.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

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

// Takes a value over into the style; false, with the style as it is, where the value makes no
// sense.
using Apply = bool (*)(Value value, const Place& place, Style& style);
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

// False where there is none.
template <class T, class U>
bool Take(const std::optional<T>& value, U& to) {
  if (value) to = *value;
  return value.has_value();
}

template <auto Member>
bool ApplyPaint(Value value, const Place&, Style& style) {
  return Take(ParsePaint(value), style.*Member);
}

template <auto Member>
bool ApplyColor(Value value, const Place&, Style& style) {
  return Take(ParseColor(value, style.color), style.*Member);
}

template <auto Member>
bool ApplyOpacity(Value value, const Place&, Style& style) {
  return Take(ParseOpacity(value), style.*Member);
}

template <auto Member>
bool ApplyRule(Value value, const Place&, Style& style) {
  if (value != "evenodd" && value != "nonzero") return false;
  style.*Member = value == "evenodd";
  return true;
}

// Whether the property has another value than "none".
template <auto Member>
bool ApplyPresence(Value value, const Place&, Style& style) {
  style.*Member = value != "none";
  return true;
}

// Any of the three kinds of markers counts.
bool ApplyMarker(Value value, const Place&, Style& style) {
  if (value != "none") style.hasMarkers = true;
  return true;
}

bool ApplyFontSize(Value value, const Place& place, Style& style) {
  return Take(ParseFontSize(value, place.parent.fontSize, place.basis), style.fontSize);
}

bool ApplyStrokeWidth(Value value, const Place& place, Style& style) {
  const auto length = ParseLength(value);
  if (!length || length->value < 0.0) return false;
  style.strokeWidth = InPixels(*length, place.basis, Axis::kDiagonal);
  return true;
}

bool ApplyDashOffset(Value value, const Place& place, Style& style) {
  const auto length = ParseLength(value);
  if (length) style.dashOffset = InPixels(*length, place.basis, Axis::kDiagonal);
  return length.has_value();
}

// A negative length makes the whole list invalid; one whose sum is 0 draws a solid line.
bool ApplyDashes(Value value, const Place& place, Style& style) {
  std::vector<double> dashes;
  double sum = 0.0;
  SvgScanner scanner(value == "none" ? Value() : value);
  while (!scanner.AtEnd()) {
    const auto length = ParseLength(scanner.ReadUntil(", \t\n\r\f"));
    if (!length || length->value < 0.0) return false;
    dashes.push_back(InPixels(*length, place.basis, Axis::kDiagonal));
    sum += dashes.back();
    scanner.SkipComma();
  }
  if (!(sum > 0.0)) dashes.clear();
  style.dashes = std::move(dashes);
  return true;
}

bool ApplyLineCap(Value value, const Place&, Style& style) {
  if (value != "butt" && value != "round" && value != "square") return false;
  style.lineCap = std::string(value);
  return true;
}

// The joins of SVG 2 look nearly as mitres do.
bool ApplyLineJoin(Value value, const Place&, Style& style) {
  if (value == "miter-clip" || value == "arcs") value = "miter";
  if (value != "miter" && value != "round" && value != "bevel") return false;
  style.lineJoin = std::string(value);
  return true;
}

bool ApplyMiterLimit(Value value, const Place&, Style& style) {
  const auto limit = ParseSvgNumber(value);
  return limit && *limit >= 1.0 && Take(limit, style.miterLimit);
}

bool ApplyVisibility(Value value, const Place&, Style& style) {
  if (value != "visible" && value != "hidden" && value != "collapse") return false;
  style.isVisible = value == "visible";
  return true;
}

bool ApplyDisplay(Value value, const Place&, Style& style) {
  style.isDisplayed = value != "none";
  return true;
}

bool ApplyClipPath(Value value, const Place&, Style& style) {
  style.clipPath = ParseReference(value);
  style.hasUnknownClip = style.clipPath.empty() && value != "none";
  return true;
}

void CopyClipPath(const Style& from, Style& to) {
  to.clipPath = from.clipPath;
  to.hasUnknownClip = from.hasUnknownClip;
}

bool ApplyOverflow(Value value, const Place&, Style& style) {
  style.isOverflowVisible = value == "visible" || value == "auto";
  return true;
}

bool ApplyFontWeight(Value value, const Place& place, Style& style) {
  return Take(ParseFontWeight(value, place.parent.fontWeight), style.fontWeight);
}

bool ApplyFontStyle(Value value, const Place&, Style& style) {
  const bool isItalic = value.starts_with("italic") || value.starts_with("oblique");
  if (!isItalic && value != "normal") return false;
  style.isItalic = isItalic;
  return true;
}

bool ApplyFontFamily(Value value, const Place&, Style& style) {
  if (!value.empty()) style.fontFamily = std::string(value);
  return !value.empty();
}

// "italic bold 12px/30px Georgia, serif".
bool ApplyFont(Value value, const Place& place, Style& style) {
  const auto font = ParseFontShorthand(value, place.parent.fontSize, place.basis);
  if (!font) return false;
  style.fontSize = font->size;
  style.fontWeight = font->weight;
  style.isItalic = font->isItalic;
  style.fontFamily = font->family;
  return true;
}

void CopyFont(const Style& from, Style& to) {
  to.fontSize = from.fontSize;
  to.fontWeight = from.fontWeight;
  to.isItalic = from.isItalic;
  to.fontFamily = from.fontFamily;
}

bool ApplyTextAnchor(Value value, const Place&, Style& style) {
  if (value != "start" && value != "middle" && value != "end") return false;
  style.textAnchor = value == "start"    ? TextAnchor::kStart
                     : value == "middle" ? TextAnchor::kMiddle
                                         : TextAnchor::kEnd;
  return true;
}

// The lines of an ancestor run on below and through the text of its descendants.
bool ApplyTextDecoration(Value value, const Place&, Style& style) {
  if (value.find("underline") != Value::npos) style.isUnderlined = true;
  if (value.find("line-through") != Value::npos) style.isStruckOut = true;
  return true;
}

void CopyTextDecoration(const Style& from, Style& to) {
  to.isUnderlined = from.isUnderlined;
  to.isStruckOut = from.isStruckOut;
}

bool ApplySpace(Value value, const Place&, Style& style) {
  style.preservesSpace = value == "preserve";
  return true;
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

constexpr unsigned kAttributePriority = 1;
constexpr unsigned kSheetPriority = 2;
constexpr unsigned kStylePriority = 3;
constexpr unsigned kImportant = 4;  // added

// The values that were given for each property.
class Cascade {
 public:
  // A later value is stronger than an earlier one of the same priority.
  void Give(Value name, Value value, unsigned priority) {
    const auto* const property =
        std::find_if(std::begin(kProperties), std::end(kProperties),
                     [name](const Property& candidate) { return candidate.name == name; });
    if (property == std::end(kProperties)) return;
    given_.push_back({property, TrimSpace(value), priority});
  }

  void Give(const std::vector<SvgDeclaration>& declarations, unsigned priority) {
    for (const SvgDeclaration& d : declarations) {
      Give(d.property, d.value, priority + (d.isImportant ? kImportant : 0));
    }
  }

  // Of each property the strongest value that makes sense: documents give colours in new notations
  // behind those that every program knows.
  void ApplyTo(Style& style, Place& place) {
    std::reverse(given_.begin(), given_.end());
    std::stable_sort(given_.begin(), given_.end(), [](const Given& a, const Given& b) {
      return a.property != b.property ? a.property < b.property : a.priority > b.priority;
    });
    const Property* done = nullptr;
    for (const Given& given : given_) {
      if (given.property == done) continue;
      place.basis.fontSize = style.fontSize;
      if (ApplyOne(*given.property, given.value, place, style)) done = given.property;
    }
  }

 private:
  struct Given {
    const Property* property;
    Value value;
    unsigned priority;
  };

  static bool ApplyOne(const Property& property, Value value, const Place& place, Style& style) {
    const bool isUnset = value == "unset" || value == "revert";
    if (value == "inherit" || (isUnset && property.isInherited)) {
      property.copy(place.parent, style);
    } else if (value == "initial" || isUnset) {
      property.copy(Style(), style);
    } else {
      return property.apply(value, place, style);
    }
    return true;
  }

  std::vector<Given> given_;
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
  Cascade cascade;
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    cascade.Give(attribute.name(), attribute.value(), kAttributePriority);
  }
  if (!sheet.IsEmpty()) {
    for (const auto* declarations : sheet.Matches(node)) {
      cascade.Give(*declarations, kSheetPriority);
    }
  }
  const auto own = ParseDeclarations(node.attribute("style").value());
  cascade.Give(own, kStylePriority);

  Style style = Inherited(parent);
  Place place{parent, basis};
  cascade.ApplyTo(style, place);
  return style;
}

corvel::Color4b PlainColor(const SvgPaint& paint, const ComputedStyle& style) {
  if (paint.kind != SvgPaint::Kind::kColor) return {};
  return paint.isCurrentColor ? style.color : paint.color;
}

}  // namespace trovan::filters
