// Random numbers for tests: the same on every machine, which the distributions of the standard
// library are not.
#pragma once

#include <cstddef>
#include <random>

namespace trovan::test {

inline unsigned AnyUnsigned(std::mt19937& random) { return static_cast<unsigned>(random()); }

// A number below `limit`. REQUIRES: limit > 0.
inline unsigned Below(std::mt19937& random, unsigned limit) { return AnyUnsigned(random) % limit; }

inline bool OneIn(std::mt19937& random, unsigned n) { return Below(random, n) == 0; }

template <std::size_t kCount>
unsigned OneOf(std::mt19937& random, const unsigned (&choices)[kCount]) {
  return choices[Below(random, static_cast<unsigned>(kCount))];
}

}  // namespace trovan::test
