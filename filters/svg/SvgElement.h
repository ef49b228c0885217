// Elements of a document as SVG sees them: names without prefixes, attributes, references.
#pragma once

#include <optional>
#include <string_view>

#include <pugixml.hpp>

#include "filters/svg/SvgNumbers.h"

namespace trovan::filters {

// The name without its prefix; empty for what is no element of SVG: another kind of node, or an
// element of another namespace. A document that declares no namespace is taken for SVG.
std::string_view ElementName(const pugi::xml_node& node);

// The value; empty if the element does not have the attribute.
std::string_view Attribute(const pugi::xml_node& node, const char* name);

// What "href", or the older "xlink:href", refers to.
std::string_view Reference(const pugi::xml_node& node);

// The attribute as a length in pixels; `otherwise` if it is not there or is no length.
double LengthAttribute(const pugi::xml_node& node, const char* name, const LengthBasis& basis,
                       Axis axis, double otherwise = 0.0);

// The same; nothing if it is not there or is no length ("auto").
std::optional<double> FindLength(const pugi::xml_node& node, const char* name,
                                 const LengthBasis& basis, Axis axis);

// Whether the conditions of a child of "switch" hold: no extension is required, and English is
// among its languages, if it has any.
bool MeetsConditions(const pugi::xml_node& node);

}  // namespace trovan::filters
