#pragma once
// The world that scripts live in: rooms and layers, the instances alive, and what happens to them at the frame's seams.
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

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
};

struct RoomDefinition {
  std::string name;
  std::int32_t width = 0, height = 0;
  std::int32_t view_width = 1920, view_height = 1080;
  std::uint32_t color = 0;
  bool persistent = false;
  std::vector<Layer> layers;
  std::vector<RoomInstance> instances;  // in order of creation
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

  void visit_content(StateVisitor& visitor);
  static constexpr auto fields() {
    return std::tuple(field("room", &WorldState::room), field("first_room", &WorldState::first_room),
                      field("room_width", &WorldState::room_width), field("room_height", &WorldState::room_height),
                      field("layers", &WorldState::layers), field("ended", &WorldState::ended),
                      field("room_wanted", &WorldState::room_wanted), field("restart_wanted", &WorldState::restart_wanted),
                      field("next_layer_id", &WorldState::next_layer_id), derived("next_id", &WorldState::next_id),
                      derived("instances", &WorldState::instances), derived("alive", &WorldState::alive),
                      derived("has_dead", &WorldState::has_dead), derived("depth_order", &WorldState::depth_order));
  }
};

// Whoever changes the lists of instances goes through the functions.
class World : public WorldState {
 public:
  World();
  std::vector<RoomDefinition> rooms;  // index is the room's number
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
  // At most so many live at once. One more is an error of the script that wants it.
  static constexpr std::int32_t kMostInstances = 200000;
  // Creates on a layer (or at a depth, with layer -1), writes `fields` before Create, runs Create. All or nothing: where a field cannot be
  // written no instance came to be, and an error of its Create (or PreCreate) takes it back at once, without a Destroy or Clean Up event,
  // which would find it half made; what that handler did elsewhere stays. Either error ends the script that creates; an instance that a
  // room places is dead on return. Null only where errors are suppressed and the world is full.
  CInstance* create(double x, double y, std::int32_t layer, double depth, std::int32_t object, PropertyObject* fields,
                    WBObjectBase* creator);
  // Runs Destroy (when asked to) and Clean Up; from here on nothing finds the instance. Destroying twice is harmless.
  void destroy(CInstance& instance, bool runs_destroy_event);
  Layer* find_layer(std::string_view name);
  Layer* find_layer(std::int32_t id);
  std::int32_t add_layer(const Layer& layer);

  // Room and game.
  bool has_room(std::int32_t number) const {
    return number >= 0 && static_cast<std::size_t>(number) < rooms.size() && !rooms[static_cast<std::size_t>(number)].name.empty();
  }
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
  // Drops the dead from every list: between frames only.
  void forget_dead();

  using State = WorldState;
  void save(State& into) const { into = *this; }
  void load(const State& from) { static_cast<WorldState&>(*this) = from; }
  void after_load();
  void restart();

 private:
  Page& page_of(std::uint32_t place);
  void list(CInstance& instance);
  bool runs_to_its_end(CInstance& instance, WBObjectBase* creator, EventKind kind);
  void unlist(CInstance& instance);
  void leave_room();
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
