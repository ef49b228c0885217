// What a harness demands of each input, beyond not crashing.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace trovan::fuzz {

// Ends the program, so that the fuzzer keeps the input, unless `isTrue`.
inline void Require(bool isTrue, const std::string& what) {
  if (isTrue) return;
  std::fprintf(stderr, "wrong: %s\n", what.c_str());
  std::abort();
}

}  // namespace trovan::fuzz
