#include "toolkit/ui/paint.h"

namespace game {
namespace {

constexpr double kCorner = 1.0 / 3;  // of a panel sprite: the middle third is stretched

}  // namespace

int font_of(const Value& widget) {
  const bool is_caption = number_or(widget, caption_of_button, 0) > 0;
  const bool has_own = has_number(widget, font);
  const int wanted = has_own ? whole_or(widget, font, -1) : whole_or(style_of(widget), is_caption ? font_button : font_text, -1);
  return font_exists(wanted) ? wanted : -1;
}

double text_width(std::string_view text, int with_font) {
  draw_set_font(with_font);
  return string_width(text).number();
}

double text_height(std::string_view text, int with_font, double wrap) {
  draw_set_font(with_font);
  return string_height_ext(text, -1, wrap).number();
}

double sprite_width_of(int sprite) { return sprite >= 0 && sprite_exists(sprite) ? sprite_get_width(sprite).number() : 0; }
double sprite_height_of(int sprite) { return sprite >= 0 && sprite_exists(sprite) ? sprite_get_height(sprite).number() : 0; }

std::string shown_text(const Value& widget) {
  const RValue* shown = optional_field(widget, value);
  std::string text;
  const RValue* before = optional_field(widget, prefix);
  const RValue* after = optional_field(widget, suffix);
  if (before != nullptr) text += to_text(*before);
  if (shown != nullptr) {
    const RValue* decimals = optional_field(widget, rounding);
    if (decimals != nullptr && is_numeric(*decimals) && is_numeric(*shown)) {
      const double scale = elementary::pow(10.0, std::clamp(to_real(*decimals), 0.0, 6.0));
      text += to_text(RValue(std::round(to_real(*shown) * scale) / scale));
    } else {
      text += to_text(*shown);
    }
  }
  if (after != nullptr) text += to_text(*after);
  return text;
}

int style_color(const Value& widget, const Variable& field) { return whole_or(style_of(widget), field, c_white); }

int own_color_or(const Value& widget, const Variable& from_style) {
  return has_number(widget, color) ? whole_or(widget, color, c_white) : style_color(widget, from_style);
}

void paint_rectangle(const Rect& at, int tint, double opacity) {
  if (at.width <= 0 || at.height <= 0) return;
  draw_set_colour(tint);
  draw_set_alpha(opacity);
  draw_rectangle(at.x, at.y, at.x + at.width, at.y + at.height, false);
  draw_set_alpha(1);
}

void paint_sprite(int sprite, double frame, const Rect& at, double turn, int tint, double opacity) {
  const double across = sprite_width_of(sprite), down = sprite_height_of(sprite);
  if (across <= 0 || down <= 0) return;
  // The origin of the sprite may stand anywhere: the middle of the picture is what goes to the middle of the rectangle.
  const double xscale = at.width / across, yscale = at.height / down;
  const double from_x = (across / 2 - sprite_get_xoffset(sprite).number()) * xscale,
               from_y = (down / 2 - sprite_get_yoffset(sprite).number()) * yscale;
  const Real distance = point_distance(0, 0, from_x, from_y), direction = point_direction(0, 0, from_x, from_y) + turn;
  draw_sprite_ext(sprite, frame, at.x + at.width / 2 - lengthdir_x(distance, direction),
                  at.y + at.height / 2 - lengthdir_y(distance, direction), xscale, yscale, turn, tint, opacity);
}

void paint_frame(const Rect& at, int tint, double opacity) {
  paint_rectangle({at.x, at.y, at.width, 1}, tint, opacity);
  paint_rectangle({at.x, at.y + at.height - 1, at.width, 1}, tint, opacity);
  paint_rectangle({at.x, at.y + 1, 1, at.height - 2}, tint, opacity);
  paint_rectangle({at.x + at.width - 1, at.y + 1, 1, at.height - 2}, tint, opacity);
}

void paint_panel(int sprite, const Rect& at, int tint, double opacity) {
  const double across = sprite_width_of(sprite), down = sprite_height_of(sprite);
  if (across <= 0 || down <= 0) {
    paint_rectangle(at, tint, opacity);
    return;
  }
  draw_sprite_nineslice(sprite, 0, at.x, at.y, at.width, at.height, kCorner, tint, opacity);
}

std::size_t longest_beginning(std::string_view text, const std::function<bool(std::string_view)>& fits) {
  const auto is_inside = [&](std::size_t at) { return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
  std::size_t low = 0, high = text.size();
  while (low < high) {
    std::size_t middle = low + (high - low + 1) / 2;
    while (is_inside(middle)) ++middle;
    if (fits(text.substr(0, middle))) {
      low = middle;
    } else {
      do --middle;
      while (middle > low && is_inside(middle));
      high = middle;
    }
  }
  return low;
}

// The longest beginning that fits, with three dots.
static std::string shortened(std::string_view text, int with_font, double scale, double room) {
  if (text_width(text, with_font) * scale <= room) return std::string(text);
  const auto fits = [&](std::string_view beginning) { return text_width(std::string(beginning) + "...", with_font) * scale <= room; };
  return std::string(text.substr(0, longest_beginning(text, fits))) + "...";
}

void paint_text(const Value& widget, std::string_view text, const Rect& at, int across, int down, int overflow_mode, int tint,
                double opacity) {
  if (text.empty()) return;
  const int with_font = font_of(widget);
  const double scale = number_or(widget, text_scale, 1);
  const std::string shown = overflow_mode == tui::kOverflowEllipsis ? shortened(text, with_font, scale, at.width + 0.5) : std::string(text);
  draw_set_font(with_font);
  draw_set_halign(across);
  draw_set_valign(down);
  draw_set_colour(tint);
  draw_set_alpha(opacity);
  const bool is_clipped = overflow_mode == tui::kOverflowClip;
  if (is_clipped) gpu_push_scissor(at.x, at.y, at.width, at.height);
  draw_text_ext_transformed(at.x + at.width * across / 2, at.y + at.height * down / 2, Value(shown), -1,
                            overflow_mode == tui::kOverflowWrap ? at.width / scale : 0, scale, scale, 0);
  if (is_clipped) gpu_pop_scissor();
  draw_set_halign(0);
  draw_set_valign(0);
  draw_set_alpha(1);
}

void paint_shadowed_text(const Value& widget, std::string_view text, const Rect& at) {
  for (const double off : {1.0, -1.0}) {
    paint_text(widget, text, {at.x + off, at.y + 1, at.width, at.height}, 1, 1, tui::kOverflowVisible, 0, opacity_of(widget) * 0.7);
  }
  paint_text(widget, text, at, 1, 1, tui::kOverflowVisible, style_color(widget, color_text), opacity_of(widget));
}

}  // namespace game
