#include "runtime/arrays_structs/collector.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/arrays_structs/weak_ref.h"
#include "runtime/checks/assert.h"
#include "runtime/program/messages.h"
#include "runtime/reports/log.h"
#include "runtime/session/state.h"

namespace arena {
namespace {

constexpr std::size_t kYoungLimit = 512;                      // objects: fewer are left for the next safe point
constexpr std::size_t kMarkBudget = 2000;                     // old objects traced in one slice
constexpr std::size_t kSweepBudget = 4000;                    // old objects looked at in one slice
constexpr std::size_t kOldGrowth = 4096;                      // old objects added before a new cycle starts, and
constexpr std::size_t kOldGrowthDivisor = 4;                  // ... at least this share of those that survived the last one
constexpr std::size_t kDroppedLimit = 20000;                  // dropped references that count as growth
constexpr int kOlderEvery = 8;                                // collections of generation 0 between two of generation 1
constexpr std::size_t kMemoryWarning = std::size_t{1} << 30;  // bytes
constexpr int kOldest = kGenerations - 1;

enum class Phase { kIdle, kMarking, kSweeping };

}  // namespace

// The collector's books. Scripts cannot tell what is in them.
struct CollectorBooks {
  using Objects = std::vector<WBObjectBase*>;
  struct ByGeneration : std::array<Objects, kGenerations> {
    Objects& operator[](int generation) { return at(static_cast<std::size_t>(generation)); }
    const Objects& operator[](int generation) const { return at(static_cast<std::size_t>(generation)); }
  };
  ByGeneration objects, referenced_from_older, remembered;
  ByGeneration counted;  // objects in which strings or arrays stand
  Objects stack;         // marked, not yet traced: of the collection that runs now
  Objects old_stack;     // the same for the old generation, kept between slices
  std::vector<CWeakRef*> weak_references;
  Phase phase = Phase::kIdle;
  std::size_t sweep_read = 0, sweep_write = 0;
  std::size_t old_survivors = 0;
  std::uint64_t minors = 0, majors = 0, dropped = 0, dropped_at_last_cycle = 0;
  bool whole_requested = false;

  static constexpr auto fields() {
    return std::tuple(derived("objects", &CollectorBooks::objects),
                      derived("referenced_from_older", &CollectorBooks::referenced_from_older),
                      derived("remembered", &CollectorBooks::remembered), derived("counted", &CollectorBooks::counted),
                      derived("stack", &CollectorBooks::stack), derived("old_stack", &CollectorBooks::old_stack),
                      derived("weak_references", &CollectorBooks::weak_references), derived("phase", &CollectorBooks::phase),
                      derived("sweep_read", &CollectorBooks::sweep_read), derived("sweep_write", &CollectorBooks::sweep_write),
                      derived("old_survivors", &CollectorBooks::old_survivors), derived("minors", &CollectorBooks::minors),
                      derived("majors", &CollectorBooks::majors), derived("dropped", &CollectorBooks::dropped),
                      derived("dropped_at_last_cycle", &CollectorBooks::dropped_at_last_cycle),
                      derived("whole_requested", &CollectorBooks::whole_requested));
  }
};

class Collector : public CollectorBooks {
 public:
  Collector() { session().collector = this; }
  ~Collector();
  bool checks_thread = kChecksBuild;
  std::size_t warns_above = kMemoryWarning;  // bytes in use
  std::thread::id main_thread = std::this_thread::get_id();

