#pragma once
// Bytes that a snapshot keeps, in pages. Where an earlier snapshot's page holds the same, both have that one page; where little differs,
// the difference is kept. The last to let go of a page frees it. What a page holds never changes while more than one has it.
#include <cstddef>
#include <vector>

namespace arena {

class HeldBytes;

// Belongs, with all that it shares with, to one thread at a time.
class SharedPages {
 public:
  // Of 1.4 MB of a fight, 850 KB lie in pages of 4 KB that something changes in 1000 frames, 640 KB in such of 1 KB, 450 KB in such of
  // 256 bytes, and 290 KB are kept of pages of 4 KB as differences.
  static constexpr std::size_t kPageBytes = 4096;

  SharedPages() = default;
  ~SharedPages() { cut(0); }
  SharedPages(const SharedPages&) = delete;
  SharedPages& operator=(const SharedPages&) = delete;

  std::size_t count() const { return pages_.size(); }
  // These bytes into the pages from a place on, which is at most count(); the last page may be a short one. `earlier` may be null: its
  // pages from its own place on are shared where they hold the same. Pages that stood there are written over where nobody else has them.
  // Gives the place behind.
  std::size_t put(std::size_t place, const void* content, std::size_t bytes, const SharedPages* earlier, std::size_t place_there);
  // The same pages back, from a place on; gives the place behind them.
  std::size_t get(std::size_t place, void* into, std::size_t bytes) const;
  // Lets go of all pages from a place on.
  void cut(std::size_t place);
  void count_held(HeldBytes& into) const;

 private:
  struct Page;
  static void let_go(Page* page);
  static Page* share(const char* content, std::size_t bytes, Page* earlier);
  void put_page(std::size_t place, const char* content, std::size_t bytes, Page* earlier);
  std::vector<Page*> pages_;
};

}  // namespace arena
