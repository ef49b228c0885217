// What Windows makes of single bytes where the tables of ICU or glibc say otherwise.
#pragma once

#include <array>

#include "CharacterSource.h"

namespace kerno {

using SingleBytes = std::array<DecodedCharacter, 256>;

// Changes the entries of the page whose Windows meaning differs.
void CorrectToWindows(int codePage, SingleBytes& singles);

}  // namespace kerno
