#pragma once
// Weapon definitions and the random choice among them.
#include "game/combat/names.h"

namespace game {

// One definition, each of the wanted rarity equally likely; of any when -1 or left out, or when none has it.
extern const Script<Value(Value wanted_rarity)> randomWeapon;

// The frame of the pictures of weapons that shows this definition; a pistol where it is no entry of the table.
int weapon_picture(const Value& definition);

// Writes every field of a struct into another object, in order.
void copy_fields(const Value& from, ObjectSelf to);

}  // namespace game
