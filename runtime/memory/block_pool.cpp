#include "runtime/memory/block_pool.h"

#include <cstring>
#include <new>

namespace arena {
namespace {

constexpr std::size_t kSlabBytes = 256 * 1024;
constexpr std::size_t kCacheLine = 64;

void* system_block(std::size_t bytes) { return ::operator new(bytes, std::align_val_t(kCacheLine)); }

}  // namespace

// Each slab begins with a line that leads to the one before.
struct BlockPool::SlabHeader {
  SlabHeader* previous;
};

BlockPool::~BlockPool() {
  while (newest_slab_ != nullptr) {
    SlabHeader* const slab = newest_slab_;
    newest_slab_ = slab->previous;
    ::operator delete(slab, std::align_val_t(kCacheLine));
  }
}

void* BlockPool::carve(std::size_t bytes) {
  if (bytes % kCacheLine == 0) {
    const std::size_t skip = reinterpret_cast<std::size_t>(slab_) % kCacheLine;
    const std::size_t gap = skip == 0 ? 0 : kCacheLine - skip;
    if (slab_left_ >= gap) {
      slab_ += gap;
      slab_left_ -= gap;
    }
  }
  if (slab_left_ < bytes) {
    SlabHeader* const fresh = static_cast<SlabHeader*>(system_block(kSlabBytes));
    fresh->previous = newest_slab_;
    newest_slab_ = fresh;
    slab_ = reinterpret_cast<char*>(fresh) + kCacheLine;
    slab_left_ = kSlabBytes - kCacheLine;
  }
  char* block = slab_;
  slab_ += bytes;
  slab_left_ -= bytes;
  return block;
}

void* BlockPool::allocate_slow(std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  FreeBlock*& head = free_lists_[rounded <= kLargestPooled ? rounded / kGranule : 0];
  void* block = head;
  if (rounded > kLargestPooled) {
    block = system_block(rounded);
  } else if (head == nullptr) {
    block = carve(rounded == 0 ? kGranule : rounded);
  } else {
    head = head->next;
  }
  in_use_ += rounded;
  return block;
}

void BlockPool::free_slow(void* block, std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  in_use_ -= rounded;
  if (kStressBuild) std::memset(block, 0xDD, rounded);
  if (rounded > kLargestPooled) {
    ::operator delete(block, std::align_val_t(kCacheLine));
    return;
  }
  FreeBlock* freed = static_cast<FreeBlock*>(block);
  freed->next = free_lists_[rounded / kGranule];
  free_lists_[rounded / kGranule] = freed;
}

}  // namespace arena
