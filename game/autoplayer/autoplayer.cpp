#include "game/autoplayer/autoplayer.h"

#include <cmath>

#include "runtime/arrays_structs/array.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/names.h"
#include "runtime/values/conversions.h"
#include "runtime/values/elementary.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::autoplayer {
namespace {

constexpr int kKeyShift = 16, kKeySpace = 32;
constexpr double kAhead = 150;       // pixels: how far ahead a step is judged
constexpr double kComfort = 600;     // enemies closer than this are walked away from
constexpr double kTouch = 160;       // and closer than this feared
constexpr double kDashBelow = 115;   // worth its energy
constexpr double kBlast = 260;       // kept from grenades, its own too
constexpr double kWall = 320;        // kept from the edges of the floor
constexpr double kBeyondRoom = 500;  // the floor goes on behind the room
constexpr double kHunt = 650;        // enemies farther than this are looked for
constexpr double kGunRange = 950, kGrenadeRange = 720, kGrenadeNearest = 230;
constexpr double kReach = 120;           // pixels within which E takes something
constexpr double kHandSpeed = 0.35;      // share of the way to the target that the pointer makes in a frame
constexpr double kCardFromMiddle = 108;  // GUI pixels: the cards of a reward are 200 wide, 16 apart, in the middle
constexpr int kPatience = 60;            // frames before a key is pressed where the game waits for one
constexpr int kBulletGrenade = 2;

const RValue* field(const PropertyObject* holder, const char* name) {
  return holder != nullptr ? const_cast<PropertyObject*>(holder)->find_variable(variable_id(name)) : nullptr;
}
double number(const PropertyObject* holder, const char* name, double otherwise) {
  const RValue* found = field(holder, name);
  if (found == nullptr) return otherwise;
  const std::uint32_t kind = found->kind();
  return kind == kNumber || kind == kInt32 || kind == kInt64 || kind == kBool ? to_real(*found) : otherwise;
}
const PropertyObject* object_in(const PropertyObject* holder, const char* name) {
  const RValue* found = field(holder, name);
  return found != nullptr && found->is_object() ? static_cast<const PropertyObject*>(found->object) : nullptr;
}

const std::vector<CInstance*>& all_of(const char* object) {
  static const std::vector<CInstance*> nobody;
  const std::int32_t index = object_types().find(object);
  return index >= 0 ? object_types().at(index).instances : nobody;
}
const CInstance* first_of(const char* object) {
  for (const CInstance* each : all_of(object)) {
    if (each->is_alive) return each;
  }
  return nullptr;
}
double length(double x, double y) { return elementary::sqrt(x * x + y * y); }
double distance(const CInstance& a, const CInstance& b) { return length(a.x - b.x, a.y - b.y); }
const CInstance* nearest_of(const char* object, const CInstance& to) {
  const CInstance* nearest = nullptr;
  for (const CInstance* each : all_of(object)) {
    if (each->is_alive && (nearest == nullptr || distance(*each, to) < distance(*nearest, to))) nearest = each;
  }
  return nearest;
}

// The slots of a gun or of a definition: what decides the kind of bullet comes last; an empty slot is the number noone.
struct Slots {
  int kind = -1, empty = 0;
};
Slots slots_of(const PropertyObject* gun) {
  Slots slots;
  const RValue* modifiers = field(gun, "modifiers");
  if (modifiers == nullptr || !modifiers->is_array() || modifiers->array == nullptr) return slots;
  for (std::int32_t i = 0; i < modifiers->array->length; ++i) {
    const RValue& slot = modifiers->array->elements[i];
    if (!slot.is_object()) {
      ++slots.empty;
      continue;
    }
    const double kind = number(static_cast<const PropertyObject*>(slot.object), "bullet_type_override", -1);
    if (kind >= 0) slots.kind = static_cast<int>(kind);
  }
  return slots;
}

// Damage a second, as far as this player can use it: grenades mostly miss.
double worth(const PropertyObject* gun) {
  const int kind = slots_of(gun).kind;
  if (gun == nullptr || kind < 0) return 0;
  const double rate = std::fmax(number(gun, "base_fire_rate", 1), 0.01);
  const double usefulness = kind == kBulletGrenade ? 0.2 : 1;
  return number(gun, "base_damage", 0) * number(gun, "base_bullet_count", 1) / rate * usefulness + slots_of(gun).empty;
}

bool is_wanted(const CInstance& pickup, const CInstance* gun) {
  if (const PropertyObject* definition = object_in(&pickup, "weapon_stats")) return worth(definition) > worth(gun) * 1.05;
  const PropertyObject* modifier = object_in(&pickup, "modifier");
  return modifier != nullptr && slots_of(gun).empty > 0 && number(modifier, "bullet_type_override", -1) <= 0;
}

const CInstance* wanted_pickup(const CInstance& player, const CInstance* gun) {
  const CInstance* best = nullptr;
  for (const CInstance* each : all_of("oPickup")) {
    if (each->is_alive && is_wanted(*each, gun) && (best == nullptr || distance(*each, player) < distance(*best, player))) best = each;
  }
  return best;
}

}  // namespace

void ArenaPlayer::hold(int key, bool down) {
  if (held_[key] == down) return;
  held_[key] = down;
  push_key(key, down);
}

void ArenaPlayer::tap(int key, bool wanted) { hold(key, wanted && !held_[key]); }

void ArenaPlayer::hold_fire(bool down) {
  if (down != fires_) push_button(1, down);
  fires_ = down;
}

