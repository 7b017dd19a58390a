#pragma once
// What a search found, as a range: for (const auto& [place, target] : found) { ... }
#include "game/names.h"

namespace game {

// A list for the collision functions that lives as long as this. Walked in its order; who is gone when his turn comes is left out.
class FoundInstances {
 public:
  FoundInstances() : list(ds_list_create()) {}
  ~FoundInstances() { ds_list_destroy(list); }
  FoundInstances(const FoundInstances&) = delete;
  FoundInstances& operator=(const FoundInstances&) = delete;
  const Value list;

  struct Entry {
    Real place;  // in the list, those who are gone counted in
    Value instance;
  };
  struct End {};
  class Iterator {
   public:
    explicit Iterator(const Value& list) : list_(list) {}
    bool operator!=(End) {
      for (; now_.place < ds_list_size(list_); now_.place += 1) {
        now_.instance = ds_list_find_value(list_, now_.place);
        if (instance_exists(now_.instance)) return true;
      }
      return false;
    }
    void operator++() { now_.place += 1; }
    const Entry& operator*() const { return now_; }

   private:
    const Value& list_;
    Entry now_{0, Value()};
  };
  Iterator begin() const { return Iterator(list); }
  End end() const { return {}; }
};

}  // namespace game