  using State = CollectorBooks;
  void save(State& into) const { into = static_cast<const State&>(*this); }
  void load(const State& from) { static_cast<CollectorBooks&>(*this) = from; }
  void restart() {}
};

namespace {

const StatePart<Collector> collector_part{PartLevel::kHeap, "collector"};
Collector& collector() { return *session().collector; }

WBObjectBase* object_of(const RValue& value) {
  if (value.is_object()) return value.object;
  if (value.is_array() && value.array != nullptr) return value.array->owner;
  return nullptr;
}

// An array of plain numbers leads nowhere.
bool is_leaf(const WBObjectBase* object) { return object->object_kind == ObjectKind::kArray && !object->holds_heap_values; }

// Most objects that die are short-lived arrays: they go without a virtual call.
void destroy(WBObjectBase* object) {
  if (object->object_kind == ObjectKind::kArray) {
    delete static_cast<GCArrayThing*>(object);
  } else {
    delete object;
  }
}

// Marks what is in the generations up to `oldest`.
class Marker final : public ValueVisitor {
 public:
  explicit Marker(int oldest) : ValueVisitor(false), oldest_(oldest), stack_(collector().stack) {}
  void visit(const RValue& value) override {
    if (WBObjectBase* object = object_of(value)) mark(object);
  }
  void mark(WBObjectBase* object) {
    ARENA_ASSERT(object->generation < kGenerations);  // an object at all
    if (object->is_marked || object->generation > oldest_) return;
    object->is_marked = true;
    if (!is_leaf(object)) stack_.push_back(object);
  }
  void drain() {
    while (!stack_.empty()) {
      WBObjectBase* object = stack_.back();
      stack_.pop_back();
      object->visit_values(*this);
    }
  }

 private:
  int oldest_;
  std::vector<WBObjectBase*>& stack_;
};

class OldMarker final : public ValueVisitor {
 public:
  OldMarker() : ValueVisitor(false) {}
  void visit(const RValue& value) override {
    if (WBObjectBase* object = object_of(value)) mark(object);
  }
  static void mark(WBObjectBase* object) {
    if (object->is_marked || object->generation != kOldest) return;
    collector().old_stack.push_back(object);
    object->is_marked = true;
  }
  // Traces at most `budget` objects; true when nothing is left.
  bool trace(std::size_t budget) {
    std::vector<WBObjectBase*>& stack = collector().old_stack;
    for (; budget > 0 && !stack.empty(); --budget) {
      WBObjectBase* object = stack.back();
      stack.pop_back();
      object->visit_values(*this);
    }
    return stack.empty();
  }
};

// After a promotion an object may point at younger ones without a store having said so.
class PromotionVisitor final : public ValueVisitor {
 public:
  explicit PromotionVisitor(WBObjectBase* promoted) : ValueVisitor(false), promoted_(promoted) {}
  void visit(const RValue& value) override {
    if (WBObjectBase* object = object_of(value)) write_barrier(promoted_, object, BarrierSite::kPromotion);
  }

 private:
  WBObjectBase* promoted_;
};

class YoungerChildFinder final : public ValueVisitor {
 public:
  explicit YoungerChildFinder(int generation) : ValueVisitor(false), generation_(generation) {}
  void visit(const RValue& value) override {
    const WBObjectBase* object = object_of(value);
    found = found || (object != nullptr && object->generation <= generation_);
  }
  bool found = false;

