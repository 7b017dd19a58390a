#pragma once
// How compiled code reaches variables: names as objects, and the proxies that `self[hp]` and `list[i]` give. A proxy is a temporary:
// read it, write it or call it where it stands. The line of the access goes into the frame before anything can fail.
#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/program/names.h"
#include "runtime/script/dynamic.h"
#include "runtime/values/number_text.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/calls.h"

namespace arena::script {

// The name of a variable. Static storage, one for each text and folder.
class Variable : public NameSlot {
 public:
  explicit Variable(const char* name) : NameSlot(Type::kVariable, name) {}
};

// The name of a built-in variable of instances: where the holder may be a struct, the same name is a field of the struct.
class BuiltinName : public Variable {
 public:
  explicit BuiltinName(const char* name, double CInstance::*as_field = nullptr) : Variable(name), plain_field(as_field) {}
  double CInstance::*plain_field;  // where it stands in an instance when it is plain memory, or null
};

// What a name turns into where it is used: it notes the line of the access in the frame.
struct Key : Here {
  const Variable& name;
  template <class Name>
  requires(std::is_base_of_v<Variable, Name> && !std::is_base_of_v<BuiltinName, Name>)
      Key(const Name& variable, int line = __builtin_LINE())
      : Here(line), name(variable) {}
};
struct BuiltinKey : Here {
  const BuiltinName& name;
  BuiltinKey(const BuiltinName& variable, int line = __builtin_LINE()) : Here(line), name(variable) {}
};

// Calls a value with native arguments: they are boxed on the native stack. The callee may be the variable itself: nothing looks at it
// any more once the called function runs.
template <class... Arguments>
Value call_value(WBObjectBase* self, WBObjectBase* other, const RValue& callee, const Arguments&... arguments) {
  constexpr std::size_t kCount = sizeof...(Arguments), kRoom = kCount > 0 ? kCount : 1;
  const RValue values[kRoom] = {RValue(as_value(arguments))...};
  const RValue* pointers[kRoom];
  for (std::size_t i = 0; i < kCount; ++i) pointers[i] = &values[i];
  Value result;
  const MethodClosure* closure = method_of(callee);
  if (closure != nullptr && closure->direct_entry != nullptr && session().current_builtin == nullptr) [[likely]] {
    closure->direct_entry(closure->bound_self.is_object() ? closure->bound_self.object : self, other, result, kCount, pointers);
    return result;
  }
  const Value kept(callee);
  call_method(self, other, result, kCount, kept, pointers);
  return result;
}

class VariableAccess {
 public:
  using IsDynamic = void;
  VariableAccess(PropertyObject* object, const Variable& name) : object_(object), name_(name) {}
  VariableAccess(const VariableAccess&) = delete;
  VariableAccess& operator=(const VariableAccess&) = delete;

  // Reading. Reports what is missing or was never written.
  const RValue& get() const {
    const RValue* found = object_ != nullptr ? object_->find_in_row(name_.slot) : nullptr;
    if (found != nullptr && found->kind_bits != kUnset) [[likely]]
      return *found;
    found = read_variable_slow(object_, name_.slot);
    return found != nullptr ? *found : static_cast<const RValue&>(undefined);
  }
  operator Real() && { return to_real(get()); }
  operator Value() && { return Value(static_cast<const Value&>(get())); }
  explicit operator bool() && { return to_bool(get()); }

  // Writing.
  template <class T>
  void operator=(T&& value) && {
    if constexpr (KnownNumber<T>) {
      store_number(as_real(value).number());
    } else {
      store(as_value(static_cast<T&&>(value)));
    }
  }
#define ARENA_UPDATE(symbol, routine)                                 \
  template <class T>                                                  \
  void operator symbol(T&& right)&& {                                 \
    if constexpr (KnownNumber<T>) {                                   \
      RValue* slot = plain_slot();                                    \
      if (slot != nullptr && slot->kind_bits == kNumber) [[likely]] { \
        slot->real symbol as_real(right).number();                    \
        return;                                                       \
      }                                                               \
    }                                                                 \
    update(routine, as_value(static_cast<T&&>(right)));               \
  }
  ARENA_UPDATE(+=, op_add)
  ARENA_UPDATE(-=, op_subtract)
  ARENA_UPDATE(*=, op_multiply)
  ARENA_UPDATE(/=, op_divide)
#undef ARENA_UPDATE
  template <class T>
  void operator%=(T&& right) && {
    update(op_remainder, as_value(static_cast<T&&>(right)));
  }

