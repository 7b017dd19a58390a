#include "runtime/memory/shared_pages.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <new>

#include "runtime/checks/assert.h"
#include "runtime/memory/held_bytes.h"

namespace arena {

namespace {

constexpr std::size_t kGranule = 16, kGranules = SharedPages::kPageBytes / kGranule;
constexpr std::size_t kMostChanged = kGranules / 2;  // more of them are kept as a page of their own

// How a page differs from another one: a bit for each granule, then those that are others.
struct Difference {
  std::uint64_t bits[kGranules / 64] = {};
  char granules[kMostChanged * kGranule];
  std::size_t count = 0;

  std::size_t bytes() const { return sizeof bits + count * kGranule; }
  // False where too much differs.
  bool find(const char* content, const char* base) {
    for (std::size_t i = 0; i < kGranules; ++i) {
      if (std::memcmp(content + i * kGranule, base + i * kGranule, kGranule) == 0) continue;
      if (count == kMostChanged) return false;
      bits[i / 64] |= std::uint64_t{1} << i % 64;
      std::memcpy(granules + count++ * kGranule, content + i * kGranule, kGranule);
    }
    return true;
  }
};

}  // namespace

// What it keeps stands behind it: its content or, with a base, how it differs from that page, which is a whole one.
struct SharedPages::Page {
  std::size_t bytes, kept;
  Page* base;
  int holders;  // pages that it is the base of are among them

  static Page* make(std::size_t bytes, std::size_t kept, Page* base) {
    if (base != nullptr) ++base->holders;
    return new (::operator new(sizeof(Page) + kept)) Page{bytes, kept, base, 1};
  }
  char* content() { return reinterpret_cast<char*>(this + 1); }
  void read(char* into) {
    std::memcpy(into, base != nullptr ? base->content() : content(), bytes);
    if (base == nullptr) return;
    std::uint64_t bits[kGranules / 64];
    std::memcpy(bits, content(), sizeof bits);
    const char* changed = content() + sizeof bits;
    for (std::size_t word = 0; word < kGranules / 64; ++word) {
      for (; bits[word] != 0; bits[word] &= bits[word] - 1, changed += kGranule) {
        std::memcpy(into + (word * 64 + static_cast<std::size_t>(std::countr_zero(bits[word]))) * kGranule, changed, kGranule);
      }
    }
  }
};

void SharedPages::let_go(Page* page) {
  while (page != nullptr) {
    ARENA_ASSERT(page->holders > 0);
    if (--page->holders > 0) return;
    Page* const base = page->base;
    ::operator delete(page);
    page = base;
  }
}

// The earlier page with one holder more, or a page that keeps the difference; null where neither would do.
SharedPages::Page* SharedPages::share(const char* content, std::size_t bytes, Page* earlier) {
  if (earlier == nullptr || earlier->bytes != bytes) return nullptr;
  Page* const whole = earlier->base != nullptr ? earlier->base : earlier;
  const bool is_whole_one = std::memcmp(content, whole->content(), bytes) == 0;
  if (is_whole_one || bytes != kPageBytes) {
    if (is_whole_one) ++whole->holders;
    return is_whole_one ? whole : nullptr;
  }
  Difference difference;
  if (!difference.find(content, whole->content())) return nullptr;
  const auto is_kept_by = [&](Page* page) {
    return page->base != nullptr && page->kept == difference.bytes() &&
           std::memcmp(page->content(), difference.bits, sizeof difference.bits) == 0 &&
           std::memcmp(page->content() + sizeof difference.bits, difference.granules, difference.count * kGranule) == 0;
  };
  if (is_kept_by(earlier)) {
    ++earlier->holders;
    return earlier;
  }
  Page* const made = Page::make(bytes, difference.bytes(), whole);
  std::memcpy(made->content(), difference.bits, sizeof difference.bits);
  std::memcpy(made->content() + sizeof difference.bits, difference.granules, difference.count * kGranule);
  return made;
}

void SharedPages::put_page(std::size_t place, const char* content, std::size_t bytes, Page* earlier) {
  Page*& page = pages_[place];
  Page* const shared = share(content, bytes, earlier);
  if (shared == nullptr && page != nullptr && page->holders == 1 && page->base == nullptr && page->bytes == bytes) {
    std::memcpy(page->content(), content, bytes);
    return;
  }
  Page* const fresh = shared != nullptr ? shared : Page::make(bytes, bytes, nullptr);
  if (shared == nullptr) std::memcpy(fresh->content(), content, bytes);
  let_go(page);
  page = fresh;
}

std::size_t SharedPages::put(std::size_t place, const void* content, std::size_t bytes, const SharedPages* earlier,
                             std::size_t place_there) {
  ARENA_ASSERT(place <= pages_.size());
  const std::size_t end = place + (bytes + kPageBytes - 1) / kPageBytes;
  if (end > pages_.size()) pages_.resize(end);
  for (const char* rest = static_cast<const char*>(content); place < end; ++place, ++place_there, rest += kPageBytes) {
    Page* const there = earlier != nullptr && place_there < earlier->pages_.size() ? earlier->pages_[place_there] : nullptr;
    const std::size_t size = std::min(kPageBytes, bytes);
    put_page(place, rest, size, there);
    bytes -= size;
  }
  return end;
}

std::size_t SharedPages::get(std::size_t place, void* into, std::size_t bytes) const {
  for (char* rest = static_cast<char*>(into); bytes > 0; ++place) {
    ARENA_ASSERT(place < pages_.size() && pages_[place]->bytes == std::min(kPageBytes, bytes));
    pages_[place]->read(rest);
    rest += pages_[place]->bytes;
    bytes -= pages_[place]->bytes;
  }
  return place;
}

void SharedPages::cut(std::size_t place) {
  for (std::size_t i = place; i < pages_.size(); ++i) let_go(pages_[i]);
  pages_.resize(std::min(place, pages_.size()));
}

void SharedPages::count_held(HeldBytes& into) const {
  into.add(pages_.capacity() * sizeof(Page*));
  for (const Page* const page : pages_) {
    into.add_shared(page, sizeof(Page) + page->kept, page->holders);
    // A base that nobody else has goes with the page.
    const Page* const base = page->base;
    if (base != nullptr) into.add_shared(base, sizeof(Page) + base->kept, page->holders == 1 ? base->holders : page->holders);
  }
}

}  // namespace arena
