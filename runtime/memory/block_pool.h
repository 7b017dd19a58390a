#pragma once
// Memory for rows, array elements, strings and heap objects: blocks in classes of 16 bytes, recycled through free lists.
// Addresses are stable. Freed blocks are filled with 0xDD in the stress build, so that whoever still reads them is found out.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "runtime/checks/assert.h"
#include "runtime/memory/shared_pages.h"
#include "runtime/memory/worker_lock.h"

namespace arena {

#ifdef ARENA_STRESS
inline constexpr bool kStressBuild = true;
#else
inline constexpr bool kStressBuild = false;
#endif

// One session's blocks. Its slabs go back to the system when the pool dies; blocks above 1024 bytes when they are freed and no image
// knows them any more.
class BlockPool {
 public:
  class Image;

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
      FreeBlock*& head = books_.free_lists[rounded / kGranule];
      if (head != nullptr) [[likely]] {
        books_.in_use += rounded;
        FreeBlock* block = head;
        head = block->next;
        open(block);
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
      ARENA_ASSERT(rounded <= books_.in_use);
      books_.in_use -= rounded;
      FreeBlock* freed = static_cast<FreeBlock*>(block);
      close(freed);
      freed->next = books_.free_lists[rounded / kGranule];
      books_.free_lists[rounded / kGranule] = freed;
      return;
    }
    free_slow(block, rounded);
  }
  // Bytes handed out and not given back.
  std::size_t in_use() const { return books_.in_use; }

  // Every block as it is now, into an image whose memory is used again. Only this pool takes it back, with every block at its address.
  // What has not changed since an earlier image of this pool is shared with that; null: with none.
  void save(Image& image, const Image* earlier = nullptr) const;
  void load(const Image& image);

 private:
  struct FreeBlock {
    FreeBlock* next;
#ifdef ARENA_CHECKS
    std::uintptr_t seal;
#endif
  };
  static_assert(sizeof(FreeBlock) <= kGranule);
  struct LargeBlock;
  // What is handed out, and from where: part of an image.
  struct Books {
    FreeBlock* free_lists[kLargestPooled / kGranule + 1] = {};
    std::size_t in_use = 0;
    std::size_t slabs = 0;      // those in use; the rest of the pool's are as good as new
    std::size_t slab_left = 0;  // bytes of the newest one
  };
  // Where asserts are on a free block bears a seal: a second free, or whoever still writes into it, is found out.
  static void close([[maybe_unused]] FreeBlock* freed) {
#ifdef ARENA_CHECKS
    ARENA_ASSERT(freed->seal != seal_of(freed));  // not free already
    freed->seal = seal_of(freed);
#endif
  }
  static void open([[maybe_unused]] FreeBlock* taken) {
#ifdef ARENA_CHECKS
    ARENA_ASSERT(taken->seal == seal_of(taken));  // nobody wrote into it
    taken->seal = 0;
#endif
  }
  static std::uintptr_t seal_of(const FreeBlock* block) { return reinterpret_cast<std::uintptr_t>(block) ^ 0x5EA1ED5Eu; }
  void* allocate_slow(std::size_t rounded);
  void free_slow(void* block, std::size_t rounded);
  static std::size_t used_of_slab(const Books& books, std::size_t slab);
  void* carve(std::size_t bytes);
  void* allocate_large(std::size_t bytes);
  void free_large(void* block, std::size_t bytes);
  void link(LargeBlock& block);
  void unlink(LargeBlock& block);

  Books books_;
  std::vector<char*> slabs_;
  LargeBlock* first_large_ = nullptr;  // the list goes from the newest to the oldest
  std::uint64_t large_made_ = 0;       // ever: their serial numbers
};

class BlockPool::Image {
 public:
  Image() = default;
  ~Image() { let_go(); }
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;
  void count_held(HeldBytes& into) const;

 private:
  friend class BlockPool;
  void let_go();
  struct Copy {
    LargeBlock* of;
    std::size_t place;  // of its first page
  };
  Books books_;
  SharedPages pages_;  // of the slabs, then of the large blocks
  std::vector<Copy> large_;
};

}  // namespace arena
