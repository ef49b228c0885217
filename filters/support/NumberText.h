// Numbers as text, without regard to the locale.
//
//   float height;
//   ParseNumber("+.500E+02", height);  // kNumber: 50
//   std::string text;
//   AppendNumber(text, height);  // "50"
#pragma once

#include <string>
#include <string_view>

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
// Defined for integers of 8 to 64 bits, float and double.
template <typename T>
NumberStatus ParseNumber(std::string_view text, T& value);

// Whether `text` is a decimal number: a sign, digits, a point, digits, an exponent, of which at
// least one digit must be there. "nan", "1,5" and "***" are none.
bool IsNumber(std::string_view text);

// Appends the shortest text that ParseNumber reads as the same number; a NaN becomes "nan" or
// "-nan". Defined for the same types.
template <typename T>
void AppendNumber(std::string& text, T value);

// The same as a text of its own.
std::string ShortestText(double value);

}  // namespace trovan::filters
