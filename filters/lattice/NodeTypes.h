// The element types of nodes: their names for users, and the C++ type behind each.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <corvel/PrimType.h>

namespace trovan::filters {

// "int8", "uint8", ... "int64", "float", "double".
std::string_view NodeTypeName(corvel::PrimType type);

// The type of such a name; none for another text.
std::optional<corvel::PrimType> NodeTypeNamed(std::string_view name);

// All names, for messages: "int8, uint8, ...".
inline constexpr std::string_view kNodeTypeNames =
    "int8, uint8, int16, uint16, int32, uint32, int64, float or double";

bool IsInteger(corvel::PrimType type);

// What a node of the type holds when it stands for `value`: of floats the nearest one. None when no
// node of the type can hold it, such as -9999 among unsigned bytes, or a number that is not finite.
std::optional<double> StoredValue(corvel::PrimType type, double value);

template <typename T>
struct NodeType {
  using Type = T;
};

// Calls `use` with the NodeType of the C++ type. REQUIRES: `type` is an element type.
template <typename Use>
void WithNodeType(corvel::PrimType type, Use use) {
  switch (type) {
    case corvel::kInt8:
      return use(NodeType<std::int8_t>());
    case corvel::kUInt8:
      return use(NodeType<std::uint8_t>());
    case corvel::kInt16:
      return use(NodeType<std::int16_t>());
    case corvel::kUInt16:
      return use(NodeType<std::uint16_t>());
    case corvel::kInt32:
      return use(NodeType<std::int32_t>());
    case corvel::kUInt32:
      return use(NodeType<std::uint32_t>());
    case corvel::kInt64:
      return use(NodeType<std::int64_t>());
    case corvel::kFloat:
      return use(NodeType<float>());
    case corvel::kDouble:
      return use(NodeType<double>());
  }
}

}  // namespace trovan::filters
