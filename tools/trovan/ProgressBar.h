// Progress of long work: a bar on standard error when a person watches, and the way by which Ctrl-C
// reaches the work.
#pragma once

#include <chrono>
#include <string>

#include <corvel/Progress.h>

namespace trovan::tool {

class ProgressBar : public corvel::IProgress {
 public:
  // Where the work puts its results as it goes on.
  enum class Output {
    kStandard,  // on standard output: if that is a terminal, the output is progress enough
    kElsewhere,
  };

  // Draws only if standard error is a terminal.
  explicit ProgressBar(std::string title, Output output = Output::kStandard);

  // Removes the bar.
  ~ProgressBar() override;

  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // False once the user has asked to stop.
  bool Update(double fraction) override;

  // Takes the bar away until the next Update, so that a message can be shown.
  void Hide();

 private:
  void Draw(double fraction);

  std::string title_;
  bool watched_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace trovan::tool
