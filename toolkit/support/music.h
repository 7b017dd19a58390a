#pragma once
// A playlist: tracks one after another, in order or shuffled. The owner calls update() every step, so that the next track starts when one
// ends. Volumes are gains from 0 to 1.
#include "toolkit/names.h"

namespace game {

extern const Constructor VoliMusic;

}  // namespace game
