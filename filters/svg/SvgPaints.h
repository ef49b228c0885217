// What areas and lines are painted with, as plain colours.
#pragma once

#include <optional>

#include <pugixml.hpp>
#include <corvel/Color.h>

#include "filters/svg/SvgColor.h"
#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

// The colour of a paint of `node`, with its opacity and that of its groups; nothing where nothing
// is to be seen. A gradient is the mean of its stops; a pattern is the colour that stands behind
// it.
std::optional<corvel::Color4b> FillColor(const pugi::xml_node& node, const SvgContext& context,
                                         const SvgDocument& document, SvgRemarks& remarks);
std::optional<corvel::Color4b> StrokeColor(const pugi::xml_node& node, const SvgContext& context,
                                           const SvgDocument& document, SvgRemarks& remarks);

}  // namespace trovan::filters
