// A program that crashed may neither allocate nor lock: everything stands ready before, and the report is put together in a fixed buffer.
#include "engine/platform/crash_reports.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <utility>

#include "engine/files/paths.h"
#include "engine/platform/fixed_text.h"
#include "runtime/reports/frame.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <execinfo.h>
#include <unistd.h>

extern "C" const char __executable_start, _end;  // the linker's
#endif

namespace arena::platform {
namespace {

constexpr int kMostAddresses = 64, kMostScripts = 100;
constexpr std::size_t kLongestReport = 32768;  // bytes

FixedText<256> heading_text;
FixedText<512> last_words;  // of an exception that nobody caught
FixedText<kLongestReport> report;
std::uintptr_t image_start = 0, image_end = 0;

// The folder is made right away; the report comes into it as soon as there is something of it.
void begin_report(const char* what) {
  report.clear();
  report << heading_text.text() << "\n" << what << last_words.text() << "\n";
  make_crash_folder();
  report << crash_command();
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
  write_crash_report(report.text(), report.length());  // a damaged stack may crash the walk over the scripts
  add_scripts();
  write_crash_report(report.text(), report.length());
  report << finish_crash_folder();
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
std::wstring dialog_title;  // "": no dialog
wchar_t shown_report[kLongestReport];

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

void finish_and_show() {
  void* addresses[kMostAddresses];
  finish_report(addresses, RtlCaptureStackBackTrace(0, kMostAddresses, addresses, nullptr));
  write_to(GetStdHandle(STD_ERROR_HANDLE));
  if (dialog_title.empty()) return;
  MultiByteToWideChar(CP_UTF8, 0, report.text(), -1, shown_report, static_cast<int>(kLongestReport));
  MessageBoxW(nullptr, shown_report, dialog_title.c_str(), MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
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

void watch(const std::string& title) {
  dialog_title = files::path_of(title).wstring();
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
alignas(16) char handler_stack[128 * 1024];      // for when the other one is full

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

// Runs once: a crash in here ends the program at once, and so does the return.
void see_signal(int signal, siginfo_t*, void*) {
  begin_report(name_of(signal));
  void* addresses[kMostAddresses];
  finish_report(addresses, backtrace(addresses, kMostAddresses));
  write_to(STDERR_FILENO);
  raise(signal);
}

void watch(const std::string&) {
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

void report_crashes(CrashFolder folder, const std::string& heading, const std::string& dialog_title) {
  heading_text.clear();
  heading_text << heading.c_str();
  prepare_crash_folder(std::move(folder));
  watch(dialog_title);
  std::set_terminate(end_uncaught);
}

std::string leave_crash(const std::string& text) {
  make_crash_folder();
  const std::string written = text + crash_command();
  write_crash_report(written.data(), written.size());
  return written + finish_crash_folder();
}

}  // namespace arena::platform
