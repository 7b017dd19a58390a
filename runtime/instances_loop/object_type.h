#pragma once
// Object types: name, parent, defaults of new instances, and the table of event handlers with inheritance resolved.
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/shape.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/events.h"
#include "runtime/program/functions.h"
#include "runtime/session/state.h"

namespace arena {

class CInstance;

// What the data says of an object type. Events name handlers that the compiled function table must hold.
struct ObjectDefinition {
  std::string name;
  std::int32_t parent = -1, sprite = -1, mask = -1;
  bool visible = true, solid = false, persistent = false;
  std::vector<std::string> events;  // "Create_0", "Collision_oParentEnemy"
};

// An object type that no data names: of tools that come with the program and live in a session beside a game, behind the types of its
// data. Static storage; its handlers are EVENTs like any other's.
class ToolObject {
 public:
  // Events as the data names them.
  ToolObject(const char* name, std::initializer_list<const char*> events);
  ToolObject(const ToolObject&) = delete;
  ToolObject& operator=(const ToolObject&) = delete;
  static std::vector<ObjectDefinition> all();

 private:
  ObjectDefinition definition_;
  const ToolObject* const next_;
};

struct BoundEvent {
  EventKey key;
  const CompiledFunction* function;
  std::int32_t owner;  // the object whose handler it is: this one or an ancestor
};

// All instances that take part in one event, whatever their types, in order of creation. Dead ones leave at the end of the frame.
struct Participant {
  CInstance* instance;
  const BoundEvent* event;  // its type's handler
};
using EventList = std::vector<Participant>;
struct EventSubscription {
  EventList* list;
  const BoundEvent* event;
};

// The instances of a type.
struct Population {
  std::vector<CInstance*> instances;  // of this type and its children, in order of creation, dead ones until the frame's end
  std::int32_t live_count = 0;
  std::size_t typical_row = 0;  // variables that an instance of this type ended up with: room made at once
};

struct ObjectType : Population {
  ObjectDefinition definition;
  std::int32_t index = -1;
  std::vector<std::int32_t> lineage;             // itself, its parent, and so on
  std::vector<BoundEvent> events;                // in order of their keys
  std::vector<EventSubscription> subscriptions;  // one for each event that runs in passes

  const BoundEvent* find_event(EventKey key) const;
  bool descends_from(std::int32_t ancestor) const;
};

// The table of types. Defining replaces all; problems (unknown parents, circles, events without code) are listed, one line each.
class ObjectTypes {
 public:
  ObjectTypes();
  std::vector<std::string> define(std::vector<ObjectDefinition> definitions);
  std::int32_t count() const { return static_cast<std::int32_t>(types_.size()); }
  bool has(std::int32_t index) const { return index >= 0 && index < count(); }
  ObjectType& at(std::int32_t index) {
    ARENA_ASSERT(has(index));
    return *types_[static_cast<std::size_t>(index)];
  }
  std::int32_t find(std::string_view name) const;  // -1: none
  // The number of the alarm event of that name, and the name; a name gets its number when it is first met.
  std::int32_t alarm_number(std::string_view name);
  std::int32_t find_alarm(std::string_view name) const;    // -1: no object has an event for it
  std::string_view alarm_name(std::int32_t number) const;  // "": there is none
  // The list of an event's participants; made on demand.
  EventList& list(EventKey key) { return lists_[key]; }
  std::map<EventKey, EventList>& lists() { return lists_; }

  // Who lives, by type and by event; the types themselves are data. All of it follows from the world's list of instances.
  struct State {
    std::vector<Population> populations;
    std::map<EventKey, EventList> lists;
    void count_held(HeldBytes& into) const;
  };
  void save(State& into) const;
  void load(const State& from);
  void restart() {}
  static constexpr auto fields() {
    return std::tuple(derived("types", &ObjectTypes::types_), derived("lists", &ObjectTypes::lists_),
                      derived("alarm_names", &ObjectTypes::alarm_names_));
  }

 private:
  void bind_events(ObjectType& type, std::vector<std::string>& problems);
  std::vector<std::unique_ptr<ObjectType>> types_;
  std::map<EventKey, EventList> lists_;
  std::vector<std::string> alarm_names_;  // of the data
};

inline ObjectTypes& object_types() { return *session().object_types; }

}  // namespace arena