 private:
  int generation_;
};

void clear_dead_weak_references(int oldest, int youngest) {
  for (CWeakRef* reference : collector().weak_references) {
    if (reference->target == nullptr || reference->target->generation > oldest || reference->target->generation < youngest) continue;
    if (!reference->target->is_marked) reference->target = nullptr;
  }
}

template <class Predicate>
void keep_only(std::vector<WBObjectBase*>& list, Predicate keep) {
  list.erase(std::remove_if(list.begin(), list.end(), [&](WBObjectBase* object) { return !keep(object); }), list.end());
}

// Remembered containers that are about to die leave the sets; so do those that no longer point at anything so young.
void trim_remembered_sets(int oldest, int youngest, bool look_inside) {
  for (int g = 0; g < kGenerations; ++g) {
    keep_only(collector().remembered[g], [&](WBObjectBase* container) {
      bool keep = container->is_marked || container->generation > oldest || container->generation < youngest;
      if (keep && look_inside && g <= oldest) {
        YoungerChildFinder finder(g);
        container->visit_values(finder);
        keep = finder.found;
      }
      if (!keep) container->remembered_in = static_cast<std::uint8_t>(container->remembered_in & ~(1u << g));
      return keep;
    });
  }
}

// The dead give back their strings and arrays before any of them is destroyed: a dead array may stand in another dead array.
void release_dead_counted(int generation) {
  keep_only(collector().counted[generation], [](WBObjectBase* object) {
    if (!object->is_marked) object->release_counted_values();
    return object->is_marked;
  });
}

void mark_roots(Marker& marker, int oldest) {
  Collector& c = collector();
  Holder::visit_all(marker);
  global_object()->visit_values(marker);
  for (int g = 0; g <= oldest; ++g) {
    for (WBObjectBase* object : c.objects[g]) {
      if (object->is_root) marker.mark(object);
    }
    if (oldest == kOldest) continue;  // everything is traced: only what is really reached counts
    for (WBObjectBase* object : c.referenced_from_older[g]) marker.mark(object);
    for (WBObjectBase* container : c.remembered[g]) container->visit_values(marker);
  }
  marker.drain();
}

// Sweeps one generation at once; survivors of a second collection go to `promoted`.
void sweep(int generation, std::vector<WBObjectBase*>& promoted) {
  std::vector<WBObjectBase*>& list = collector().objects[generation];
  std::size_t kept = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (i + 8 < list.size()) __builtin_prefetch(list[i + 8]);
    WBObjectBase* object = list[i];
    ARENA_ASSERT(object->generation == generation);
    if (!object->is_marked) {
      ARENA_ASSERT(!object->is_root && object->remembered_in == 0);
      destroy(object);
      continue;
    }
    object->is_marked = false;
    if (object->has_survived && generation < kOldest) {
      promoted.push_back(object);
    } else {
      object->has_survived = true;
      list[kept++] = object;
    }
  }
  list.resize(kept);
}

void promote(const std::vector<WBObjectBase*>& promoted) {
  Collector& c = collector();
  for (WBObjectBase* object : promoted) {
    ARENA_ASSERT(object->generation < kOldest && !object->is_marked);
    ++object->generation;
    object->has_survived = false;
    object->is_referenced_from_older = false;
    if (object->holds_counted_values) c.counted[object->generation].push_back(object);
    c.objects[object->generation].push_back(object);
    if (object->generation != kOldest) continue;
    if (c.phase == Phase::kMarking) OldMarker::mark(object);
    if (c.phase == Phase::kSweeping) object->is_marked = true;  // the sweep clears it when it arrives there
  }
  for (WBObjectBase* object : promoted) {
    PromotionVisitor visitor(object);
    object->visit_values(visitor);
  }
}

// Collects the generations up to `oldest` at once.
void collect_generations(int oldest) {
  Collector& c = collector();
  ++c.minors;
  ++session().collector_mark;
  Marker marker(oldest);
  mark_roots(marker, oldest);
  clear_dead_weak_references(oldest, 0);
  trim_remembered_sets(oldest, 0, false);
  for (int g = 0; g <= oldest; ++g) {
    keep_only(c.referenced_from_older[g], [](WBObjectBase* object) { return object->is_marked; });
  }
  for (int g = 0; g <= oldest; ++g) release_dead_counted(g);
  std::vector<WBObjectBase*> promoted;
  for (int g = 0; g <= oldest; ++g) sweep(g, promoted);
  forget_arrays_put_aside();  // they are gone, and so are those that the dying gave back
  promote(promoted);
  for (int g = 0; g <= oldest; ++g) {
    const auto stayed = [g](WBObjectBase* object) { return object->generation == g; };
    keep_only(c.referenced_from_older[g], stayed);
    keep_only(c.counted[g], stayed);
  }
  if (oldest > 0) trim_remembered_sets(oldest, kGenerations, true);
  if (oldest == kOldest) c.old_survivors = c.objects[kOldest].size();
}

void mark_old_roots(OldMarker& marker) {
  Collector& c = collector();
  Holder::visit_all(marker);
  global_object()->visit_values(marker);
  for (int g = 0; g < kOldest; ++g) {
    for (WBObjectBase* object : c.objects[g]) object->visit_values(marker);
  }
  for (WBObjectBase* object : c.objects[kOldest]) {
    if (object->is_root) OldMarker::mark(object);
  }
}

void start_old_cycle() {
  Collector& c = collector();
  ARENA_ASSERT(c.phase == Phase::kIdle && c.old_stack.empty());
  c.phase = Phase::kMarking;
  ++session().collector_mark;
  c.dropped_at_last_cycle = c.dropped;
  OldMarker marker;
  mark_old_roots(marker);
}

// The last step of marking is not interruptible: the roots again, and what they lead to that no barrier saw.
void finish_marking() {
  Collector& c = collector();
  OldMarker marker;
  mark_old_roots(marker);
  marker.trace(SIZE_MAX);
  clear_dead_weak_references(kOldest, kOldest);
  trim_remembered_sets(kOldest, kOldest, false);
  release_dead_counted(kOldest);
  c.phase = Phase::kSweeping;
  c.sweep_read = c.sweep_write = 0;
}

void sweep_old(std::size_t budget) {
  Collector& c = collector();
  std::vector<WBObjectBase*>& list = c.objects[kOldest];
  for (; budget > 0 && c.sweep_read < list.size(); --budget) {
    WBObjectBase* object = list[c.sweep_read++];
    ARENA_ASSERT(c.sweep_write < c.sweep_read && object->generation == kOldest);
    if (object->is_marked) {
      object->is_marked = false;
      list[c.sweep_write++] = object;
    } else {
      ARENA_ASSERT(!object->is_root && object->remembered_in == 0);
      destroy(object);
    }
  }
  if (c.sweep_read < list.size()) return;
  list.resize(c.sweep_write);
  c.old_survivors = list.size();
  c.phase = Phase::kIdle;
  ++c.majors;
}

void advance_old_cycle(std::size_t mark_budget, std::size_t sweep_budget) {
  Collector& c = collector();
  if (c.phase == Phase::kMarking) {
    OldMarker marker;
    if (marker.trace(mark_budget)) finish_marking();
  } else if (c.phase == Phase::kSweeping) {
    sweep_old(sweep_budget);
  }
}

bool old_cycle_is_due() {
  const Collector& c = collector();
  const std::size_t grown = c.objects[kOldest].size() - std::min(c.objects[kOldest].size(), c.old_survivors);
  return grown > std::max(kOldGrowth, c.old_survivors / kOldGrowthDivisor) || c.dropped - c.dropped_at_last_cycle > kDroppedLimit;
}

// Finds a reference to a younger object of which a collection of the younger generations would not know.
class UnknownReferenceFinder final : public ValueVisitor {
 public:
  explicit UnknownReferenceFinder(const WBObjectBase* container) : ValueVisitor(false), container_(container) {}
  void visit(const RValue& value) override {
    const WBObjectBase* object = object_of(value);
    if (object == nullptr || object->generation >= container_->generation) return;
    found = found || !(object->is_referenced_from_older || is_remembered(container_, object->generation));
  }
  bool found = false;

