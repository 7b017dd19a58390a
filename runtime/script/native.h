#pragma once
// For libraries that are written over scripts and serve them: calls whose errors come back instead of ending the caller, and looks at
// variables that report nothing.
#include <initializer_list>
#include <string>

#include "runtime/script/handles.h"
#include "runtime/script/intrinsics.h"
#include "runtime/session/session.h"
#include "runtime/values/compare.h"

namespace arena::script {

// What they need of the runtime itself, under its own names.
using arena::global_object;
using arena::MethodClosure;
using arena::ObjectKind;
using arena::Part;
using arena::PartLevel;
using arena::PropertyObject;
using arena::RValue;
using arena::sorts_before;
using arena::to_real;
using arena::to_text;
using arena::ToolObject;
using arena::variable_name;
using arena::WBObjectBase;
namespace elementary = arena::elementary;

// What a guarded call gave. `error` is empty when it went well; `place` is the script that failed.
struct Attempt {
  Value result;
  std::string error, place;
};
Attempt attempt(const Value& self, const Value& callee, std::initializer_list<Value> arguments);

// The variable as it is, or null: of a struct or instance, of the instance with an id, or of the first one of an object type.
const RValue* peek(const Value& target, std::int32_t variable);
// The id of a variable's name, made when it is new.
std::int32_t id_of_variable(std::string_view name);
void write(const ObjectSelf& object, std::int32_t variable, const RValue& value);
// number, bool, int32, int64, ref.
bool is_numeric(const RValue& value);
void print(std::string_view text);

}  // namespace arena::script
