#include "runtime/instances_loop/events.h"

#include <charconv>
#include <iterator>

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
};

// What the asynchronous events tell of; the place is the sub-number.
constexpr std::string_view kAsyncNames[] = {"Audio Playback", "Dialog", "File", "HTTP", "Networking", "System"};

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
  return text + std::to_string(key.number);
}

std::string event_text(const EventKey& key) {
  const KindName* entry = find_kind(key.kind);
  if (entry == nullptr) return "<Unknown Event>";
  std::string text(entry->text);
  switch (key.kind) {
    case EventKind::kStep:
    case EventKind::kAlarm: return text + std::to_string(key.number);
    case EventKind::kAsync:
      return key.number >= 0 && key.number < std::ssize(kAsyncNames) ? text.append(kAsyncNames[key.number])
                                                                     : text + std::to_string(key.number);
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
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), key.number);
    if (error != std::errc() || end != rest.data() + rest.size()) return std::nullopt;
    return key;
  }
  return std::nullopt;
}

}  // namespace arena
