// Clip paths as regions.
#pragma once

#include <optional>
#include <string>

#include <pugixml.hpp>
#include <tarnis/Polygon2.h>

#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgGuard.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

class SvgClipPaths {
 public:
  // All are borrowed.
  SvgClipPaths(const SvgDocument& document, SvgGuard& guard, SvgRemarks& remarks)
      : document_(document), guard_(guard), remarks_(remarks) {}

  // What the clip path of that id leaves of the element, in units of the drawing; no rings:
  // nothing. Nothing at all (no value) where there is no such clip path: then it does not clip.
  //
  // `context` is that of the element.
  std::optional<tarnis::Polygon2> RegionFor(const std::string& id, const pugi::xml_node& node,
                                            const SvgContext& context);

 private:
  using Region = std::optional<tarnis::Polygon2>;

  tarnis::Polygon2 RegionOf(const pugi::xml_node& clipPath, const pugi::xml_node& node,
                            const SvgContext& user);
  bool EnterUnits(const pugi::xml_node& clipPath, const pugi::xml_node& node,
                  const SvgContext& user, SvgContext& content);
  tarnis::Polygon2 ShapeRegion(const pugi::xml_node& shape, const SvgContext& content);
  tarnis::Polygon2 Clipped(tarnis::Polygon2 area, const pugi::xml_node& node,
                           const SvgContext& context);

  const SvgDocument& document_;
  SvgGuard& guard_;
  SvgRemarks& remarks_;
};

}  // namespace trovan::filters
