#include "runtime/reports/report.h"

#include <memory>

#include "runtime/program/functions.h"
#include "runtime/reports/frame.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

constexpr std::size_t kMemoryReserve = 262144;  // bytes: a report with its frames, and the handlers' way out

struct Errors {
  int suppressions = 0;
  bool happened = false;
  std::uint64_t reports = 0;
  std::unique_ptr<char[]> memory_reserve{new char[kMemoryReserve]};
};
const Part<Errors> errors{PartLevel::kScripts, "errors"};

EventDescription (*describe_event)() = nullptr;  // set once, at start-up
// The first place is for a prefix that a host may want; this runtime has none.
constexpr Message<Text, std::int32_t, Text, Text, Text> kHeading{"%sERROR in action number %d\nof %s for object %s:\n%s"};

[[noreturn]] void throw_report(std::string message) {
  std::string report = build_report(message);
  const Frame* const frame = innermost_frame();
  throw WBKSLException(std::move(message), std::move(report), frame != nullptr ? frame->function : "", frame != nullptr ? frame->line : 0);
}

// Counts the report; true when it only sets the flag.
bool is_suppressed() {
  Errors& counted = errors();
  ++counted.reports;
  if (counted.suppressions > 0) counted.happened = true;
  return counted.suppressions > 0;
}

}  // namespace

ErrorSuppression::ErrorSuppression() { ++errors().suppressions; }
ErrorSuppression::~ErrorSuppression() { --errors().suppressions; }
bool error_happened() { return errors().happened; }
void clear_error_happened() { errors().happened = false; }
std::uint64_t error_count() { return errors().reports; }

void set_event_describer(EventDescription (*describe)()) { describe_event = describe; }

std::string build_report(const std::string& message) {
  const EventDescription running = describe_event != nullptr ? describe_event() : EventDescription();
  std::string report(43, '_');
  report += "\n" + format_message(kHeading, "", running.action_number, running.event, running.object, message) + "\n";
  for (const Frame* frame = innermost_frame(); frame != nullptr; frame = frame->previous) {
    if (frame->line > 0) {
      report += " at " + std::string(frame->function) + " (line " + std::to_string(frame->line) + ") - ";
      report += source_file_of(frame->function);
      report += "\n";
    } else {
      report += "at " + std::string(frame->function) + "\n";
    }
  }
  report.append(92, '#');
  report += "\n";
  return report;
}

void report_formatted(std::string message) {
  if (!is_suppressed()) throw_report(std::move(message));
}

// Nothing can go on from here, so that suppressing reports does not help.
void report_too_deep() {
  is_suppressed();
  throw_report(format_message(messages::kTooDeep, kDeepestCalls));
}

void renew_memory_reserve() {
  if (errors().memory_reserve == nullptr) errors().memory_reserve.reset(new (std::nothrow) char[kMemoryReserve]);
}

void report_out_of_memory() {
  is_suppressed();
  errors().memory_reserve.reset();
  throw_report(format_message(messages::kOutOfMemory));
}

}  // namespace arena
