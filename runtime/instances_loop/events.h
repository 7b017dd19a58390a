#pragma once
// Event kinds, their keys, and their names in code ("Step_0") and in reports ("Create Event").
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace arena {

enum class EventKind : std::uint8_t {
  kPreCreate,
  kCreate,
  kDestroy,
  kCleanUp,
  kStep,
  kAlarm,
  kKeyboard,
  kKeyPress,
  kKeyRelease,
  kMouse,
  kCollision,
  kOther,
  kAsync,
  kDraw,
  kWheel,
  kPointer,
  kWindow,
  kOutside,
  kTimer  // no event of an object: what reports say while a timer's function runs
};

// Sub-numbers with a meaning of their own.
inline constexpr std::int32_t kStepNormal = 0, kStepBegin = 1, kStepEnd = 2;
inline constexpr std::int32_t kOtherGameStart = 2, kOtherGameEnd = 3, kOtherRoomStart = 4, kOtherRoomEnd = 5, kOtherAnimationEnd = 7;
inline constexpr std::int32_t kDrawNormal = 0, kDrawGui = 64, kDrawBegin = 72, kDrawEnd = 73, kDrawGuiBegin = 74, kDrawGuiEnd = 75;
// Mouse: 0-2 held, 4-6 pressed, 7-9 released (left, right, middle) over the instance; the same plus 50 anywhere.
inline constexpr std::int32_t kMousePressed = 4, kMouseReleased = 7, kMouseAnywhere = 50;

// Alarms 0 to 11 are numbers; those that have a name in the data ("Alarm_reload") are numbered from here on.
inline constexpr std::int32_t kFirstNamedAlarm = 1000;
inline constexpr std::int32_t kWheelUp = 0, kWheelDown = 1;
inline constexpr std::int32_t kPointerEnters = 0, kPointerLeaves = 1;
inline constexpr std::int32_t kWindowClose = 0, kWindowResize = 1, kWindowFocus = 2, kWindowFocusLost = 3;
// 0 the room, 1 to 8 the views 0 to 7.
inline constexpr std::int32_t kOutsideRoom = 0, kOutsideView = 1;

// `number` is the sub-number; for collisions the index of the object collided with.
struct EventKey {
  EventKind kind{};
  std::int32_t number = 0;
  auto operator<=>(const EventKey&) const = default;
};

// The suffix of handler names, without the object: "Step_1", "KeyPress_27". Collisions end in the object's name, alarms that have one
// in theirs.
std::string event_suffix(const EventKey& key);
// The text of reports; collisions name the other object.
std::string event_text(const EventKey& key);
// From "Step_0" or "Collision_oPlayer"; nothing when the text is no event. The callback finds an object's index by name (-1: none).
std::optional<EventKey> parse_event(std::string_view suffix, std::int32_t (*find_object)(std::string_view));

}  // namespace arena
