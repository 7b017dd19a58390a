#pragma once
// Memory for rows, array elements, strings and heap objects: blocks in classes of 16 bytes, recycled through free lists.
// Addresses are stable. Freed blocks are filled with 0xDD in the stress build, so that whoever still reads them is found out.
#include <cstddef>

namespace arena {

#ifdef ARENA_STRESS
inline constexpr bool kStressBuild = true;
#else
inline constexpr bool kStressBuild = false;
#endif

// Never null: out of memory ends the program. Blocks above 1024 bytes come from the system.
void* allocate_block(std::size_t bytes);
// `bytes` is what was asked for. Null is allowed.
void free_block(void* block, std::size_t bytes);
// Bytes handed out and not given back.
std::size_t allocated_bytes();

}  // namespace arena
