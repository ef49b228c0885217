// Where an element stands: its style, its user space and its viewport; and what is drawn within it.
#pragma once

#include <optional>
#include <vector>

#include <pugixml.hpp>
#include <corvel/Geometry.h>
#include <corvel/Matrix.h>

#include "filters/svg/SvgComputedStyle.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgNumbers.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

struct SvgContext {
  ComputedStyle style;
  corvel::Mat3d map;            // from user space into the units of the drawing
  LengthBasis basis;            // what lengths of the element's attributes are relative to
  double opacity = 1.0;         // that of all groups around, and of the element itself
  std::optional<double> width;  // what "use" wants of a "symbol" or "svg"
  std::optional<double> height;

  // Set where the element cuts what it draws to its viewport: its corners in the drawing.
  std::optional<std::vector<corvel::Vec2d>> viewport;
};

// The context of an element within one whose context is `parent`. Nothing when it draws nothing:
// it is not displayed, its space has no extent, or a map is not finite.
std::optional<SvgContext> Enter(const pugi::xml_node& node, const SvgContext& parent,
                                const SvgDocument& document, SvgRemarks& remarks);

// The context of an element that is drawn from elsewhere, such as a clip path: only its style comes
// from where it stands in the document.
SvgContext EnterApart(const pugi::xml_node& node, const SvgContext& user,
                      const SvgDocument& document);

// The corners of a box of user space in the drawing, one after the other around it.
std::vector<corvel::Vec2d> MappedCorners(const corvel::Box2d& box, const corvel::Mat3d& map);

// Whether the element only holds others: "g", "a", "svg", "switch", "use".
bool IsGroup(const pugi::xml_node& node);

// The elements that a group draws, in their order: its children, the one that a "switch" chooses,
// or what a "use" refers to.
std::vector<pugi::xml_node> Drawn(const pugi::xml_node& node, const SvgDocument& document);

}  // namespace trovan::filters
