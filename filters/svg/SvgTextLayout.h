// The runs of a text: pieces of one style that lie on one line, and where they start.
//
// Nothing is known of the fonts here: how wide letters are is a guess, from which follows where a
// run starts that goes on behind another one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>
#include <corvel/Geometry.h>

#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgGuard.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

struct SvgTextRun {
  std::wstring text;
  corvel::Vec2d place;  // of its anchor, in user space
  TextAnchor anchor = TextAnchor::kStart;
  double width = 0.0;                         // a guess
  std::shared_ptr<const SvgContext> context;  // of the element that it stands in
  pugi::xml_node node;                        // that element
};

// The runs of the element "text", in their order. `context` is that of the element.
std::vector<SvgTextRun> LayOutText(const pugi::xml_node& node, const SvgContext& context,
                                   const SvgDocument& document, SvgGuard& guard,
                                   SvgRemarks& remarks);

}  // namespace trovan::filters
