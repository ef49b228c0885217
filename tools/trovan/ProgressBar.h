// Progress of long work: a bar on standard error when a person watches, and the way by which Ctrl-C
// reaches the work.
#pragma once

#include <chrono>
#include <string>

#include <corvel/Progress.h>

namespace trovan::tool {

class ProgressBar : public corvel::IProgress {
 public:
  // Draws only if standard error is a terminal and standard output is not: output on the terminal
  // is progress enough.
  explicit ProgressBar(std::string title);

  // Removes the bar.
  ~ProgressBar() override;

  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // False once the user has asked to stop.
  bool Update(double fraction) override;

 private:
  void Draw(double fraction);

  std::string title_;
  bool watched_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace trovan::tool
