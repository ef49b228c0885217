// What went wrong on the way without ending it: counted all, the first ones kept in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace trovan::filters {

class Problems {
 public:
  void Add(std::string message) {
    ++count_;
    if (first_.size() < kKept) first_.push_back(std::move(message));
  }

  std::uint64_t Count() const { return count_; }
  const std::vector<std::string>& First() const { return first_; }

 private:
  static constexpr std::size_t kKept = 10;

  std::uint64_t count_ = 0;
  std::vector<std::string> first_;
};

}  // namespace trovan::filters
