#pragma once
// One game: everything that a run may change. What is the same for every game of a process (names that code holds, compiled functions,
// built-ins, messages) is fixed at start-up and shared; all else belongs to a session.
//
//   current session ──> Session ──┬ what running scripts touch at every turn, by value
//                                 └ parts: world, input, containers, sounds, ... one of each kind
//
// A host owns its session and makes it the current one while its game runs (SessionScope); scripts and built-in functions reach it
// through one pointer. Sessions on several threads do not meet; those of one thread take turns.
#include <cstdint>
#include <memory>
#include <vector>

#include "runtime/checks/assert.h"
#include "runtime/memory/block_pool.h"

namespace arena {

class Collector;
class HeldBytes;
class ObjectTypes;
class PropertyObject;
class Session;
class StateVisitor;
class WBObjectBase;
class World;
struct BuiltinEntry;
struct RunningEvent;
struct RValue;
struct ScriptFrame;

namespace detail {
#ifdef _WIN32  // each access of a thread's own variable would be a call there: one current session a process
inline Session* current_session = nullptr;
#else
inline constinit thread_local Session* current_session = nullptr;
#endif
}  // namespace detail

// The session that runs on this thread. There must be one.
inline Session& session() { return *detail::current_session; }

// What a snapshot keeps of one part.
class SavedPart {
 public:
  virtual ~SavedPart() = default;
  // Its memory, about.
  virtual void count_held(HeldBytes& into) const = 0;
};

// One piece of a session. Kinds of parts are objects of static storage; every session has one part of each kind. Those that hold state of
// the game (state.h) are visited, saved and put back; a restart sets all back to what a run begins with.
class SessionPart {
 public:
  virtual ~SessionPart() = default;
  virtual void restart() {}
  virtual void visit(StateVisitor&) {}
  // Null for what is no state of the game. `reused` is an older one of the same part whose memory is wanted again, or null; `earlier`
  // another one, with which it may share what has not changed, or null.
  virtual std::unique_ptr<SavedPart> save(std::unique_ptr<SavedPart> /*reused*/, const SavedPart* /*earlier*/) const { return nullptr; }
  virtual void load(const SavedPart&) {}
  // All parts and the memory are back: what follows from them is made anew.
  virtual void after_load() {}
};

// What stands on what: parts are made in this order, those of a level in order of their names, and end the other way round.
enum class PartLevel : std::uint8_t { kMemory, kHeap, kScripts, kWorld, kServices, kHost };

class PartKind {
 public:
  using Make = std::unique_ptr<SessionPart> (*)();
  PartKind(PartLevel level, const char* name, Make make);
  PartKind(const PartKind&) = delete;
  PartKind& operator=(const PartKind&) = delete;
  const PartLevel level;
  const char* const name;
  const Make make;
  std::size_t place = 0;  // among the parts of a session; fixed before the first session starts
  PartKind* const next;
};

// A growable array whose capacity doubles, starting at 1: the objects into which the current stores write.
struct ContainerStack {
  WBObjectBase** entries = nullptr;
  int count = 0, capacity = 0;
};

// What running scripts touch at every turn and a snapshot keeps.
struct SessionValues {
  std::int64_t last_frame_token = 0;
  std::int64_t owner_token = 1;       // who writes arrays now: a script frame, an object or an outer array, by serial number
  PropertyObject* globals = nullptr;  // made on first use
  double comparison_epsilon = 0.00001;
  double comparison_tolerance = 0.00001 * (1.0 + 1e-9);  // see compare.h
  bool array_counting_is_on = true;
  bool arrays_are_reused = !kStressBuild;
  std::uint32_t collector_mark = 1;
  std::uint32_t next_serial = 1;
  int live_objects = 0, live_strings = 0;
};

class Session : public SessionValues {
 public:
  // Becomes the current session of this thread.
  Session();
  // Frees whatever still lives in it; values must not outlive their session.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Running scripts; nothing of this stands between two frames.
  ScriptFrame* innermost_frame = nullptr;
  int call_depth = 0;  // see frame.h
  ContainerStack containers;
  const BuiltinEntry* current_builtin = nullptr;  // the entry being run, for messages; null when none is
  const RunningEvent* running_event = nullptr;    // the innermost handler

  // For tests: who hears of every call of a built-in function, and a bit set takes that write barrier away.
  void (*builtin_observer)(const BuiltinEntry& entry, std::int32_t argc, const RValue* args) = nullptr;
  std::uint32_t disabled_barriers = 0;

  BlockPool memory;

  // The parts that scripts reach at every turn
  Collector* collector = nullptr;
  World* world = nullptr;
  ObjectTypes* object_types = nullptr;

  // Whether no script runs in it and nobody holds a scope open: what lies between two frames.
  bool is_at_rest() const {
    return innermost_frame == nullptr && call_depth == 0 && containers.count == 0 && current_builtin == nullptr && running_event == nullptr;
  }

  SessionPart& part(const PartKind& kind) const {
    ARENA_ASSERT(kind.place < parts_.size());  // made already, and not ended yet
    return *parts_[kind.place];
  }
  // All of them, in order of making.
  std::size_t part_count() const { return parts_.size(); }
  SessionPart& part_at(std::size_t place) const {
    ARENA_ASSERT(place < parts_.size());
    return *parts_[place];
  }
  void restart_parts();
  // Shows the state of all parts, each as a group of its name.
  void visit(StateVisitor& visitor);

 private:
  std::vector<std::unique_ptr<SessionPart>> parts_;  // in order of making
};

// Makes a session the current one for the life of the scope.
class SessionScope {
 public:
  explicit SessionScope(Session& entered) : left_(detail::current_session) { detail::current_session = &entered; }
  ~SessionScope() { detail::current_session = left_; }
  SessionScope(const SessionScope&) = delete;
  SessionScope& operator=(const SessionScope&) = delete;

 private:
  Session* left_;
};

// A kind of part that holds a T: `const Part<Shapes> part{PartLevel::kMemory, "shapes"};`, and part() is the current session's. It is for
// what is no state of the game (devices, caches, notes of tools); StatePart (state.h) is for what is.
template <class T>
class Part : PartKind {
  struct Holding final : SessionPart {
    T held = T();
    void restart() override {
      if constexpr (requires { held.restart(); }) held.restart();
    }
  };

 public:
  Part(PartLevel of, const char* called) : PartKind(of, called, [] { return std::unique_ptr<SessionPart>(new Holding); }) {}
  T& operator()() const { return static_cast<Holding&>(session().part(*this)).held; }
};

inline void* allocate_block(std::size_t bytes) { return session().memory.allocate(bytes); }
inline void free_block(void* block, std::size_t bytes) { session().memory.free(block, bytes); }
inline std::size_t allocated_bytes() { return session().memory.in_use(); }

}  // namespace arena
