// Widgets in their tree: content, events, data, order, and the reports of what scripts get wrong.
#include <unordered_set>
#include <utility>

#include "toolkit/ui/widget.h"

namespace game {
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
  const Value holder = parent_of(widget);
  if (!is_widget(holder)) return;
  const Value left = array_create(0), old = array_in(holder, content);
  for (const Value& each : elements(old)) {
    if (!is_same(each, widget)) array_push(left, each);
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
  int depth = 0;
  for (const Value& above : upwards(holder)) {
    ++depth;
    if (is_same(above, widget)) {
      ui_error(holder, "addContent", "a widget cannot stand in itself");
      return;
    }
  }
  if (depth >= kDeepest) {
    ui_error(holder, "addContent", "widgets stand in one another at most " + std::to_string(kDeepest) + " deep");
    return;
  }
  if (is_set(widget, is_destroyed)) {
    ui_error(holder, "addContent", "the widget was destroyed");
    return;
  }
  leave_parent(widget);
  widget[parent] = holder;
  if (is_undefined(array_in(holder, content))) holder[content] = array_create(0);
  array_push(holder[content], widget);
}

// Children first, so that a handler of "destroy" still finds its parent.
void destroy_tree(const Value& widget) {
  std::vector<std::pair<Value, bool>> waiting{{widget, false}};  // and whether its content is done
  while (!waiting.empty()) {
    const auto [at, is_last] = waiting.back();
    waiting.pop_back();
    if (is_last) {
      call_own(at, onDestroy, {});
      raise(at, "destroy");
    } else if (!is_set(at, is_destroyed)) {
      at[is_destroyed] = true;
      for (const Variable* state : {&is_hovered, &is_pressed, &is_focused}) at[*state] = false;
      waiting.emplace_back(at, true);
      const std::vector<Value> inside = content_of(at);
      for (auto each = inside.rbegin(); each != inside.rend(); ++each) waiting.emplace_back(*each, false);
    }
  }
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
  for (const Value& at : upwards(widget)) top = at;
  return top;
}

std::vector<Value> content_of(const Value& widget) {
  std::vector<Value> found;
  std::unordered_set<const WBObjectBase*> seen;
  const Value inside = array_in(widget, content);
  for (const Value& each : elements(inside)) {
    if (is_widget(each) && is_same(parent_of(each), widget) && seen.insert(each.object).second) found.push_back(each);
  }
  return found;
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

Value call_own(const Value& widget, const Variable& method, std::initializer_list<Value> arguments) {
  const RValue* found = optional_field(widget, method);
  return found != nullptr ? call_guarded(widget, Value(RValue(*found)), arguments) : Value();
}

static Value handlers_of(const Value& widget, std::string_view event) {
  const Value all = struct_in(widget, events);
  return is_undefined(all) ? all : variable_struct_get(all, Value(event));
}

bool has_handlers(const Value& widget, std::string_view event) { return is_array(handlers_of(widget, event)); }

void raise(const Value& widget, std::string_view event, const Value& detail) {
  const Value handlers = handlers_of(widget, event);
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

}  // namespace game

// One widget, or an array of them.
STATIC_METHOD(Value, TuiBase, addContent, Value what) {
  if (is_array(what)) {
    for (const Value& each : elements(what)) add_one(self, each);
  } else {
    add_one(self, what);
  }
  mark_dirty(self);
  return self;
}

STATIC_METHOD(Value, TuiBase, removeContent, Value what) {
  if (is_widget(what) && is_same(parent_of(what), self)) leave_parent(what);
  return self;
}

STATIC_METHOD(Value, TuiBase, destroyContent) {
  const std::vector<Value> old = content_of(self);
  self[content] = array_create(0);
  for (const Value& each : old) {
    destroy_tree(each);
    each[parent] = undefined;
  }
  mark_dirty(self);
  return self;
}

// Raises "destroy", first in the content, and leaves the tree. Twice is harmless.
STATIC_METHOD(void, TuiBase, destroy) {
  destroy_tree(self);
  leave_parent(self);
}

STATIC_METHOD(Value, TuiBase, bringToFront) {
  self[z_order] = next_z();
  mark_dirty(self);
  return self;
}
STATIC_METHOD(Value, TuiBase, sendToBack) {
  self[z_order] = -next_z();
  mark_dirty(self);
  return self;
}

STATIC_METHOD(Value, TuiBase, setData, Value key, Value what) {
  variable_struct_set(self[data], key, what);
  return self;
}
STATIC_METHOD(Value, TuiBase, getData, Value key) { return variable_struct_get(self[data], key); }

STATIC_METHOD(Value, TuiBase, addEvent, Value event, Value handler) {
  if (is_undefined(struct_in(self, events))) self[events] = struct_of({});
  const Value all = self[events];
  if (!is_array(variable_struct_get(all, event))) variable_struct_set(all, event, array_create(0));
  array_push(variable_struct_get(all, event), handler);
  return self;
}
STATIC_METHOD(Value, TuiBase, removeEvent, Value event) {
  if (!is_undefined(struct_in(self, events))) variable_struct_set(self[events], event, undefined);
  return self;
}
STATIC_METHOD(Value, TuiBase, trigger, Value event, Value detail) {
  raise(self, to_text(event), detail);
  return self;
}

// The first widget of this name in the content, however deep; undefined when there is none.
STATIC_METHOD(Value, TuiBase, find, Value wanted) {
  std::vector<Value> waiting{self};
  std::unordered_set<const WBObjectBase*> seen;
  while (!waiting.empty()) {
    const Value at = waiting.back();
    waiting.pop_back();
    if (!seen.insert(at.object).second) continue;
    const RValue* called = optional_field(at, name_field);
    if (seen.size() > 1 && called != nullptr && Value(RValue(*called)) == wanted) return at;
    const std::vector<Value> inside = content_of(at);
    waiting.insert(waiting.end(), inside.rbegin(), inside.rend());
  }
  return undefined;
}
