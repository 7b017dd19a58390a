// The drawing functions of scripts. Without a drawing service (a world that nobody looks at) they check their arguments and do nothing.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>
#include <tuple>
#include <utility>

#include "engine/draw/draw_service.h"
#include "runtime/builtins/drawing.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/session/state.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"
#include "runtime/values/text.h"

namespace arena::draw {
namespace {

struct DrawSettings {
  DrawState now;
  DrawState before_pass, before_handler;
  static constexpr auto fields() {
    return std::tuple(field("now", &DrawSettings::now), derived("before_pass", &DrawSettings::before_pass),
                      derived("before_handler", &DrawSettings::before_handler));
  }
};
const StatePart<DrawSettings> settings{PartLevel::kServices, "draw settings"};
const Part<Draw*> used{PartLevel::kServices, "draw"};

Draw* service() { return used(); }
const RefKind font_refs{ref_type::kFont, "font",
                        [](std::int32_t index) { return service() != nullptr ? std::string(service()->font_name(index)) : std::string(); }};
std::uint32_t colour_of(double colour) { return static_cast<std::uint32_t>(saturate_int64(colour)) & 0xFFFFFF; }
DrawState& state() { return settings().now; }
bool require_sprite(std::int32_t sprite) {
  if (find_sprite(sprite) != nullptr) return true;
  report_invalid_resource(1, "sprite", sprite, static_cast<std::int32_t>(sprite_infos().size()));
  return false;
}

// State
void set_colour(double colour) { state().color = colour_of(colour); }
double get_colour() { return state().color; }
void set_alpha(float alpha) { state().alpha = static_cast<double>(alpha); }
double get_alpha() { return state().alpha; }
bool font_exists(std::int32_t font) { return font >= 0 && service() != nullptr && service()->has_font(font); }
void set_font(std::int32_t font) {
  if (font >= 0 && service() != nullptr && !service()->has_font(font)) {
    report_invalid_resource(1, "font", font, -1);
    return;
  }
  state().font = font;
}
std::int32_t get_font() { return state().font; }
void set_halign(std::int32_t align) { state().horizontal = static_cast<HorizontalAlign>(std::clamp(align, 0, 2)); }
void set_valign(std::int32_t align) { state().vertical = static_cast<VerticalAlign>(std::clamp(align, 0, 2)); }
std::int32_t get_halign() { return static_cast<std::int32_t>(state().horizontal); }
std::int32_t get_valign() { return static_cast<std::int32_t>(state().vertical); }
void set_blendmode(std::int32_t mode) { state().blend = static_cast<gpu::Blend>(std::clamp(mode, 0, 3)); }
std::int32_t get_blendmode() { return static_cast<std::int32_t>(state().blend); }
// 0 chooses by the size, as at start.
void set_circle_precision(std::int32_t sides) { state().circle_precision = sides <= 0 ? 0 : std::clamp(sides, 4, 128); }

// Sprites
void draw_instance(const CInstance& instance) {
  if (service() == nullptr) return;
  service()->sprite(saturate_int32(instance.sprite_index), instance.image_index,
                    {instance.x, instance.y, instance.image_xscale, instance.image_yscale, instance.image_angle,
                     colour_of(instance.image_blend), instance.image_alpha});
}
void draw_self(SelfInstance self) { draw_instance(*self.instance); }
void draw_sprite(std::int32_t sprite, double frame, double x, double y) {
  if (require_sprite(sprite) && service() != nullptr) service()->sprite(sprite, frame, {x, y, 1, 1, 0, 0xFFFFFF, state().alpha});
}
void draw_sprite_ext(std::int32_t sprite, double frame, double x, double y, double xscale, double yscale, double angle, double colour,
                     double alpha) {
  if (require_sprite(sprite) && service() != nullptr)
    service()->sprite(sprite, frame, {x, y, xscale, yscale, angle, colour_of(colour), alpha});
}
void draw_sprite_part(std::int32_t sprite, double frame, double left, double top, double width, double height, double x, double y) {
  if (require_sprite(sprite) && service() != nullptr)
    service()->sprite_part(sprite, frame, left, top, width, height, {x, y, 1, 1, 0, 0xFFFFFF, state().alpha});
}
void draw_sprite_part_ext(std::int32_t sprite, double frame, double left, double top, double width, double height, double x, double y,
                          double xscale, double yscale, double colour, double alpha) {
  if (!require_sprite(sprite) || service() == nullptr) return;
  service()->sprite_part(sprite, frame, left, top, width, height, {x, y, xscale, yscale, 0, colour_of(colour), alpha});
}
void draw_sprite_stretched(std::int32_t sprite, double frame, double x, double y, double width, double height) {
  if (require_sprite(sprite) && service() != nullptr)
    service()->sprite_stretched(sprite, frame, x, y, width, height, 0xFFFFFF, state().alpha);
}
void draw_sprite_stretched_ext(std::int32_t sprite, double frame, double x, double y, double width, double height, double colour,
                               double alpha) {
  if (require_sprite(sprite) && service() != nullptr)
    service()->sprite_stretched(sprite, frame, x, y, width, height, colour_of(colour), alpha);
}

// In nine parts: corners of that share of the sprite keep their size, or shrink together where the box is smaller than two of them.
void draw_sprite_nineslice(std::int32_t sprite, double frame, double x, double y, double width, double height, double corner, double colour,
                           double alpha) {
  if (!require_sprite(sprite) || service() == nullptr || width <= 0 || height <= 0) return;
  const SpriteInfo& info = *find_sprite(sprite);
  const double share = std::clamp(corner, 0.0, 0.5), corner_x = info.width * share, corner_y = info.height * share;
  if (corner_x <= 0 || corner_y <= 0) {
    service()->sprite_stretched(sprite, frame, x, y, width, height, colour_of(colour), alpha);
    return;
  }
  const double shrink = std::min({1.0, width / (2 * corner_x), height / (2 * corner_y)});
  const double from_x[4] = {0, corner_x, info.width - corner_x, info.width}, from_y[4] = {0, corner_y, info.height - corner_y, info.height};
  const double to_x[4] = {0, corner_x * shrink, width - corner_x * shrink, width};
  const double to_y[4] = {0, corner_y * shrink, height - corner_y * shrink, height};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const double part_width = from_x[column + 1] - from_x[column], part_height = from_y[row + 1] - from_y[row];
      const double width_to = to_x[column + 1] - to_x[column], height_to = to_y[row + 1] - to_y[row];
      if (width_to <= 0 || height_to <= 0 || part_width <= 0 || part_height <= 0) continue;
      service()->sprite_part(
          sprite, frame, from_x[column], from_y[row], part_width, part_height,
          {x + to_x[column], y + to_y[row], width_to / part_width, height_to / part_height, 0, colour_of(colour), alpha});
    }
  }
}

