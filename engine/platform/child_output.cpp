#include "engine/platform/child_output.h"

#include <utility>

#include "engine/files/paths.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

extern char** environ;
#endif

namespace arena::platform {

#ifdef _WIN32
namespace {

// As programs there take their command line apart again: quotes around each word, backslashes doubled before a quote.
std::wstring quoted(const std::wstring& word) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') text.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    text += c;
  }
  text.append(backslashes, L'\\');
  return text + L"\"";
}

}  // namespace

struct ChildOutput::Process {
  HANDLE process = nullptr, output = nullptr;
  ~Process() {
    TerminateProcess(process, 1);
    CloseHandle(process);
    CloseHandle(output);
  }
};

std::unique_ptr<ChildOutput> ChildOutput::start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE from = nullptr, to = nullptr;
  if (!CreatePipe(&from, &to, &inherited, 0)) return nullptr;
  SetHandleInformation(from, HANDLE_FLAG_INHERIT, 0);
  std::wstring line = quoted(program.wstring());
  for (const std::string& each : arguments) line += L" " + quoted(files::path_of(each).wstring());
  STARTUPINFOW how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdOutput = to;
  how.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION made{};
  const bool is_started =
      CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &how, &made);
  CloseHandle(to);
  if (!is_started) {
    CloseHandle(from);
    return nullptr;
  }
  CloseHandle(made.hThread);
  auto process = std::make_unique<Process>();
  process->process = made.hProcess;
  process->output = from;
  return std::unique_ptr<ChildOutput>(new ChildOutput(std::move(process)));
}

bool ChildOutput::read_more() {
  char bytes[4096];
  DWORD got = 0;
  if (!ReadFile(process_->output, bytes, sizeof bytes, &got, nullptr) || got == 0) return false;
  buffer_.erase(0, at_).append(bytes, got);
  at_ = 0;
  return true;
}

int ChildOutput::wait() {
  WaitForSingleObject(process_->process, INFINITE);
  DWORD status = 0;
  return GetExitCodeProcess(process_->process, &status) ? static_cast<int>(status) : -1;
}
#else
struct ChildOutput::Process {
  pid_t process = -1;  // -1: it was waited for
  int output = -1;
  ~Process() {
    close(output);
    if (process < 0) return;
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
  }
};

std::unique_ptr<ChildOutput> ChildOutput::start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return nullptr;
  std::vector<std::string> words = {program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& each : words) pointers.push_back(each.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  pid_t child = -1;
  const int failure = posix_spawn(&child, words[0].c_str(), &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (failure != 0) {
    close(ends[0]);
    return nullptr;
  }
  auto process = std::make_unique<Process>();
  process->process = child;
  process->output = ends[0];
  return std::unique_ptr<ChildOutput>(new ChildOutput(std::move(process)));
}

bool ChildOutput::read_more() {
  char bytes[4096];
  ssize_t got = 0;
  do got = read(process_->output, bytes, sizeof bytes);
  while (got < 0 && errno == EINTR);
  if (got <= 0) return false;
  buffer_.erase(0, at_).append(bytes, static_cast<std::size_t>(got));
  at_ = 0;
  return true;
}

int ChildOutput::wait() {
  int status = 0;
  while (waitpid(process_->process, &status, 0) < 0 && errno == EINTR) {
  }
  process_->process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

ChildOutput::ChildOutput(std::unique_ptr<Process> process) : process_(std::move(process)) {}
ChildOutput::~ChildOutput() = default;

bool ChildOutput::next(std::string& line) {
  std::size_t end = buffer_.find('\n', at_);
  while (end == std::string::npos && read_more()) end = buffer_.find('\n', at_);
  line.assign(buffer_, at_, end == std::string::npos ? end : end - at_);
  at_ = end == std::string::npos ? buffer_.size() : end + 1;
  return end != std::string::npos || !line.empty();
}

std::string ChildOutput::rest() {
  while (read_more()) {
  }
  return buffer_.substr(std::exchange(at_, buffer_.size()));
}

}  // namespace arena::platform