void ArenaPlayer::move_pointer(PointerSpace space, double x, double y) {
  if (space != space_) pointer_ = {x, y};
  space_ = space;
  pointer_.x += (x - pointer_.x) * kHandSpeed;
  pointer_.y += (y - pointer_.y) * kHandSpeed;
  push_pointer(space, std::floor(pointer_.x + 0.5), std::floor(pointer_.y + 0.5));  // a mouse points at whole pixels
}

double ArenaPlayer::danger_at(Point place, const CInstance* goal) const {
  double danger = 0, nearest = 1e9;
  for (const CInstance* each : all_of("oParentEnemy")) {
    if (!each->is_alive) continue;
    const double away = length(each->x - place.x, each->y - place.y);
    nearest = std::fmin(nearest, away);
    if (away < kComfort) danger += 3 * (1 - away / kComfort) * (1 - away / kComfort);
    if (away < kTouch) danger += 8 * (1 - away / kTouch);
  }
  for (const CInstance* each : all_of("oBulletGrenade")) {
    const double away = length(each->x - place.x, each->y - place.y);
    if (each->is_alive && away < kBlast) danger += 6 * (1 - away / kBlast);
  }
  const double right = world().room_width + kBeyondRoom - kWall, bottom = world().room_height + kBeyondRoom - kWall;
  danger +=
      (std::fmax(0, kWall - place.x) + std::fmax(0, kWall - place.y) + std::fmax(0, place.x - right) + std::fmax(0, place.y - bottom)) / 60;
  if (goal != nullptr) return danger + length(goal->x - place.x, goal->y - place.y) / 150;
  return nearest < 1e9 && nearest > kHunt ? danger + (nearest - kHunt) / 300 : danger;
}

// Of the eight ways to walk and standing still the one that looks best; the way it goes already is preferred a little.
void ArenaPlayer::walk(const CInstance& player, const CInstance* goal) {
  int best = 0;
  double least = 1e18;
  for (int direction = 0; direction <= 8; ++direction) {
    const double angle = (direction - 1) * 0.7853981633974483, reach = direction == 0 ? 0 : kAhead;
    const double danger = danger_at({player.x + reach * elementary::cos(angle), player.y - reach * elementary::sin(angle)}, goal) -
                          (direction == direction_ ? 0.12 : 0);
    if (danger >= least) continue;
    least = danger;
    best = direction;
  }
  direction_ = best;
  hold('D', best == 1 || best == 2 || best == 8);
  hold('W', best == 2 || best == 3 || best == 4);
  hold('A', best == 4 || best == 5 || best == 6);
  hold('S', best == 6 || best == 7 || best == 8);
}

void ArenaPlayer::shoot(const CInstance& player, const CInstance* gun) {
  const CInstance* enemy = nearest_of("oParentEnemy", player);
  if (enemy == nullptr || gun == nullptr) {
    hold_fire(false);
    return;
  }
  const double away = distance(*enemy, player);
  const bool throws = number(gun, "bullet_type", -1) == kBulletGrenade;
  move_pointer(PointerSpace::kRoom, enemy->x, enemy->y);
  hold_fire(throws ? away < kGrenadeRange && away > kGrenadeNearest : away < kGunRange);
}

// A click on one of the two cards: a modifier for a good gun with room for it, else the weapon.
void ArenaPlayer::choose_reward(const CInstance* gun) {
  const Slots slots = slots_of(gun);
  const bool wants_modifier = slots.kind >= 0 && slots.kind != kBulletGrenade && slots.empty > 0;
  const double side = wants_modifier ? kCardFromMiddle : -kCardFromMiddle;
  move_pointer(PointerSpace::kGui, gui_width() / 2 + side, gui_height() / 2);
  hold_fire(++waited_ % kPatience > kPatience - 4);
}

void ArenaPlayer::play() {
  const CInstance* player = first_of("oPlayer");
  const bool is_over = first_of("oDeathScreen") != nullptr, prepares = first_of("oPrepare1") != nullptr;
  if (player == nullptr || is_over || prepares) {
    hold_fire(false);
    for (const int key : {int{'W'}, int{'A'}, int{'S'}, int{'D'}, kKeyShift}) hold(key, false);
    const bool is_time = ++waited_ > kPatience;
    tap(kKeySpace, is_over && is_time);
    tap('E', prepares && is_time);
    if (is_time && (held_[kKeySpace] || held_[static_cast<int>('E')])) waited_ = 0;
    return;
  }
  hold(kKeySpace, false);
  const CInstance* gun = resolve_instance(static_cast<std::int32_t>(number(player, "gun", -4)));
  const CInstance* goal = wanted_pickup(*player, gun);
  walk(*player, goal);
  const CInstance* enemy = nearest_of("oParentEnemy", *player);
  tap(kKeyShift, enemy != nullptr && distance(*enemy, *player) < kDashBelow && direction_ != 0);
  const CInstance* at_feet = nearest_of("oPickup", *player);
  tap('E', goal != nullptr && goal == at_feet && distance(*goal, *player) < kReach);

  const CInstance* level = first_of("oLevel1");
  if (level != nullptr && number(level, "wave_pause", 0) > 0.5) {
    choose_reward(gun);
  } else {
    waited_ = 0;
    shoot(*player, gun);
  }
}

}  // namespace arena::autoplayer

namespace arena::apps {
std::unique_ptr<Autoplayer> make_autoplayer() { return std::make_unique<autoplayer::ArenaPlayer>(); }
}  // namespace arena::apps
