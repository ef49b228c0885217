// A disk that is full at a chosen byte.
//
//   const FileSizeLimit limit(100'000);
//   EXPECT_THROW(WriteMuch(), corvel::Exception);
#pragma once

#include <signal.h>
#include <stdexcept>
#include <sys/resource.h>

namespace trovan::test {

// A signal that is ignored while this lives, so that the call that sends it fails instead.
class IgnoredSignal {
 public:
  explicit IgnoredSignal(int number) : number_(number), before_(::signal(number, SIG_IGN)) {}
  ~IgnoredSignal() { ::signal(number_, before_); }
  IgnoredSignal(const IgnoredSignal&) = delete;
  IgnoredSignal& operator=(const IgnoredSignal&) = delete;

 private:
  int number_;
  void (*before_)(int);
};

// The largest file that this program may write while this lives. The system takes part of the write
// that would go beyond and refuses the rest.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    if (::getrlimit(RLIMIT_FSIZE, &before_) != 0) throw std::runtime_error("no limit to be told");
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit to be set");
  }
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  IgnoredSignal signal_{SIGXFSZ};
  rlimit before_{};
};

}  // namespace trovan::test
