// Numbers as values of text files write them.
#pragma once

#include <string_view>

namespace trovan::filters {

// Whether the whole field is one finite decimal number, which is then in `value`: blanks and tabs
// around it, a sign, digits with one `decimal` before, among or behind them, an exponent. There is
// no grouping, no hexadecimal notation, no "nan" and no "inf". What is too small for a double
// becomes a zero of its sign.
//
//   ReadNumberField(" -1.5e3", '.', value);  // true: -1500
//   ReadNumberField("1,5", '.', value);      // false
//
// REQUIRES: `decimal` is '.' or ','
bool ReadNumberField(std::string_view text, char decimal, double& value);

}  // namespace trovan::filters
