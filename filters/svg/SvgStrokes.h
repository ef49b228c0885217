// The lines that the strokes of a shape consist of.
#pragma once

#include <vector>

#include <pugixml.hpp>
#include <corvel/Color.h>
#include <corvel/Geometry.h>
#include <tarnis/Polygon2.h>

#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgOutline.h"
#include "filters/svg/SvgPainter.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

// The pen for the strokes of an element, in units of the drawing. Its width is scaled as areas are
// on average; where that shows, the element gets a remark.
SvgStroke StrokeOf(const pugi::xml_node& node, const SvgContext& context,
                   const corvel::Color4b& color, SvgRemarks& remarks);

// The lines to be drawn for `lines`: their dashes, if they are dashed. Closed lines that the region
// may cut start where no corner is, so that the corners stay whole: a line is cut to pieces at its
// start, too.
std::vector<std::vector<corvel::Vec2d>> StrokeLines(const pugi::xml_node& node,
                                                    const SvgContext& context,
                                                    const std::vector<FlatLine>& lines,
                                                    const tarnis::Polygon2& region,
                                                    SvgRemarks& remarks);

// How far from its line a stroke may reach.
double Reach(const SvgStroke& stroke);

// Whether what lies no further than `reach` from the line may lie outside the region.
bool MayBeCut(const std::vector<corvel::Vec2d>& line, double reach, const tarnis::Polygon2& region);

}  // namespace trovan::filters
