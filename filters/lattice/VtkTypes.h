// The element types of VTK legacy files, and what their reader and writer share.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include <corvel/PrimType.h>

namespace trovan::filters {

struct VtkType {
  std::string_view name;
  unsigned bits = 0;                     // of an element in a binary file
  std::optional<corvel::PrimType> prim;  // none: no lattice has such elements
};

// The type of that name, in any case; null if there is none.
const VtkType* FindVtkType(std::string_view name);

// The name under which elements of a lattice are written.
std::string_view VtkTypeName(corvel::PrimType type);

// Whether two texts are the same but for the case of ASCII letters. `small` has small ones only.
bool EqualsAnyCase(std::string_view text, std::string_view small);

// Puts packed elements of `size` bytes in the opposite order.
void ReverseElements(std::vector<unsigned char>& elements, std::size_t size);

// Whether the last of some packed elements is larger than the first.
bool Ascends(const std::vector<unsigned char>& elements, corvel::PrimType type);

}  // namespace trovan::filters
