#pragma once
// The reward screen: a weapon and a modifier to choose from. Methods of oLevel1, which stands still meanwhile.
#include "game/names.h"

namespace game {

inline const Variable wave_pause{"wave_pause"}, reward_screen{"reward_screen"};
inline const Variable closeRewardScreen{"closeRewardScreen"}, createReward{"createReward"};

// (level) offers a weapon of that rarity, of any when it is left out.
extern const Method oLevel1_createReward;
extern const Method oLevel1_closeRewardScreen;

}  // namespace game
