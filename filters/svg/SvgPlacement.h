// Where a document stands in the drawing.
#pragma once

#include "filters/drawing/SvgPage.h"
#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

// Whether the root names a view box or a size.
bool TellsPage(const SvgDocument& document);

// The page that the document is: its view box, or the box of its size, or that of what it shows.
// The scale is the power of two at which a unit of the drawing is at most a pixel of the page,
// where the page has the size that it names, but 1000 pixels in width or height at least.
SvgPage PlacePage(const SvgDocument& document, SvgRemarks& remarks);

// The context in which the root of the document stands on the page.
SvgContext OuterContext(const SvgPage& page);

}  // namespace trovan::filters
