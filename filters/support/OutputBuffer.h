// Gathers small pieces of output for a sink.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "filters/support/ByteSink.h"

namespace trovan::filters {

class OutputBuffer {
 public:
  explicit OutputBuffer(ByteSink& sink) : sink_(sink) { bytes_.reserve(2 * kFull); }

  void Put(char byte) { bytes_ += byte; }
  void Put(std::string_view bytes) {
    if (bytes.size() > kFull) {
      Flush();
      sink_.Write(bytes);
    } else {
      bytes_ += bytes;
    }
  }

  // To be called now and then, such as after each row.
  void FlushIfFull() {
    if (bytes_.size() >= kFull) Flush();
  }

  void Flush() {
    if (!bytes_.empty()) sink_.Write(bytes_);
    bytes_.clear();
  }

 private:
  static constexpr std::size_t kFull = std::size_t{64} * 1024;

  ByteSink& sink_;
  std::string bytes_;
};

}  // namespace trovan::filters
