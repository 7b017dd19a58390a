#include "engine/platform/standard_streams.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "engine/platform/end_requests.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace arena::platform {
namespace {

constexpr std::size_t kChunk = 64 << 10;

#ifdef _WIN32
// Bytes read, 0 at the end, below 0 on failure. What waits here is cancelled by an end request.
long read_some(char* into, std::size_t most) { return _read(_fileno(stdin), into, static_cast<unsigned>(most)); }

// Of a console only whole lines can be read: what is typed is there when Enter was pressed.
bool is_readable() {
  const HANDLE input = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdin)));
  DWORD bytes = 0;
  if (GetFileType(input) == FILE_TYPE_PIPE) return !PeekNamedPipe(input, nullptr, 0, nullptr, &bytes, nullptr) || bytes > 0;
  return GetFileType(input) != FILE_TYPE_CHAR || WaitForSingleObject(input, 0) == WAIT_OBJECT_0;
}
#else
// Until the descriptor is ready; false when an end request came first.
bool wait_for(int descriptor, short event) {
  pollfd both[] = {{descriptor, event, 0}, {end_request_descriptor(), POLLIN, 0}};
  while (end_request() == 0) {
    if (poll(both, 2, -1) < 0 && errno != EINTR) return true;  // the read or write itself will tell what is wrong
    if (both[0].revents != 0) return end_request() == 0;
  }
  return false;
}

// Something is there, or the end.
bool is_readable() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, 0) > 0;
}

long read_some(char* into, std::size_t most) {
  for (;;) {
    if (!wait_for(STDIN_FILENO, POLLIN)) return -1;
    const ssize_t got = read(STDIN_FILENO, into, most);
    if (got >= 0 || (errno != EINTR && errno != EAGAIN)) return got;
  }
}
#endif

}  // namespace

#ifdef _WIN32
void hold_standard_streams() {
  for (std::FILE* const stream : {stdin, stdout}) {
    if (_fileno(stream) >= 0) _setmode(_fileno(stream), _O_BINARY);
  }
}
#else
void hold_standard_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // Opened the wrong way round, so that who uses it is told. The first free number is the one that is missing.
    if (fcntl(stream, F_GETFD) < 0) [[maybe_unused]]
      const int held = open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}
#endif

InputLines::Result InputLines::fill() {
  buffer_.resize(kChunk);
  at_ = 0;
  const long got = read_some(buffer_.data(), buffer_.size());
  buffer_.resize(static_cast<std::size_t>(std::max(got, 0L)));
  if (end_request() != 0) return Result::kEndRequest;
  return got < 0 ? Result::kFailed : got == 0 ? Result::kEnd : Result::kLine;
}

InputLines::Result InputLines::next(std::string& line) { return take(line, true); }
InputLines::Result InputLines::next_if_there(std::string& line) { return take(line, false); }

InputLines::Result InputLines::take(std::string& line, bool waits) {
  for (;;) {
    if (at_ == buffer_.size()) {
      if (!waits && !is_readable()) return Result::kNothing;
      const Result result = fill();
      if (result == Result::kEnd && !begun_.empty()) break;
      if (result != Result::kLine) return result;
    }
    const std::size_t end = std::min(buffer_.find('\n', at_), buffer_.size());
    begun_.append(buffer_, at_, std::min(end - at_, longest_ + 1 - begun_.size()));
    at_ = end;
    if (at_ == buffer_.size()) continue;
    ++at_;
    break;
  }
  line = std::exchange(begun_, {});
  return Result::kLine;
}

#ifdef _WIN32
bool write_output(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}
#else
bool write_output(std::string_view text) {
  // As much as a pipe that is ready takes without making the writer wait.
  constexpr std::size_t kReady = 4096;
  while (!text.empty()) {
    if (!wait_for(STDOUT_FILENO, POLLOUT)) return false;
    const ssize_t written = write(STDOUT_FILENO, text.data(), std::min(text.size(), kReady));
    if (written < 0 && errno != EINTR && errno != EAGAIN) return false;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}
#endif

}  // namespace arena::platform
