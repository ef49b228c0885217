// Conversions and measurements of packed arrays whose element type is known only when the program
// runs: the node values and axis coordinates that lattice files store.
//
//   const double value = 300.7;
//   unsigned char byte = 0;
//   PTConvertByTruncation(kDouble, kUInt8, &value, &byte);         // 44: the low bits of 300
//   PTScaleDoubleToOtherType(kUInt8, &byte, 5.0, 0.0, 10.0);       // 127: half of 255, truncated
//
//   const double axis[] = {0.0, 1.0, 2.05, 3.0};
//   IsEquallySpaced(kDouble, 4, axis, 10.0);                       // true: the worst step is 5 %
//   MaxDeviationFromUniform(kDouble, 4, axis);                     // 5.0
//
// Elements are in the machine's byte order and may lie at any alignment. A number that is no
// element type is taken: its elements are 0 and have no size.
#pragma once

#include <cstddef>

#include <corvel/PrimType.h>
#include <trovan/Export.h>

namespace trovan {

// Writes one element of `toType` at `dst` that is made from the element of `fromType` at `src`.
//
// Equal types are copied byte by byte, so that a NaN stays the same NaN. Otherwise the value goes
// through a double: 64-bit integers beyond 2^53 are rounded on the way. Floats become the nearest
// ones, infinity included; integers are truncated toward zero. Nothing is written when `toType` is
// no element type.
//
// Deliberate: there is no saturation. What does not fit keeps its low bits: -1.5 makes 255 of an
// unsigned byte. The bits are those of a signed integer of 32 bits (64 bits for unsigned 32-bit and
// 64-bit elements); what does not fit that one, NaN included, becomes its most negative value,
// whose lower half is 0.
//
// `src` and `dst` may be the same place.
TROVAN_API void PTConvertByTruncation(corvel::CPrimType fromType, corvel::CPrimType toType,
                                      void* src, void* dst);

// Writes one element of `type` at `dst`: integers are `value` mapped from minValue..maxValue to the
// whole range of the type and truncated toward zero. Floats and doubles take `value` as it is;
// nothing is written when the type is no element type.
//
// The lower end becomes the lowest value of the type, the upper end its highest. A value outside
// the two, or a range of zero, gives what PTConvertByTruncation gives for such doubles.
//
// Deliberate: signed 64-bit elements are scaled by (2^32 - 1)^2 from 0 upward, and the upper half
// of the range, which does not fit, becomes the most negative value.
TROVAN_API void PTScaleDoubleToOtherType(corvel::CPrimType type, void* dst, double value,
                                         double minValue, double maxValue);

// Whether the `n` values are equally spaced. One value always is.
//
// A floating-point step may differ from the mean step by `tolerancePercent` percent of it; a NaN
// does not count as a difference. Integers must share one whole step, which may be negative; their
// tolerance is not read.
//
// REQUIRES: n >= 1, and `values` points to n packed elements of `type`.
//
// Deliberate: the allowance carries the sign of the mean step, so that a descending floating-point
// axis is not equally spaced, however exact it is. For axes that may descend use
// MaxDeviationFromUniform.
//
// Reads the last value for the mean step, then the values in order up to the first step that fails;
// of floats and doubles also the rest of that step's piece, which has at most 1,024 values.
TROVAN_API bool IsEquallySpaced(corvel::CPrimType type, std::size_t n, const void* values,
                                double tolerancePercent);

// The largest difference between a step and the mean step, in percent of the mean step: 0 for one
// value, infinity when only the mean step is 0, NaN when all values are equal. Differences that are
// NaN are left out.
//
// REQUIRES: n >= 1, and `values` points to n packed elements of `type`.
TROVAN_API double MaxDeviationFromUniform(corvel::CPrimType type, std::size_t n,
                                          const void* values);

}  // namespace trovan
