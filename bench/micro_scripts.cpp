// Small operations as scripts write them.
#include "bench/micro_scripts.h"

#include "toolkit/ui/widget.h"

namespace game {
namespace {
const Variable alpha_field{"bench_alpha"}, beta{"bench_beta"}, gamma{"bench_gamma"}, method_slot{"bench_method"}, list{"bench_list"};
const Variable global_value{"bench_global"}, kept{"bench_kept"};
}  // namespace
extern const Script<Real(Real a, Real b, Real c)> BenchThree;
extern const Script<Value(Value a, Value b, Value c)> BenchThreeBoxed;
}  // namespace game

SCRIPT(BenchThree, Real a, Real, Real) { return a; }
SCRIPT(BenchThreeBoxed, Value a, Value, Value) { return a; }

namespace game {
namespace {
constexpr int kBenchOwner = 0;
}
}  // namespace game
METHOD(Value, kBenchOwner, benchMethod, Value a) { return a; }

namespace game {

MicroBench::MicroBench() : object_(struct_of({{alpha_field, 1}, {beta, 2}, {hp, 3}, {gamma, 4}})) {
  global[global_value] = 5;
  global[kept] = object_;  // the collector runs between the operations
  object_[method_slot] = bind(ObjectSelf(object_.object), kBenchOwner_benchMethod);
  const Value array = array_create(64, 1);
  object_[list] = array;
}

double MicroBench::variable_read(int n) {
  Real sum = 0;
  for (int i = 0; i < n; ++i) sum += object_[hp];
  return sum.number();
}
void MicroBench::variable_write(int n) {
  for (int i = 0; i < n; ++i) object_[hp] = i;
}
void MicroBench::variable_add(int n) {
  for (int i = 0; i < n; ++i) object_[hp] += 1;
}
double MicroBench::global_read(int n) {
  Real sum = 0;
  for (int i = 0; i < n; ++i) sum += global[global_value];
  return sum.number();
}
double MicroBench::script_call(int n) {
  Real sum = 0;
  for (int i = 0; i < n; ++i) sum += Real(BenchThreeBoxed(i, 2, 3));
  return sum.number();
}
double MicroBench::method_call(int n) {
  Real sum = 0;
  for (int i = 0; i < n; ++i) sum += Real(object_[method_slot](i));
  return sum.number();
}
double MicroBench::array_read(int n) {
  Real sum = 0;
  const Value array = object_[list];
  for (int i = 0; i < n; ++i) sum += array[i % 64];
  return sum.number();
}
void MicroBench::array_write(int n) {
  for (int i = 0; i < n; ++i) object_[list][i % 64] = i;
}
void MicroBench::array_push_values(int n) {
  Value array = array_create(0);
  for (int i = 0; i < n; ++i) {
    if (i % 1000 == 0) array = array_create(0);
    array_push(array, i);
  }
}
void MicroBench::struct_of_four(int n) {
  for (int i = 0; i < n; ++i) struct_of({{alpha_field, i}, {beta, 2}, {gamma, 3}, {hp, 4}});
}
void MicroBench::string_concat(int n) {
  const Value text = "abc";
  for (int i = 0; i < n; ++i) Value joined = text + string(i % 10);
}
void MicroBench::number_to_string(int n) {
  for (int i = 0; i < n; ++i) string(i % 1000 + 0.5);
}
double MicroBench::variable_by_name(int n) {
  const Value names[] = {alpha_field.text, beta.text, gamma.text, hp.text};
  Real sum = 0;
  for (int i = 0; i < n; ++i) sum += Real(variable_struct_get(object_, names[i % 4]));
  return sum.number();
}

WidgetBench::WidgetBench() : root_(TuiMain.make()) {
  for (int panel = 0; panel < 10; ++panel) {
    const Value holder = TuiPanel.make();
    for (int line = 0; line < 24; ++line) {
      const Value row = TuiRow.make();
      row[addContent](array_of(TuiText.make(struct_of({{value, "label"}})), TuiBox.make(struct_of({{flex_grow, 1}})),
                               TuiImage.make(struct_of({{value, 30}}))));
      holder[addContent](row);
    }
    root_[addContent](holder);
  }
}
void WidgetBench::touch() { mark_dirty(root_); }
void WidgetBench::arrange() {
  if (bool(root_[layout_dirty])) game::arrange(root_, 1280, 720);
}

}  // namespace game