// Shapes
void rectangle(double x1, double y1, double x2, double y2, double c1, double c2, double c3, double c4, bool outline) {
  if (service() != nullptr) service()->rectangle(x1, y1, x2, y2, {colour_of(c1), colour_of(c2), colour_of(c3), colour_of(c4)}, outline);
}
void draw_rectangle(double x1, double y1, double x2, double y2, bool outline) {
  const double c = state().color;
  rectangle(x1, y1, x2, y2, c, c, c, c, outline);
}
void draw_circle_colour(double x, double y, double radius, double inner, double outer, bool outline) {
  if (service() != nullptr) service()->ellipse(x, y, radius, radius, colour_of(inner), colour_of(outer), outline);
}
void draw_circle(double x, double y, double radius, bool outline) {
  draw_circle_colour(x, y, radius, state().color, state().color, outline);
}
void draw_ellipse(double x1, double y1, double x2, double y2, bool outline) {
  if (service() != nullptr)
    service()->ellipse((x1 + x2) / 2, (y1 + y2) / 2, (x2 - x1) / 2, (y2 - y1) / 2, state().color, state().color, outline);
}
void draw_line_width_colour(double x1, double y1, double x2, double y2, double width, double from, double to) {
  if (service() != nullptr) service()->line(x1, y1, x2, y2, width, colour_of(from), colour_of(to));
}
void draw_line_width(double x1, double y1, double x2, double y2, double width) {
  draw_line_width_colour(x1, y1, x2, y2, width, state().color, state().color);
}
void draw_line(double x1, double y1, double x2, double y2) { draw_line_width(x1, y1, x2, y2, 1); }
void draw_point(double x, double y) { draw_rectangle(x, y, x + 1, y + 1, false); }
void draw_triangle(double x1, double y1, double x2, double y2, double x3, double y3, bool outline) {
  const std::uint32_t c = state().color;
  if (service() != nullptr) service()->triangle({x1, x2, x3}, {y1, y2, y3}, {c, c, c}, outline);
}

