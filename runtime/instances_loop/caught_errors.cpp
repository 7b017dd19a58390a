#include "runtime/instances_loop/caught_errors.h"

#include <tuple>

#include "runtime/arrays_structs/holder.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/program/names.h"
#include "runtime/session/state.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/calls.h"

namespace arena {
namespace {

class UnhandledHandler final : public Holder {
 public:
  void visit_values(ValueVisitor& visitor) override { visitor(function); }
  RValue function;

  using State = ValueBits;
  void save(State& into) const { into = bits_of(function); }
  void load(const State& from) { set_bits(function, from); }
  void restart() { function = RValue(); }
  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() { return std::tuple(field("function", &UnhandledHandler::function)); }
};
const StatePart<UnhandledHandler> unhandled{PartLevel::kScripts, "handler of unhandled errors"};

}  // namespace

RValue exception_value(const WBKSLException& error) {
  RValue made = make_struct();
  PropertyObject* const object = property_object(made);
  store_variable(object, variable_id("message"), make_string(error.message()));
  store_variable(object, variable_id("longMessage"), make_string(error.report()));
  store_variable(object, variable_id("script"), make_string(error.script()));
  store_variable(object, variable_id("line"), RValue(static_cast<double>(error.line())));
  object->is_exception = true;
  return made;
}

void tell_unhandled_error(const WBKSLException& error) {
  const RValue function = unhandled().function;  // it may set another while it runs
  if (function.is_undefined()) return;
  const RValue told = exception_value(error);
  const RValue* arguments[] = {&told};
  RValue ignored;
  call_method(nullptr, nullptr, ignored, 1, function, arguments);
}

void set_unhandled_handler(const RValue& function) { unhandled().function = function; }

}  // namespace arena
