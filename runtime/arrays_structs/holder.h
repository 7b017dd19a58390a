#pragma once
// What keeps values beyond a frame and is no heap object: lists, grids, maps, the statics of scripts, the console's last value.
#include <cstddef>
#include <cstdint>

#include "runtime/arrays_structs/object.h"

namespace arena {

// A value as its bits, for what keeps values outside of the session's blocks: saving them counts no reference, setting them drops none.
struct ValueBits {
  std::int64_t payload = 0;
  std::uint32_t flags = 0, kind = 0;
};
inline ValueBits bits_of(const RValue& value) { return {value.i64, value.flags, value.kind_bits}; }
inline void set_bits(RValue& value, const ValueBits& bits) {
  value.i64 = bits.payload;
  value.flags = bits.flags;
  value.kind_bits = bits.kind;
}

class Holder {
 public:
  // What a tool keeps (the console's last value) lives like the rest but is no part of the game.
  enum class Keeps : std::uint8_t { kGameState, kToolState };
  explicit Holder(Keeps keeps = Keeps::kGameState);
  virtual ~Holder();
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  virtual void visit_values(ValueVisitor& visitor) = 0;
  // Gives up what it keeps.
  virtual void let_go() {}

  // Those that scripts make stand among the session's own blocks.
  static void* operator new(std::size_t bytes);
  static void operator delete(void* holder, std::size_t bytes);

  // Every living holder, in order of creation. Those of the runtime itself are made before the first game, so that a process's second
  // game meets the same order.
  static void visit_all(ValueVisitor& visitor);
  // Tools let go of their values: a snapshot has none of them, and a restored game does not know them.
  static void let_go_of_tool_values();

 private:
  Keeps keeps_;
};

}  // namespace arena
