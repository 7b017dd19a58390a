#pragma once
// Everything that a gameplay file needs: values and Reals, self[...] and global[...], the macros that define scripts, and the
// functions that compile straight into the code. Services are reached through built-in functions, by name.
#include "runtime/script/define.h"
#include "runtime/script/intrinsics.h"
#include "runtime/script/literals.h"
