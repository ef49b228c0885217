// Numbers as text, without regard to the locale: the shortest text that gives a number back, and
// any decimal text as an element of a packed array.
//
//   float height;
//   ParseNumber("+.500E+02", height);  // kNumber: 50
//   std::string text;
//   AppendNumber(text, kFloat, &height);  // "50"
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <corvel/BufferedFile.h>
#include <corvel/PrimType.h>

namespace trovan::filters {

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

enum class NumberStatus {
  kNumber,
  kNotANumber,  // of that type: a fraction is no whole number
  kOutOfRange,
};

// The whole of `text` as a number. A leading "+" and a missing digit before or behind the point are
// allowed; real types also take "nan", "inf" and "infinity" in any case. What is too small for a
// real type becomes a zero of its sign. `value` is only set for kNumber.
//
// Defined for the element types and unsigned 64-bit integers.
template <typename T>
NumberStatus ParseNumber(std::string_view text, T& value);
NumberStatus ParseNumber(std::string_view text, corvel::PrimType type, void* element);

// Appends the shortest text that ParseNumber reads as the same element; a NaN becomes "nan" or
// "-nan".
void AppendNumber(std::string& text, corvel::PrimType type, const void* element);
void AppendNumber(std::string& text, double value);

// Writes elements as one line, blanks between them.
void WriteLineOfNumbers(corvel::CBufferedFile& file, corvel::PrimType type, const void* elements,
                        std::size_t count);

}  // namespace trovan::filters
