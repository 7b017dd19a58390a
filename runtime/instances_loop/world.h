#pragma once
// The world that scripts live in: rooms and layers, the instances alive, and what happens to them at the frame's seams.
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/object_type.h"

namespace arena {

// How a background covers its area: once over all of it, again and again, or along its edges.
enum class BackgroundFill : std::uint8_t { kStretched, kTiled, kEdges };

struct Layer {
  std::int32_t id = -1;
  std::string name;
  double depth = 0;
  bool visible = true;
  std::int32_t background_sprite = -1;  // -1: no background on this layer
  BackgroundFill background_fill = BackgroundFill::kStretched;
  std::uint32_t background_color = 0xFFFFFF;
  struct Area {
    double x = 0, y = 0, width = 0, height = 0;
    static constexpr auto fields() {
      return std::tuple(field("x", &Area::x), field("y", &Area::y), field("width", &Area::width), field("height", &Area::height));
    }
  } background_area;  // room pixels; without a width: the whole room

  static constexpr auto fields() {
    return std::tuple(field("id", &Layer::id), field("name", &Layer::name), field("depth", &Layer::depth),
                      field("visible", &Layer::visible), field("background_sprite", &Layer::background_sprite),
                      field("background_fill", &Layer::background_fill), field("background_color", &Layer::background_color),
                      field("background_area", &Layer::background_area));
  }
};

struct RoomInstance {
  std::int32_t object = -1, layer = -1;  // layer: place in the room's list
  double x = 0, y = 0, angle = 0, xscale = 1, yscale = 1;
  static constexpr auto fields() {
    return std::tuple(field("object", &RoomInstance::object), field("layer", &RoomInstance::layer), field("x", &RoomInstance::x),
                      field("y", &RoomInstance::y), field("angle", &RoomInstance::angle), field("xscale", &RoomInstance::xscale),
                      field("yscale", &RoomInstance::yscale));
  }
};

struct RoomDefinition {
  std::string name;
  std::int32_t width = 0, height = 0;
  std::int32_t view_width = 1920, view_height = 1080;
  std::uint32_t color = 0;
  bool persistent = false;
  std::vector<Layer> layers;
  std::vector<RoomInstance> instances;  // in order of creation
  static constexpr auto fields() {
    return std::tuple(field("name", &RoomDefinition::name), field("width", &RoomDefinition::width),
                      field("height", &RoomDefinition::height), field("view_width", &RoomDefinition::view_width),
                      field("view_height", &RoomDefinition::view_height), field("color", &RoomDefinition::color),
                      field("persistent", &RoomDefinition::persistent), field("layers", &RoomDefinition::layers),
                      field("instances", &RoomDefinition::instances));
  }
};

// A persistent room that was left, as it was then. Its instances sleep meanwhile (CInstance::kept_in).
struct KeptRoom {
  double width = 0, height = 0;
  std::vector<Layer> layers;
  Cameras cameras;
  std::vector<std::int32_t> asleep;  // ids of those who slept there anyway
  static constexpr auto fields() {
    return std::tuple(field("width", &KeptRoom::width), field("height", &KeptRoom::height), field("layers", &KeptRoom::layers),
                      field("cameras", &KeptRoom::cameras), field("asleep", &KeptRoom::asleep));
  }
};

// Another object that an instance is to be of, from the end of the frame on.
struct ObjectChange {
  std::int32_t instance = 0, object = 0;
  bool runs_events = true;
  static constexpr auto fields() {
    return std::tuple(field("instance", &ObjectChange::instance), field("object", &ObjectChange::object),
                      field("runs_events", &ObjectChange::runs_events));
  }
};

// What a frame may change of the world. Instances stand on the heap; the lists point at them.
struct WorldState {
  std::int32_t room = -1;  // the current one; -1 before the first
  std::int32_t first_room = 0;
  double room_width = 0, room_height = 0;
  std::vector<Layer> layers;      // of the current room, in no order
  bool ended = false;             // game_end was called: no frame runs any more
  std::int32_t room_wanted = -1;  // room_goto takes effect at the end of the frame
  bool restart_wanted = false;
  std::int32_t next_layer_id = 0;

  std::int32_t next_id = 100000;
  std::vector<CInstance*> instances;  // alive, in order of creation; the dead until the frame's end
  std::int32_t alive = 0;
  bool has_dead = false;
  std::map<double, std::vector<CInstance*>, std::greater<>> depth_order;

