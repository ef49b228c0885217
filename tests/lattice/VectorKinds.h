// Runs a test on every kind of vectors that the library was compiled for and this processor has,
// and without any.
#pragma once

#include <cstdint>
#include <vector>

#include <hwy/highway.h>
#include <gtest/gtest.h>

namespace trovan::test {

inline constexpr std::int64_t kNoVectors = HWY_SCALAR | HWY_EMU128;

// The kinds, the plain one last.
inline std::vector<std::int64_t> VectorKinds() {
  std::vector<std::int64_t> kinds = hwy::SupportedAndGeneratedTargets();
  std::erase_if(kinds, [](std::int64_t kind) { return (kind & kNoVectors) != 0; });
  kinds.push_back(kNoVectors);
  return kinds;
}

template <typename Test>
void OnEachKindOfVectors(Test test) {
  for (const std::int64_t kind : VectorKinds()) {
    const char* const name = kind == kNoVectors ? "none" : hwy::TargetName(kind);
    SCOPED_TRACE(testing::Message() << "vectors: " << name);
    hwy::SetSupportedTargetsForTest(kind);
    test();
    hwy::SetSupportedTargetsForTest(0);
  }
}

}  // namespace trovan::test
