// The loops over packed arrays one element at a time: the definition of what the vectorised ones
// do, the ends of arrays that fill no vector, and all types that are not worth a vector.
//
// Arrays are given as bytes, since their elements may lie at any alignment.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>

#include "Elements.h"

namespace trovan::lattice {

// NaN or an infinity.
struct NotFinite {
  template <typename T>
  bool operator()(T value) const {
    return !(std::fabs(value) <= std::numeric_limits<T>::max());  // NaN compares false
  }
};

// Strictly below the lowest or strictly above the highest; NaN is neither.
template <typename T>
struct Outside {
  T lowest;
  T highest;

  bool operator()(T value) const { return value > highest || lowest > value; }
};

// Overwrites each element for which `test` holds; whether there was one.
template <typename T, typename Test>
bool ReplaceEach(unsigned char* values, std::size_t n, T replacement, const Test& test) {
  bool replaced = false;
  for (std::size_t i = 0; i < n; ++i) {
    if (!test(Load<T>(values + i * sizeof(T)))) continue;
    Store(values + i * sizeof(T), replacement);
    replaced = true;
  }
  return replaced;
}

// How far the step from the element before `element` to it is from `step`.
template <typename T>
double StepError(const unsigned char* element, double step) {
  const auto value = static_cast<double>(Load<T>(element));
  const auto previous = static_cast<double>(Load<T>(element - sizeof(T)));
  return std::fabs(value - previous - step);
}

// Whether no step that ends at element `first` or later is off by more than `allowed`. A NaN is not
// more.
template <typename T>
bool EachStepWithin(const unsigned char* values, std::size_t first, std::size_t n, double step,
                    double allowed) {
  for (std::size_t i = first; i < n; ++i) {
    if (StepError<T>(values + i * sizeof(T), step) > allowed) return false;
  }
  return true;
}

// The largest error of the steps that end at element `first` or later, or `worst` if that is more;
// NaN leaves out.
template <typename T>
double WorstOfEachStep(const unsigned char* values, std::size_t first, std::size_t n, double step,
                       double worst) {
  for (std::size_t i = first; i < n; ++i) {
    const double error = StepError<T>(values + i * sizeof(T), step);
    if (error > worst) worst = error;
  }
  return worst;
}

}  // namespace trovan::lattice
