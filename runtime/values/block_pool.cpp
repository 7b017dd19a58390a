#include "runtime/values/block_pool.h"

#include <cstring>
#include <new>

namespace arena::detail {
namespace {

constexpr std::size_t kSlabBytes = 256 * 1024;
constexpr std::size_t kCacheLine = 64;

// Slabs are never given back; each begins with a line that leads to the one before, so that leak checkers find what stands in them.
struct SlabHeader {
  char* previous;
};
char* newest_slab = nullptr;
char* slab = nullptr;
std::size_t slab_left = 0;

void* system_block(std::size_t bytes) { return ::operator new(bytes, std::align_val_t(kCacheLine)); }

void* carve(std::size_t bytes) {
  if (bytes % kCacheLine == 0) {
    const std::size_t skip = reinterpret_cast<std::size_t>(slab) % kCacheLine;
    const std::size_t gap = skip == 0 ? 0 : kCacheLine - skip;
    if (slab_left >= gap) {
      slab += gap;
      slab_left -= gap;
    }
  }
  if (slab_left < bytes) {
    char* fresh = static_cast<char*>(system_block(kSlabBytes));
    reinterpret_cast<SlabHeader*>(fresh)->previous = newest_slab;
    newest_slab = fresh;
    slab = fresh + kCacheLine;
    slab_left = kSlabBytes - kCacheLine;
  }
  char* block = slab;
  slab += bytes;
  slab_left -= bytes;
  return block;
}

}  // namespace

void* allocate_slow(std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  FreeBlock*& head = block_pool.free_lists[rounded <= kLargestPooledBlock ? rounded / kBlockGranule : 0];
  void* block = head;
  if (rounded > kLargestPooledBlock) {
    block = system_block(rounded);
  } else if (head == nullptr) {
    block = carve(rounded == 0 ? kBlockGranule : rounded);
  } else {
    head = head->next;
  }
  block_pool.in_use += rounded;
  return block;
}

void free_slow(void* block, std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  block_pool.in_use -= rounded;
  if (kStressBuild) std::memset(block, 0xDD, rounded);
  if (rounded > kLargestPooledBlock) {
    ::operator delete(block, std::align_val_t(kCacheLine));
    return;
  }
  FreeBlock* freed = static_cast<FreeBlock*>(block);
  freed->next = block_pool.free_lists[rounded / kBlockGranule];
  block_pool.free_lists[rounded / kBlockGranule] = freed;
}

}  // namespace arena::detail
