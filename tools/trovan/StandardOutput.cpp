#include "StandardOutput.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>

#include "Interrupt.h"
#include "filters/support/FilterError.h"

namespace trovan::tool {

void StandardOutput::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE) {
      throw ClosedPipe();
    } else if (errno == EINTR) {
      if (WasInterrupted()) throw Interrupted();
    } else {
      throw filters::FilterError("cannot write the output: " +
                                 std::generic_category().message(errno));
    }
  }
}

}  // namespace trovan::tool
