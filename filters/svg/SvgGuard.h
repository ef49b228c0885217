// Keeps the work on a document in bounds: elements may refer to one another in circles, and a few
// lines may repeat each other billions of times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <pugixml.hpp>

#include "filters/svg/SvgDocument.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

class SvgGuard {
 public:
  // Both are borrowed.
  SvgGuard(const SvgDocument& document, SvgRemarks& remarks);

  // Being at work on an element. False when that cannot be: the work on it has not ended yet, or it
  // lies too deep.
  //
  // Raises FilterError when the whole work exceeds what a document of its size may ask for.
  class Visit {
   public:
    Visit(SvgGuard& guard, const pugi::xml_node& node) : guard_(guard), isOpen_(guard.Open(node)) {}
    ~Visit() {
      if (isOpen_) guard_.open_.pop_back();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    explicit operator bool() const { return isOpen_; }

   private:
    SvgGuard& guard_;
    bool isOpen_;
  };

  // Counts lines that are drawn; raises FilterError as a visit does.
  void CountLines(std::size_t count, const pugi::xml_node& node);

  // The same for the pixels of a picture that is drawn.
  void CountPixels(std::uint64_t count, const pugi::xml_node& node);

  // A file of so many bytes counts as a part of the document.
  void AllowFor(std::size_t bytes);

  // How much of the document's elements was visited, from 0 to 1; repetitions count.
  double Progress() const;

 private:
  bool Open(const pugi::xml_node& node);
  void Spend(double work, const pugi::xml_node& node);

  const SvgDocument& document_;
  SvgRemarks& remarks_;
  std::vector<pugi::xml_node> open_;
  double spent_ = 0.0;
  double most_;  // work
};

}  // namespace trovan::filters
