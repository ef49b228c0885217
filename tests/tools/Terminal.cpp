#include "Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace trovan::test {
namespace {

// In the child: never returns.
[[noreturn]] void Become(const std::vector<std::string>& arguments) {
  std::signal(SIGPIPE, SIG_DFL);
  std::signal(SIGINT, SIG_DFL);
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

}  // namespace

Terminal::Terminal(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {TROVAN_COMMAND};
  all.insert(all.end(), arguments.begin(), arguments.end());
  id_ = ::forkpty(&keyboard_, nullptr, nullptr, nullptr);
  if (id_ < 0) throw std::system_error(errno, std::generic_category(), "forkpty");
  if (id_ == 0) Become(all);
  ::fcntl(keyboard_, F_SETFD, FD_CLOEXEC);
}

Terminal::~Terminal() {
  if (!reaped_) {
    ::kill(id_, SIGKILL);
    ::waitpid(id_, nullptr, 0);
  }
  ::close(keyboard_);
}

// The system tells the end of the last process on a terminal as an error.
bool Terminal::ReadMore() {
  std::array<char, 4096> buffer;
  const ssize_t got = ::read(keyboard_, buffer.data(), buffer.size());
  if (got <= 0) return false;
  screen_.append(buffer.data(), static_cast<std::size_t>(got));
  return true;
}

bool Terminal::WaitFor(const std::string& text) {
  while (screen_.find(text) == std::string::npos) {
    if (!ReadMore()) return false;
  }
  return true;
}

void Terminal::Type(const std::string& keys) const {
  if (::write(keyboard_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::system_error(errno, std::generic_category(), "write");
  }
}

int Terminal::Wait() {
  while (ReadMore()) continue;
  int status = 0;
  ::waitpid(id_, &status, 0);
  reaped_ = true;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace trovan::test
