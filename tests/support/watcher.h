#pragma once
// An object type of the tests that has the events of what is crossed, of window, wheel and named alarms: it writes each down in
// global.seen as "mark:event".
#include "tests/support/probes.h"

namespace arena::test {

inline constexpr int kWatcher = kProbeChild + 1, kOtherWatcher = kWatcher + 1;

// oWatcher, and oOtherWatcher, which has Create, Clean Up and Step alone.
std::vector<ObjectDefinition> watcher_objects();

}  // namespace arena::test
