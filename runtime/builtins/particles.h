#pragma once
// Particles: systems hold them, types say how they look and move. Chance in them never touches the game's.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(part_emit, void(ParticleSystemNumber, ParticleTypeNumber, Whole, In<Whole, 0, 3>, Pixels, Pixels, Pixels, Pixels),
        "system, type, count, shape, x1, y1, x2, y2",
        "Lets particles be born in a box: at its first corner (shape 0), on its diagonal (1), in all of it (2), in its ellipse (3).");
BUILTIN(part_system_clear, void(ParticleSystemNumber), "system", "Takes all particles away.");
BUILTIN(part_system_count, Whole(ParticleSystemNumber), "system", "How many particles live.");
BUILTIN(part_system_create, ParticleSystemNumber(), "", "Makes a system.");
BUILTIN(part_system_destroy, void(ParticleSystemNumber), "system", "Ends a system.");
BUILTIN(part_system_draw, void(ParticleSystemNumber), "system", "Draws the particles.");
BUILTIN(part_system_update, void(ParticleSystemNumber, Number), "system, seconds", "Lets time go on for the particles, at most a second.");
BUILTIN(part_type_create, ParticleTypeNumber(), "", "Makes a type of particles.");
BUILTIN(part_type_set, void(ParticleTypeNumber, Struct), "type, description",
        "Changes a type by the fields of a struct; what it leaves out stays.");

}  // namespace arena::script
