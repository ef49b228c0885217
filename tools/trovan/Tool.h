// The `trovan` command: the filters at a person's fingertips.
#pragma once

namespace trovan::tool {

// What the command returns to the shell.
enum ExitCode : int {
  kDone = 0,
  kFailed = 1,         // the work could not be done, or only in part; standard error tells why
  kBadUsage = 2,       // the arguments make no sense
  kInterrupted = 130,  // Ctrl-C; what was written is well-formed
};

// Runs the command with the arguments of main.
int Run(int argc, char** argv);

}  // namespace trovan::tool
