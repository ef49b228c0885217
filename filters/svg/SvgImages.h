// Pictures within a document.
#pragma once

#include <string>

#include <pugixml.hpp>

#include "filters/svg/SvgContext.h"
#include "filters/svg/SvgPainter.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

class SvgImages {
 public:
  explicit SvgImages(SvgRemarks& remarks) : remarks_(remarks) {}

  void Draw(const pugi::xml_node& node, const SvgContext&, SvgPainter&) {
    remarks_.Add("images are left out", node);
  }

 private:
  SvgRemarks& remarks_;
};

}  // namespace trovan::filters
