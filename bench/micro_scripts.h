#pragma once
#include "game/names.h"

namespace game {

// Each runs an operation n times. Nothing else is alive in the script's world.
class MicroBench {
 public:
  MicroBench();
  double variable_read(int n);
  void variable_write(int n);
  void variable_add(int n);
  double global_read(int n);
  double script_call(int n);
  double method_call(int n);
  double array_read(int n);
  void array_write(int n);
  void array_push_values(int n);
  void struct_of_four(int n);
  void string_concat(int n);
  void number_to_string(int n);
  double variable_by_name(int n);

 private:
  Value object_;
};

// A tree of about 1,000 widgets: panels with rows of buttons and texts.
class WidgetBench {
 public:
  WidgetBench();
  void touch();    // something changed: everything is arranged anew
  void arrange();  // what an update() does for the arrangement

 private:
  Value root_;
};

}  // namespace game
