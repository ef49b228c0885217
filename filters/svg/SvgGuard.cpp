#include "SvgGuard.h"

#include <algorithm>
#include <string>

#include "SvgElement.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

// Work is counted in bytes of the document: an element costs these and those of its outline.
constexpr double kElementCost = 100.0;
constexpr double kLineCost = 20.0;  // of each dash
constexpr double kPixelCost = 1.0 / 32.0;
constexpr double kFreeWork = 1e7;
constexpr double kWorkPerByte = 1000.0;

}  // namespace

SvgGuard::SvgGuard(const SvgDocument& document, SvgRemarks& remarks)
    : document_(document),
      remarks_(remarks),
      most_(kFreeWork + kWorkPerByte * static_cast<double>(document.Size())) {}

double SvgGuard::Progress() const {
  return std::min(1.0, spent_ / (1.0 + static_cast<double>(document_.Size())));
}

bool SvgGuard::Open(const pugi::xml_node& node) {
  if (open_.size() >= static_cast<std::size_t>(SvgDocument::kDeepest)) {
    remarks_.Add("elements within more than " + std::to_string(SvgDocument::kDeepest) +
                     " others are left out",
                 node);
    return false;
  }
  if (std::find(open_.begin(), open_.end(), node) != open_.end()) {
    remarks_.Add("an element that refers to itself is left out", node);
    return false;
  }
  Spend(kElementCost + static_cast<double>(Attribute(node, "d").size()) +
            static_cast<double>(Attribute(node, "points").size()),
        node);
  open_.push_back(node);
  return true;
}

void SvgGuard::CountLines(std::size_t count, const pugi::xml_node& node) {
  Spend(kLineCost * static_cast<double>(count), node);
}

void SvgGuard::CountPixels(std::uint64_t count, const pugi::xml_node& node) {
  Spend(kPixelCost * static_cast<double>(count), node);
}

void SvgGuard::AllowFor(std::size_t bytes) { most_ += kWorkPerByte * static_cast<double>(bytes); }

void SvgGuard::Spend(double work, const pugi::xml_node& node) {
  spent_ += work;
  if (spent_ <= most_) return;
  throw FilterError(document_.Name() + ", line " + std::to_string(document_.LineOf(node)) +
                    ": the drawing repeats its parts far more often than its size allows. It may "
                    "be made to exhaust programs; remove nested \"use\" elements and tiny dashes.");
}

}  // namespace trovan::filters