  // What most games have none of, and what is shown only where it is.
  std::vector<CInstance*> sleeping;                  // in order of creation
  std::vector<std::int32_t> waking;                  // ids of sleepers that take part from the next frame on
  std::vector<ObjectChange> changes;                 // carried out at the end of the frame
  std::map<std::int32_t, KeptRoom> kept_rooms;       // by their numbers
  std::map<std::int32_t, RoomDefinition> own_rooms;  // made or changed by scripts, in place of those of the data

  void visit_content(StateVisitor& visitor);
  void visit_extras(StateVisitor& visitor);
  static constexpr auto fields() {
    return std::tuple(
        field("room", &WorldState::room), field("first_room", &WorldState::first_room), field("room_width", &WorldState::room_width),
        field("room_height", &WorldState::room_height), field("layers", &WorldState::layers), field("ended", &WorldState::ended),
        field("room_wanted", &WorldState::room_wanted), field("restart_wanted", &WorldState::restart_wanted),
        field("next_layer_id", &WorldState::next_layer_id), derived("next_id", &WorldState::next_id),
        derived("instances", &WorldState::instances), derived("alive", &WorldState::alive), derived("has_dead", &WorldState::has_dead),
        derived("depth_order", &WorldState::depth_order), derived("sleeping", &WorldState::sleeping),
        derived("waking", &WorldState::waking), derived("changes", &WorldState::changes), derived("kept_rooms", &WorldState::kept_rooms),
        derived("own_rooms", &WorldState::own_rooms));
  }
};

// Whoever changes the lists of instances goes through the functions.
class World : public WorldState {
 public:
  World();
  std::vector<RoomDefinition> rooms;  // of the data; index is the room's number
  // Instances by id, in pages: finding is two loads. It follows from the list of instances.
  static constexpr std::uint32_t kPageSlots = 16384;
  struct Page {
    std::vector<CInstance*> slots;  // none: nobody lives there
    std::int32_t used = 0;
  };
  std::vector<Page> pages;
  std::vector<std::int32_t> starters;  // objects that a run begins with: made first, where the room places none of them itself

  CInstance* find(std::int32_t id) const {
    const std::uint32_t place = static_cast<std::uint32_t>(id) - static_cast<std::uint32_t>(kFirstId);
    if (place / kPageSlots >= pages.size() || pages[place / kPageSlots].slots.empty()) return nullptr;
    return pages[place / kPageSlots].slots[place % kPageSlots];
  }
  // At most so many live at once, sleepers counted in. One more is an error of the script that wants it.
  static constexpr std::int32_t kMostInstances = 200000;
  static constexpr std::int32_t kMostRooms = 20000;
  // Creates on a layer (or at a depth, with layer -1), writes `fields` before Create, runs Create. All or nothing: where a field cannot be
  // written no instance came to be, and an error of its Create (or PreCreate) takes it back at once, without a Destroy or Clean Up event,
  // which would find it half made; what that handler did elsewhere stays. Either error ends the script that creates; an instance that a
  // room places is dead on return. Null only where errors are suppressed and the world is full.
  CInstance* create(double x, double y, std::int32_t layer, double depth, std::int32_t object, PropertyObject* fields,
                    WBObjectBase* creator);
  // Runs Destroy (when asked to) and Clean Up; from here on nothing finds the instance. Destroying twice is harmless.
  void destroy(CInstance& instance, bool runs_destroy_event);

  // Sleepers keep their ids and are found by these, and by nothing else: no event, no list, no collision, no drawing. They fall asleep at
  // once; a handler of theirs that runs ends as ever.
  void put_to_sleep(CInstance& instance);
  // Whoever fell asleep in this frame is awake at once; others take part from the next frame on. Those of a room that was left stay there.
  void wake(CInstance& instance);
  // At the end of the frame the instance becomes one of another object: it keeps id, place and variables, and takes sprite and mask of
  // the new object. With events, Clean Up of the old object runs before and Create of the new one after it.
  void change_object(const CInstance& instance, std::int32_t object, bool runs_events);
  // A second instance with all that the first one has: variables (methods bound to the first are bound to the copy), place, looks, alarms.
  // Null only where errors are suppressed and the world is full.
  CInstance* copy(CInstance& of, bool runs_create, WBObjectBase* creator);

