// The number at the start of a token.
#pragma once

#include <cstddef>

namespace trovan {

// Each reads a number as the C library does: strtol in base 10, and strtod in the library's current
// locale and rounding mode. What follows the number does not matter. Integers have the range of
// int, whatever the width of long: what is beyond becomes the nearest of it.
//
// Returns false, and leaves `value`, where the text does not start with a number.
//
// REQUIRES: text[length] is NUL.
bool ReadNumber(const char* text, std::size_t length, int& value);
bool ReadNumber(const char* text, std::size_t length, double& value);

// Reads a decimal number as strtod does and returns its length; 0, and no value, where strtod would
// not have to find the same: it is another kind of number or too large or small, or the locale or
// the rounding mode is another. Only `text[0, size)` is looked at.
std::size_t ReadPlainNumber(const char* text, std::size_t size, double& value);

}  // namespace trovan
