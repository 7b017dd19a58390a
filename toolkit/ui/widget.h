#pragma once
// What the toolkit's own files share: the inner fields of widgets, the methods that each kind of widget has in its own way, and helpers.
//
// A widget is a struct. Its place on the screen (rect_*) and what clips it (clip_*) are GUI pixels, written by the arrangement; everything
// that arranges it is an ordinary field, absent where the default holds.
#include "runtime/script/native.h"
#include "toolkit/ui/ui.h"

namespace ui {

// Set by every constructor.
inline const Variable widget_type{"widget_type"}, name_field{"name"}, events{"events"}, data{"data"}, tooltip{"tooltip"},
    z_order{"z_order"};
inline const Variable mouse_ignore{"mouse_ignore"}, mouse_ignore_all{"mouse_ignore_all"}, is_focusable{"is_focusable"},
    is_modal{"is_modal"};
// Set where they hold. A press on the widget is its own, as it is on one with a handler of presses or clicks; what is typed is its own
// while it has the focus.
inline const Variable takes_clicks{"takes_clicks"}, takes_text{"takes_text"};
inline const Variable is_hovered{"is_hovered"}, is_pressed{"is_pressed"}, is_focused{"is_focused"}, is_destroyed{"is_destroyed"};
inline const Variable rect_x{"rect_x"}, rect_y{"rect_y"}, rect_width{"rect_width"}, rect_height{"rect_height"};
inline const Variable clip_left{"clip_left"}, clip_top{"clip_top"}, clip_right{"clip_right"}, clip_bottom{"clip_bottom"};
inline const Variable scroll_x{"scroll_x"}, scroll_y{"scroll_y"}, clips{"clips"}, layout_dirty{"layout_dirty"}, tweens{"tweens"};
inline const Variable bind_target{"bind_target"}, bind_name{"bind_name"}, measures{"measures"};

// Fields of the arrangement, as the setters write them.
inline const Variable flex_direction{"flex_direction"}, flex_wrap{"flex_wrap"}, flex_grow{"flex_grow"}, flex_shrink{"flex_shrink"};
inline const Variable flex_basis{"flex_basis"}, justify_content{"justify_content"}, align_items{"align_items"}, align_self{"align_self"};
inline const Variable align_content{"align_content"}, aspect_ratio{"aspect_ratio"}, is_absolute{"is_absolute"};
inline const Variable min_width{"min_width"}, min_height{"min_height"}, max_width{"max_width"}, max_height{"max_height"};
inline const Variable row_gap{"row_gap"}, column_gap{"column_gap"};
inline const Variable padding_left{"padding_left"}, padding_top{"padding_top"}, padding_right{"padding_right"},
    padding_bottom{"padding_bottom"};
inline const Variable margin_left{"margin_left"}, margin_top{"margin_top"}, margin_right{"margin_right"}, margin_bottom{"margin_bottom"};
inline const Variable border_left{"border_left"}, border_top{"border_top"}, border_right{"border_right"}, border_bottom{"border_bottom"};
inline const Variable inset_left{"inset_left"}, inset_top{"inset_top"}, inset_right{"inset_right"}, inset_bottom{"inset_bottom"};

// What each kind of widget does in its own way; TuiBase has an empty one of each.
inline const Variable onUpdate{"onUpdate"};      // (dt) once a frame
inline const Variable onDraw{"onDraw"};          // ()
inline const Variable onPress{"onPress"};        // (x, y) the left button went down over it
inline const Variable onDrag{"onDrag"};          // (x, y) the pointer moves while the button is held
inline const Variable onRelease{"onRelease"};    // (x, y, inside)
inline const Variable onWheel{"onWheel"};        // (steps) true when it took the turn
inline const Variable onKey{"onKey"};            // (key) true when it took the key
inline const Variable onText{"onText"};          // (text) typed while it has the focus
inline const Variable onActivate{"onActivate"};  // () Enter or Space while it has the focus
inline const Variable onDestroy{"onDestroy"};    // () it is about to leave the tree for good

}  // namespace ui