  VariableAccess operator[](Key member) && { return VariableAccess(require_properties(get()), member.name); }
  GeneralAccess operator[](BuiltinKey member) &&;
  ElementAccess operator[](Real index) &&;
  // Calls the method held here. A method without an object of its own runs for the object it was read from.
  template <class... Arguments>
  Value operator()(const Arguments&... arguments) && {
    return call_value(object_, innermost_frame() != nullptr ? innermost_frame()->self : nullptr, get(), arguments...);
  }
  PropertyObject* object() const { return object_; }
  const Variable& name() const { return name_; }

 private:
  // The slot for writing when it can take a number without further ado.
  RValue* plain_slot() const {
    if (object_ == nullptr || object_->is_read_only) return nullptr;
    RValue* slot = object_->find_in_row(name_.slot);
    return slot != nullptr && slot->is_plain() ? slot : nullptr;
  }
  void store_number(double number) {
    if (RValue* slot = plain_slot()) [[likely]] {
      slot->real = number;
      slot->flags = 0;
      slot->kind_bits = kNumber;
    } else {
      write_variable(object_, name_.slot, RValue(number));
    }
  }
  void store(const RValue& value) {
    RValue* slot = value.is_plain() ? plain_slot() : nullptr;
    if (slot != nullptr) [[likely]] {
      slot->i64 = value.i64;
      slot->flags = value.flags;
      slot->kind_bits = value.kind_bits;
    } else {
      write_variable(object_, name_.slot, value);
    }
  }
  void update(RValue& (*routine)(RValue&, const RValue&), const RValue& right) {
    RValue changed(get());
    const RValue kept(right);
    routine(changed, kept);
    write_variable(object_, name_.slot, changed);
  }

  PropertyObject* object_;
  const Variable& name_;
};

// An element of the array in a variable, or in a local value.
class ElementAccess {
 public:
  using IsDynamic = void;
  ElementAccess(const RValue& array, std::int32_t index) : array_(const_cast<RValue*>(&array)), index_(index) {}
  ElementAccess(PropertyObject* owner, const Variable& name, std::int32_t index) : owner_(owner), name_(&name), index_(index) {}
  ElementAccess(const ElementAccess&) = delete;
  ElementAccess& operator=(const ElementAccess&) = delete;

  const RValue& get() const {
    const RValue* element = array_element(holder(), index_, true);
    return element != nullptr ? *element : static_cast<const RValue&>(undefined);
  }
  operator Real() && { return to_real(get()); }
  operator Value() && { return Value(static_cast<const Value&>(get())); }
  explicit operator bool() && { return to_bool(get()); }
  template <class T>
  void operator=(T&& value) && {
    write(as_value(static_cast<T&&>(value)));
  }
  template <class T>
  void operator+=(T&& right) && {
    write(Value(get()) + right);
  }
  template <class T>
  void operator-=(T&& right) && {
    write(Value(get()) - right);
  }
  template <class T>
  void operator*=(T&& right) && {
    write(Value(get()) * right);
  }
  VariableAccess operator[](Key member) && { return VariableAccess(require_properties(get()), member.name); }
  GeneralAccess operator[](BuiltinKey member) &&;
  template <class... Arguments>
  Value operator()(const Arguments&... arguments) && {
    return Value(get())(arguments...);
  }

