// What all widgets share: their fields, the setters of their arrangement, and empty behaviour for the kinds to override.
#include "toolkit/ui/widget.h"

namespace game {
namespace {

// Every edge alike, or two values (across, down), or four (left, top, right, bottom).
void set_edges(const ObjectSelf& widget, const Variable* const (&edges)[4], const Value& a, const Value& b, const Value& c,
               const Value& d) {
  const bool is_pair = !is_undefined(b) && is_undefined(c), is_all = is_undefined(b);
  const Value values[4] = {a, is_all ? a : b, is_all || is_pair ? a : c, is_all ? a : is_pair ? b : d};
  for (std::size_t i = 0; i < 4; ++i) {
    if (!is_undefined(values[i])) widget[*edges[i]] = values[i];
  }
  mark_dirty(widget);
}

Value set_field(const ObjectSelf& widget, const Variable& field, const Value& to) {
  widget[field] = to;
  mark_dirty(widget);
  return widget;
}

}  // namespace
}  // namespace game

CONSTRUCTOR(TuiBase, Value settings) {
  self[widget_type] = "TuiBase";
  self[name_field] = "";
  self[parent] = undefined;
  self[content] = array_create(0);
  self[events] = struct_of({});
  self[data] = struct_of({});
  self[visible_field] = true;
  self[enabled] = true;
  self[alpha] = 1;
  self[color] = c_white;
  self[z_order] = 0;
  self[mouse_ignore] = false;
  self[mouse_ignore_all] = false;
  self[is_focusable] = false;
  self[is_modal] = false;
  self[is_hovered] = false;
  self[is_pressed] = false;
  self[is_focused] = false;
  self[is_destroyed] = false;
  self[clips] = false;
  self[scroll_x] = 0;
  self[scroll_y] = 0;
  self[measures] = kMeasuresNothing;
  self[value] = undefined;
  self[rect_x] = 0;
  self[rect_y] = 0;
  self[rect_width] = 0;
  self[rect_height] = 0;
  self[clip_left] = 0;
  self[clip_top] = 0;
  self[clip_right] = 0;
  self[clip_bottom] = 0;
  apply_settings(self, settings);
}

STATIC_METHOD(Value, TuiBase, setWidth, Value pixels) { return set_field(self, width, pixels); }
STATIC_METHOD(Value, TuiBase, setHeight, Value pixels) { return set_field(self, height, pixels); }
STATIC_METHOD(Value, TuiBase, setSize, Value across, Value down) {
  self[width] = across;
  return set_field(self, height, down);
}
STATIC_METHOD(Value, TuiBase, setMinSize, Value across, Value down) {
  self[min_width] = across;
  return set_field(self, min_height, down);
}
STATIC_METHOD(Value, TuiBase, setMaxSize, Value across, Value down) {
  self[max_width] = across;
  return set_field(self, max_height, down);
}
STATIC_METHOD(Value, TuiBase, setFullSize) {
  self[width] = "100%";
  return set_field(self, height, "100%");
}

STATIC_METHOD(Value, TuiBase, setPadding, Value left, Value top, Value right, Value bottom) {
  set_edges(self, {&padding_left, &padding_top, &padding_right, &padding_bottom}, left, top, right, bottom);
  return self;
}
STATIC_METHOD(Value, TuiBase, setMargin, Value left, Value top, Value right, Value bottom) {
  set_edges(self, {&margin_left, &margin_top, &margin_right, &margin_bottom}, left, top, right, bottom);
  return self;
}
STATIC_METHOD(Value, TuiBase, setBorder, Value left, Value top, Value right, Value bottom) {
  set_edges(self, {&border_left, &border_top, &border_right, &border_bottom}, left, top, right, bottom);
  return self;
}
// Where an absolute widget stands in its parent; undefined leaves an edge alone.
STATIC_METHOD(Value, TuiBase, setInset, Value left, Value top, Value right, Value bottom) {
  self[inset_left] = left;
  self[inset_top] = top;
  self[inset_right] = right;
  return set_field(self, inset_bottom, bottom);
}
STATIC_METHOD(Value, TuiBase, setGap, Value between_rows, Value between_columns) {
  self[row_gap] = between_rows;
  return set_field(self, column_gap, is_undefined(between_columns) ? between_rows : between_columns);
}

