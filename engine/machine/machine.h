#pragma once
// What a script may ask of the machine besides its window: the date, the time zone, the player's language, the environment, the
// arguments of the program. Every answer goes through answer_from_outside, so that a replay needs no machine.
//
// The silent form, for headless runs and tests: it is 2000-01-01 00:00 UTC when the run begins and game time goes on from there, the zone
// is UTC, the language en-US, the environment is empty, and nothing can be opened.
#include <cstdint>
#include <string>
#include <vector>

namespace arena::machine {

class Machine {
 public:
  virtual ~Machine() = default;
  virtual std::int64_t now_microseconds() const = 0;  // since 1970-01-01 00:00 UTC
  // Seconds that local time is ahead of UTC at that moment.
  virtual std::int32_t zone_offset(std::int64_t utc_seconds) const = 0;
  virtual std::string locale() const = 0;                              // "de-DE", "en"; "": not known
  virtual std::string environment(const std::string& name) const = 0;  // UTF-8; "": not there
  // Shows the address in the player's browser; false when that fails. It is one of http or https.
  virtual bool open_address(const std::string& address) const = 0;
};

// What the scripts of the current session reach; null: the silent form. Not owned.
void use_machine(const Machine* machine);
// What stood behind -- on the command line.
void set_arguments(std::vector<std::string> arguments);

// Of the machine in use, answered from outside; date_builtins and machine_builtins ask these.
double ask_now();                                  // seconds since 1970-01-01 00:00 UTC
std::int32_t ask_zone_offset(double utc_seconds);  // asked once for each quarter of an hour that a script looks at

}  // namespace arena::machine
