#include "ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <corvel/Console.h>

namespace trovan::tool {
namespace {

// Short work shows no bar; then it moves often enough to look alive.
constexpr auto kPatience = std::chrono::milliseconds(500);
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr int kWidth = 40;

}  // namespace

ProgressBar::ProgressBar(std::string title, Output output)
    : title_(std::move(title)),
      watched_(
          corvel::IsTerminal(corvel::StandardStream::kError) &&
          !(output == Output::kStandard && corvel::IsTerminal(corvel::StandardStream::kOutput))),
      next_(std::chrono::steady_clock::now() + kPatience) {}

ProgressBar::~ProgressBar() { Hide(); }

void ProgressBar::Hide() {
  if (drawn_) std::fputs("\r\033[K", stderr);
  drawn_ = false;
}

bool ProgressBar::Update(double fraction) {
  if (watched_) {
    const auto now = std::chrono::steady_clock::now();
    if (now >= next_) {
      Draw(fraction);
      next_ = now + kInterval;
    }
  }
  return !corvel::WasInterrupted();
}

void ProgressBar::Draw(double fraction) {
  const double part = std::clamp(fraction, 0.0, 1.0);
  const int filled = static_cast<int>(part * kWidth);
  std::string bar(static_cast<std::size_t>(filled), '#');
  bar.append(static_cast<std::size_t>(kWidth - filled), '.');
  std::fprintf(stderr, "\r%s [%s] %3d %%", title_.c_str(), bar.c_str(),
               static_cast<int>(part * 100));
  drawn_ = true;
}

}  // namespace trovan::tool