STATIC_METHOD(Value, TuiBase, setFlexDirection, Value along) { return set_field(self, flex_direction, along); }
STATIC_METHOD(Value, TuiBase, setFlexWrap, Value wrap) { return set_field(self, flex_wrap, wrap); }
STATIC_METHOD(Value, TuiBase, setFlexGrow, Value share) { return set_field(self, flex_grow, share); }
STATIC_METHOD(Value, TuiBase, setFlexShrink, Value share) { return set_field(self, flex_shrink, share); }
STATIC_METHOD(Value, TuiBase, setFlexBasis, Value basis) { return set_field(self, flex_basis, basis); }
STATIC_METHOD(Value, TuiBase, setJustifyContent, Value justify) { return set_field(self, justify_content, justify); }
STATIC_METHOD(Value, TuiBase, setAlignItems, Value align) { return set_field(self, align_items, align); }
STATIC_METHOD(Value, TuiBase, setAlignSelf, Value align) { return set_field(self, align_self, align); }
STATIC_METHOD(Value, TuiBase, setAlignContent, Value align) { return set_field(self, align_content, align); }
STATIC_METHOD(Value, TuiBase, setAspectRatio, Value ratio) { return set_field(self, aspect_ratio, ratio); }
STATIC_METHOD(Value, TuiBase, setPositionAbsolute) { return set_field(self, is_absolute, true); }
// Content that reaches over the edge is cut off there.
STATIC_METHOD(Value, TuiBase, setOverflow, Value clipped) { return set_field(self, clips, clipped); }
STATIC_METHOD(Value, TuiBase, centerContent) {
  self[align_items] = tui::kCenter;
  return set_field(self, justify_content, tui::kCenter);
}

STATIC_METHOD(Value, TuiBase, setVisible, Value shown) { return set_field(self, visible_field, shown); }
STATIC_METHOD(Value, TuiBase, setEnabled, Value works) { return self[enabled] = works, self; }
STATIC_METHOD(Value, TuiBase, setMouseIgnore) { return self[mouse_ignore] = true, self; }
// The widget and all its content, now and later.
STATIC_METHOD(Value, TuiBase, setMouseIgnoreAll) { return self[mouse_ignore_all] = true, self; }
STATIC_METHOD(Value, TuiBase, setModal, Value modal) { return self[is_modal] = is_undefined(modal) ? Value(true) : modal, self; }
STATIC_METHOD(Value, TuiBase, setTooltip, Value text) { return self[tooltip] = text, self; }
STATIC_METHOD(Value, TuiBase, setStyle, Value to) {
  if (!is_undefined(to) && !is_plain_struct(to)) {
    ui_error(self, "setStyle", "a style is to be a struct, as TuiStyle makes it, not " + std::string(arena::type_name(to)));
    return self;
  }
  self[style] = to;
  mark_dirty(self);
  return self;
}
// A changed value is arranged anew and raises "change".
STATIC_METHOD(Value, TuiBase, setValue, Value to) {
  const RValue* old = optional_field(self, value);
  if (old != nullptr ? values_match(*old, to) : is_undefined(to)) return self;
  self[value] = to;
  if (number_or(self, measures, 0) > 0) mark_dirty(self);
  raise(self, "change", to);
  return self;
}

STATIC_METHOD(void, TuiBase, onUpdate, Value) {}
STATIC_METHOD(void, TuiBase, onDraw) {}
STATIC_METHOD(void, TuiBase, onPress, Value, Value) {}
STATIC_METHOD(void, TuiBase, onDrag, Value, Value) {}
STATIC_METHOD(void, TuiBase, onRelease, Value, Value, Value) {}
STATIC_METHOD(Value, TuiBase, onWheel, Value) { return false; }
STATIC_METHOD(Value, TuiBase, onKey, Value) { return false; }
STATIC_METHOD(void, TuiBase, onText, Value) {}
STATIC_METHOD(void, TuiBase, onActivate) {}
STATIC_METHOD(void, TuiBase, onDestroy) {}
