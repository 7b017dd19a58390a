// Widgets in their tree: content, events, data, order, and the reports of what scripts get wrong.
#include "game/ui/widget.h"

namespace arena::game {
namespace {

const Variable last_z{"last_z"};

// Above everything so far. Counted in the statics, so that a restart begins anew like everything else.
Real next_z() {
  const ObjectSelf shared = statics(TuiBase);
  const RValue* last = shared.object()->find_variable(last_z.slot);
  const Real next = last != nullptr ? to_real(*last) + 1 : 1;
  shared[last_z] = next;
  return next;
}

std::string prefix(const char* level, const Value& widget, std::string_view place) {
  const RValue* type = is_widget(widget) ? optional_field(widget, widget_type) : nullptr;
  return std::string("TARN_UI.") + level + "." + (type != nullptr ? to_text(*type) : "Tui") + "." + std::string(place) + ": ";
}

void leave_parent(const Value& widget) {
  const RValue* above = optional_field(widget, parent);
  if (above == nullptr) return;
  const Value holder(*above), left = array_create(0);
  const Value old = holder[content];
  for (const Value& each : elements(old)) {
    if (each.object != widget.object) array_push(left, each);
  }
  holder[content] = left;
  mark_dirty(holder);
  widget[parent] = undefined;
}

void add_one(const Value& holder, const Value& widget) {
  if (!is_widget(widget)) {
    ui_error(holder, "addContent", "content is to be a widget or an array of widgets, not " + std::string(arena::type_name(widget)));
    return;
  }
  for (Value above = holder; is_widget(above); above = Value(above[parent])) {
    if (above.object == widget.object) {
      ui_error(holder, "addContent", "a widget cannot stand in itself");
      return;
    }
  }
  if (bool(widget[is_destroyed])) {
    ui_error(holder, "addContent", "the widget was destroyed");
    return;
  }
  leave_parent(widget);
  widget[parent] = holder;
  array_push(holder[content], widget);
}

// Children first, so that a handler of "destroy" still finds its parent.
void destroy_tree(const Value& widget) {
  if (bool(widget[is_destroyed])) return;
  widget[is_destroyed] = true;
  for (const Variable* state : {&is_hovered, &is_pressed, &is_focused}) widget[*state] = false;
  const Value inside = widget[content];
  for (const Value& each : elements(inside)) destroy_tree(each);
  call_guarded(widget, widget[onDestroy], {});
  raise(widget, "destroy");
}

}  // namespace

void ui_error(const Value& widget, std::string_view place, std::string_view what) {
  print(prefix("ERROR", widget, place) + std::string(what));
}
void ui_warning(const Value& widget, std::string_view place, std::string_view what) {
  print(prefix("WARNING", widget, place) + std::string(what));
}

Value root_of(const Value& widget) {
  Value top = widget;
  while (const RValue* above = optional_field(top, parent)) top = Value(RValue(*above));
  return top;
}

void mark_dirty(const Value& widget) {
  const Value top = root_of(widget);
  top[layout_dirty] = true;
}

Value call_guarded(const Value& widget, const Value& method, std::initializer_list<Value> arguments) {
  const Attempt made = attempt(widget, method, arguments);
  if (!made.error.empty()) ui_error(widget, made.place, made.error);
  return made.result;
}

void raise(const Value& widget, std::string_view event, const Value& detail) {
  const Value handlers = variable_struct_get(widget[events], Value(event));
  if (!is_array(handlers)) return;
  const Value copy = array_create(0);  // a handler may add or remove some
  array_copy(copy, 0, handlers, 0, array_length(handlers));
  for (const Value& handler : elements(copy)) call_guarded(widget, handler, {widget, detail});
}

void apply_settings(const ObjectSelf& widget, const Value& settings) {
  if (is_undefined(settings)) return;
  PropertyObject* const from = property_object(settings);
  if (from == nullptr || from->object_kind != ObjectKind::kStruct || is_widget(settings)) {
    ui_error(widget, "new", "settings are to be a struct of its own");
    return;
  }
  for (const std::int32_t id : from->variable_ids()) {
    if (id == content.slot || id == parent.slot || id == is_destroyed.slot) {  // the tree's own
      ui_error(widget, "new", "'" + std::string(variable_name(id)) + "' is no setting");
    } else {
      write(widget, id, *from->find_variable(id));
    }
  }
}

}  // namespace arena::game

// One widget, or an array of them.
STATIC_METHOD(TuiBase, addContent, Value what) {
  if (is_array(what)) {
    for (const Value& each : elements(what)) add_one(self, each);
  } else {
    add_one(self, what);
  }
  mark_dirty(self);
  return self;
}

STATIC_METHOD(TuiBase, removeContent, Value what) {
  if (is_widget(what) && optional_field(what, parent) != nullptr && optional_field(what, parent)->object == self.object())
    leave_parent(what);
  return self;
}

STATIC_METHOD(TuiBase, destroyContent) {
  const Value old = self[content];
  self[content] = array_create(0);
  for (const Value& each : elements(old)) {
    destroy_tree(each);
    each[parent] = undefined;
  }
  mark_dirty(self);
  return self;
}

// Raises "destroy", first in the content, and leaves the tree. Twice is harmless.
STATIC_METHOD(TuiBase, destroy) {
  destroy_tree(self);
  leave_parent(self);
  return undefined;
}

STATIC_METHOD(TuiBase, bringToFront) {
  self[z_order] = next_z();
  mark_dirty(self);
  return self;
}
STATIC_METHOD(TuiBase, sendToBack) {
  self[z_order] = -next_z();
  mark_dirty(self);
  return self;
}

STATIC_METHOD(TuiBase, setData, Value key, Value what) {
  variable_struct_set(self[data], key, what);
  return self;
}
STATIC_METHOD(TuiBase, getData, Value key) { return variable_struct_get(self[data], key); }

STATIC_METHOD(TuiBase, addEvent, Value event, Value handler) {
  const Value all = self[events];
  if (!is_array(variable_struct_get(all, event))) variable_struct_set(all, event, array_create(0));
  array_push(variable_struct_get(all, event), handler);
  return self;
}
STATIC_METHOD(TuiBase, removeEvent, Value event) {
  variable_struct_set(self[events], event, undefined);
  return self;
}
STATIC_METHOD(TuiBase, trigger, Value event, Value detail) {
  raise(self, to_text(event), detail);
  return self;
}

// The first widget of this name in the content, however deep; undefined when there is none.
STATIC_METHOD(TuiBase, find, Value wanted) {
  const Value inside = self[content];
  for (const Value& each : elements(inside)) {
    if (Value(each[name_field]) == wanted) return each;
    const Value deeper = each[find](wanted);
    if (!is_undefined(deeper)) return deeper;
  }
  return undefined;
}
