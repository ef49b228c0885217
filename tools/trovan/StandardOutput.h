// Standard output as the sink of a filter.
#pragma once

#include "filters/support/ByteSink.h"

namespace trovan::tool {

// Raised when nobody reads the output any more (`| head`).
struct ClosedPipe {};

class StandardOutput : public filters::ByteSink {
 public:
  // Raises ClosedPipe, or FilterError when the system refuses (a full disk).
  void Write(std::string_view bytes) override;
};

}  // namespace trovan::tool
