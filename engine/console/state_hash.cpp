#include "engine/console/state_hash.h"

#include <bit>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/instances_loop/builtin_variables.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/names.h"

namespace arena::console {
namespace {

class Hasher final : public ValueVisitor {
 public:
  Hasher() : ValueVisitor(true) {}
  std::uint64_t hash = 0xCBF29CE484222325u;

  void number(std::uint64_t bits) {
    hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  void real(double value) { number(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }
  void text(std::string_view text) {
    for (const char c : text) number(static_cast<unsigned char>(c));
    number(text.size());
  }

  void visit(const RValue& value) override {
    number(value.kind());
    switch (value.kind()) {
      case kNumber:
      case kBool: real(value.real); break;
      case kString: text(text_of(value)); break;
      case kArray:
        if (value.array != nullptr) enter(value.array->owner);
        break;
      case kObject:
        if (value.object != nullptr) enter(value.object);
        break;
      case kPointer: break;  // an address is no state
      default: number(static_cast<std::uint64_t>(value.i64)); break;
    }
  }

  void instance(CInstance& instance) {
    number(static_cast<std::uint64_t>(instance.id));
    text(instance.type->definition.name);
    for (std::int32_t i = 0; i < builtin_variable_count(); ++i) {
      const BuiltinVariable& variable = builtin_variable_at(i);
      if (!variable.belongs_to_instance || variable.set == nullptr) continue;
      for (std::int32_t at = 0; at < (variable.is_array ? kAlarms : 1); ++at) visit(variable.get(&instance, at));
    }
    variables(instance);
  }

  // The content of all containers that were met, in that order.
  void finish() {
    for (std::size_t i = 0; i < waiting_.size(); ++i) object(*waiting_[i]);
    waiting_.clear();
  }

 private:
  // A container counts once; meeting it again enters its number, so that cycles end and shared parts show. Its content comes later, for
  // containers may stand in one another deeper than the native stack reaches.
  void enter(WBObjectBase* object) {
    const auto [place, is_new] = seen_.emplace(object, seen_.size());
    number(place->second);
    if (is_new) waiting_.push_back(object);
  }
  void object(WBObjectBase& object) {
    if (object.object_kind == ObjectKind::kArray) {
      object.visit_values(*this);
      return;
    }
    if (object.object_kind == ObjectKind::kInstance) {
      number(static_cast<std::uint64_t>(static_cast<CInstance&>(object).id));
      return;
    }
    if (object.object_kind == ObjectKind::kMethod) {
      const MethodClosure& closure = static_cast<MethodClosure&>(object);
      text(closure.function->name);
      visit(closure.bound_self);
    }
    variables(static_cast<PropertyObject&>(object));
  }
  void variables(PropertyObject& object) {
    for (const std::int32_t id : object.variable_ids()) {
      text(variable_name(id));
      visit(*object.find_variable(id));
    }
  }
  std::unordered_map<const WBObjectBase*, std::size_t> seen_;
  std::vector<WBObjectBase*> waiting_;
};

}  // namespace

std::uint64_t state_hash() {
  Hasher hasher;
  hasher.number(static_cast<std::uint64_t>(world().room));
  hasher.number(static_cast<std::uint64_t>(game_clock.total_microseconds));
  for (const std::uint64_t word : game_random().state) hasher.number(word);
  hasher.visit(RValue::of_object(global_object()));
  for (CInstance* instance : world().all()) {
    if (instance->is_alive) hasher.instance(*instance);
  }
  Holder::visit_game_state(hasher);
  hasher.finish();
  return hasher.hash;
}

}  // namespace arena::console
