// Whether rings stay apart.
#pragma once

#include "EdgeRings.h"

namespace tarnis {

class RegionIndex;

// Whether edges meet, other than at the corners where one goes on from the other, or fold back
// there. Rings without contacts do not cross, and neither do they touch. A ring that is a point
// counts as a contact.
//
// The second one is faster where there are many edges. Where very many come near each other, it
// gives up and takes them for contacts.
bool HaveContacts(const EdgeRings& rings);
bool HaveContacts(const RegionIndex& index);

}  // namespace tarnis
