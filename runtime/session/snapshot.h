#pragma once
// A whole game as it stands between two frames, to be put back into the session that it was taken from: any number of times, in any
// order. What is no state of the game (textures, meshes, devices, caches) is not in it.
#include <cstddef>
#include <memory>
#include <vector>

#include "runtime/session/session.h"

namespace arena {

class Snapshot {
 public:
  // Takes over what an earlier one held: its memory is used again.
  void take(const Session& of);
  // The session must be the one it was taken from.
  void restore(Session& into) const;
  // About so many bytes of memory.
  std::size_t bytes() const { return image_.bytes(); }

 private:
  SessionValues values_;
  BlockPool::Image image_;
  std::vector<std::unique_ptr<SavedPart>> parts_;
};

}  // namespace arena
