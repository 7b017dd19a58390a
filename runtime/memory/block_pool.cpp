#include "runtime/memory/block_pool.h"

#include <cstring>
#include <new>

#include "runtime/checks/assert.h"

namespace arena {
namespace {

constexpr std::size_t kSlabBytes = std::size_t{256} * 1024;
constexpr std::size_t kCacheLine = 64;

void* system_block(std::size_t bytes) { return ::operator new(bytes, std::align_val_t(kCacheLine)); }
void free_system_block(void* block) { ::operator delete(block, std::align_val_t(kCacheLine)); }

}  // namespace

// Stands in the cache line before a large block. The block lives as long as the pool hands it out or an image knows it.
struct BlockPool::LargeBlock {
  LargeBlock *previous, *next;
  std::size_t bytes;
  int references;

  char* content() { return reinterpret_cast<char*>(this) + kCacheLine; }
  void let_go() {
    if (--references == 0) free_system_block(this);
  }
};

BlockPool::~BlockPool() {
  for (char* const slab : slabs_) free_system_block(slab);
  while (first_large_ != nullptr) unlink(*first_large_);
}

void* BlockPool::carve(std::size_t bytes) {
  ARENA_ASSERT(bytes <= kLargestPooled && books_.slab_left <= kSlabBytes && books_.slabs <= slabs_.size());
  const auto at_now = [&] { return kSlabBytes - books_.slab_left; };
  if (bytes % kCacheLine == 0) {
    const std::size_t skip = at_now() % kCacheLine, gap = skip == 0 ? 0 : kCacheLine - skip;
    if (books_.slab_left >= gap) books_.slab_left -= gap;
  }
  if (books_.slab_left < bytes) {
    if (books_.slabs == slabs_.size()) {
      slabs_.reserve(slabs_.size() + 1);
      slabs_.push_back(static_cast<char*>(system_block(kSlabBytes)));
    }
    ++books_.slabs;
    books_.slab_left = kSlabBytes;
  }
  char* const block = slabs_[books_.slabs - 1] + at_now();
  books_.slab_left -= bytes;
  return block;
}

void* BlockPool::allocate_slow(std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  FreeBlock*& head = books_.free_lists[rounded <= kLargestPooled ? rounded / kGranule : 0];
  void* block = head;
  if (rounded > kLargestPooled) {
    block = allocate_large(rounded);
  } else if (head == nullptr) {
    block = carve(rounded == 0 ? kGranule : rounded);
#ifdef ARENA_CHECKS
    static_cast<FreeBlock*>(block)->seal = 0;  // whatever stood there once
#endif
  } else {
    head = head->next;
    open(static_cast<FreeBlock*>(block));
  }
  books_.in_use += rounded;
  return block;
}

void BlockPool::free_slow(void* block, std::size_t rounded) {
  const WorkerLock lock(WorkerLock::kNursery);
  ARENA_ASSERT(rounded <= books_.in_use);
  books_.in_use -= rounded;
  if (rounded > kLargestPooled) {
    if (kStressBuild) std::memset(block, 0xDD, rounded);
    free_large(block, rounded);
    return;
  }
  FreeBlock* freed = static_cast<FreeBlock*>(block);
  close(freed);
  if (kStressBuild && rounded > sizeof(FreeBlock)) std::memset(freed + 1, 0xDD, rounded - sizeof(FreeBlock));
  freed->next = books_.free_lists[rounded / kGranule];
  books_.free_lists[rounded / kGranule] = freed;
}

void* BlockPool::allocate_large(std::size_t bytes) {
  static_assert(sizeof(LargeBlock) <= kCacheLine);
  LargeBlock* const block = new (system_block(kCacheLine + bytes)) LargeBlock{nullptr, nullptr, bytes, 0};
  link(*block);
  return block->content();
}

void BlockPool::free_large(void* block, [[maybe_unused]] std::size_t bytes) {
  LargeBlock& freed = *reinterpret_cast<LargeBlock*>(static_cast<char*>(block) - kCacheLine);
  ARENA_ASSERT(freed.bytes == bytes);
  unlink(freed);
}

void BlockPool::link(LargeBlock& block) {
  block.previous = nullptr;
  block.next = first_large_;
  if (first_large_ != nullptr) first_large_->previous = &block;
  first_large_ = &block;
  ++block.references;
}

void BlockPool::unlink(LargeBlock& block) {
  ARENA_ASSERT(block.references > 0 && (block.previous != nullptr ? block.previous->next : first_large_) == &block);
  (block.previous != nullptr ? block.previous->next : first_large_) = block.next;
  if (block.next != nullptr) block.next->previous = block.previous;
  block.let_go();
}

void BlockPool::save(Image& image) const {
  image.let_go();
  image.books_ = books_;
  while (image.slabs_.size() < books_.slabs) image.slabs_.emplace_back(new char[kSlabBytes]);
  for (std::size_t i = 0; i < books_.slabs; ++i) {
    std::memcpy(image.slabs_[i].get(), slabs_[i], i + 1 == books_.slabs ? kSlabBytes - books_.slab_left : kSlabBytes);
  }
  for (LargeBlock* block = first_large_; block != nullptr; block = block->next) {
    image.large_.push_back({block, std::unique_ptr<char[]>(new char[block->bytes])});
    std::memcpy(image.large_.back().content.get(), block->content(), block->bytes);
    ++block->references;
  }
}

void BlockPool::load(const Image& image) {
  ARENA_ASSERT(image.books_.slabs <= slabs_.size() && image.books_.slabs <= image.slabs_.size());  // this pool's
  books_ = image.books_;
  for (std::size_t i = 0; i < books_.slabs; ++i) {
    std::memcpy(slabs_[i], image.slabs_[i].get(), i + 1 == books_.slabs ? kSlabBytes - books_.slab_left : kSlabBytes);
  }
  while (first_large_ != nullptr) unlink(*first_large_);
  for (auto copy = image.large_.rbegin(); copy != image.large_.rend(); ++copy) {
    std::memcpy(copy->of->content(), copy->content.get(), copy->of->bytes);
    link(*copy->of);
  }
}

void BlockPool::Image::let_go() {
  for (const Copy& copy : large_) copy.of->let_go();
  large_.clear();
}

std::size_t BlockPool::Image::bytes() const {
  std::size_t total = slabs_.size() * kSlabBytes;
  for (const Copy& copy : large_) total += copy.of->bytes;
  return total;
}

}  // namespace arena
