#pragma once
// Writing the slots of objects, arrays and holders: what outlives the native stack, and what the collector must hear of.
#include "runtime/values/value.h"

namespace arena {

// Copies payload, flags and kind and references what is copied; an object or array runs the collector's write barrier against the
// current container. `dest` is taken as raw memory: what it held is not released.
void add_ref_copy(RValue& dest, const RValue& source);
// The one way to write a slot: releases the old content, references the new one. Self-assignment does nothing.
void assign(RValue& dest, const RValue& source);

}  // namespace arena
