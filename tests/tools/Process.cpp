#include "Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace trovan::test {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// In the child: never returns.
[[noreturn]] void Become(const std::vector<std::string>& arguments, int output, int errors) {
  ::dup2(output, STDOUT_FILENO);
  ::dup2(errors, STDERR_FILENO);
  // As a shell starts it, whatever the tests run under.
  for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGXFSZ}) {
    std::signal(signal, SIG_DFL);
  }
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

std::string ReadAll(int file) {
  std::string text;
  std::array<char, 65'536> buffer;
  for (;;) {
    const ssize_t got = ::read(file, buffer.data(), buffer.size());
    if (got <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

}  // namespace

Process::Process(const std::vector<std::string>& arguments, const std::string& outputFile) {
  std::vector<std::string> all = {TROVAN_COMMAND};
  all.insert(all.end(), arguments.begin(), arguments.end());
  errorFile_ = ::memfd_create("errors", MFD_CLOEXEC);
  if (errorFile_ < 0) Fail("memfd_create");
  int childOutput = -1;
  if (outputFile.empty()) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) Fail("pipe");
    output_ = ends[0];
    childOutput = ends[1];
  } else {
    childOutput = ::open(outputFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (childOutput < 0) Fail("open");
  }
  id_ = ::fork();
  if (id_ < 0) Fail("fork");
  if (id_ == 0) Become(all, childOutput, errorFile_);
  ::close(childOutput);
}

Process::~Process() {
  if (!ended_) {
    ::kill(id_, SIGKILL);
    Reap(true);
  }
  CloseOutput();
  ::close(errorFile_);
}

std::string Process::ReadOutput(std::size_t count) {
  std::string text(count, '\0');
  std::size_t got = 0;
  while (got < count) {
    const ssize_t more = ::read(output_, text.data() + got, count - got);
    if (more <= 0) break;
    got += static_cast<std::size_t>(more);
  }
  text.resize(got);
  return text;
}

bool Process::OutputIsFull() const {
  int waiting = 0;
  if (::ioctl(output_, FIONREAD, &waiting) != 0) Fail("ioctl");
  return waiting >= ::fcntl(output_, F_GETPIPE_SZ);
}

void Process::CloseOutput() {
  if (output_ >= 0) ::close(output_);
  output_ = -1;
}

void Process::Signal(int signal) const { ::kill(id_, signal); }

bool Process::HasEnded() {
  Reap(false);
  return ended_;
}

void Process::Reap(bool wait) {
  if (ended_) return;
  int status = 0;
  struct rusage usage {};
  if (::wait4(id_, &status, wait ? 0 : WNOHANG, &usage) != id_) return;
  ended_ = true;
  outcome_.peakKiB = usage.ru_maxrss;
  if (WIFEXITED(status)) outcome_.code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) outcome_.signal = WTERMSIG(status);
}

Outcome Process::Wait() {
  if (output_ >= 0) outcome_.output += ReadAll(output_);
  Reap(true);
  ::lseek(errorFile_, 0, SEEK_SET);
  outcome_.errors = ReadAll(errorFile_);
  return outcome_;
}

Outcome RunTrovan(const std::vector<std::string>& arguments, const std::string& outputFile) {
  return Process(arguments, outputFile).Wait();
}

}  // namespace trovan::test