// Text
void text(double x, double y, const RValue& value, double separation, double wrap, double xscale, double yscale, double angle) {
  const std::string shown = to_text(value);
  if (service() != nullptr) service()->text(x, y, shown, xscale, yscale, angle, separation, wrap);
}
void draw_text(double x, double y, const RValue& value) { text(x, y, value, -1, 0, 1, 1, 0); }
void draw_text_ext(double x, double y, const RValue& value, double separation, double wrap) {
  text(x, y, value, separation, wrap, 1, 1, 0);
}
void draw_text_transformed(double x, double y, const RValue& value, double xscale, double yscale, double angle) {
  text(x, y, value, -1, 0, xscale, yscale, angle);
}
void draw_text_ext_transformed(double x, double y, const RValue& value, double separation, double wrap, double xscale, double yscale,
                               double angle) {
  text(x, y, value, separation, wrap, xscale, yscale, angle);
}
double string_width_ext(const RValue& value, double separation, double wrap) {
  return service() != nullptr ? service()->measure(to_text(value), separation, wrap).width : 0;
}
double string_height_ext(const RValue& value, double separation, double wrap) {
  return service() != nullptr ? service()->measure(to_text(value), separation, wrap).height : 0;
}
void push_scissor(double x, double y, double width, double height) {
  if (service() != nullptr) service()->push_clip(x, y, width, height);
}
void pop_scissor() {
  if (service() != nullptr) service()->pop_clip();
}
void draw_text_colour(double x, double y, const RValue& value, double c1, double c2, double c3, double c4, double alpha) {
  const std::string shown = to_text(value);
  if (service() == nullptr) return;
  const double before = std::exchange(state().alpha, alpha);
  const std::uint32_t corners[] = {colour_of(c1), colour_of(c2), colour_of(c3), colour_of(c4)};
  service()->text(x, y, shown, 1, 1, 0, -1, 0, corners);
  state().alpha = before;
}
double string_width(const RValue& value) { return service() != nullptr ? service()->measure(to_text(value)).width : 0; }
double string_height(const RValue& value) { return service() != nullptr ? service()->measure(to_text(value)).height : 0; }

constexpr Implementation kRows[] = {
    implement<script::draw_set_colour, set_colour>,
    implement<script::draw_set_color, set_colour>,
    implement<script::draw_get_colour, get_colour>,
    implement<script::draw_set_alpha, set_alpha>,
    implement<script::draw_get_alpha, get_alpha>,
    implement<script::font_exists, font_exists>,
    implement<script::draw_set_font, set_font>,
    implement<script::draw_get_font, get_font>,
    implement<script::draw_set_halign, set_halign>,
    implement<script::draw_set_valign, set_valign>,
    implement<script::draw_get_halign, get_halign>,
    implement<script::draw_get_valign, get_valign>,
    implement<script::gpu_set_blendmode, set_blendmode>,
    implement<script::gpu_get_blendmode, get_blendmode>,
    implement<script::draw_set_circle_precision, set_circle_precision>,
    implement<script::draw_self, draw_self>,
    implement<script::draw_sprite, draw_sprite>,
    implement<script::draw_sprite_ext, draw_sprite_ext>,
    implement<script::draw_sprite_part, draw_sprite_part>,
    implement<script::draw_sprite_part_ext, draw_sprite_part_ext>,
    implement<script::draw_sprite_stretched, draw_sprite_stretched>,
    implement<script::draw_sprite_stretched_ext, draw_sprite_stretched_ext>,
    implement<script::draw_sprite_nineslice, draw_sprite_nineslice>,
    implement<script::draw_rectangle, draw_rectangle>,
    implement<script::draw_rectangle_colour, rectangle>,
    implement<script::draw_circle, draw_circle>,
    implement<script::draw_circle_colour, draw_circle_colour>,
    implement<script::draw_circle_color, draw_circle_colour>,
    implement<script::draw_ellipse, draw_ellipse>,
    implement<script::draw_line, draw_line>,
    implement<script::draw_line_width, draw_line_width>,
    implement<script::draw_line_width_colour, draw_line_width_colour>,
    implement<script::draw_point, draw_point>,
    implement<script::draw_triangle, draw_triangle>,
    implement<script::draw_text, draw_text>,
    implement<script::draw_text_ext, draw_text_ext>,
    implement<script::draw_text_transformed, draw_text_transformed>,
    implement<script::draw_text_colour, draw_text_colour>,
    implement<script::draw_text_ext_transformed, draw_text_ext_transformed>,
    implement<script::string_width_ext, string_width_ext>,
    implement<script::string_height_ext, string_height_ext>,
    implement<script::gpu_push_scissor, push_scissor>,
    implement<script::gpu_pop_scissor, pop_scissor>,
    implement<script::string_width, string_width>,
    implement<script::string_height, string_height>,
};
const BuiltinTable table(
    "Drawing",
    "Angles turn counter-clockwise; colours have blue, green and red from the high byte down. Settings carry on from one call to the next.",
    kRows);

}  // namespace

void use_draw_service(Draw* draw) { used() = draw; }
Draw* draw_service() { return service(); }
DrawState& draw_state() { return state(); }
void begin_draw_pass() { settings().before_pass = state(); }
void end_draw_pass() { state() = settings().before_pass; }
void save_draw_state() { settings().before_handler = state(); }
void restore_draw_state() { state() = settings().before_handler; }
void draw_instance_default(CInstance& instance) { draw_instance(instance); }

}  // namespace arena::draw
