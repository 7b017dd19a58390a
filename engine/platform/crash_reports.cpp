// A program that crashed may neither allocate nor lock: everything stands ready before, and the report is put together in a fixed buffer.
#include "engine/platform/crash_reports.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "runtime/reports/frame.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

extern "C" const char __executable_start, _end;  // the linker's
#endif

namespace arena::platform {
namespace {

constexpr int kMostAddresses = 64, kMostScripts = 100;

// Text that fits is kept, the rest falls off.
template <std::size_t kSize>
class FixedText {
 public:
  void clear() { text_[length_ = 0] = 0; }
  FixedText& operator<<(const char* text) {
    const std::size_t added = std::min(std::strlen(text), kSize - 1 - length_);
    std::memcpy(text_ + length_, text, added);
    text_[length_ += added] = 0;
    return *this;
  }
  FixedText& number(std::uintptr_t value, unsigned base) {
    char digits[24] = {};
    char* at = digits + sizeof digits - 1;
    do *--at = "0123456789abcdef"[value % base];
    while ((value /= base) != 0);
    return *this << at;
  }
  const char* text() const { return text_; }
  std::size_t length() const { return length_; }

 private:
  char text_[kSize] = {};
  std::size_t length_ = 0;
};

FixedText<256> heading_text;
FixedText<512> last_words;  // of an exception that nobody caught
FixedText<16384> report;
std::uintptr_t image_start = 0, image_end = 0;

void write_report();  // what there is of it, over what was written before

void begin_report(const char* what) {
  report.clear();
  report << heading_text.text() << "\n" << what << last_words.text() << "\n";
}

void add_address(const void* pointer) {
  const auto address = reinterpret_cast<std::uintptr_t>(pointer);
  const bool is_own = address >= image_start && address < image_end;
  report << (is_own ? "  program+0x" : "  0x");
  report.number(is_own ? address - image_start : address, 16) << "\n";
}

void add_scripts() {
  report << "scripts:\n";
  int count = 0;
  if (detail::current_session == nullptr) return;
  for (const Frame* frame = innermost_frame(); frame != nullptr && count < kMostScripts; frame = frame->previous, ++count) {
    report << "  " << frame->function << " (line ";
    report.number(static_cast<std::uintptr_t>(frame->line), 10) << ")\n";
  }
}

void finish_report(void* const* addresses, int count) {
  report << "addresses:\n";
  for (int i = 0; i < count; ++i) add_address(addresses[i]);
  write_report();  // a damaged stack may crash the walk over the scripts
  add_scripts();
  write_report();
}

[[noreturn]] void end_uncaught() {
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::exception& error) {
    last_words << ": " << error.what();
  } catch (...) {
    last_words << ": an exception of an unknown kind";
  }
  std::abort();
}

#ifdef _WIN32
std::wstring report_path;
std::string dialog_title;  // "": no dialog

const char* name_of(DWORD code) {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION: return "access violation";
    case EXCEPTION_STACK_OVERFLOW: return "stack overflow";
    case EXCEPTION_ILLEGAL_INSTRUCTION: return "illegal instruction";
    case EXCEPTION_INT_DIVIDE_BY_ZERO: return "integer division by zero";
    default: return "fault";
  }
}

void write_to(HANDLE file) {
  DWORD written = 0;
  WriteFile(file, report.text(), static_cast<DWORD>(report.length()), &written, nullptr);
}

void write_report() {
  const HANDLE file =
      CreateFileW(report_path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  write_to(file);
  CloseHandle(file);
}

void finish_and_show() {
  void* addresses[kMostAddresses];
  finish_report(addresses, RtlCaptureStackBackTrace(0, kMostAddresses, addresses, nullptr));
  write_to(GetStdHandle(STD_ERROR_HANDLE));
  if (!dialog_title.empty()) MessageBoxA(nullptr, report.text(), dialog_title.c_str(), MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
}

LONG WINAPI see_fault(EXCEPTION_POINTERS* fault) {
  const EXCEPTION_RECORD& record = *fault->ExceptionRecord;
  begin_report(name_of(record.ExceptionCode));
  report << "at\n";
  add_address(record.ExceptionAddress);
  finish_and_show();
  return EXCEPTION_EXECUTE_HANDLER;  // ends with the fault's code
}

void see_abort(int) {
  begin_report("aborted");
  finish_and_show();
  TerminateProcess(GetCurrentProcess(), 3);  // as the C library would, without its own box
}

void watch(const std::filesystem::path& file, const std::string& title) {
  report_path = file.wstring();
  dialog_title = title;
  const auto* const base = reinterpret_cast<const unsigned char*>(GetModuleHandleW(nullptr));
  const auto* const header = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  image_start = reinterpret_cast<std::uintptr_t>(base);
  image_end = image_start + header->OptionalHeader.SizeOfImage;
  ULONG kept = 64 * 1024;  // for the handler, when the stack is full
  SetThreadStackGuarantee(&kept);
  SetUnhandledExceptionFilter(see_fault);
  std::signal(SIGABRT, see_abort);
}
#else
std::string report_path;
alignas(16) char handler_stack[128 * 1024];  // for when the other one is full

const char* name_of(int signal) {
  switch (signal) {
    case SIGSEGV: return "bad access to memory";
    case SIGBUS: return "bus error";
    case SIGILL: return "illegal instruction";
    case SIGFPE: return "arithmetic fault";
    default: return "aborted";
  }
}

void write_to(int file) {
  for (std::size_t done = 0; done < report.length();) {
    const ssize_t more = write(file, report.text() + done, report.length() - done);
    if (more <= 0) return;
    done += static_cast<std::size_t>(more);
  }
}

void write_report() {
  const int file = open(report_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) return;
  write_to(file);
  close(file);
}

// Runs once: a crash in here ends the program at once, and so does the return.
void see_signal(int signal, siginfo_t*, void*) {
  begin_report(name_of(signal));
  void* addresses[kMostAddresses];
  finish_report(addresses, backtrace(addresses, kMostAddresses));
  write_to(STDERR_FILENO);
  raise(signal);
}

void watch(const std::filesystem::path& file, const std::string&) {
  report_path = file.string();
  image_start = reinterpret_cast<std::uintptr_t>(&__executable_start);
  image_end = reinterpret_cast<std::uintptr_t>(&_end);
  void* unused[1];
  backtrace(unused, 1);  // loads what it needs now
  stack_t stack = {};
  stack.ss_sp = handler_stack;
  stack.ss_size = sizeof handler_stack;
  sigaltstack(&stack, nullptr);
  struct sigaction action = {};
  action.sa_sigaction = see_signal;
  action.sa_flags = static_cast<int>(SA_SIGINFO | SA_ONSTACK | SA_RESETHAND);
  for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) sigaction(signal, &action, nullptr);
}
#endif

}  // namespace

void report_crashes(const std::filesystem::path& file, const std::string& heading, const std::string& dialog_title) {
  heading_text.clear();
  heading_text << heading.c_str();
  watch(file, dialog_title);
  std::set_terminate(end_uncaught);
}

}  // namespace arena::platform
