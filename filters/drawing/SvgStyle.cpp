#include "SvgStyle.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "filters/drawing/XmlText.h"

namespace trovan::filters {
namespace {

using corvel::Color4b;

// "#F80" where that is the same as "#FF8800".
std::string HexColor(Color4b color) {
  const auto isDouble = [](unsigned sample) { return sample >> 4 == (sample & 15U); };
  char text[8];
  if (isDouble(color.red) && isDouble(color.green) && isDouble(color.blue)) {
    std::snprintf(text, sizeof text, "#%x%x%x", color.red & 15U, color.green & 15U,
                  color.blue & 15U);
  } else {
    std::snprintf(text, sizeof text, "#%02x%02x%02x", color.red, color.green, color.blue);
  }
  return text;
}

void AppendPaint(std::string& style, const std::string& what, Color4b color) {
  style += ' ' + what + "=\"" + HexColor(color) + '"';
  if (color.alpha == 255) return;
  constexpr int kDecimals = 3;  // tells 256 steps apart
  style += ' ' + what + "-opacity=\"";
  AppendRounded(style, color.alpha / 255.0, kDecimals);
  style += '"';
}

// Whether words are names of CSS ("Syntax and basic data types", section 4.1.3), as far as faces of
// plain letters need it.
bool IsPlainName(const std::wstring& face) {
  bool isStart = true;
  for (const wchar_t c : face) {
    const bool isLetter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c >= 0x80;
    const bool isOther = (c >= L'0' && c <= L'9') || c == L'-' || c == L'_' || c == L' ';
    if (!isLetter && (isStart || !isOther)) return false;
    isStart = c == L' ';
  }
  return !isStart;
}

// As CSS has it: other faces than plain names stand in quotes.
std::wstring FamilyOf(const std::wstring& face) {
  if (IsPlainName(face)) return face;
  std::wstring quoted = L"'";
  for (const wchar_t c : face) {
    if (c == L'\'' || c == L'\\') quoted += L'\\';
    quoted += c;
  }
  return quoted + L'\'';
}

// `usual` is what SVG takes without the attribute.
void AppendParam(std::string& style, const quillon::TrPen& pen, const wchar_t* key,
                 const char* attribute, const wchar_t* usual) {
  const std::wstring* value = pen.Params().Find(key);
  if (value == nullptr || *value == usual) return;
  style += std::string(" ") + attribute + "=\"";
  AppendXmlText(style, *value);
  style += '"';
}

}  // namespace

void SvgStyle::AppendFill(std::string& style, Color4b color) const {
  if (color.alpha > 0) AppendPaint(style, "fill", color);
}

void SvgStyle::AppendStroke(std::string& style) const {
  if (!PenIsSeen()) return;
  AppendPaint(style, "stroke", pen_.Color());
  const double width = coordinates_.LengthToPage(std::fabs(pen_.Width()));
  if (pen_.Width() != 0.0 && width != 1.0) {
    style += " stroke-width=\"";
    coordinates_.AppendDerived(style, width);
    style += '"';
  }
  AppendParam(style, pen_, L"line-cap", "stroke-linecap", L"butt");
  AppendParam(style, pen_, L"line-join", "stroke-linejoin", L"miter");
  AppendParam(style, pen_, L"miter-limit", "stroke-miterlimit", L"4");
}

void SvgStyle::AppendFont(std::string& style) const {
  if (!font_.FaceName().empty()) {
    style += " font-family=\"";
    AppendXmlText(style, FamilyOf(font_.FaceName()));
    style += '"';
  }
  style += " font-size=\"";
  coordinates_.AppendDerived(style, coordinates_.LengthToPage(std::fabs(font_.Size())));
  style += '"';
  const int flags = font_.Flags();
  const int weight = std::min(flags & quillon::TrFont::kWeightMask, 9);
  if (weight != 0 && weight != 4) {
    style += " font-weight=\"" + std::to_string(weight * 100) + '"';
  }
  if ((flags & quillon::TrFont::kItalic) != 0) style += " font-style=\"italic\"";
  const bool under = (flags & quillon::TrFont::kUnderline) != 0;
  const bool through = (flags & quillon::TrFont::kStrikeOut) != 0;
  if (under || through) {
    style += " text-decoration=\"";
    style += under && through ? "underline line-through" : under ? "underline" : "line-through";
    style += '"';
  }
}

std::string SvgStyle::OfAreas() const {
  std::string style;
  if (brush_.Fills()) AppendFill(style, brush_.Color());
  AppendStroke(style);
  return style;
}

std::string SvgStyle::OfLines() const {
  std::string style;
  AppendStroke(style);
  return style;
}

std::string SvgStyle::OfMarkers() const {
  std::string style;
  if (pen_.Draws()) AppendFill(style, pen_.Color());
  return style;
}

std::string SvgStyle::OfTexts(bool hasOutline) const {
  std::string style;
  AppendFill(style, font_.Color());
  if (hasOutline) AppendStroke(style);
  if (!style.empty()) AppendFont(style);
  return style;
}

std::string SvgStyle::ThinLine() const {
  return PenIsSeen() && pen_.Width() == 0.0 ? " vector-effect=\"non-scaling-stroke\"" : "";
}

}  // namespace trovan::filters
