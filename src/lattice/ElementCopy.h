// Copies one element of every node out of a row of nodes, or into it.
#pragma once

#include <cstddef>
#include <cstring>

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

// Calls `copy` with the element size as a constant where it is a usual one, so that the copy of an
// element becomes one move.
template <typename Copy>
void WithElementSize(std::size_t size, Copy copy) {
  switch (size) {
    case 1:
      return copy([] { return std::size_t{1}; });
    case 2:
      return copy([] { return std::size_t{2}; });
    case 4:
      return copy([] { return std::size_t{4}; });
    case 8:
      return copy([] { return std::size_t{8}; });
    default:
      return copy([size] { return size; });
  }
}

// Row to packed elements.
inline void Gather(void* packed, const void* row, const ElementRun& run) {
  auto* to = static_cast<unsigned char*>(packed);
  const auto* from = static_cast<const unsigned char*>(row) + run.first;
  WithElementSize(run.size, [&](auto size) {
    for (std::size_t i = 0; i < run.count; ++i) {
      std::memcpy(to + i * size(), from + i * run.stride, size());
    }
  });
}

// Packed elements to row.
inline void Scatter(void* row, const void* packed, const ElementRun& run) {
  auto* to = static_cast<unsigned char*>(row) + run.first;
  const auto* from = static_cast<const unsigned char*>(packed);
  WithElementSize(run.size, [&](auto size) {
    for (std::size_t i = 0; i < run.count; ++i) {
      std::memcpy(to + i * run.stride, from + i * size(), size());
    }
  });
}

}  // namespace trovan::lattice
