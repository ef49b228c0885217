#include "Interrupt.h"

#include <csignal>

namespace trovan::tool {
namespace {

volatile std::sig_atomic_t g_interrupted = 0;

extern "C" void NoteInterrupt(int signal) {
  g_interrupted = 1;
  std::signal(signal, SIG_DFL);
}

void Watch(int signal) {
#if defined(_WIN32)
  std::signal(signal, NoteInterrupt);
#else
  // Without SA_RESTART: a write that waits for its reader returns.
  struct sigaction action {};
  action.sa_handler = NoteInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
#endif
}

}  // namespace

void WatchForInterrupt() {
  Watch(SIGINT);
  Watch(SIGTERM);
#if !defined(_WIN32)
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

bool WasInterrupted() { return g_interrupted != 0; }

}  // namespace trovan::tool
