#include "engine/platform/crash_folder.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "engine/files/paths.h"
#include "engine/platform/fixed_text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace arena::platform {
namespace {

using Character = std::filesystem::path::value_type;

constexpr std::size_t kLongestPath = 32768;    // characters
constexpr std::size_t kLogBytes = 65536;       // of log.txt
constexpr std::uintptr_t kMostAttempts = 100;  // other programs that crashed meanwhile
constexpr const char *kReport = "report.txt", *kLog = "log.txt", *kRecording = "run.rec";

// Set up before.
CrashFolder plan;
std::filesystem::path crash_start;        // CRASHES/crash-
std::string shown_start, command_start;   // the same, for people and as the command's beginning
const char* command_quote = "";           // what closes the command's path
std::filesystem::path recording_file;     // empty: none
char log_ring[kLogBytes];                 // the newest line ends before log_end
std::size_t log_end = 0, log_length = 0;  // bytes

// Of a crash.
std::uintptr_t number = 0;
bool is_made = false, is_whole = false, has_recording = false;
Character path[kLongestPath];
char copied[64 * 1024];
FixedText<kLongestPath> command, last_line;

#ifdef _WIN32
constexpr Character kSeparator = L'\\';
class File {
 public:
  static File to_read(const Character* name) {
    return File(
        CreateFileW(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  }
  static File to_write(const Character* name) {
    return File(CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  }
  ~File() {
    if (is_open()) CloseHandle(handle_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  // How many bytes, 0 at the end; -1: it fails.
  std::ptrdiff_t read(char* into, std::size_t bytes) {
    DWORD done = 0;
    return ReadFile(handle_, into, static_cast<DWORD>(bytes), &done, nullptr) != 0 ? static_cast<std::ptrdiff_t>(done) : -1;
  }
  bool write(const char* from, std::size_t bytes) {
    DWORD done = 0;
    return WriteFile(handle_, from, static_cast<DWORD>(bytes), &done, nullptr) != 0 && done == bytes;
  }

 private:
  explicit File(HANDLE handle) : handle_(handle) {}
  HANDLE handle_;
};

enum class Made { kYes, kTaken, kFailed };
Made make_folder(const Character* name) {
  if (CreateDirectoryW(name, nullptr) != 0) return Made::kYes;
  return GetLastError() == ERROR_ALREADY_EXISTS ? Made::kTaken : Made::kFailed;
}
void remove_file(const Character* name) { DeleteFileW(name); }
void remove_folder(const Character* name) { RemoveDirectoryW(name); }
#else
constexpr Character kSeparator = '/';
class File {
 public:
  static File to_read(const Character* name) {
    File opened(open(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat about = {};
    if (opened.is_open() && (fstat(opened.handle_, &about) != 0 || !S_ISREG(about.st_mode))) opened.close_it();
    return opened;
  }
  static File to_write(const Character* name) { return File(open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)); }
  ~File() { close_it(); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  bool is_open() const { return handle_ >= 0; }
  // How many bytes, 0 at the end; -1: it fails.
  std::ptrdiff_t read(char* into, std::size_t bytes) {
    for (;;) {
      const ssize_t done = ::read(handle_, into, bytes);
      if (done >= 0 || errno != EINTR) return done;
    }
  }
  bool write(const char* from, std::size_t bytes) {
    while (bytes > 0) {
      const ssize_t done = ::write(handle_, from, bytes);
      if (done < 0 && errno == EINTR) continue;
      if (done <= 0) return false;
      from += done;
      bytes -= static_cast<std::size_t>(done);
    }
    return true;
  }

 private:
  explicit File(int handle) : handle_(handle) {}
  File(File&& from) noexcept : handle_(std::exchange(from.handle_, -1)) {}
  void close_it() {
    if (is_open()) close(handle_);
    handle_ = -1;
  }
  int handle_;
};

enum class Made { kYes, kTaken, kFailed };
Made make_folder(const Character* name) {
  if (mkdir(name, 0755) == 0) return Made::kYes;
  return errno == EEXIST ? Made::kTaken : Made::kFailed;
}
void remove_file(const Character* name) { unlink(name); }
void remove_folder(const Character* name) { rmdir(name); }
#endif

// The path that begins so and goes on with these characters, in `path`.
class PathText {
 public:
  explicit PathText(const std::filesystem::path& start) { add(start.native().data(), start.native().size()); }
  PathText& operator<<(const char* text) {
    add(text, std::strlen(text));
    return *this;
  }
  PathText& separator() {
    add(&kSeparator, 1);
    return *this;
  }
  const Character* text() const { return path; }

 private:
  template <class From>
  void add(const From* from, std::size_t count) {
    for (std::size_t i = 0; i < count && length_ + 1 < kLongestPath; ++i) path[length_++] = static_cast<Character>(from[i]);
    path[length_] = 0;
  }
  std::size_t length_ = 0;
};

FixedText<24> digits_of(std::uintptr_t value) {
  FixedText<24> digits;
  digits.number(value, 10);
  return digits;
}

// A file of the crash, or, for "", its folder.
const Character* path_of(const char* name) {
  PathText made(crash_start);
  made << digits_of(number).text();
  if (*name != 0) made.separator() << name;
  return made.text();
}

bool write_log() {
  File file = File::to_write(path_of(kLog));
  if (!file.is_open()) return false;
  std::size_t start = log_length < kLogBytes ? 0 : log_end, left = log_length;
  if (left == kLogBytes) {  // what is full begins in the middle of its oldest line, which goes if it is not the only one
    std::size_t cut = 1;
    while (log_ring[(start + cut - 1) % kLogBytes] != '\n') ++cut;
    if (cut < left) {
      start = (start + cut) % kLogBytes;
      left -= cut;
    }
  }
  const std::size_t to_the_edge = std::min(left, kLogBytes - start);
  return file.write(log_ring + start, to_the_edge) && file.write(log_ring, left - to_the_edge);
}

// What is no ordinary file any more, or empty, is no recording.
bool copy_recording() {
  File from = File::to_read(recording_file.c_str());
  if (!from.is_open()) return true;
  std::ptrdiff_t bytes = from.read(copied, sizeof copied);
  if (bytes <= 0) return bytes == 0;
  File to = File::to_write(path_of(kRecording));
  if (!to.is_open()) return false;
  has_recording = true;
  for (; bytes > 0; bytes = from.read(copied, sizeof copied)) {
    if (!to.write(copied, static_cast<std::size_t>(bytes))) return false;
  }
  return bytes == 0;
}

Made make_numbered() {
  make_folder(plan.crashes.c_str());
  Made made = Made::kTaken;
  for (number = plan.number; made == Made::kTaken && number < plan.number + kMostAttempts; ++number) made = make_folder(path_of(""));
  --number;
  return made;
}

}  // namespace

void prepare_crash_folder(CrashFolder how) {
  plan = std::move(how);
  crash_start = plan.crashes / "crash-";
  shown_start = files::utf8_of(crash_start);
  std::string word = files::shell_word(shown_start);
  const bool is_quoted = word != shown_start;
  command_quote = !is_quoted ? "" : word.back() == '"' ? "\"" : "'";
  if (is_quoted) word.pop_back();
  command_start = plan.play + " " + word;
}

void keep_for_crash(std::string_view line) {
  const auto keep = [](std::string_view bytes) {
    for (const char each : bytes) {
      log_ring[log_end] = each;
      log_end = (log_end + 1) % kLogBytes;
    }
    log_length = std::min(kLogBytes, log_length + bytes.size());
  };
  keep(line.size() < kLogBytes ? line : line.substr(line.size() - kLogBytes));
  keep("\n");
}

void record_for_crash(const std::filesystem::path& recording) { recording_file = recording; }

bool make_crash_folder() {
  command.clear();
  is_made = is_whole = has_recording = false;
  if (plan.crashes.empty()) return plan.trouble.empty();
  is_made = make_numbered() == Made::kYes;
  if (!is_made) return false;
  is_whole = write_log();
  if (!recording_file.empty() && !copy_recording()) is_whole = false;
  if (!has_recording) return is_whole;
  command << "To play it up to there: " << command_start.c_str() << digits_of(number).text();
  const char separator[] = {static_cast<char>(kSeparator), 0};
  command << separator << kRecording << command_quote << " " << plan.play_until.c_str() << "\n";
  return is_whole;
}

const char* crash_command() { return command.text(); }

bool write_crash_report(const char* text, std::size_t bytes) {
  if (!is_made) return false;
  File file = File::to_write(path_of(kReport));
  const bool is_written = file.is_open() && file.write(text, bytes);
  is_whole = is_whole && is_written;
  return is_written;
}

const char* finish_crash_folder() {
  last_line.clear();
  if (is_made && !plan.oldest.empty()) {
    for (const char* each : {kReport, kLog, kRecording}) remove_file((PathText(plan.oldest).separator() << each).text());
    remove_folder(plan.oldest.c_str());
  }
  if (is_whole) {
    last_line << (has_recording ? "This report, the end of the log and the recording lie in "
                                : "This report and the end of the log lie in ")
              << shown_start.c_str() << digits_of(number).text() << "\n";
  } else if (!plan.trouble.empty()) {
    last_line << plan.trouble.c_str() << "\n";
  }
  return last_line.text();
}

}  // namespace arena::platform
