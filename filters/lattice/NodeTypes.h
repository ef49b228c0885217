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

// Calls `visit` with a value of the C++ type that `type` names.
//
// REQUIRES: `type` is an element type.
template <typename Visitor>
decltype(auto) VisitElementType(corvel::PrimType type, Visitor&& visit) {
  switch (type) {
    case corvel::kInt8:
      return visit(std::int8_t{});
    case corvel::kUInt8:
      return visit(std::uint8_t{});
    case corvel::kInt16:
      return visit(std::int16_t{});
    case corvel::kUInt16:
      return visit(std::uint16_t{});
    case corvel::kInt32:
      return visit(std::int32_t{});
    case corvel::kUInt32:
      return visit(std::uint32_t{});
    case corvel::kInt64:
      return visit(std::int64_t{});
    case corvel::kFloat:
      return visit(float{});
    case corvel::kDouble:
      break;
  }
  return visit(double{});
}

}  // namespace trovan::filters
