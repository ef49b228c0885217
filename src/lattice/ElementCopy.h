// Copies one element of every node out of a row of nodes, or into it.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace trovan::lattice {

// The elements that share a place within their node: `count` elements of `size` bytes, the first at
// `first` bytes from the start of the row, each `stride` bytes behind the one before.
struct ElementRun {
  std::size_t first;
  std::size_t stride;
  std::size_t size;
  std::size_t count;
};

// The run without the elements that do not lie within the first `bytes` bytes of the row.
constexpr ElementRun CutTo(ElementRun run, std::size_t bytes) {
  if (bytes < run.size || run.first > bytes - run.size) {
    run.count = 0;
  } else if (run.stride > 0) {
    const std::size_t whole = (bytes - run.size - run.first) / run.stride + 1;
    if (whole < run.count) run.count = whole;
  }
  return run;
}

template <std::size_t kValue>
using Constant = std::integral_constant<std::size_t, kValue>;

// Calls `copy` with the size of an element and the number of elements in a node as constants, where
// they are usual ones: the copy of an element becomes one move, the step to the next one addition.
template <typename Copy>
void WithConstants(const ElementRun& run, Copy copy) {
  const auto withStride = [&]<std::size_t kSize>() {
    if (run.stride == kSize) return copy(Constant<kSize>(), Constant<kSize>());
    if (run.stride == 2 * kSize) return copy(Constant<kSize>(), Constant<2 * kSize>());
    if (run.stride == 3 * kSize) return copy(Constant<kSize>(), Constant<3 * kSize>());
    if (run.stride == 4 * kSize) return copy(Constant<kSize>(), Constant<4 * kSize>());
    copy(Constant<kSize>(), run.stride);
  };
  if (run.size == 1) return withStride.template operator()<1>();
  if (run.size == 2) return withStride.template operator()<2>();
  if (run.size == 4) return withStride.template operator()<4>();
  if (run.size == 8) return withStride.template operator()<8>();
  copy(run.size, run.stride);
}

// Row to packed elements.
inline void Gather(void* packed, const void* row, const ElementRun& run) {
  auto* to = static_cast<unsigned char*>(packed);
  const auto* from = static_cast<const unsigned char*>(row) + run.first;
  WithConstants(run, [to, from, count = run.count](auto size, auto stride) {
    for (std::size_t i = 0; i < count; ++i) std::memcpy(to + i * size, from + i * stride, size);
  });
}

// Packed elements to row.
inline void Scatter(void* row, const void* packed, const ElementRun& run) {
  auto* to = static_cast<unsigned char*>(row) + run.first;
  const auto* from = static_cast<const unsigned char*>(packed);
  WithConstants(run, [to, from, count = run.count](auto size, auto stride) {
    for (std::size_t i = 0; i < count; ++i) std::memcpy(to + i * stride, from + i * size, size);
  });
}

}  // namespace trovan::lattice
