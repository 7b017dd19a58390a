#pragma once
// The names that scripts of several folders share.
#include "arena/assets.h"
#include "toolkit/names.h"

namespace game {

// Motion
inline const Variable h_speed{"h_speed"};
inline const Variable v_speed{"v_speed"};
inline const Variable move_speed{"move_speed"};
inline const Variable knockback_x{"knockback_x"};
inline const Variable knockback_y{"knockback_y"};
inline const Variable knockback_friction{"knockback_friction"};
inline const Variable lifetime{"lifetime"};
inline const Variable life_timer{"life_timer"};

// Fighting
inline const Variable blood_color{"blood_color"};
inline const Variable hp{"hp"};
inline const Variable max_hp{"max_hp"};
inline const Variable damage{"damage"};
inline const Variable knockback{"knockback"};
inline const Variable faction{"faction"};
inline const Variable friendly_fire{"friendly_fire"};
inline const Variable owner{"owner"};
inline const Variable gun{"gun"};
inline const Variable rarity{"rarity"};
inline const Variable weapon_stats{"weapon_stats"};
inline const Variable modifiers{"modifiers"};
inline const Variable modifier{"modifier"};
inline const Variable weapons{"weapons"};
inline const Variable name{"name"};
inline const Variable description{"description"};
inline const Variable icon{"icon"};
inline const Variable takeDamage{"takeDamage"};
inline const Variable onDeath{"onDeath"};
inline const Variable onPickup{"onPickup"};
inline const Variable updateWeaponUI{"updateWeaponUI"};
inline const Variable dropGun{"dropGun"};
inline const Variable takeGun{"takeGun"};

// Globals
inline const Variable statistics{"statistics"};
inline const Variable kills{"kills"};
inline const Variable snd_Ref{"snd_Ref"};
inline const Variable snd_Max{"snd_Max"};
inline const Variable grid{"grid"};
inline const Variable game_ui{"game_ui"};
inline const Variable game_ui_style{"game_ui_style"};
inline const Variable music_player{"music_player"};
inline const Variable decals{"decals"};

}  // namespace game
