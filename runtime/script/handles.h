#pragma once
// What scripts hold: `self` and `other` in a body, `global`, an object's first instance by its name, any instance by reference, and
// the loop over instances. Each access notes its line in the frame before anything can fail.
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/object_type.h"
#include "runtime/instances_loop/world.h"
#include "runtime/script/instance_variables.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::script {

// An instance, known to be one. Reading a plain field is one load.
class Instance {
 public:
  explicit Instance(CInstance* instance) : instance_(instance) {}
  // Resolves an id or a reference; reports when nothing is there.
  Instance(const Value& value) : Instance(resolve(value)) {}
  Instance(VariableAccess&& value) : Instance(resolve(value.get())) {}
  Instance(ElementAccess&& value) : Instance(resolve(value.get())) {}

  template <double CInstance::*field, void (*after)(CInstance&)>
  FieldAccess<field, after> operator[](const InstanceField<field, after>&) const {
    return FieldAccess<field, after>(instance_);
  }
  Real operator[](const InstanceIdName&) const { return instance_->id; }
  GeneralAccess operator[](BuiltinKey key) const { return GeneralAccess(instance_, key.name); }
  VariableAccess operator[](Key key) const { return VariableAccess(instance_, key.name); }

  operator Value() const { return RValue::of_object(instance_); }
  CInstance* pointer() const { return instance_; }
  friend bool operator==(Instance a, Instance b) { return a.instance_ == b.instance_; }

 private:
  static CInstance* resolve(const RValue& value) {
    if (value.kind_bits == kNumber && value.real >= kFirstInstanceId && value.real <= INT32_MAX) {
      if (CInstance* found = world().find(static_cast<std::int32_t>(value.real))) return found;
    }
    return resolve_or_report(value);
  }
  static CInstance* resolve_or_report(const RValue& value);
  CInstance* instance_;
};

// `self` of an event handler or of a method of an object type.
class Self : public Instance {
 public:
  explicit Self(CInstance* instance) : Instance(instance) {}
};

// `self` or `other` where it may be an instance or a struct.
class ObjectSelf {
 public:
  explicit ObjectSelf(WBObjectBase* object) : object_(static_cast<PropertyObject*>(object)) {}
  GeneralAccess operator[](BuiltinKey key) const { return GeneralAccess(object_, key.name); }
  VariableAccess operator[](Key key) const { return VariableAccess(object_, key.name); }
  operator Value() const { return object_ != nullptr ? RValue::of_object(object_) : RValue(); }
  PropertyObject* object() const { return object_; }

 private:
  PropertyObject* object_;
};

// `global[dt_steady]`
class Global {
 public:
  VariableAccess operator[](Key key) const { return VariableAccess(global_object(), key.name); }
};
inline constexpr Global global{};

// An object type by name: `oPlayer[x]` is that of its first instance.
class ObjectName {
 public:
  constexpr explicit ObjectName(std::int32_t index) : index_(index) {}
  GeneralAccess operator[](BuiltinKey key) const { return GeneralAccess(first(), key.name); }
  VariableAccess operator[](Key key) const { return VariableAccess(first(), key.name); }
  operator Value() const { return Value(Real(index_)); }
  operator Instance() const { return Instance(first()); }
  constexpr std::int32_t index() const { return index_; }

 private:
  CInstance* first() const {
    std::vector<CInstance*>& all = object_types().at(index_).instances;
    if (!all.empty() && all.front()->is_alive) [[likely]]
      return all.front();
    return find_first();
  }
  CInstance* find_first() const;  // reports when there is none
  std::int32_t index_;
};

// for (Instance enemy : with(oEnemy)) ...: those alive now, children included, in order of creation. While the body runs, built-in
// functions and scripts that it calls see the iterated instance as self and the caller as other.
class With {
 public:
  explicit With(const Value& target);
  ~With();
  With(const With&) = delete;
  With& operator=(const With&) = delete;

  class Iterator {
   public:
    Iterator(With& over, std::size_t at) : over_(over), at_(at) {}
    Instance operator*() const {
      ARENA_ASSERT(at_ < over_.list_.size());
      return Instance(over_.list_[at_]);
    }
    Iterator& operator++() { return at_ = over_.enter(at_ + 1), *this; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    With& over_;
    std::size_t at_;
  };
  Iterator begin() { return {*this, enter(0)}; }
  Iterator end() { return {*this, list_.size()}; }

 private:
  std::size_t enter(std::size_t from);  // the next one that is still alive becomes self
  std::vector<CInstance*> list_;
  WBObjectBase* saved_self_;
  WBObjectBase* saved_other_;
};
inline With with(const Value& target, Here = Here(__builtin_LINE())) { return With(target); }

// The instances that a `with` over the value visits; reports invalid targets.
std::vector<CInstance*> with_targets(const RValue& target);

}  // namespace arena::script
