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

// The same as a text of its own.
std::string ShortestText(double value);

// Writes elements as one line, blanks between them.
void WriteLineOfNumbers(corvel::CBufferedFile& file, corvel::PrimType type, const void* elements,
                        std::size_t count);

}  // namespace trovan::filters
