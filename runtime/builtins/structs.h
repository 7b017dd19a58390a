#pragma once
// Structs, methods, variables by name, links that hold nothing.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(gc_collect, void(), "", "Collects what nothing holds any more, after this frame.");
BUILTIN(method, Any(Any, Function), "bound, function", "A method that runs for the bound one; undefined leaves it to the caller.");
BUILTIN(method_call, Any(Function, Optional<Array>), "function, arguments", "Calls with the arguments of an array.");
BUILTIN(method_get_index, Any(Any), "value", "The number of a method's function; undefined of another value.");
BUILTIN(method_get_self, Any(Any), "value", "What a method is bound to, or undefined.");
BUILTIN(script_execute, Any(Function, Rest<Any>), "function, arguments", "Calls with the arguments that follow.");
BUILTIN(script_exists, Flag(ScriptNumber), "number", "Whether the number is a script's.");
BUILTIN(script_get_name, Text(ScriptNumber), "number", "The name of the script with that number.");
BUILTIN(static_get, Any(Any), "callee", "The struct of a script's static variables, or undefined.");
BUILTIN(struct_exists, Flag(Struct, Text), "target, name", "Whether there is a variable of that name.");
BUILTIN(struct_freeze, void(OwnStruct), "target", "Makes the struct read-only, for good.");
BUILTIN(struct_get, Any(Struct, Text), "target, name", "The variable's value; undefined when there is none.");
BUILTIN(struct_get_names, Array(Struct), "target", "The names of the variables.");
BUILTIN(struct_names_count, Whole(Struct), "target", "How many variables there are.");
BUILTIN(struct_remove, void(Struct, Text), "target, name", "Takes a variable away.");
BUILTIN(struct_set, void(Struct, Text, Any), "target, name, value", "Writes a variable, which is made if need be.");
BUILTIN(variable_global_exists, Flag(Text), "name", "Whether there is a global variable of that name.");
BUILTIN(variable_global_get, Any(Text), "name", "The global variable's value; undefined when there is none.");
BUILTIN(variable_global_set, void(Text, Any), "name, value", "Writes a global variable, which is made if need be.");
BUILTIN(variable_instance_exists, Flag(Target, Text), "target, name",
        "Whether the instance has a variable of that name, a built-in one included.");
BUILTIN(variable_instance_get, Any(Target, Text), "target, name", "The value of an instance's variable.");
BUILTIN(variable_instance_get_names, Array(Target), "target", "The names of the instance's own variables.");
BUILTIN(variable_instance_set, void(Target, Text, Any), "target, name, value", "Writes an instance's variable, which is made if need be.");
BUILTIN(variable_struct_get_names, Array(Struct), "target", "As struct_get_names.");
BUILTIN(variable_struct_names_count, Whole(Struct), "target", "As struct_names_count.");
BUILTIN(variable_struct_remove, void(Struct, Text), "target, name", "As struct_remove.");
BUILTIN(variable_struct_set, void(Struct, Text, Any), "target, name, value", "As struct_set.");
BUILTIN(weak_ref_alive, Flag(WeakReference), "reference", "Whether the struct still exists.");
BUILTIN(weak_ref_create, WeakReference(OwnStruct), "target", "A reference that does not keep the struct alive.");
BUILTIN(weak_ref_get, Any(WeakReference), "reference", "The struct, or undefined when it is gone.");

namespace checked {

BUILTIN(variable_struct_exists, Flag(Struct, Text), "target, name", "As struct_exists.");
BUILTIN(variable_struct_get, Any(Struct, Text), "target, name", "As struct_get.");

}  // namespace checked
}  // namespace arena::script