 private:
  const WBObjectBase* container_;
};

// All objects but those that the sweep of the old generation has yet to destroy; sorted by address. `waiting` counts the others.
CollectorBooks::Objects living_objects(std::size_t& waiting) {
  const Collector& c = collector();
  CollectorBooks::Objects living;
  waiting = 0;
  for (int g = 0; g < kGenerations; ++g) {
    const CollectorBooks::Objects& list = c.objects[g];
    const bool is_swept = g == kOldest && c.phase == Phase::kSweeping;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (is_swept && i >= c.sweep_write && i < c.sweep_read) continue;  // a gap
      if (is_swept && i >= c.sweep_read && !list[i]->is_marked) {
        ++waiting;
      } else {
        living.push_back(list[i]);
      }
    }
  }
  std::sort(living.begin(), living.end());
  return living;
}

// Whether the list holds the objects of `of` for which `belongs` holds, each once, and nothing else.
template <class Belongs>
bool holds_exactly(CollectorBooks::Objects list, const CollectorBooks::Objects& of, Belongs belongs) {
  CollectorBooks::Objects expected;
  std::copy_if(of.begin(), of.end(), std::back_inserter(expected), belongs);
  std::sort(list.begin(), list.end());
  return list == expected;
}

}  // namespace

std::string broken_collector_invariant() {
  const Collector& c = collector();
  std::size_t waiting = 0;
  const CollectorBooks::Objects living = living_objects(waiting);
  if (std::adjacent_find(living.begin(), living.end()) != living.end()) return "an object stands in the collector's lists twice";
  if (living.size() + waiting != static_cast<std::size_t>(live_objects())) return "an object is missing in the collector's lists";
  for (int g = 0; g < kGenerations; ++g) {
    const std::string name = " of generation " + std::to_string(g);
    for (std::size_t i = g == kOldest && c.phase == Phase::kSweeping ? c.sweep_read : 0; i < c.objects[g].size(); ++i) {
      if (c.objects[g][i]->generation != g) return "an object of another generation is among those" + name;
    }
    const auto is_referenced = [g](const WBObjectBase* object) { return object->is_referenced_from_older && object->generation == g; };
    if (!holds_exactly(c.referenced_from_older[g], living, is_referenced)) return "the objects referenced from older ones differ" + name;
    const auto remembers = [g](const WBObjectBase* object) { return is_remembered(object, g); };
    if (!holds_exactly(c.remembered[g], living, remembers)) return "the remembered containers differ" + name;
    const auto is_counted = [g](const WBObjectBase* object) { return object->holds_counted_values && object->generation == g; };
    CollectorBooks::Objects counted = c.counted[g];  // some may have given back all that they held
    std::sort(counted.begin(), counted.end());
    const auto is_missing = [&](const WBObjectBase* object) {
      return is_counted(object) && !std::binary_search(counted.begin(), counted.end(), object);
    };
    if (std::any_of(living.begin(), living.end(), is_missing)) return "a holder of strings or arrays is missing" + name;
  }
  for (WBObjectBase* object : living) {
    if (object->is_marked && (object->generation != kOldest || c.phase == Phase::kIdle)) return "a mark was left behind";
    UnknownReferenceFinder finder(object);
    object->visit_values(finder);
    if (finder.found) return "a reference to a younger object is not known";
  }
  if (!c.stack.empty() || (!c.old_stack.empty() && c.phase != Phase::kMarking)) return "something was marked and not traced";
  for (const CWeakRef* reference : c.weak_references) {
    if (reference->target != nullptr && !std::binary_search(living.begin(), living.end(), reference->target))
      return "a weak reference has a dead target";
  }
  return "";
}

