#include "runtime/values/block_pool.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "runtime/values/worker_lock.h"

namespace arena {
namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kLargestPooled = 1024;
constexpr std::size_t kSlabBytes = 64 * 1024;

struct FreeBlock {
  FreeBlock* next;
};

struct Pool {
  FreeBlock* free_lists[kLargestPooled / kGranule + 1] = {};
  char* slab = nullptr;
  std::size_t slab_left = 0;
  std::size_t in_use = 0;
};
Pool pool;

void* system_block(std::size_t bytes) {
  void* block = std::malloc(bytes);
  if (block == nullptr) std::abort();
  return block;
}

void* carve(std::size_t bytes) {
  if (pool.slab_left < bytes) {
    pool.slab = static_cast<char*>(system_block(kSlabBytes));
    pool.slab_left = kSlabBytes;
  }
  char* block = pool.slab;
  pool.slab += bytes;
  pool.slab_left -= bytes;
  return block;
}

}  // namespace

void* allocate_block(std::size_t bytes) {
  const WorkerLock lock(WorkerLock::kNursery);
  const std::size_t rounded = (bytes + kGranule - 1) / kGranule * kGranule;
  pool.in_use += rounded;
  if (rounded > kLargestPooled) return system_block(rounded);
  FreeBlock*& head = pool.free_lists[rounded / kGranule];
  if (head == nullptr) return carve(rounded == 0 ? kGranule : rounded);
  FreeBlock* block = head;
  head = block->next;
  return block;
}

void free_block(void* block, std::size_t bytes) {
  if (block == nullptr) return;
  const WorkerLock lock(WorkerLock::kNursery);
  const std::size_t rounded = (bytes + kGranule - 1) / kGranule * kGranule;
  pool.in_use -= rounded;
  if (kStressBuild) std::memset(block, 0xDD, rounded);
  if (rounded > kLargestPooled) {
    std::free(block);
    return;
  }
  FreeBlock* freed = static_cast<FreeBlock*>(block);
  freed->next = pool.free_lists[rounded / kGranule];
  pool.free_lists[rounded / kGranule] = freed;
}

std::size_t allocated_bytes() { return pool.in_use; }

}  // namespace arena