namespace game {

// What a widget measures besides its content boxes.
enum Measures { kMeasuresNothing = 0, kMeasuresText = 1, kMeasuresSprite = 2 };

struct Rect {
  double x, y, width, height;
  bool contains(double at_x, double at_y) const { return at_x >= x && at_y >= y && at_x < x + width && at_y < y + height; }
};

inline PropertyObject* object_of(const Value& widget) { return property_object(widget); }
inline bool is_plain_struct(const RValue& value) { return value.is_object() && value.object->object_kind == ObjectKind::kStruct; }
inline bool is_widget(const RValue& value) { return is_plain_struct(value) && value.object->find_variable(rect_x.slot) != nullptr; }
inline bool is_same(const Value& a, const Value& b) { return a.is_object() && b.is_object() && a.object == b.object; }

// Scripts may write anything into any field of a widget or a style. What the toolkit reads while it works goes through these: a field
// that is absent or holds something else than expected counts as its default.
inline const RValue* optional_field(const Value& widget, const Variable& field) {
  PropertyObject* const object = object_of(widget);
  const RValue* found = object != nullptr ? object->find_variable(field.slot) : nullptr;
  return found != nullptr && !found->is_unset() && !found->is_undefined() ? found : nullptr;
}
inline double number_or(const Value& widget, const Variable& field, double otherwise) {
  const RValue* found = optional_field(widget, field);
  return found != nullptr && is_numeric(*found) ? to_real(*found) : otherwise;
}
inline bool has_number(const Value& widget, const Variable& field) {
  const RValue* found = optional_field(widget, field);
  return found != nullptr && is_numeric(*found);
}
inline bool is_set(const Value& widget, const Variable& field, bool otherwise = false) {
  return number_or(widget, field, otherwise ? 1 : 0) > 0.5;
}
inline Value struct_in(const Value& widget, const Variable& field) {
  const RValue* found = optional_field(widget, field);
  return found != nullptr && is_plain_struct(*found) ? Value(RValue(*found)) : Value();
}
// Undefined when there is none.
inline Value array_in(const Value& widget, const Variable& field) {
  const RValue* found = optional_field(widget, field);
  return found != nullptr && found->is_array() ? Value(RValue(*found)) : Value();
}
inline int whole_or(const Value& widget, const Variable& field, int otherwise) {
  return saturate_int32(number_or(widget, field, otherwise));
}
inline Rect rect_of(const Value& widget) {
  return {number_or(widget, rect_x, 0), number_or(widget, rect_y, 0), number_or(widget, rect_width, 0), number_or(widget, rect_height, 0)};
}

// A widget stands in its parent, that one in its own, and so on; deeper trees are refused when they are made and not arranged.
inline constexpr int kDeepest = 500;
inline Value parent_of(const Value& widget) {
  const RValue* const above = optional_field(widget, parent);
  return above != nullptr && is_widget(*above) ? Value(RValue(*above)) : Value();
}
// The widget and all that it stands in, for `for (const Value& at : upwards(widget))`. Ends also where scripts made a circle.
class Upwards {
 public:
  explicit Upwards(const Value& from) : from_(from) {}
  struct Iterator {
    Value at;
    int left;
    const Value& operator*() const { return at; }
    Iterator& operator++() { return at = --left > 0 ? parent_of(at) : Value(), *this; }
    bool operator!=(const Iterator&) const { return !at.is_undefined(); }
  };
  Iterator begin() const { return {is_widget(from_) ? from_ : Value(), kDeepest + 1}; }
  Iterator end() const { return {Value(), 0}; }

 private:
  Value from_;
};
inline Upwards upwards(const Value& widget) { return Upwards(widget); }
// The widgets that stand in this one, each once: those in its content that name it as their parent.
std::vector<Value> content_of(const Value& widget);

// The pixels inside padding and border.
Rect inner_rect(const Value& widget);
// The widget above all others of its tree.
Value root_of(const Value& widget);
// The arrangement of the tree is to be done anew.
void mark_dirty(const Value& widget);
// Calls the handlers of an event. What they get wrong is reported and goes no further.
void raise(const Value& widget, std::string_view event, const Value& detail = undefined);
// Calls a method of the widget, with the same care.
Value call_guarded(const Value& widget, const Value& method, std::initializer_list<Value> arguments);
// One of its own methods.
Value call_own(const Value& widget, const Variable& method, std::initializer_list<Value> arguments);
// Whether anybody listens for the event.
bool has_handlers(const Value& widget, std::string_view event);
void ui_error(const Value& widget, std::string_view place, std::string_view what);
void ui_warning(const Value& widget, std::string_view place, std::string_view what);
// Copies the fields of the settings into the widget, over its defaults.
void apply_settings(const ObjectSelf& widget, const Value& settings);
// What a style says, looked for from the widget upwards; the toolkit's own style at last.
Value style_of(const Value& widget);

// Lays out the tree under a root and writes rectangles, clips and the order of drawing.
void arrange(const Value& root, double gui_width, double gui_height);

}  // namespace game
