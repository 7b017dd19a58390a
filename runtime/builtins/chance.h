#pragma once
// Chance. All numbers come from the game's one generator, so a seed fixes a run.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(random_get_seed, Number(), "", "The seed last set.");
BUILTIN(random_set_seed, void(Number), "seed", "Starts the generator anew from a seed.");
BUILTIN(randomize, Number(), "", "Starts the generator from the clock, or from the command line's seed, and gives the seed.");

namespace checked {

BUILTIN(choose, Any(Rest<Any>), "values", "One of the values; undefined of none.");
BUILTIN(irandom, Number(Number), "high", "A whole number from 0 to the other, both included.");
BUILTIN(irandom_range, Number(Number, Number), "low, high", "A whole number between two, both included.");
BUILTIN(random, Number(Number), "x", "A number from 0 to below the other.");
BUILTIN(random_range, Number(Number, Number), "low, high", "A number from the first to below the second.");

}  // namespace checked
}  // namespace arena::script