// The session ends: nothing is left that could ask for them.
Collector::~Collector() {
  for (std::vector<WBObjectBase*>& list : counted) {
    for (WBObjectBase* object : list) object->release_counted_values();
  }
  forget_arrays_put_aside();
  if (phase == Phase::kSweeping) {  // what the sweep dropped already leaves a gap behind those it kept
    std::vector<WBObjectBase*>& old = objects[kOldest];
    old.erase(old.begin() + static_cast<std::ptrdiff_t>(sweep_write), old.begin() + static_cast<std::ptrdiff_t>(sweep_read));
  }
  for (std::vector<WBObjectBase*>& list : objects) {
    for (WBObjectBase* object : list) destroy(object);
  }
}

void adopt_new_object(WBObjectBase* object) { collector().objects[0].push_back(object); }
void request_collection() { collector().whole_requested = true; }
void set_collector_thread_check(bool on) { collector().checks_thread = on; }

void write_barrier(WBObjectBase* container, WBObjectBase* object, BarrierSite site) {
  ARENA_ASSERT(container->generation < kGenerations && object->generation < kGenerations);
  Collector& c = collector();
  if (c.checks_thread && std::this_thread::get_id() != c.main_thread) log_warning(messages::kStoreOnThread.format);
  if ((session().disabled_barriers >> static_cast<unsigned>(site) & 1) != 0) return;
  if (c.phase == Phase::kMarking && (session().disabled_barriers >> static_cast<unsigned>(BarrierSite::kMarking) & 1) == 0)
    OldMarker::mark(object);
  if (container->generation <= object->generation) return;
  const WorkerLock lock(WorkerLock::kNursery);
  // A list first, its mark afterwards: where memory runs out no mark says what no list knows.
  if (!object->is_referenced_from_older) {
    c.referenced_from_older[object->generation].push_back(object);
    object->is_referenced_from_older = true;
  }
  for (int between = object->generation + 1; between < container->generation; ++between) {
    if ((container->remembered_in >> between & 1) != 0) continue;
    c.remembered[between].push_back(container);
    container->remembered_in = static_cast<std::uint8_t>(container->remembered_in | 1u << between);
  }
}

