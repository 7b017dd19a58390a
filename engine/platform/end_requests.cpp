#include "engine/platform/end_requests.h"

#include <atomic>
#include <csignal>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace arena::platform {
namespace {

constexpr int kInterrupted = 130, kToldToEnd = 143;
std::atomic<int> request = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");

}  // namespace

int end_request() { return request; }

#ifdef _WIN32
namespace {

HANDLE main_thread = nullptr;

// Runs on a thread of its own. A console that closes ends the program when this returns.
BOOL WINAPI see_control(DWORD event) {
  const bool is_second = request != 0;
  request = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? kInterrupted : kToldToEnd;
  if (is_second) return FALSE;
  for (int round = 0; round < 100; ++round) {  // five seconds, as long as Windows waits
    CancelSynchronousIo(main_thread);
    Sleep(50);
  }
  return TRUE;
}

}  // namespace

void watch_end_requests() {
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &main_thread, 0, FALSE, DUPLICATE_SAME_ACCESS);
  SetConsoleCtrlHandler(see_control, TRUE);
}

void stop_watching_end_requests() { SetConsoleCtrlHandler(see_control, FALSE); }
#else
namespace {

int wake[2] = {-1, -1};  // a pipe: its end to read is ready once a request came

void see_signal(int signal) {
  const int before = errno;
  request = signal == SIGINT ? kInterrupted : kToldToEnd;
  if (wake[1] >= 0) [[maybe_unused]]
    const ssize_t ignored = write(wake[1], "", 1);
  errno = before;
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void watch_end_requests() {
  if (pipe2(wake, O_CLOEXEC | O_NONBLOCK) != 0) wake[0] = wake[1] = -1;
  handle(SIGINT, see_signal);
  handle(SIGTERM, see_signal);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void stop_watching_end_requests() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

int end_request_descriptor() { return wake[0]; }
#endif

}  // namespace arena::platform
