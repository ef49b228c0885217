// Ctrl-C: long work looks here now and then, and ends in good order.
#pragma once

namespace trovan::tool {

// Raised where output waits and the user has asked to stop.
struct Interrupted {};

// From now on Ctrl-C (SIGINT) and SIGTERM are noted instead of ending the program at once; a second
// one ends it. A closed pipe is reported by the write that meets it.
void WatchForInterrupt();

bool WasInterrupted();

}  // namespace trovan::tool
