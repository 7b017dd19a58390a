#pragma once
// A whole game as it stands between two frames, to be put back into the session that it was taken from: any number of times, in any
// order. What is no state of the game (textures, meshes, devices, caches) is not in it.
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "runtime/session/session.h"

namespace arena {

class Snapshot {
 public:
  // Takes over what it held before: its memory is used again. What has not changed since an earlier snapshot of the same session is shared
  // with that one, which may go, or be taken anew, at any time.
  void take(const Session& of, const Snapshot* earlier = nullptr);
  // The session must be the one it was taken from.
  void restore(Session& into) const;
  // About so many bytes of memory are its own: free without it. What it shares with others is not among them.
  std::size_t bytes() const;
  // And so many several hold together, what they share counted once.
  static std::size_t bytes_of(std::span<const Snapshot* const> all);

 private:
  void count_held(HeldBytes& into) const;
  SessionValues values_;
  BlockPool::Image image_;
  std::vector<std::unique_ptr<SavedPart>> parts_;
};

}  // namespace arena
