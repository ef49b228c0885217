// Where a filter writes its output.
#pragma once

#include <string_view>

namespace trovan::filters {

class ByteSink {
 public:
  virtual ~ByteSink() = default;

  // Takes all the bytes, or raises.
  virtual void Write(std::string_view bytes) = 0;
};

}  // namespace trovan::filters
