#pragma once
// What snapshots hold of memory, where some of it is shared.
#include <cstddef>
#include <unordered_set>

namespace arena {

// Adds up what snapshots hold.
class HeldBytes {
 public:
  // kOwn: of the one that is asked, what would be free without it. kTogether: of all that are asked, what is shared once.
  enum class Of { kOwn, kTogether };
  explicit HeldBytes(Of of) : of_(of) {}
  void add(std::size_t bytes) { total_ += bytes; }
  // What may have several holders, known by its address.
  void add_shared(const void* what, std::size_t bytes, int holders) {
    if (of_ == Of::kOwn ? holders == 1 : met_.insert(what).second) total_ += bytes;
  }
  std::size_t total() const { return total_; }

 private:
  Of of_;
  std::size_t total_ = 0;
  std::unordered_set<const void*> met_;
};

}  // namespace arena
