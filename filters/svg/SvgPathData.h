// The attribute "d" of a path.
//
//   SvgPathData data = ParsePathData("M0 0h4v4z");
//   data.outline.Bounds();  // (0, 0) to (4, 4)
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "filters/svg/SvgOutline.h"

namespace trovan::filters {

struct SvgPathData {
  SvgOutline outline;  // up to the fault, if there is one

  // The offset in the text at which something stands that does not belong there; its size where it
  // ends too early.
  std::optional<std::size_t> fault;
};

SvgPathData ParsePathData(std::string_view text);

}  // namespace trovan::filters
