// Colours and paints as SVG writes them.
//
//   ParseColor("#f80");                    // red 255, green 136, blue 0, opaque
//   ParseColor("rgba(0, 0, 255, 50%)");    // blue, half transparent
//   ParsePaint("url(#gradient) black");    // a reference, and black where there is none such
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <corvel/Color.h>

namespace trovan::filters {

// A name, "transparent", #rgb, #rgba, #rrggbb, #rrggbbaa, rgb(), rgba(), hsl(), hsla(), with commas
// or with spaces. Nothing for any other text. "currentColor" is `current`.
std::optional<corvel::Color4b> ParseColor(std::string_view text,
                                          const corvel::Color4b& current = {});

// The colour with its opacity multiplied by a factor from 0 to 1.
corvel::Color4b WithOpacity(const corvel::Color4b& color, double factor);

// What areas and lines are painted with.
struct SvgPaint {
  enum class Kind { kNone, kColor, kReference };

  Kind kind = Kind::kNone;
  corvel::Color4b color;        // of kColor; of kReference where there is nothing of that name
  bool isCurrentColor = false;  // instead of `color`: the value of the property "color"
  std::string reference;        // the id of a gradient or pattern
  bool hasFallback = false;     // the reference came with a colour
};

// Nothing when the text is no paint.
std::optional<SvgPaint> ParsePaint(std::string_view text);

// What stands in "url(#name)", with quotes or without: the name. Empty if the text does not start
// so. `rest` gets what follows.
std::string ParseReference(std::string_view text, std::string_view* rest = nullptr);

}  // namespace trovan::filters