void note_heap_value_stored(WBObjectBase* container, const RValue& value) {
  ARENA_ASSERT(value.owns_heap());
  container->holds_heap_values = true;
  if (container->holds_counted_values || value.is_object()) return;
  const WorkerLock lock(WorkerLock::kNursery);
  collector().counted[container->generation].push_back(container);
  container->holds_counted_values = true;
}

void reference_dropped(WBObjectBase* container, WBObjectBase* object) {
  if (object == nullptr || container->generation < kOldest || object->generation < kOldest) return;
  ++collector().dropped;
}

bool is_remembered(const WBObjectBase* container, int generation) {
  ARENA_ASSERT(generation >= 0 && generation < kGenerations);
  return (container->remembered_in >> generation & 1) != 0;
}

void collect_everything() {
  ARENA_ASSERT(session().is_at_rest());  // native locals are no roots
  Collector& c = collector();
  c.whole_requested = false;
  while (c.phase != Phase::kIdle) advance_old_cycle(SIZE_MAX, SIZE_MAX);
  collect_generations(kOldest);
  ++c.majors;
}

void set_memory_warning(std::size_t bytes) { collector().warns_above = bytes; }

void collect_at_safe_point() {
  ARENA_ASSERT(session().is_at_rest());
  Collector& c = collector();
  if (allocated_bytes() > c.warns_above) {
    log_warning("the scripts' memory has grown to " + std::to_string(allocated_bytes() >> 20) + " MB");
    while (allocated_bytes() > c.warns_above) c.warns_above *= 2;
  }
  if (kStressBuild || c.whole_requested) {
    collect_everything();
    return;
  }
  if (c.objects[0].size() >= kYoungLimit) collect_generations(c.minors % kOlderEvery == kOlderEvery - 1 ? kOldest - 1 : 0);
  if (c.phase != Phase::kIdle) {
    advance_old_cycle(kMarkBudget, kSweepBudget);
  } else if (old_cycle_is_due()) {
    start_old_cycle();
  }
}

CollectorStatistics collector_statistics() {
  const Collector& c = collector();
  CollectorStatistics result{};
  for (int g = 0; g < kGenerations; ++g) result.objects[g] = c.objects[g].size();
  result.minor_collections = c.minors;
  result.major_collections = c.majors;
  result.dropped_references = c.dropped;
  result.is_marking = c.phase == Phase::kMarking;
  return result;
}

void make_room_for_weak_reference() {
  std::vector<CWeakRef*>& list = collector().weak_references;
  if (list.size() == list.capacity()) list.reserve(std::max<std::size_t>(16, list.size() * 2));
}
void register_weak_reference(CWeakRef* reference) {
  std::vector<CWeakRef*>& list = collector().weak_references;
  ARENA_ASSERT(list.size() < list.capacity());  // room was made
  list.push_back(reference);
}
void forget_weak_reference(CWeakRef* reference) {
  std::vector<CWeakRef*>& list = collector().weak_references;
  const auto place = std::find(list.begin(), list.end(), reference);
  ARENA_ASSERT(place != list.end());
  list.erase(place);
}

}  // namespace arena
