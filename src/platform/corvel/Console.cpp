#include <corvel/Console.h>

#include <cerrno>
#include <csignal>
#include <sys/select.h>
#include <unistd.h>

namespace corvel {
namespace {

// One request to stop often comes as two signals: the command "timeout" sends one to the program
// and one to its group, and a terminal that closes has a shell that tells the same.
constexpr std::sig_atomic_t kImpatience = 3;

volatile std::sig_atomic_t g_interrupts = 0;

extern "C" void NoteInterrupt(int signal) {
  g_interrupts = g_interrupts + 1;
  if (g_interrupts < kImpatience) return;
  std::signal(signal, SIG_DFL);
  std::raise(signal);  // ends the program when this function returns
}

// Without SA_RESTART: what waits for the user returns.
void Watch(int signal) {
  struct sigaction action {};
  action.sa_handler = NoteInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

bool IsTerminal(StandardStream stream) {
  constexpr int kDescriptors[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
  return ::isatty(kDescriptors[static_cast<int>(stream)]) != 0;
}

std::error_code WriteStandardOutput(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return {errno, std::generic_category()};
    }
  }
  return {};
}

void WatchForInterrupt() {
  Watch(SIGINT);
  Watch(SIGTERM);
  // Whoever started the program so that it outlives its terminal (nohup) keeps that.
  if (std::signal(SIGHUP, SIG_DFL) == SIG_IGN) {
    std::signal(SIGHUP, SIG_IGN);
  } else {
    Watch(SIGHUP);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool WasInterrupted() { return g_interrupts != 0; }

bool WaitForStandardInput() {
  sigset_t watched;
  sigset_t before;
  sigemptyset(&watched);
  sigaddset(&watched, SIGINT);
  sigaddset(&watched, SIGTERM);
  sigaddset(&watched, SIGHUP);
  // The signals are let in only while pselect waits, so that none comes between the look and it.
  ::pthread_sigmask(SIG_BLOCK, &watched, &before);
  for (int ready = -1; ready < 0 && !WasInterrupted();) {
    fd_set input;
    FD_ZERO(&input);
    FD_SET(STDIN_FILENO, &input);
    ready = ::pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &before);
    if (ready < 0 && errno != EINTR) break;  // reading will tell what is wrong
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return !WasInterrupted();
}

}  // namespace corvel
