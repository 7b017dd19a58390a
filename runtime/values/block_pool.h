#pragma once
// Memory for rows, array elements, strings and heap objects: blocks in classes of 16 bytes, recycled through free lists.
// Addresses are stable. Freed blocks are filled with 0xDD in the stress build, so that whoever still reads them is found out.
#include <cstddef>

#include "runtime/values/worker_lock.h"

namespace arena {

#ifdef ARENA_STRESS
inline constexpr bool kStressBuild = true;
#else
inline constexpr bool kStressBuild = false;
#endif

inline constexpr std::size_t kBlockGranule = 16;
inline constexpr std::size_t kLargestPooledBlock = 1024;

namespace detail {
struct FreeBlock {
  FreeBlock* next;
};
struct BlockPool {
  FreeBlock* free_lists[kLargestPooledBlock / kBlockGranule + 1] = {};
  std::size_t in_use = 0;
};
inline BlockPool block_pool;
void* allocate_slow(std::size_t rounded);
void free_slow(void* block, std::size_t rounded);
}  // namespace detail

// Never null: throws std::bad_alloc when memory runs out. Blocks above 1024 bytes come from the system. Blocks of whole cache lines (64
// bytes) start at one.
inline void* allocate_block(std::size_t bytes) {
  const std::size_t rounded = (bytes + kBlockGranule - 1) / kBlockGranule * kBlockGranule;
  if (rounded <= kLargestPooledBlock && WorkerLock::registered_workers.load(std::memory_order_relaxed) == 0) [[likely]] {
    detail::FreeBlock*& head = detail::block_pool.free_lists[rounded / kBlockGranule];
    if (head != nullptr) [[likely]] {
      detail::block_pool.in_use += rounded;
      detail::FreeBlock* block = head;
      head = block->next;
      return block;
    }
  }
  return detail::allocate_slow(rounded);
}
// `bytes` is what was asked for. Null is allowed.
inline void free_block(void* block, std::size_t bytes) {
  if (block == nullptr) return;
  const std::size_t rounded = (bytes + kBlockGranule - 1) / kBlockGranule * kBlockGranule;
  if (!kStressBuild && rounded <= kLargestPooledBlock && WorkerLock::registered_workers.load(std::memory_order_relaxed) == 0) [[likely]] {
    detail::block_pool.in_use -= rounded;
    detail::FreeBlock* freed = static_cast<detail::FreeBlock*>(block);
    freed->next = detail::block_pool.free_lists[rounded / kBlockGranule];
    detail::block_pool.free_lists[rounded / kBlockGranule] = freed;
    return;
  }
  detail::free_slow(block, rounded);
}
// Bytes handed out and not given back.
inline std::size_t allocated_bytes() { return detail::block_pool.in_use; }

}  // namespace arena
