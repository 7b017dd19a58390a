#include "engine/console/state_hash.h"

#include <algorithm>
#include <bit>
#include <string>
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
#include "runtime/values/number_text.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/names.h"

namespace arena::console {
namespace {

// Goes over the whole state in one order, whatever is made of it.
class StateWalk : public ValueVisitor {
 public:
  StateWalk() : ValueVisitor(true) {}
  virtual void number(std::uint64_t bits) = 0;
  virtual void real(double value) = 0;
  virtual void text(std::string_view text) = 0;
  virtual void clock(std::int64_t microseconds) = 0;
  virtual void id(std::int32_t instance) = 0;

  void world_state() {
    number(static_cast<std::uint64_t>(world().room));
    clock(game_clock().total_microseconds);
    for (const std::uint64_t word : game_random().state) number(word);
    visit(RValue::of_object(global_object()));
    for (CInstance* each : world().all()) {
      if (each->is_alive) instance(*each);
    }
    Holder::visit_game_state(*this);
    // The content of all containers that were met, in that order.
    for (std::size_t i = 0; i < waiting_.size(); ++i) object(*waiting_[i]);
    waiting_.clear();
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

 private:
  void instance(CInstance& instance) {
    id(instance.id);
    text(instance.type->definition.name);
    for (std::int32_t i = 0; i < builtin_variable_count(); ++i) {
      const BuiltinVariable& variable = builtin_variable_at(i);
      if (!variable.belongs_to_instance || variable.set == nullptr) continue;
      for (std::int32_t at = 0; at < std::max(variable.length, 1); ++at) visit(variable.get(&instance, at));
    }
    variables(instance);
  }

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
      id(static_cast<CInstance&>(object).id);
      return;
    }
    if (object.object_kind == ObjectKind::kMethod) {
      const MethodClosure& closure = static_cast<MethodClosure&>(object);
      text(function_name_of(closure));
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

class Hasher final : public StateWalk {
 public:
  std::uint64_t hash = 0xCBF29CE484222325u;

  void number(std::uint64_t bits) override {
    hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  void real(double value) override { number(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }
  void text(std::string_view text) override {
    for (const char c : text) number(static_cast<unsigned char>(c));
    number(text.size());
  }
  void clock(std::int64_t microseconds) override { number(static_cast<std::uint64_t>(microseconds)); }
  void id(std::int32_t instance) override { number(static_cast<std::uint64_t>(instance)); }
};

class Describer final : public StateWalk {
 public:
  Describer() {
    for (const CInstance* instance : world().all()) {
      if (instance->is_alive) places_.emplace(instance->id, places_.size());
    }
  }
  std::string lines;

  void number(std::uint64_t bits) override { lines += std::to_string(bits) + '\n'; }
  void real(double value) override {
    if (places_.contains(value)) {
      id(saturate_int32(value));
    } else {
      lines += real_to_exact_text(value) + '\n';
    }
  }
  void text(std::string_view text) override { lines.append(text) += '\n'; }
  void clock(std::int64_t) override {}
  void id(std::int32_t instance) override {
    const auto found = places_.find(instance);
    lines += found != places_.end() ? "instance " + std::to_string(found->second) + '\n' : "dead\n";
  }

 private:
  std::unordered_map<double, std::size_t> places_;  // of the living, by id
};

}  // namespace

std::uint64_t state_hash() {
  Hasher hasher;
  hasher.world_state();
  return hasher.hash;
}

std::string describe_state() {
  Describer describer;
  describer.world_state();
  return describer.lines;
}

}  // namespace arena::console
