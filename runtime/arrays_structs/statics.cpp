#include "runtime/arrays_structs/statics.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/holder.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/checks/assert.h"
#include "runtime/program/names.h"
#include "runtime/session/state.h"

namespace arena {
namespace {

// The static structs of a session, by script: in order of names, for the order of the chain is the linker's.
class Statics final : public Holder {
 public:
  void visit_values(ValueVisitor& visitor) override {
    for (PropertyObject* const object : made) {
      if (object != nullptr) visitor(RValue::of_object(object));
    }
  }
  std::vector<PropertyObject*> made = std::vector<PropertyObject*>(static_cast<std::size_t>(script_count()));

  using State = std::vector<PropertyObject*>;
  void save(State& into) const { into = made; }
  void load(const State& from) { made = from; }
  void restart() { std::fill(made.begin(), made.end(), nullptr); }
  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() { return std::tuple(field("made", &Statics::made)); }
};
const StatePart<Statics> statics_part{PartLevel::kScripts, "statics"};

}  // namespace

PropertyObject* statics_of(CompiledFunction& function) {
  ARENA_ASSERT(function.index >= 0 && function.index < script_count());  // a script, and the look-up was done
  PropertyObject*& made = statics_part().made[static_cast<std::size_t>(function.index)];
  if (made != nullptr) return made;
  PropertyObject* const statics = new PropertyObject(ObjectKind::kStruct);
  if (CompiledFunction* const base = base_of(function)) statics->prototype = statics_of(*base);
  for (const StaticMethod* method : static_methods_of(function)) {
    RValue closure;
    make_method(closure, method->code, nullptr);
    store_variable(statics, method->name.slot, closure);
  }
  made = statics;  // complete, or not there
  return statics;
}

}  // namespace arena
