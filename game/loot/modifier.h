#pragma once
// Modifier definitions: random choice among them, and their pictures.
#include "game/names.h"

namespace game {

// One of the definitions themselves, each equally likely; of a category, or of any where none has it.
extern const Script<Value()> randomModifier;
extern const Script<Value(Value category)> randomModifierOf;

// The frame of a modifier's icon that shows it.
int modifier_picture(const Value& definition);

}  // namespace game
