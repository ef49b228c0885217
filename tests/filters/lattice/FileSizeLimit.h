// A disk that is full after so many bytes.
#pragma once

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

namespace trovan::test {

// The largest file that this program may write while this lives; the write that goes beyond fails.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(::signal(SIGXFSZ, SIG_IGN)) {
    if (::getrlimit(RLIMIT_FSIZE, &before_) != 0) throw std::runtime_error("no limit to be told");
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit to be set");
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

}  // namespace trovan::test
