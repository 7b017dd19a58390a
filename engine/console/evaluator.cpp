#include "engine/console/evaluator.h"

#include <cmath>
#include <limits>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/reports/report.h"
#include "runtime/script/handles.h"
#include "runtime/values/compare.h"
#include "runtime/values/conversions.h"
#include "runtime/values/operators.h"
#include "runtime/values/strings.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/calls.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::console {
namespace {

using Type = Node::Type;

const RValue* literal(const std::string& name) {
  static const std::vector<std::pair<std::string, RValue>> kLiterals = {{"true", RValue::of_bool(true)},
                                                                        {"false", RValue::of_bool(false)},
                                                                        {"undefined", RValue()},
                                                                        {"noone", RValue(kNoone)},
                                                                        {"all", RValue(static_cast<double>(kAllTarget))},
                                                                        {"NaN", RValue(std::nan(""))},
                                                                        {"infinity", RValue(std::numeric_limits<double>::infinity())},
                                                                        {"null", RValue::null()},
                                                                        {"pi", RValue(3.141592653589793)}};
  for (const auto& [word, value] : kLiterals) {
    if (word == name) return &value;
  }
  return nullptr;
}

class Evaluator {
 public:
  Evaluator(WBObjectBase* self, WBObjectBase* other)
      : frame_("console", self != nullptr ? self : global_object(), other), locals_(make_struct()) {}

  RValue run(const Node& node) {
    switch (node.type) {
      case Type::kNumber: return RValue(node.number);
      case Type::kText: return make_string(node.text);
      case Type::kName: return name(node.text);
      case Type::kMember: return member(node);
      case Type::kElement: return element(node);
      case Type::kCall: return call(node);
      case Type::kNew: return make_new(node);
      case Type::kArray: return array(node);
      case Type::kStruct: return structure(node);
      case Type::kUnary: return unary(node);
      case Type::kBinary: return binary(node);
      case Type::kAssign: return assignment(node);
      case Type::kWith: return with(node);
      case Type::kBlock: {
        RValue last;
        for (const NodePtr& statement : node.children) {
          last = RValue();  // a value that nobody asked for holds no array
          last = run(*statement);
        }
        return last;
      }
    }
    return {};
  }

 private:
  WBObjectBase* self() const { return frame_.self; }

  // Names
  bool self_has(const std::string& text) const {
    const std::int32_t id = find_variable_id(text);
    const RValue* found = id >= 0 ? self()->find_variable(id) : nullptr;
    return found != nullptr && !found->is_unset();
  }
  static RValue function_number(const std::string& text, bool& found) {
    const std::int32_t script = find_script(text), builtin = find_builtin(text);
    found = script >= 0 || builtin >= 0;
    return RValue(static_cast<double>(script >= 0 ? kFirstScriptNumber + script : builtin));
  }
  static bool asset_number(const std::string& text, RValue& out) {
    std::int32_t number = object_types().find(text);
    for (std::size_t i = 0; i < sprite_infos().size() && number < 0; ++i) {
      if (sprite_infos()[i].name == text) number = static_cast<std::int32_t>(i);
    }
    if (number < 0) number = world().find_room(text);
    out = RValue(static_cast<double>(number));
    return number >= 0;
  }

  RValue name(const std::string& text) {
    if (const RValue* known = literal(text)) return *known;
    if (text == "self") return RValue::of_object(self());
    if (text == "other") return frame_.other != nullptr ? RValue::of_object(frame_.other) : RValue();
    if (text == "global") return RValue::of_object(global_object());
    if (text == "local") return locals_;
    RValue value;
    if (self_has(text)) {
      var_get(RValue::of_object(self()), variable_id(text), kNoIndex, value);
      return value;
    }
    const std::int32_t builtin = find_builtin_variable(text);
    if (builtin >= 0 && (!builtin_variable_at(builtin).belongs_to_instance || self()->object_kind == ObjectKind::kInstance)) {
      builtin_var_get(self(), builtin, kNoIndex, value);
      return value;
    }
    bool is_function = false;
    const RValue number = function_number(text, is_function);
    if (is_function) return number;
    if (asset_number(text, value)) return value;
    var_get(RValue::of_object(self()), variable_id(text), kNoIndex, value);  // reports what is missing
    return value;
  }

  RValue member(const Node& node) {
    const RValue target = run(*node.children[0]);
    const std::int32_t id = variable_id(node.text);
    RValue value;
    if (target.is_object() && target.object == locals_.object) {
      const RValue* found = locals_.object->find_variable(id);
      if (found == nullptr || found->is_unset()) {
        report_error(messages::kLocalUnset, node.text, id);
        return value;
      }
      return *found;
    }
    var_get(target, id, kNoIndex, value);
    return value;
  }

  // The built-in array (alarm, view_camera) that a name or member means, or -1.
  static std::int32_t builtin_array(const Node& node) {
    if (node.type != Type::kName && node.type != Type::kMember) return -1;
    const std::int32_t builtin = find_builtin_variable(node.text);
    return builtin >= 0 && builtin_variable_at(builtin).length > 0 ? builtin : -1;
  }
  RValue holder_of(const Node& node) { return node.type == Type::kMember ? run(*node.children[0]) : RValue::of_object(self()); }

