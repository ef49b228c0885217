// Elements of an XML document, those of one style together.
//
//   ElementRuns runs(out);
//   runs.Add(" fill=\"red\"", "path", " d=\"M0 0 4 0 4 4Z\"/>");
//   runs.Add(" fill=\"red\"", "path", " d=\"M5 0 9 0 9 4Z\"/>");
//   runs.End();
//   // <g fill="red">
//   //   <path d="M0 0 4 0 4 4Z"/>
//   //   <path d="M5 0 9 0 9 4Z"/>
//   // </g>
#pragma once

#include <cstddef>
#include <string>

#include "filters/support/OutputBuffer.h"

namespace trovan::filters {

// An element that stands alone has its style itself; more of one style in a row become a group.
class ElementRuns {
 public:
  // `out` outlives the object.
  explicit ElementRuns(OutputBuffer& out) : out_(out) {}

  // `style` are the attributes that a group hands down, each with a blank in front; `rest` is what
  // follows the element's name and those.
  void Add(const std::string& style, const char* name, std::string rest);

  // Writes what still waits. More may follow.
  void End();

 private:
  OutputBuffer& out_;
  std::string style_;
  const char* firstName_ = nullptr;  // of the first element of the run while it waits
  std::string firstRest_;
  std::size_t count_ = 0;  // of the elements of the run
};

}  // namespace trovan::filters
