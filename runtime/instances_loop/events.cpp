#include "runtime/instances_loop/events.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>

#include "runtime/instances_loop/object_type.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

struct KindName {
  EventKind kind;
  std::string_view name, text;
};
constexpr KindName kKinds[] = {
    {EventKind::kPreCreate, "PreCreate", "PreCreate Event"},
    {EventKind::kCreate, "Create", "Create Event"},
    {EventKind::kDestroy, "Destroy", "Destroy Event"},
    {EventKind::kCleanUp, "CleanUp", "Clean Up Event"},
    {EventKind::kStep, "Step", " Step Event"},
    {EventKind::kAlarm, "Alarm", "Alarm Event for alarm "},
    {EventKind::kKeyboard, "Keyboard", "Keyboard Event for"},
    {EventKind::kKeyPress, "KeyPress", "Key Press Event for"},
    {EventKind::kKeyRelease, "KeyRelease", "Key Release Event for"},
    {EventKind::kMouse, "Mouse", "Mouse Event for"},
    {EventKind::kCollision, "Collision", "Collision Event with object "},
    {EventKind::kOther, "Other", "Other Event:"},
    {EventKind::kAsync, "Async", "Async Event: "},
    {EventKind::kDraw, "Draw", "Draw Event"},
    {EventKind::kWheel, "Wheel", "Wheel Event: "},
    {EventKind::kPointer, "Pointer", "Pointer Event: "},
    {EventKind::kWindow, "Window", "Window Event: "},
    {EventKind::kOutside, "Outside", "Outside Event: "},
};

// What the asynchronous events tell of; the place is the sub-number.
constexpr std::string_view kAsyncNames[] = {"Audio Playback", "Dialog", "File", "HTTP", "Networking", "System"};

// What the numbers of other events stand for.
constexpr std::string_view kWheelNames[] = {"up", "down"};
constexpr std::string_view kPointerNames[] = {"enter", "leave"};
constexpr std::string_view kWindowNames[] = {"close", "resize", "focus", "focus lost"};
constexpr std::string_view kOutsideNames[] = {"room", "view 0", "view 1", "view 2", "view 3", "view 4", "view 5", "view 6", "view 7"};

// The name that a number of the event has; "" when it has none.
std::string_view number_name(const EventKey& key) {
  std::span<const std::string_view> names;
  if (key.kind == EventKind::kAsync) names = kAsyncNames;
  if (key.kind == EventKind::kWheel) names = kWheelNames;
  if (key.kind == EventKind::kPointer) names = kPointerNames;
  if (key.kind == EventKind::kWindow) names = kWindowNames;
  if (key.kind == EventKind::kOutside) names = kOutsideNames;
  return key.number >= 0 && static_cast<std::size_t>(key.number) < names.size() ? names[static_cast<std::size_t>(key.number)] : "";
}

// Kinds of which no number beyond the named ones exists.
bool has_fixed_numbers(EventKind kind) { return kind >= EventKind::kWheel && kind <= EventKind::kOutside; }

bool is_word(std::string_view text) {
  const auto fits = [](char c) { return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !text.empty() && (text[0] < '0' || text[0] > '9') && std::all_of(text.begin(), text.end(), fits);
}

const KindName* find_kind(EventKind kind) {
  for (const KindName& entry : kKinds) {
    if (entry.kind == kind) return &entry;
  }
  return nullptr;
}

}  // namespace

std::string event_suffix(const EventKey& key) {
  std::string text(find_kind(key.kind)->name);
  text += '_';
  if (key.kind == EventKind::kCollision) return text.append(object_type_name(key.number));
  if (key.kind == EventKind::kAlarm && key.number >= kFirstNamedAlarm) return text.append(object_types().alarm_name(key.number));
  return text + std::to_string(key.number);
}

std::string event_text(const EventKey& key) {
  if (key.kind == EventKind::kTimer) return "Timer " + std::to_string(key.number);
  const KindName* entry = find_kind(key.kind);
  if (entry == nullptr) return "<Unknown Event>";
  std::string text(entry->text);
  switch (key.kind) {
    case EventKind::kAlarm:
      if (key.number >= kFirstNamedAlarm) return text.append(object_types().alarm_name(key.number));
      return text + std::to_string(key.number);
    case EventKind::kStep: return text + std::to_string(key.number);
    case EventKind::kAsync:
    case EventKind::kWheel:
    case EventKind::kPointer:
    case EventKind::kWindow:
    case EventKind::kOutside: {
      const std::string_view name = number_name(key);
      return name.empty() ? text + std::to_string(key.number) : text.append(name);
    }
    case EventKind::kKeyboard:
    case EventKind::kKeyPress:
    case EventKind::kKeyRelease:
    case EventKind::kMouse:
    case EventKind::kOther: return text + " " + std::to_string(key.number);
    case EventKind::kCollision: return text.append(object_type_name(key.number));
    default: return text;
  }
}

std::optional<EventKey> parse_event(std::string_view suffix, std::int32_t (*find_object)(std::string_view)) {
  for (const KindName& entry : kKinds) {
    if (!suffix.starts_with(entry.name) || suffix.size() < entry.name.size() + 2 || suffix[entry.name.size()] != '_') continue;
    const std::string_view rest = suffix.substr(entry.name.size() + 1);
    EventKey key{entry.kind, 0};
    if (entry.kind == EventKind::kCollision) {
      key.number = find_object(rest);
      if (key.number < 0) return std::nullopt;
      return key;
    }
    if (entry.kind == EventKind::kAlarm && is_word(rest)) {
      key.number = object_types().alarm_number(rest);
      return key;
    }
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), key.number);
    if (error != std::errc() || end != rest.data() + rest.size()) return std::nullopt;
    if (has_fixed_numbers(entry.kind) && number_name(key).empty()) return std::nullopt;
    return key;
  }
  return std::nullopt;
}

}  // namespace arena
