#pragma once
// How the toolkit draws and measures: through the drawing built-ins, in GUI pixels.
#include <functional>

#include "toolkit/ui/widget.h"

namespace ui {
inline const Variable caption_of_button{"caption_of_button"}, font{"font"}, prefix{"prefix"}, suffix{"suffix"};

// Fields of a style
inline const Variable sprite_panel{"sprite_panel"}, sprite_button{"sprite_button"}, sprite_bar_back{"sprite_bar_back"};
inline const Variable sprite_bar_fill{"sprite_bar_fill"}, font_text{"font_text"}, font_button{"font_button"}, font_title{"font_title"};
inline const Variable color_text{"color_text"}, color_faint{"color_faint"}, color_panel{"color_panel"}, color_button{"color_button"};
inline const Variable color_hover{"color_hover"}, color_pressed{"color_pressed"}, color_accent{"color_accent"}, color_field{"color_field"};
}  // namespace ui

namespace game {

// The font that a widget writes in, from its own field `font` or its style.
int font_of(const Value& widget);
double text_width(std::string_view text, int font);
// `wrap` in pixels; 0: one line for each line break.
double text_height(std::string_view text, int font, double wrap);
// How many bytes of the text, ending between two characters, make the longest beginning that fits; what is shorter than one that fits,
// fits.
std::size_t longest_beginning(std::string_view text, const std::function<bool(std::string_view)>& fits);
// The value of a widget as it is shown: numbers by `rounding`, its `prefix` and `suffix` around.
std::string shown_text(const Value& widget);
double sprite_width_of(int sprite);
double sprite_height_of(int sprite);

// A colour that a style gives, by the name of its field.
int style_color(const Value& widget, const Variable& field);
// The widget's own colour, or one that its style gives.
int own_color_or(const Value& widget, const Variable& from_style);
// A sprite of the style stretched as nine pieces: its corners keep their size.
void paint_panel(int sprite, const Rect& at, int tint, double opacity);
// A sprite stretched over a rectangle, turned around its middle.
void paint_sprite(int sprite, double frame, const Rect& at, double turn, int tint, double opacity);
// The widget's alpha, faint when it is not enabled.
double opacity_of(const Value& widget);
void paint_rectangle(const Rect& at, int tint, double opacity);
void paint_frame(const Rect& at, int tint, double opacity);
// Inside the rectangle, aligned 0 to 2 across and down; overflow as the toolkit's values say.
// The same twice: dark and a pixel off below, so that it can be read over anything.
void paint_shadowed_text(const Value& widget, std::string_view text, const Rect& at);
void paint_text(const Value& widget, std::string_view text, const Rect& at, int across, int down, int overflow_mode, int tint,
                double opacity);

}  // namespace game
