// A token that is to be read as a number: mostly short, and then without memory of its own on the
// heap.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

namespace trovan {

// As much of a string as the tokenizer needs.
class NumberToken {
 public:
  void clear() { size_ = 0; }
  void assign(const char* text, std::size_t count) {
    clear();
    append(text, count);
  }
  void append(const char* text, std::size_t count) {
    if (size_ + count < short_.size()) {
      std::memcpy(short_.data() + size_, text, count);
    } else {
      if (size_ < short_.size()) long_.assign(short_.data(), size_);
      long_.append(text, count);
    }
    size_ += count;
  }

  std::size_t size() const { return size_; }
  // Followed by a NUL.
  const char* c_str() {
    if (size_ >= short_.size()) return long_.c_str();
    short_[size_] = '\0';
    return short_.data();
  }

 private:
  std::size_t size_ = 0;
  std::array<char, 64> short_;  // holds the token while it is shorter
  std::string long_;
};

}  // namespace trovan
