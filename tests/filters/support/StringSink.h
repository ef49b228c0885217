// The output of a filter in memory.
#pragma once

#include <string>
#include <string_view>

#include "filters/support/ByteSink.h"

namespace trovan::filters {

class StringSink : public ByteSink {
 public:
  void Write(std::string_view bytes) override { text += bytes; }

  std::string text;
};

}  // namespace trovan::filters
