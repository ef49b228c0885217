#include "filters/lattice/NodeTypes.h"

#include <array>
#include <cstddef>

namespace trovan::filters {
namespace {

// In the order of the type numbers.
constexpr std::array<std::string_view, 9> kNames = {"int8",   "uint8", "int16", "uint16", "int32",
                                                    "uint32", "int64", "float", "double"};

}  // namespace

std::string_view NodeTypeName(corvel::PrimType type) {
  const auto index = static_cast<std::size_t>(type);
  return index < kNames.size() ? kNames[index] : "unknown";
}

std::optional<corvel::PrimType> NodeTypeNamed(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (kNames[i] == name) return static_cast<corvel::PrimType>(i);
  }
  return std::nullopt;
}

}  // namespace trovan::filters