  RValue element(const Node& node) {
    const std::int32_t builtin = builtin_array(*node.children[0]);
    if (builtin >= 0) {
      RValue value;
      builtin_var_get(require_object(holder_of(*node.children[0])), builtin, to_int32(run(*node.children[1])), value);
      return value;
    }
    const RValue array = run(*node.children[0]);
    const RValue* found = array_element(array, to_int32(run(*node.children[1])));
    return found != nullptr ? *found : RValue();
  }

  // Calls
  std::vector<RValue> arguments(const Node& node, std::size_t first) {
    std::vector<RValue> values;
    values.reserve(node.children.size());
    for (std::size_t i = first; i < node.children.size(); ++i) values.push_back(run(*node.children[i]));
    return values;
  }
  static std::vector<const RValue*> pointers(const std::vector<RValue>& values) {
    std::vector<const RValue*> all;
    all.reserve(values.size());
    for (const RValue& value : values) all.push_back(&value);
    return all;
  }
  static RValue call_value(const RValue& callee, WBObjectBase* self, WBObjectBase* other, const std::vector<RValue>& values) {
    RValue result;
    call_method(self, other, result, static_cast<std::int32_t>(values.size()), callee, pointers(values).data());
    return result;
  }

  RValue call(const Node& node) {
    const Node& callee = *node.children[0];
    if (callee.type == Type::kMember) {
      const RValue target = run(*callee.children[0]);
      RValue function;
      var_get(target, variable_id(callee.text), kNoIndex, function);
      return call_value(function, require_object(target), self(), arguments(node, 1));
    }
    if (callee.type == Type::kName) {
      RValue made;
      if (make_kind(callee.text, node, made)) return made;
      bool is_function = false;
      const RValue number = function_number(callee.text, is_function);
      if (is_function && !self_has(callee.text)) return call_value(number, self(), frame_.other, arguments(node, 1));
    }
    const RValue function = run(callee);
    return call_value(function, self(), frame_.other, arguments(node, 1));
  }

  // Values of the kinds that no literal gives.
  bool make_kind(const std::string& text, const Node& node, RValue& out) {
    const auto argument = [&](std::size_t at) { return node.children.size() > at + 1 ? run(*node.children[at + 1]) : RValue(); };
    if (text == "int32")
      out = RValue::of_int32(to_int32(argument(0)));
    else if (text == "int64")
      out = RValue::of_int64(to_int64(argument(0)));
    else if (text == "real")
      out = RValue(to_real(argument(0)));
    else if (text == "bool")
      out = RValue::of_bool(to_bool(argument(0)));
    else if (text == "ref")
      out = RValue::of_ref(to_int32(argument(0)), to_int32(argument(1)));
    else if (text == "ptr")
      out = RValue::of_pointer(reinterpret_cast<void*>(static_cast<std::intptr_t>(to_int64(argument(0)))));
    else if (text == "unset")
      out = RValue::unset();
    else if (text == "kind")
      out = RValue::of_kind(static_cast<std::uint32_t>(to_int32(argument(0))) & kKindMask);
    else if (text == "immutable") {
      out = argument(0);
      if (out.is_array() && out.array != nullptr) out.array->flags = out.array->flags | kArrayImmutable;
    } else
      return false;
    return true;
  }

  RValue make_new(const Node& node) {
    const std::int32_t script = find_script(node.text);
    if (script < 0 || !script_at(script).is_constructor) throw ParseError{"'" + node.text + "' is no constructor"};
    const std::vector<RValue> values = arguments(node, 0);
    return construct(self(), script_at(script), static_cast<std::int32_t>(values.size()), pointers(values).data());
  }

  RValue array(const Node& node) {
    const std::vector<RValue> values = arguments(node, 0);
    return make_array(values.data(), static_cast<std::int32_t>(values.size()));
  }
  RValue structure(const Node& node) {
    RValue made = make_struct();
    for (std::size_t i = 0; i < node.names.size(); ++i) {
      store_variable(property_object(made), variable_id(node.names[i]), run(*node.children[i]));
    }
    return made;
  }

  // Operators
  RValue unary(const Node& node) {
    const RValue value = run(*node.children[0]);
    if (node.text == "!") return RValue::of_bool(!to_bool(value));
    return node.text == "-" ? negate(value) : value;
  }
  static RValue& operate_by(char symbol, RValue& left, const RValue& right) {
    switch (symbol) {
      case '+': return op_add(left, right);
      case '-': return op_subtract(left, right);
      case '*': return op_multiply(left, right);
      case '/': return op_divide(left, right);
      default: return op_remainder(left, right);
    }
  }
  RValue binary(const Node& node) {
    RValue left = run(*node.children[0]);
    if (node.text == "&&") return RValue::of_bool(to_bool(left) && to_bool(run(*node.children[1])));
    if (node.text == "||") return RValue::of_bool(to_bool(left) || to_bool(run(*node.children[1])));
    const RValue right = run(*node.children[1]);
    const bool compares = node.text == "==" || node.text == "!=" || node.text[0] == '<' || node.text[0] == '>';
    if (!compares) return operate_by(node.text[0], left, right);
    const int order = compare(left, right);
    const bool holds = node.text == "=="   ? order == 0
                       : node.text == "!=" ? order != 0
                       : node.text == "<"  ? order == -1
                       : node.text == "<=" ? order == -1 || order == 0
                       : node.text == ">"  ? order == 1
                                           : order == 1 || order == 0;
    return RValue::of_bool(holds);
  }

