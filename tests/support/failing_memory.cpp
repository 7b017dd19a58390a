#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <new>

namespace arena::test {
namespace {

thread_local int left = -1;  // allocations until one fails; -1: none does
thread_local bool failed = false;
thread_local int counted = 0;

}  // namespace

FailingMemory::FailingMemory(int allowed) {
  left = allowed;
  failed = false;
  counted = 0;
}
FailingMemory::~FailingMemory() { stop(); }
void FailingMemory::stop() { left = -1; }
bool FailingMemory::has_failed() const { return failed; }
int FailingMemory::asked() const { return counted; }

#ifdef _WIN32
bool can_fail_allocations() { return false; }
#else
bool can_fail_allocations() { return true; }

namespace {

void* allocate(std::size_t bytes, std::size_t alignment) {
  if (left >= 0) {
    ++counted;
    if (left-- == 0) {
      failed = true;
      return nullptr;
    }
  }
  return std::aligned_alloc(alignment, (bytes + alignment) / alignment * alignment);
}
void* allocate_or_throw(std::size_t bytes, std::size_t alignment) {
  if (void* const block = allocate(bytes, alignment)) return block;
  throw std::bad_alloc();
}

}  // namespace
#endif

}  // namespace arena::test

#ifndef _WIN32
using arena::test::allocate;
using arena::test::allocate_or_throw;
constexpr std::size_t kUsual = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

void* operator new(std::size_t bytes) { return allocate_or_throw(bytes, kUsual); }
void* operator new[](std::size_t bytes) { return allocate_or_throw(bytes, kUsual); }
void* operator new(std::size_t bytes, std::align_val_t alignment) { return allocate_or_throw(bytes, static_cast<std::size_t>(alignment)); }
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return allocate_or_throw(bytes, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return allocate(bytes, kUsual); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return allocate(bytes, kUsual); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }
#endif
