// The frame factor that all game logic multiplies by. A single hitch repeats the time of the frame before; a longer stall advances at
// most one frame at the lowest rate.
#include "toolkit/names.h"

namespace game {
namespace {
const Variable minFPS{"minFPS"};
const Variable scale{"scale"};
const Variable dt{"dt"};
const Variable dtPrevious{"dtPrevious"};
const Variable dtRestored{"dtRestored"};
constexpr Real kMicroseconds = 1000000;
}  // namespace
}  // namespace game

EVENT(oSteadyDeltaTime, Create_0) {
  global[dt_steady] = 0;
  global[dt_unsteady] = 0;
  self[minFPS] = 15;
  self[scale] = 1;
  self[dt] = delta_time / kMicroseconds;
  self[dtPrevious] = self[dt];
  self[dtRestored] = false;
}

EVENT(oSteadyDeltaTime, Step_1) {
  self[dtPrevious] = self[dt];
  self[dt] = delta_time / kMicroseconds;
  global[dt_unsteady] = self[dt] * self[scale];

  const Real least = self[minFPS], slowest = 1 / least;
  if (self[dt] > slowest) {
    if (self[dtRestored]) {
      self[dt] = slowest;
    } else {
      self[dt] = self[dtPrevious];
      self[dtRestored] = true;
    }
  } else {
    self[dtRestored] = false;
  }
  global[dt_steady] = self[dt] * self[scale];
}
