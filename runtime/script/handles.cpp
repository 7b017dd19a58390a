#include "runtime/script/handles.h"

#include "runtime/program/builtin_variable.h"
#include "runtime/reports/report.h"

namespace arena::script {

Real WorldVariable::number() const {
  RValue value;
  builtin_var_get(nullptr, find_variable_id_builtin(slot), kNoIndex, value);
  return to_real(value);
}

CInstance* Instance::resolve_or_report(const RValue& value) {
  WBObjectBase* const object = require_object(value);
  CInstance* const instance = instance_of(object);
  if (object != nullptr && instance == nullptr)
    report_error(messages::kInstanceContext, innermost_frame() != nullptr ? innermost_frame()->function : "");
  return instance;
}

CInstance* ObjectName::find_first() const {
  if (CInstance* found = resolve_instance(index_)) return found;
  report_error(messages::kNoInstanceNamed, index_, object_type_name(index_));
  return nullptr;
}

std::vector<CInstance*> with_targets(const RValue& target) {
  if (target.is_object()) {
    if (target.object == global_object()) report_error(messages::kWithGlobal);
    CInstance* instance = instance_of(target.object);
    if (instance == nullptr) report_error(messages::kWithInvalid);
    return instance != nullptr && instance->is_alive ? std::vector<CInstance*>{instance} : std::vector<CInstance*>();
  }
  const bool is_number = target.is_numeric() || target.kind() == kInt32 || target.kind() == kInt64 || is_instance_ref(target);
  if (!is_number) {
    report_error(messages::kWithInvalid);
    return {};
  }
  const std::int32_t number = to_int32(target);
  if (number == kGlobalTarget) report_error(messages::kWithGlobal);
  if (number == kNooneTarget || number == kGlobalTarget) return {};
  std::vector<CInstance*> found;
  if (number == kAllTarget || object_types().has(number)) {
    const std::vector<CInstance*>& all = number == kAllTarget ? world().all() : object_types().at(number).instances;
    for (CInstance* instance : all) {
      if (instance->is_alive) found.push_back(instance);
    }
    return found;
  }
  CInstance* single = number == kSelfTarget || number == kOtherTarget ? instance_of(resolve_object(target)) : resolve_instance(number);
  if (single == nullptr && number < 0) report_error(messages::kWithInvalid);
  if (single != nullptr) found.push_back(single);
  return found;
}

With::With(const Value& target)
    : list_(with_targets(target)),
      saved_self_(innermost_frame() != nullptr ? innermost_frame()->self : nullptr),
      saved_other_(innermost_frame() != nullptr ? innermost_frame()->other : nullptr) {}

With::~With() {
  if (innermost_frame() == nullptr) return;
  innermost_frame()->self = saved_self_;
  innermost_frame()->other = saved_other_;
}

std::size_t With::enter(std::size_t from) {
  while (from < list_.size() && !list_[from]->is_alive) ++from;
  if (innermost_frame() == nullptr) return from;
  innermost_frame()->self = from < list_.size() ? list_[from] : saved_self_;
  innermost_frame()->other = from < list_.size() ? saved_self_ : saved_other_;
  return from;
}

}  // namespace arena::script
