#include "runtime/memory/block_pool.h"

#include <cstring>
#include <new>

#include "runtime/checks/assert.h"
#include "runtime/memory/held_bytes.h"

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
  std::uint64_t serial;
  int images;      // that know it
  bool is_in_use;  // in the pool's list

  char* content() { return reinterpret_cast<char*>(this) + kCacheLine; }
  void free_if_forgotten() {
    if (!is_in_use && images == 0) free_system_block(this);
  }
};

// Bytes of a slab in use that were ever handed out.
std::size_t BlockPool::used_of_slab(const Books& books, std::size_t slab) {
  return slab + 1 == books.slabs ? kSlabBytes - books.slab_left : kSlabBytes;
}

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
  LargeBlock* const block = new (system_block(kCacheLine + bytes)) LargeBlock{nullptr, nullptr, bytes, ++large_made_, 0, false};
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
  block.is_in_use = true;
}

void BlockPool::unlink(LargeBlock& block) {
  ARENA_ASSERT(block.is_in_use && (block.previous != nullptr ? block.previous->next : first_large_) == &block);
  (block.previous != nullptr ? block.previous->next : first_large_) = block.next;
  if (block.next != nullptr) block.next->previous = block.previous;
  block.is_in_use = false;
  block.free_if_forgotten();
}

void BlockPool::save(Image& image, const Image* earlier) const {
  ARENA_ASSERT(earlier != &image);
  const SharedPages* const pages_there = earlier != nullptr ? &earlier->pages_ : nullptr;
  image.let_go();
  image.books_ = books_;
  std::size_t place = 0;
  for (std::size_t i = 0; i < books_.slabs; ++i) {
    const bool is_there = earlier != nullptr && i < earlier->books_.slabs;
    place = image.pages_.put(place, slabs_[i], used_of_slab(books_, i), is_there ? pages_there : nullptr, place);
  }
  // Both lists go from the newest to the oldest.
  std::size_t next_there = 0;
  const auto is_newer_there = [&](const LargeBlock& than) {
    return earlier != nullptr && next_there < earlier->large_.size() && earlier->large_[next_there].of->serial > than.serial;
  };
  for (LargeBlock* block = first_large_; block != nullptr; block = block->next) {
    ARENA_ASSERT(block->next == nullptr || block->next->serial < block->serial);
    while (is_newer_there(*block)) ++next_there;
    const bool is_there = earlier != nullptr && next_there < earlier->large_.size() && earlier->large_[next_there].of == block;
    image.large_.push_back({block, place});
    ++block->images;
    place = image.pages_.put(place, block->content(), block->bytes, is_there ? pages_there : nullptr,
                             is_there ? earlier->large_[next_there].place : 0);
  }
  image.pages_.cut(place);
}

void BlockPool::load(const Image& image) {
  ARENA_ASSERT(image.books_.slabs <= slabs_.size());  // this pool's
  books_ = image.books_;
  std::size_t place = 0;
  for (std::size_t i = 0; i < books_.slabs; ++i) place = image.pages_.get(place, slabs_[i], used_of_slab(books_, i));
  while (first_large_ != nullptr) unlink(*first_large_);
  for (auto copy = image.large_.rbegin(); copy != image.large_.rend(); ++copy) {
    image.pages_.get(copy->place, copy->of->content(), copy->of->bytes);
    link(*copy->of);
  }
}

void BlockPool::Image::let_go() {
  for (const Copy& copy : large_) {
    --copy.of->images;
    copy.of->free_if_forgotten();
  }
  large_.clear();
}

// A large block's own place counts, too: it stays when the pool frees the block.
void BlockPool::Image::count_held(HeldBytes& into) const {
  pages_.count_held(into);
  into.add(large_.capacity() * sizeof(Copy));
  for (const Copy& copy : large_) into.add_shared(copy.of, kCacheLine + copy.of->bytes, copy.of->images);
}

}  // namespace arena
