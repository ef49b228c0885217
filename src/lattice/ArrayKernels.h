// Loops over packed floats or doubles that run as fast as memory delivers them, on whatever vectors
// the processor has.
//
// T is float or double; values are tested as doubles, and lie at any alignment. Each function gives
// bit for bit what the plain loop gives that is named with it (see PlainLoops.h).
#pragma once

#include <cstddef>

namespace trovan::lattice {

// ReplaceEach of what is NotFinite. Only vectors that hold such a value are written.
template <typename T>
bool ReplaceNotFinite(void* values, std::size_t n, T replacement);

// ReplaceEach of what lies Outside. Only vectors that hold such a value are written.
template <typename T>
bool ReplaceOutside(void* values, std::size_t n, T replacement, T lowest, T highest);

// EachStepWithin of all steps.
//
// REQUIRES: n >= 1.
template <typename T>
bool AllStepsWithin(const void* values, std::size_t n, double step, double allowed);

// WorstOfEachStep of all steps, 0 at least.
//
// REQUIRES: n >= 1.
template <typename T>
double WorstStepError(const void* values, std::size_t n, double step);

}  // namespace trovan::lattice
