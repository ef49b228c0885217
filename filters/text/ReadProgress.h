// Tells someone who waits how much of a file was read.
#pragma once

#include <corvel/BufferedFile.h>
#include <corvel/Progress.h>

namespace trovan::filters {

// The part of a file in front of `position`, 0 to 1. A file may grow while it is read.
inline double PartRead(long long position, long long length) {
  return position < length ? static_cast<double>(position) / static_cast<double>(length) : 1.0;
}

class ReadProgress {
 public:
  // Nobody waits.
  ReadProgress() = default;

  // `progress` outlives the object; null: nobody waits. `length` is where the reading ends.
  ReadProgress(corvel::IProgress* progress, long long length)
      : progress_(progress), length_(length) {}

  // Reports the place of `file` when enough was read since the last time. False once the one who
  // waits has asked to stop.
  bool GoOn(const corvel::CBufferedFile& file) {
    if (progress_ == nullptr || stopped_) return !stopped_;
    const long long position = file.GetPosition();
    if (position < nextReport_) return true;
    nextReport_ = position + kBytesBetweenReports;
    stopped_ = !progress_->Update(PartRead(position, length_));
    return !stopped_;
  }

  bool WasStopped() const { return stopped_; }

 private:
  static constexpr long long kBytesBetweenReports = 256LL * 1024;

  corvel::IProgress* progress_ = nullptr;
  long long length_ = 0;
  long long nextReport_ = 0;  // a position
  bool stopped_ = false;
};

}  // namespace trovan::filters
