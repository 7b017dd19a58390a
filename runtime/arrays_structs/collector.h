#pragma once
// The generational, non-moving collector. It runs at safe points only, between frames, when no compiled function is on the stack: so
// native locals are never roots. Roots are the live instances, the global object and the holders.
//
//   generation 0  new objects; what survives a second collection moves on
//   generation 1  survivors, collected with every eighth collection of generation 0
//   generation 2  old; marked and swept in slices budgeted in objects, so that a run never depends on the machine
#include <cstddef>
#include <cstdint>
#include <string>

#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/object.h"

namespace arena {

inline constexpr int kGenerations = 3;

// Every place that runs the barrier, so that a test can take each away in turn.
enum class BarrierSite : std::uint8_t { kAssignObject, kAssignArray, kArrayMade, kArrayCopied, kBoundSelf, kPromotion, kMarking, kCount };

// A reference to `object` is stored into `container`.
void write_barrier(WBObjectBase* container, WBObjectBase* object, BarrierSite site);
// A string, array or object value stands in `container` now.
void note_heap_value_stored(WBObjectBase* container, const RValue& value);
// A slot of `container` no longer refers to `object`: the old generation is worth looking at sooner.
void reference_dropped(WBObjectBase* container, WBObjectBase* object);
void adopt_new_object(WBObjectBase* object);

// Does a bounded share of the work. Call it between frames, with no compiled function on the stack.
void collect_at_safe_point();
// A whole collection of every generation, at once. Same condition.
void collect_everything();
// Asks for a whole collection at the next safe point: what scripts may call.
void request_collection();

struct CollectorStatistics {
  std::size_t objects[kGenerations];
  std::uint64_t minor_collections, major_collections, dropped_references;
  bool is_marking;  // a cycle of the old generation is between two slices of its marking
};
CollectorStatistics collector_statistics();
// For tests, between two frames: looks through the books and every living object. What does not hold, or "".
std::string broken_collector_invariant();

// While on, a store from another thread than the main one logs a warning; the store proceeds. On from the start in debug builds and in
// those with tests.
void set_collector_thread_check(bool on);

// A frame may allocate as much as it likes, but past this many bytes in use (1 GB unless told otherwise), and past each doubling, the next
// safe point logs a warning.
void set_memory_warning(std::size_t bytes);

bool is_remembered(const WBObjectBase* container, int generation);

class CWeakRef;
// Before a weak reference is made: registering it then takes no memory, so that none stands in the collector's lists half made.
void make_room_for_weak_reference();
void register_weak_reference(CWeakRef* reference);
void forget_weak_reference(CWeakRef* reference);

}  // namespace arena