  Layer* find_layer(std::string_view name);
  Layer* find_layer(std::int32_t id);
  std::int32_t add_layer(const Layer& layer);

  // Room and game.
  bool has_room(std::int32_t number) const {
    if (!own_rooms.empty() && own_rooms.contains(number)) return true;
    return number >= 0 && static_cast<std::size_t>(number) < rooms.size() && !rooms[static_cast<std::size_t>(number)].name.empty();
  }
  // There must be such a room.
  const RoomDefinition& room_definition(std::int32_t number) const;
  // To be changed: what the data says stays as it is, and a restart comes back to it.
  RoomDefinition& own_room(std::int32_t number);
  // Its number; -1 after a report when there are as many as can be.
  std::int32_t create_room(RoomDefinition definition);
  std::int32_t find_room(std::string_view name) const;  // -1: none
  // Numbers of rooms are below this.
  std::int32_t room_count() const;
  void start_game(std::int32_t starting_room);
  void enter_room(std::int32_t next);
  // Everything from the beginning, as a first start does it; only the clock and the ids of instances go on.
  void restart_game();
  // What room_goto and game_end asked for; called before the frame is drawn. A restart waits for the end of the frame.
  void carry_out_requests();

  // Every live instance in order of creation.
  const std::vector<CInstance*>& all() const { return instances; }
  std::int32_t live_count() const { return alive; }
  // Instances to draw by depth, greatest first; each list in order of creation.
  const std::map<double, std::vector<CInstance*>, std::greater<>>& by_depth() const { return depth_order; }
  void depth_changed(CInstance& instance, double old_depth);
  // Drops from every list who died or fell asleep, carries out changes of objects, and lists who woke: between frames only.
  void settle_lists();

  using State = WorldState;
  void save(State& into) const { into = static_cast<const WorldState&>(*this); }
  void load(const State& from) { static_cast<WorldState&>(*this) = from; }
  void after_load();
  void restart();

 private:
  Page& page_of(std::uint32_t place);
  void list(CInstance& instance);
  void forget_dead();
  void wake_up_waiting();
  void carry_out_change(const ObjectChange& change);
  bool is_listed(const CInstance& instance) const;
  void count_as_awake(CInstance& instance, bool awake);
  void list_again(CInstance& instance);
  void restore_order();
  void leave_sleep(CInstance& instance);
  void forget_id(const CInstance& instance);
  void keep_room();
  void bring_back(KeptRoom kept);
  void furnish(const RoomDefinition& definition, bool is_first);
  bool has_persistent(const ObjectType& type) const;
  bool runs_to_its_end(CInstance& instance, WBObjectBase* creator, EventKind kind);
  void unlist(CInstance& instance);
  void leave_room(std::int32_t next);
  void end_instances(bool persistent_too);
  void run_for_all(EventKey key);

  static constexpr std::int32_t kFirstId = 100000;
};

inline World& world() { return *session().world; }

// Whether there is such a room; reports it as the first argument of the function when not.
bool require_room(std::int32_t room, std::string_view function);
// Depths order what is drawn: what is no number counts as 0.
inline double orderly_depth(double depth) { return std::isnan(depth) ? 0 : depth; }

// Runs one handler for an instance, with the event named in reports and inherited handlers within reach. False when it ended by an error
// that went to the sink.
bool run_handler(CInstance& self, WBObjectBase* other, const BoundEvent& event);
// Runs what is no handler of an object, a timer's function, as if it were: reports name the key, and an error does what that of a handler
// does. `self` may be null.
bool run_called(EventKey key, CInstance* self, const std::function<void()>& call);
// Runs the handler that the instance's type has for the event; false when there is none.
bool run_event(CInstance& self, WBObjectBase* other, EventKey key);
// What runs now: the innermost handler; null outside of handlers.
struct RunningHandler {
  const CInstance* self;
  EventKey key;
};
bool running_handler(RunningHandler& out);
// Runs the parent's handler of the event that runs now; nothing when there is none.
void run_inherited_event();
// What an error of a handler does: by default it goes on to the caller. The console's sink keeps it and lets the frame go on.
using ScriptErrorSink = void (*)(const class WBKSLException& error);
void set_script_error_sink(ScriptErrorSink sink);

}  // namespace arena