 private:
  const RValue& holder() const { return array_ != nullptr ? *array_ : *read_variable_slow(owner_, name_->slot); }
  // The common case without a call: a plain value over a plain value inside an array that nobody else holds.
  static bool write_plain(const RValue* holder, std::int32_t index, const RValue& value) {
    if (holder == nullptr || !holder->is_array() || !value.is_plain()) return false;
    ArrayRecord* array = holder->array;
    if (array == nullptr || array->count != 1 || array->flags != 0 || index < 0 || index >= array->length) return false;
    RValue& slot = array->elements[index];
    if (!slot.is_plain()) return false;
    slot.i64 = value.i64;
    slot.flags = value.flags;
    slot.kind_bits = value.kind_bits;
    return true;
  }
  void write(const RValue& value) {
    const bool may_write = owner_ == nullptr || !owner_->is_read_only;
    if (may_write && write_plain(array_ != nullptr ? array_ : owner_->find_in_row(name_->slot), index_, value)) return;
    if (array_ != nullptr) {
      const OwnerTokenScope token(innermost_frame() != nullptr ? innermost_frame()->token : 1);
      array_write(*array_, index_, value);
    } else {
      var_set(RValue::of_object(owner_), name_->slot, index_, value);
    }
  }

  RValue* array_ = nullptr;
  PropertyObject* owner_ = nullptr;
  const Variable* name_ = nullptr;
  std::int32_t index_;
};

// A built-in variable of what may be an instance or a struct.
class GeneralAccess {
 public:
  using IsDynamic = void;
  GeneralAccess(PropertyObject* object, const BuiltinName& name, std::int32_t index = kNoIndex)
      : object_(object), name_(name), index_(index) {}
  GeneralAccess(const GeneralAccess&) = delete;
  const RValue& get() const {
    if (name_.plain_field != nullptr && index_ == kNoIndex && object_ != nullptr && object_->object_kind == ObjectKind::kInstance) {
      value_ = RValue(static_cast<CInstance*>(object_)->*name_.plain_field);
      return value_;
    }
    var_get(RValue::of_object(object_), name_.slot, index_, value_);
    return value_;
  }
  operator Real() && { return to_real(get()); }
  operator Value() && { return Value(get()); }
  explicit operator bool() && { return to_bool(get()); }
  template <class T>
  void operator=(T&& value) && {
    write(as_value(static_cast<T&&>(value)));
  }
  template <class T>
  void operator+=(T&& right) && {
    write(Value(get()) + static_cast<T&&>(right));
  }
  template <class T>
  void operator-=(T&& right) && {
    write(Value(get()) - static_cast<T&&>(right));
  }
  template <class T>
  void operator*=(T&& right) && {
    write(Value(get()) * static_cast<T&&>(right));
  }
  GeneralAccess operator[](Real index) && { return GeneralAccess(object_, name_, saturate_int32(index.number())); }

 private:
  void write(const RValue& value) { var_set(RValue::of_object(object_), name_.slot, index_, value); }
  PropertyObject* object_;
  const BuiltinName& name_;
  std::int32_t index_;
  mutable RValue value_;
};

inline VariableAccess Value::operator[](Key key) const { return VariableAccess(require_properties(*this), key.name); }
inline GeneralAccess Value::operator[](BuiltinKey key) const { return GeneralAccess(require_properties(*this), key.name); }
inline GeneralAccess VariableAccess::operator[](BuiltinKey member) && { return GeneralAccess(require_properties(get()), member.name); }
inline GeneralAccess ElementAccess::operator[](BuiltinKey member) && { return GeneralAccess(require_properties(get()), member.name); }
inline ElementAccess Value::operator[](Real index) const { return ElementAccess(*this, saturate_int32(index.number())); }
template <class... Arguments>
Value Value::operator()(const Arguments&... arguments) const {
  WBObjectBase* const self = innermost_frame() != nullptr ? innermost_frame()->self : nullptr;
  WBObjectBase* const other = innermost_frame() != nullptr ? innermost_frame()->other : nullptr;
  return call_value(self, other, *this, arguments...);
}
inline ElementAccess VariableAccess::operator[](Real index) && { return ElementAccess(object_, name_, saturate_int32(index.number())); }

}  // namespace arena::script
