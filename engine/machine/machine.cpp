#include "engine/machine/machine.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>

#include "engine/machine/machine_in_use.h"
#include "runtime/calendar/calendar.h"
#include "runtime/input/outside.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/session/state.h"

namespace arena::machine {
namespace {

class SilentMachine final : public Machine {
 public:
  std::int64_t now_microseconds() const override {
    return static_cast<std::int64_t>(calendar::moment_of({2000, 1, 1})) * 1'000'000 + game_clock().total_microseconds;
  }
  std::int32_t zone_offset(std::int64_t) const override { return 0; }
  std::string locale() const override { return "en-US"; }
  std::string environment(const std::string&) const override { return ""; }
  bool open_address(const std::string&) const override { return false; }
};

const Part<MachineInUse> used{PartLevel::kServices, "machine"};

struct ZoneOffset {
  std::int64_t quarter = 0;  // of an hour, since 1970
  std::int32_t seconds = 0;
  static constexpr auto fields() { return std::tuple(field("quarter", &ZoneOffset::quarter), field("seconds", &ZoneOffset::seconds)); }
};
// What the machine has said: as long as the game runs it says no other.
struct Zone {
  std::vector<ZoneOffset> known;  // the oldest first
  void visit_content(StateVisitor& visitor) {
    if (known.empty()) return;
    visitor.name("known");
    visit_state(visitor, known);
  }
  static constexpr auto fields() { return std::tuple(derived("known", &Zone::known)); }
};
const StatePart<Zone> zone{PartLevel::kServices, "time zone"};

constexpr std::size_t kMostKnown = 64;
constexpr double kQuarter = 900;               // seconds: the clocks change at no other times
constexpr std::int32_t kFurthestZone = 86400;  // seconds: no zone is a day ahead
constexpr double kFurthest = 4e11;             // seconds: beyond the years that the calendar knows

}  // namespace

MachineInUse& machine_in_use() { return used(); }

const Machine& in_use() {
  static const SilentMachine silent;
  return used().machine != nullptr ? *used().machine : silent;
}

void use_machine(const Machine* machine) { used().machine = machine; }
void set_arguments(std::vector<std::string> arguments) { used().arguments = std::move(arguments); }

double ask_now() {
  const std::string answer = answer_from_outside([] { return std::to_string(in_use().now_microseconds()); });
  return static_cast<double>(std::strtoll(answer.c_str(), nullptr, 10)) / 1e6;
}

std::int32_t ask_zone_offset(double utc_seconds) {
  const double orderly = std::isnan(utc_seconds) ? 0 : std::clamp(utc_seconds, -kFurthest, kFurthest);
  const std::int64_t quarter = static_cast<std::int64_t>(std::floor(orderly / kQuarter));
  std::vector<ZoneOffset>& known = zone().known;
  const auto found = std::find_if(known.begin(), known.end(), [&](const ZoneOffset& each) { return each.quarter == quarter; });
  if (found != known.end()) return found->seconds;
  const std::string answer =
      answer_from_outside([&] { return std::to_string(in_use().zone_offset(quarter * static_cast<std::int64_t>(kQuarter))); });
  const long seconds = std::strtol(answer.c_str(), nullptr, 10);
  if (known.size() == kMostKnown) known.erase(known.begin());
  known.push_back({quarter, static_cast<std::int32_t>(std::clamp<long>(seconds, -kFurthestZone, kFurthestZone))});
  return known.back().seconds;
}

}  // namespace arena::machine
