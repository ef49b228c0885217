// What of a document could not be taken over, each kind once.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>

#include <pugixml.hpp>

#include "filters/svg/SvgDocument.h"

namespace trovan::filters {

class SvgRemarks {
 public:
  using Report = std::function<void(std::string)>;

  // `document` is borrowed.
  SvgRemarks(const SvgDocument& document, Report report)
      : document_(document), report_(std::move(report)) {}

  // Reports `what`, with the line of the element, unless it was reported before.
  void Add(const std::string& what, const pugi::xml_node& node) {
    if (!known_.insert(what).second) return;
    report_("Line " + std::to_string(document_.LineOf(node)) + ": " + what);
  }

 private:
  const SvgDocument& document_;
  Report report_;
  std::set<std::string> known_;
};

}  // namespace trovan::filters
