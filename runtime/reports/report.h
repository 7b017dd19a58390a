#pragma once
// The runtime's one error routine. A report throws WBKSLException unless reporting is suppressed; then it only sets a flag, and the
// failed operation yields 0, false or its unchanged left operand.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "runtime/program/messages.h"

namespace arena {

class WBKSLException : public std::exception {
 public:
  WBKSLException(std::string message, std::string report, std::string script = "", int line = 0)
      : message_(std::move(message)), report_(std::move(report)), script_(std::move(script)), line_(line) {}
  const char* what() const noexcept override { return message_.c_str(); }
  const std::string& message() const { return message_; }
  // The whole report: heading, message and the call-stack at the moment of the error.
  const std::string& report() const { return report_; }
  // The compiled function that ran, "" outside of all, and its source line; 0 before its first statement.
  const std::string& script() const { return script_; }
  int line() const { return line_; }

 private:
  std::string message_, report_, script_;
  int line_;
};

// While one lives, reports only set `error_happened`.
class ErrorSuppression {
 public:
  ErrorSuppression();
  ~ErrorSuppression();
  ErrorSuppression(const ErrorSuppression&) = delete;
  ErrorSuppression& operator=(const ErrorSuppression&) = delete;
};
bool error_happened();
void clear_error_happened();
std::uint64_t error_count();  // reports so far, suppressed ones included

// What the heading of a report says is running. The frame loop tells; asked only when a report is made.
struct EventDescription {
  std::string event = "<Unknown Event>";
  std::string object;
  int action_number = 1;
};
void set_event_describer(EventDescription (*describe)());

void report_formatted(std::string message);

// Throws WBKSLException, or returns when errors are suppressed.
template <class... Parameters>
[[gnu::cold, gnu::noinline]] void report_error(const Message<Parameters...>& message, std::type_identity_t<Parameters>... values) {
  report_formatted(format_message(message, values...));
}

// Memory ran out while a script ran: the same as report_error, from a reserve that is kept for it, but never returns. std::bad_alloc when
// the reserve does not suffice.
[[noreturn]] void report_out_of_memory();
// Makes the reserve whole again: between frames.
void renew_memory_reserve();

// Runs what scripts call, or a script that the runtime calls. Memory that runs out inside is a report like any other: the frames of those
// who called are still there.
template <class Call>
decltype(auto) with_memory_reported(Call&& call) {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    report_out_of_memory();
  } catch (const std::length_error&) {  // what no memory could hold
    report_out_of_memory();
  }
}

// The report's text for a message, with the frames from the innermost outwards.
std::string build_report(const std::string& message);

}  // namespace arena
