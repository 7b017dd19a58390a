#pragma once
// The recordings of tests/golden: runs that are the same today as on the day they were made, on every machine and in every build.
// `tests/golden/write` makes them anew.
#include <string>

#include "engine/recording/recording.h"

namespace arena::test {

recording::Recording golden_recording(const std::string& name);
// Plays it, at most 100 seconds, in a game of this build's data: after each second the parts of the state, the drawing calls and the sounds
// must be those of then, and after each frame all holds that must. Says at which frame and in what the run is another one. Tests have
// scripts of their own, which change what depends on those: tests/golden/verify lets the programs compare all, to the end.
void expect_the_golden_run(const std::string& name);
// The same of any run that a test game played, whole.
void expect_the_same_run(const recording::Recording& recorded, const std::string& name);

}  // namespace arena::test
