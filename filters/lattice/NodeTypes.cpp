#include "filters/lattice/NodeTypes.h"

#include <array>
#include <cmath>
#include <cstddef>

#include <trovan/TypedArrays.h>

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

bool IsInteger(corvel::PrimType type) { return type != corvel::kFloat && type != corvel::kDouble; }

std::optional<double> StoredValue(corvel::PrimType type, double value) {
  unsigned char node[sizeof(double)];
  PTConvertByTruncation(corvel::kDouble, type, &value, &node[0]);
  const double stored = corvel::CPrimData::GetWideReal(type, &node[0]);
  const bool isHeld = IsInteger(type) ? stored == value : std::isfinite(stored);
  return isHeld ? std::optional(stored) : std::nullopt;
}

}  // namespace trovan::filters
