#include "StandardOutput.h"

#include <system_error>

#include <corvel/Console.h>

#include "filters/support/FilterError.h"

namespace trovan::tool {

void StandardOutput::Write(std::string_view bytes) {
  const std::error_code error = corvel::WriteStandardOutput(bytes);
  if (error == std::errc::broken_pipe) throw ClosedPipe();
  if (error) throw filters::FilterError("cannot write the output: " + error.message());
}

}  // namespace trovan::tool
