// The boxes of elements.
#pragma once

#include <pugixml.hpp>
#include <corvel/Geometry.h>

#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgGuard.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

// Around the outlines of an element and all that it draws, in its user space, without the width of
// lines. The empty box if there is none; texts have none, nor have images without a given size.
//
// `context` is that of the element.
corvel::Box2d BoundsOf(const pugi::xml_node& node, const SvgContext& context,
                       const SvgDocument& document, SvgGuard& guard, SvgRemarks& remarks);

}  // namespace trovan::filters
