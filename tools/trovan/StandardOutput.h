// Standard output as the sink of a filter.
#pragma once

#include "filters/support/ByteSink.h"

namespace trovan::tool {

// Raised when nobody reads the output any more (`| head`).
struct ClosedPipe {};

// Raised when the user asked to stop while the output waited for its reader.
struct Interrupted {};

class StandardOutput : public filters::ByteSink {
 public:
  // Raises ClosedPipe, Interrupted, or FilterError when the system refuses (a full disk).
  void Write(std::string_view bytes) override;
};

}  // namespace trovan::tool
