#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/Console.h>

namespace corvel {
namespace {

// Whether the process waits for something or has ended, by the letter behind its name in the
// system's record.
bool Waits(pid_t process) {
  std::ifstream record("/proc/" + std::to_string(process) + "/stat");
  const std::string line{std::istreambuf_iterator<char>(record), {}};
  const std::size_t name = line.rfind(')');
  const std::string state = name == std::string::npos ? "" : line.substr(name, 3);
  return state == ") S" || state == ") Z";
}

// Writes until the next byte would have to wait.
std::size_t Fill(int pipe) {
  const std::string filler(4096, 'x');
  std::size_t filled = 0;
  for (ssize_t put = 0; (put = ::write(pipe, filler.data(), filler.size())) > 0;) {
    filled += static_cast<std::size_t>(put);
  }
  return filled;
}

std::string ReadToTheEnd(int pipe) {
  std::string text;
  char piece[4096];
  for (ssize_t got = 0; (got = ::read(pipe, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(got));
  }
  return text;
}

[[noreturn]] void WriteInChild(int output, int ready) {
  ::dup2(output, STDOUT_FILENO);
  WatchForInterrupt();
  if (::write(ready, "!", 1) != 1) ::_exit(2);
  const bool written = !WriteStandardOutput("whole");
  ::_exit(written && WasInterrupted() ? 0 : 1);
}

TEST(WriteStandardOutput, IsNotCutShortByCtrlCWhileItWaitsForItsReader) {
  int output[2];
  int ready[2];
  ASSERT_EQ(::pipe2(output, O_CLOEXEC | O_NONBLOCK), 0);
  ASSERT_EQ(::pipe2(ready, O_CLOEXEC), 0);
  const std::size_t filled = Fill(output[1]);
  ASSERT_EQ(::fcntl(output[0], F_SETFL, 0), 0);
  ASSERT_EQ(::fcntl(output[1], F_SETFL, 0), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) WriteInChild(output[1], ready[1]);
  ::close(output[1]);
  ::close(ready[1]);
  char mark = 0;
  ASSERT_EQ(::read(ready[0], &mark, 1), 1);
  while (!Waits(child)) {
  }
  ::kill(child, SIGINT);
  EXPECT_EQ(ReadToTheEnd(output[0]), std::string(filled, 'x') + "whole");
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  ::close(output[0]);
  ::close(ready[0]);
}

// How a program ends that so many signals come to: the signal, or 0 after it has noted them.
int EndOf(const std::vector<int>& signals) {
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGHUP, SIG_DFL);  // whoever runs the tests may ignore it
    WatchForInterrupt();
    for (const int signal : signals) std::raise(signal);
    ::_exit(WasInterrupted() ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  if (WIFSIGNALED(status)) return WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  return 0;
}

// "timeout" sends two for one.
TEST(WatchForInterrupt, NotesTwoSignalsAndLetsTheThirdEndTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EQ(EndOf({signal}), 0);
    EXPECT_EQ(EndOf({signal, signal}), 0);
    EXPECT_EQ(EndOf({signal, signal, signal}), signal);
  }
  EXPECT_EQ(EndOf({SIGINT, SIGTERM}), 0);
  EXPECT_EQ(EndOf({SIGINT, SIGTERM, SIGINT}), SIGINT);
}

}  // namespace
}  // namespace corvel
