// What a command-line program needs of the system: its output, its terminal, and Ctrl-C.
#pragma once

#include <string_view>
#include <system_error>

#include <corvel/Export.h>

namespace corvel {

enum class StandardStream { kInput, kOutput, kError };

// Whether a person watches the stream, or types into it.
CORVEL_API bool IsTerminal(StandardStream stream);

// Writes all the bytes to standard output, unbuffered. Returns the system's reason when it cannot:
// std::errc::broken_pipe when nobody reads the output any more. Ctrl-C does not cut a write short.
CORVEL_API std::error_code WriteStandardOutput(std::string_view bytes);

// From now on Ctrl-C (SIGINT), SIGTERM and a terminal that closes (SIGHUP) are noted instead of
// ending the program at once; the third one ends it. A closed pipe and a file that reaches the size
// allowed to it no longer end the program either: the write fails.
CORVEL_API void WatchForInterrupt();

// Whether one has come.
CORVEL_API bool WasInterrupted();

// Waits until standard input has something to read or is at its end. False when the user has asked
// to stop, before the call or during it: unlike a read, it misses no signal that comes just before.
CORVEL_API bool WaitForStandardInput();

}  // namespace corvel
