// Whether rings stay apart.
#pragma once

#include <tarnis/Polygon2.h>

namespace tarnis {

// Whether edges meet, other than at the corners where one follows the other, or fold back there.
// Rings without contacts do not cross.
//
// REQUIRES: the rings are open, and no corner follows its like.
bool HaveContacts(const Polygon2& rings);

}  // namespace tarnis
