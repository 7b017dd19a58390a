#include "runtime/instances_loop/object_type.h"

#include <algorithm>
#include <set>

#include "runtime/checks/assert.h"
#include "runtime/memory/held_bytes.h"

namespace arena {
namespace {

// Events that are called for one instance at its own moment, not in a pass over all.
bool runs_in_passes(EventKind kind) {
  return kind != EventKind::kPreCreate && kind != EventKind::kCreate && kind != EventKind::kDestroy && kind != EventKind::kCleanUp;
}

std::int32_t find_object(std::string_view name) { return object_types().find(name); }

const StatePart<ObjectTypes> part{PartLevel::kWorld, "object types"};

const ToolObject* first_tool = nullptr;

}  // namespace

ToolObject::ToolObject(const char* name, std::initializer_list<const char*> events) : next_(first_tool) {
  definition_.name = name;
  definition_.events.assign(events.begin(), events.end());
  first_tool = this;
}

std::vector<ObjectDefinition> ToolObject::all() {
  std::vector<ObjectDefinition> found;
  for (const ToolObject* tool = first_tool; tool != nullptr; tool = tool->next_) found.push_back(tool->definition_);
  return found;
}

ObjectTypes::ObjectTypes() { session().object_types = this; }

void ObjectTypes::save(State& into) const {
  into.populations.resize(types_.size());
  for (std::size_t i = 0; i < types_.size(); ++i) into.populations[i] = static_cast<const Population&>(*types_[i]);
  into.lists = lists_;
}

void ObjectTypes::State::count_held(HeldBytes& into) const {
  into.add(populations.capacity() * sizeof(Population));
  for (const Population& each : populations) detail::count_behind(each.instances, into);
  detail::count_behind(lists, into);
}

// Types point at the lists of their events: those stay where they are.
void ObjectTypes::load(const State& from) {
  ARENA_ASSERT(from.populations.size() == types_.size());
  for (std::size_t i = 0; i < types_.size(); ++i) static_cast<Population&>(*types_[i]) = from.populations[i];
  for (auto& [key, list] : lists_) {
    const auto saved = from.lists.find(key);
    if (saved == from.lists.end()) {
      list.clear();
    } else {
      list = saved->second;
    }
  }
}

const BoundEvent* ObjectType::find_event(EventKey key) const {
  const auto place = std::lower_bound(events.begin(), events.end(), key,
                                      [](const BoundEvent& event, const EventKey& wanted) { return event.key < wanted; });
  return place != events.end() && place->key == key ? &*place : nullptr;
}

bool ObjectType::descends_from(std::int32_t ancestor) const { return std::find(lineage.begin(), lineage.end(), ancestor) != lineage.end(); }

std::int32_t ObjectTypes::find(std::string_view name) const {
  for (const auto& type : types_) {
    if (type->definition.name == name) return type->index;
  }
  return -1;
}

std::int32_t ObjectTypes::find_alarm(std::string_view name) const {
  const auto found = std::find(alarm_names_.begin(), alarm_names_.end(), name);
  return found == alarm_names_.end() ? -1 : kFirstNamedAlarm + static_cast<std::int32_t>(found - alarm_names_.begin());
}

std::int32_t ObjectTypes::alarm_number(std::string_view name) {
  if (const std::int32_t known = find_alarm(name); known >= 0) return known;
  alarm_names_.emplace_back(name);
  return kFirstNamedAlarm + static_cast<std::int32_t>(alarm_names_.size()) - 1;
}

std::string_view ObjectTypes::alarm_name(std::int32_t number) const {
  const std::int32_t place = number - kFirstNamedAlarm;
  return place >= 0 && place < std::ssize(alarm_names_) ? std::string_view(alarm_names_[static_cast<std::size_t>(place)]) : "";
}

std::vector<std::string> ObjectTypes::define(std::vector<ObjectDefinition> definitions) {
  std::vector<std::string> problems;
  types_.clear();
  lists_.clear();
  alarm_names_.clear();
  for (ObjectDefinition& definition : definitions) {
    if (find(definition.name) >= 0) problems.push_back("object '" + definition.name + "' is defined twice");
    auto type = std::make_unique<ObjectType>();
    type->definition = std::move(definition);
    type->index = count();
    types_.push_back(std::move(type));
  }
  for (const auto& type : types_) {
    std::int32_t at = type->index;
    while (at >= 0 && !type->descends_from(at)) {
      type->lineage.push_back(at);
      at = has(at) ? this->at(at).definition.parent : -1;
      if (at >= count()) {
        problems.push_back("object '" + type->definition.name + "' has an unknown parent");
        at = -1;
      }
    }
    if (at >= 0) problems.push_back("object '" + type->definition.name + "' is its own ancestor");
  }
  for (const auto& type : types_) bind_events(*type, problems);
  return problems;
}

void ObjectTypes::bind_events(ObjectType& type, std::vector<std::string>& problems) {
  std::set<EventKey> bound;
  for (const std::int32_t owner : type.lineage) {
    const ObjectDefinition& definition = at(owner).definition;
    for (const std::string& event : definition.events) {
      const auto key = parse_event(event, find_object);
      if (!key) {
        if (owner == type.index) problems.push_back("object '" + definition.name + "' names an event that does not exist: '" + event + "'");
        continue;
      }
      const std::string name = "ksl_Object_" + definition.name + "_" + event;
      const CompiledFunction* function = find_handler(name);
      if (function == nullptr) {
        if (owner == type.index) problems.push_back("object '" + definition.name + "' has no code for event '" + event + "'");
        continue;
      }
      if (bound.insert(*key).second) type.events.push_back({*key, function, owner});
    }
  }
  std::sort(type.events.begin(), type.events.end(), [](const BoundEvent& a, const BoundEvent& b) { return a.key < b.key; });
  for (const BoundEvent& event : type.events) {
    if (runs_in_passes(event.key.kind)) type.subscriptions.push_back({&lists_[event.key], &event});
  }
}

}  // namespace arena
