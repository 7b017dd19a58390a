#pragma once
// Standard containers that keep what they hold among the session's own blocks, so that an image of the memory has it, too.
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "runtime/session/session.h"

namespace arena {

template <class T>
struct PoolAllocator {
  using value_type = T;
  PoolAllocator() = default;
  template <class U>
  PoolAllocator(const PoolAllocator<U>&) {}
  T* allocate(std::size_t count) { return static_cast<T*>(allocate_block(count * sizeof(T))); }
  void deallocate(T* block, std::size_t count) { free_block(block, count * sizeof(T)); }
  friend bool operator==(const PoolAllocator&, const PoolAllocator&) { return true; }
};

template <class T>
using PooledVector = std::vector<T, PoolAllocator<T>>;
using PooledText = std::basic_string<char, std::char_traits<char>, PoolAllocator<char>>;
template <class Key, class T, class Less = std::less<Key>>
using PooledMap = std::map<Key, T, Less, PoolAllocator<std::pair<const Key, T>>>;
template <class Key, class T>
using PooledIndex = std::unordered_map<Key, T, std::hash<Key>, std::equal_to<Key>, PoolAllocator<std::pair<const Key, T>>>;

}  // namespace arena
