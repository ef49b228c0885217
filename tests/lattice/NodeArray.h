// A packed array of elements of any type for tests: at any alignment, and with a guard that shows
// what was written around it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include <corvel/PrimType.h>

namespace trovan::test {

class NodeArray {
 public:
  // `shift` bytes off the alignment of the heap. Without a guard behind it the memory ends where
  // the array does, so that the address sanitizer sees each access beyond.
  NodeArray(corvel::CPrimType type, std::size_t n, std::size_t shift = 0, std::size_t guard = 16)
      : type_(type),
        n_(n),
        size_(static_cast<std::size_t>(type.Size())),
        shift_(shift),
        memory_(shift + n * size_ + guard, kGuard) {
    memory_.shrink_to_fit();
  }

  template <typename T>
  NodeArray(corvel::CPrimType type, const std::vector<T>& values) : NodeArray(type, values.size()) {
    for (std::size_t i = 0; i < values.size(); ++i) Set(i, values[i]);
  }

  corvel::CPrimType Type() const { return type_; }
  std::size_t Count() const { return n_; }
  void* Data() { return memory_.data() + shift_; }
  const void* Data() const { return memory_.data() + shift_; }
  void* At(std::size_t i) { return memory_.data() + shift_ + i * size_; }
  const void* At(std::size_t i) const { return memory_.data() + shift_ + i * size_; }

  // REQUIRES: T is the type of the elements.
  template <typename T>
  void Set(std::size_t i, T value) {
    std::memcpy(At(i), &value, sizeof value);
  }
  template <typename T>
  T Get(std::size_t i) const {
    T value;
    std::memcpy(&value, At(i), sizeof value);
    return value;
  }
  template <typename T>
  std::vector<T> Values() const {
    std::vector<T> values(n_);
    for (std::size_t i = 0; i < n_; ++i) values[i] = Get<T>(i);
    return values;
  }

  bool IsGuardIntact() const {
    const auto isGuard = [](unsigned char byte) { return byte == kGuard; };
    const auto first = memory_.begin() + static_cast<std::ptrdiff_t>(shift_);
    return std::all_of(memory_.begin(), first, isGuard) &&
           std::all_of(first + static_cast<std::ptrdiff_t>(n_ * size_), memory_.end(), isGuard);
  }

  // The same bytes, guard included.
  friend bool operator==(const NodeArray& a, const NodeArray& b) { return a.memory_ == b.memory_; }

 private:
  static constexpr unsigned char kGuard = 0xA5;

  corvel::CPrimType type_;
  std::size_t n_;
  std::size_t size_;
  std::size_t shift_;
  std::vector<unsigned char> memory_;
};

}  // namespace trovan::test
