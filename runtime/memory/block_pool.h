#pragma once
// Memory for rows, array elements, strings and heap objects: blocks in classes of 16 bytes, recycled through free lists.
// Addresses are stable. Freed blocks are filled with 0xDD in the stress build, so that whoever still reads them is found out.
#include <cstddef>

#include "runtime/memory/worker_lock.h"

namespace arena {

#ifdef ARENA_STRESS
inline constexpr bool kStressBuild = true;
#else
inline constexpr bool kStressBuild = false;
#endif

// One session's blocks. Its slabs go back to the system when the pool dies; blocks above 1024 bytes when they are freed.
class BlockPool {
 public:
  static constexpr std::size_t kGranule = 16;
  static constexpr std::size_t kLargestPooled = 1024;

  BlockPool() = default;
  ~BlockPool();
  BlockPool(const BlockPool&) = delete;
  BlockPool& operator=(const BlockPool&) = delete;

  // Never null: throws std::bad_alloc when memory runs out. Blocks of whole cache lines (64 bytes) start at one.
  void* allocate(std::size_t bytes) {
    const std::size_t rounded = (bytes + kGranule - 1) / kGranule * kGranule;
    if (rounded <= kLargestPooled && WorkerLock::registered_workers.load(std::memory_order_relaxed) == 0) [[likely]] {
      FreeBlock*& head = free_lists_[rounded / kGranule];
      if (head != nullptr) [[likely]] {
        in_use_ += rounded;
        FreeBlock* block = head;
        head = block->next;
        return block;
      }
    }
    return allocate_slow(rounded);
  }
  // `bytes` is what was asked for. Null is allowed.
  void free(void* block, std::size_t bytes) {
    if (block == nullptr) return;
    const std::size_t rounded = (bytes + kGranule - 1) / kGranule * kGranule;
    if (!kStressBuild && rounded <= kLargestPooled && WorkerLock::registered_workers.load(std::memory_order_relaxed) == 0) [[likely]] {
      in_use_ -= rounded;
      FreeBlock* freed = static_cast<FreeBlock*>(block);
      freed->next = free_lists_[rounded / kGranule];
      free_lists_[rounded / kGranule] = freed;
      return;
    }
    free_slow(block, rounded);
  }
  // Bytes handed out and not given back.
  std::size_t in_use() const { return in_use_; }

 private:
  struct FreeBlock {
    FreeBlock* next;
  };
  struct SlabHeader;
  void* allocate_slow(std::size_t rounded);
  void free_slow(void* block, std::size_t rounded);
  void* carve(std::size_t bytes);

  FreeBlock* free_lists_[kLargestPooled / kGranule + 1] = {};
  std::size_t in_use_ = 0;
  SlabHeader* newest_slab_ = nullptr;
  char* slab_ = nullptr;  // what is left of the newest one
  std::size_t slab_left_ = 0;
};

}  // namespace arena