  // Assignments
  RValue assignment(const Node& node) {
    RValue value = run(*node.children[1]);
    if (node.text != "=") {
      RValue left = run(*node.children[0]);
      value = RValue(operate_by(node.text[0], left, value));
    }
    assign_to(*node.children[0], value);
    return value;
  }

  void assign_to(const Node& target, const RValue& value) {
    if (target.type == Type::kName) {
      // Without an instance, the world's built-in variables are still reached by their names.
      const std::int32_t builtin = find_builtin_variable(target.text);
      if (builtin >= 0 && !builtin_variable_at(builtin).belongs_to_instance) {
        builtin_var_set(self(), builtin, kNoIndex, value);
      } else {
        var_set(RValue::of_object(self()), variable_id(target.text), kNoIndex, value);
      }
    } else if (target.type == Type::kMember) {
      var_set(run(*target.children[0]), variable_id(target.text), kNoIndex, value);
    } else {
      assign_element(target, value);
    }
  }

  void assign_element(const Node& target, const RValue& value) {
    const Node& base = *target.children[0];
    const std::int32_t index = to_int32(run(*target.children[1]));
    const std::int32_t builtin = builtin_array(base);
    if (builtin >= 0) {
      builtin_var_set(require_object(holder_of(base)), builtin, index, value);
    } else if (base.type == Type::kName || base.type == Type::kMember) {
      var_set(holder_of(base), variable_id(base.text), index, value);
    } else if (base.type == Type::kElement) {
      if (RValue* slot = element_slot(base)) write_inner(*slot, index, value);
    } else {
      RValue made = run(base);  // an array that nobody else may hold
      array_write(made, index, value);
    }
  }

  // The slot of `a[i]` that is itself about to be written into: shared arrays on the way are copied.
  RValue* element_slot(const Node& node) {
    const Node& base = *node.children[0];
    const std::int32_t index = to_int32(run(*node.children[1]));
    RValue* outer = nullptr;
    std::int64_t token = 1;
    if (base.type == Type::kElement) {
      outer = element_slot(base);
    } else if (base.type == Type::kName || base.type == Type::kMember) {
      WBObjectBase* object = require_object(holder_of(base));
      const bool may_write = object != nullptr && check_writable(object, variable_id(base.text));
      outer = may_write ? object->get_variable_ref(variable_id(base.text)) : nullptr;
      if (object != nullptr) token = object->serial;
    }
    if (outer == nullptr) return nullptr;
    if (index < 0) {
      report_error(messages::kIndexNegative);
      return nullptr;
    }
    const OwnerTokenScope scope(token);
    RValue* slot = array_element_for_write(*outer, index);
    if (slot != nullptr && slot->is_array()) clear_if_foreign(*slot, *outer);
    return slot;
  }
  static void clear_if_foreign(const RValue& inner, const RValue& outer) {
    if (inner.array != nullptr && inner.array->owner_token != outer.array->owner->serial) clear_owner_token(inner);
  }
  void write_inner(RValue& slot, std::int32_t index, const RValue& value) {
    const OwnerTokenScope token(slot.is_array() && slot.array != nullptr ? slot.array->owner->serial : 1);
    array_write(slot, index, value);
  }

  RValue with(const Node& node) {
    const RValue target = run(*node.children[0]);
    if (target.is_object() && target.object == locals_.object) {
      report_error(messages::kWithLocal);
      return {};
    }
    RValue last;
    WBObjectBase* const outer_self = frame_.self;
    WBObjectBase* const outer_other = frame_.other;
    struct Restore {
      FrameScope& frame;
      WBObjectBase *self, *other;
      ~Restore() {
        frame.self = self;
        frame.other = other;
      }
    } const restore{frame_, outer_self, outer_other};
    for (CInstance* instance : script::with_targets(target)) {
      if (!instance->is_alive) continue;
      frame_.self = instance;
      frame_.other = outer_self;
      last = run(*node.children[1]);
    }
    return last;
  }

  FrameScope frame_;
  RValue locals_;
};

}  // namespace

RValue evaluate(const std::string& source, WBObjectBase* self, WBObjectBase* other) {
  return with_memory_reported([&] {
    const NodePtr statements = parse(source);
    Evaluator evaluator(self, other);
    return with_memory_reported([&] { return evaluator.run(*statements); });  // here the frames are still there
  });
}

}  // namespace arena::console
