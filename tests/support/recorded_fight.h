#pragma once
// A recorded run of the arena, for tests of what plays it again.
#include <memory>
#include <string>

#include "engine/host/game.h"
#include "engine/recording/recording.h"

namespace arena::test {

// A game of the test's data.
std::unique_ptr<host::Game> start_recorded(host::GameOptions options);
// The file of ten seconds in the arena with somebody at the keys.
std::string record_a_fight();
// What it reads back as.
recording::Recording read_fight(const std::string& path);

}  // namespace arena::test
