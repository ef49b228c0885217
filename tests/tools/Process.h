// Runs the trovan command as a person does, and tells what came of it.
//
//   const Outcome outcome = RunTrovan({"table", "info", "towns.dbf"});
//   EXPECT_EQ(outcome.code, 0) << outcome.errors;
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace trovan::test {

struct Outcome {
  int code = -1;       // of the exit; -1 when a signal ended the process
  int signal = 0;      // that ended it
  long peakKiB = 0;    // the most memory that was in use
  std::string output;  // standard output
  std::string errors;  // standard error
};

// A run of the command whose standard output is a pipe to this object, or a file.
class Process {
 public:
  // Raises when the command cannot be started. `outputFile`: "" for a pipe.
  explicit Process(const std::vector<std::string>& arguments, const std::string& outputFile = "");
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Waits until there is output, and takes at most `count` bytes of it. Less at its end only.
  std::string ReadOutput(std::size_t count);

  // Whether the pipe is full: the next byte has to wait until output is read.
  bool OutputIsFull() const;

  // Nobody reads the output any more.
  void CloseOutput();

  void Signal(int signal) const;

  // Whether it has ended; Wait then returns at once.
  bool HasEnded();

  // Takes the rest of the output and waits for the end.
  Outcome Wait();

 private:
  void Reap(bool wait);

  pid_t id_ = -1;
  int output_ = -1;
  int errorFile_ = -1;  // standard error goes to a file, so that it cannot fill up
  bool ended_ = false;
  Outcome outcome_;
};

// Runs the command to its end.
Outcome RunTrovan(const std::vector<std::string>& arguments, const std::string& outputFile = "");

}  // namespace trovan::test
