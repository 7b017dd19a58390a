// A room that shows every widget alive: for whoever builds with the toolkit, and for looking at it.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"
#include "toolkit/support/particles.h"
#include "toolkit/ui/paint.h"

namespace game {
extern const Script<void(Value, Value)> gallery_count, gallery_dance, gallery_close_dialog;

namespace {

const Sample sample{rGallery, "Interface", "Every widget of the toolkit, alive. Click, drag, type", sprWidgets};

const Variable progress{"progress"}, clicks{"clicks"}, shown{"shown"}, dialog{"dialog"};
const Variable sparks{"sparks"}, draw{"draw"}, type{"type"}, rate{"rate"}, shape{"shape"}, x1{"x1"}, y1{"y1"}, x2{"x2"}, y2{"y2"};
const Variable sprite_field{"sprite"}, life{"life"}, size{"size"}, size_end{"size_end"}, speed_field{"speed"}, direction_field{"direction"};
const Variable gravity_field{"gravity"}, spin{"spin"}, additive{"additive"};

Value label(const char* words) { return TuiText.make(struct_of({{value, words}})); }
Value row_of(const Value& widgets) {
  const Value made = TuiRow.make(struct_of({{column_gap, 12}, {align_items, tui::kCenter}}));
  made[addContent](widgets);
  return made;
}

Value controls_window(Self self) {
  const Value window = TuiWindow.make(struct_of({{value, "Controls"}, {width, 400}, {inset_left, 40}, {inset_top, 40}}));
  const Value button = TuiButton.make(struct_of({{value, "Click me"}, {name_field, "button"}}));
  button[addEvent]("click", gallery_count);
  button[setTooltip]("Counts how often it was clicked. Tooltips wrap when they grow long.");
  const Value off = TuiButton.make(struct_of({{value, "Disabled"}, {enabled, false}}));
  const Value dance = TuiButton.make(struct_of({{value, "Dance"}}));
  dance[addEvent]("click", gallery_dance);
  const Value counter = TuiText.make(struct_of({{prefix, "Clicks: "}}));
  counter[bindVariable](self[id], "clicks");
  window[addContent](array_of(row_of(array_of(button, off, dance)), counter));

  const Value slider = TuiSlider.make(struct_of({{value, 40}, {flex_grow, 1}, {name_field, "slider"}}));
  const Value amount = TuiText.make(struct_of({{width, 48}, {text_halign, 2}, {rounding, 0}}));
  amount[bindVariable](slider, "value");
  window[addContent](row_of(array_of(label("Volume"), slider, amount)));
  window[addContent](TuiCheckbox.make(struct_of({{caption, "Screen shake"}, {value, true}, {name_field, "check"}})));
  window[addContent](TuiInput.make(struct_of({{placeholder, "Your name"}, {max_length, 24}, {name_field, "input"}})));
  window[addContent](TuiCombo.make(
      struct_of({{options, array_of("Easy", "Normal", "Hard", "Nightmare", "Ünmöglich")}, {value, 1}, {name_field, "combo"}})));
  return window;
}

Value progress_window(Self self) {
  const Value window = TuiWindow.make(struct_of({{value, "Progress"}, {width, 360}, {inset_left, 480}, {inset_top, 40}}));
  const Value bar = TuiProgressBar.make(struct_of({{rounding, 0}, {suffix, " %"}}));
  bar[bindVariable](self[id], "progress");
  const Value energy = TuiProgressBar.make(struct_of({{rounding, 0}, {color, 16776960}}));
  energy[bindVariable](self[id], "progress");
  const Value bars = TuiColumn.make(struct_of({{row_gap, 8}}));
  bars[addContent](row_of(array_of(label("Health"), bar)));
  bars[addContent](row_of(array_of(label("Energy"), energy)));
  window[addContent](bars);
  const Value rings = TuiRow.make(struct_of({{justify_content, tui::kEvenly}}));
  for (const int tint : {65310, 14512128, 33023}) {
    const Value ring = TuiProgressRing.make(struct_of({{color, tint}, {rounding, 0}, {width, 80}, {height, 80}}));
    ring[bindVariable](self[id], "progress");
    rings[addContent](ring);
  }
  window[addContent](rings);
  return window;
}

Value text_window() {
  const Value window = TuiWindow.make(struct_of({{value, "Text and pictures"}, {width, 360}, {inset_left, 480}, {inset_top, 320}}));
  const char* const long_text = "Words flow from line to line where the box is narrow, and stay sharp at every size.";
  window[addContent](TuiText.make(struct_of({{value, long_text}, {overflow, tui::kOverflowWrap}})));
  window[addContent](TuiText.make(struct_of({{value, long_text}, {overflow, tui::kOverflowEllipsis}, {color, 14512128}})));
  window[addContent](TuiText.make(struct_of({{value, long_text}, {overflow, tui::kOverflowClip}, {color, 33023}})));
  const Value line = TuiRow.make(struct_of({{column_gap, 8}, {justify_content, tui::kCenter}, {align_items, tui::kBaseline}}));
  line[addContent](array_of(TuiText.make(struct_of({{value, "Large"}, {text_scale, 1.5}})),
                            TuiText.make(struct_of({{value, "on one line"}})),
                            TuiText.make(struct_of({{value, "with small"}, {text_scale, 0.75}}))));
  window[addContent](line);
  const Value pictures = TuiRow.make(struct_of({{column_gap, 12}, {justify_content, tui::kCenter}, {align_items, tui::kCenter}}));
  for (const int sprite : {sprShip, sprPlanet, sprComet, sprGem, sprFountain}) {
    const Value picture =
        TuiImage.make(struct_of({{value, sprite}, {maintain_aspect, true}, {width, 48}, {height, 48}, {name_field, "picture"}}));
    picture[setTooltip](sprite == sprComet ? "A comet" : "A picture");
    pictures[addContent](picture);
  }
  window[addContent](pictures);
  return window;
}

Value tabs_window() {
  const Value window =
      TuiWindow.make(struct_of({{value, "Tabs and scrolling"}, {width, 360}, {height, 380}, {inset_left, 880}, {inset_top, 40}}));
  const Value tabs = TuiTabs.make(struct_of({{flex_grow, 1}, {flex_basis, 0}, {min_height, 0}, {row_gap, 4}, {name_field, "tabs"}}));
  const Value list = TuiScroll.make(struct_of({{flex_grow, 1}, {flex_basis, 0}, {row_gap, 4}, {name_field, "scroll"}}));
  for (int i = 1; i <= 30; ++i) list[addContent](TuiButton.make(struct_of({{value, "Entry " + string(i)}})));
  const Value grid = TuiRow.make(struct_of({{flex_wrap, tui::kWrap}, {column_gap, 6}, {row_gap, 6}, {align_content, tui::kStart}}));
  for (int i = 0; i < 24; ++i) grid[addContent](TuiPanel.make(struct_of({{width, 44}, {height, 44}})));
  tabs[addTab]("List", list);
  tabs[addTab]("Grid", grid);
  tabs[addTab]("About",
               TuiText.make(struct_of({{value, "Pages keep their state while they are hidden."}, {overflow, tui::kOverflowWrap}})));
  window[addContent](tabs);
  return window;
}

}  // namespace
}  // namespace game

SCRIPT(gallery_count, Value, Value) { oGallery[clicks] += 1; }

SCRIPT(gallery_dance, Value, Value) {
  const Value root = oGallery[interface];
  const Value picture = root[find]("picture");
  if (is_widget(picture)) {
    const Real turned = picture[rotation];
    picture[tween]("rotation", turned + 360, 0.8, "outBack");
  }
  const Value ask = TuiButton.make(struct_of({{value, "A modal dialog: OK"}}));
  ask[addEvent]("click", gallery_close_dialog);
  const Value layer = TuiBox.make(struct_of({{name_field, "dialog"}}));
  layer[setPositionAbsolute]();
  layer[setFullSize]();
  layer[centerContent]();
  layer[setModal](true);
  layer[bringToFront]();
  layer[addContent](ask);
  root[addContent](layer);
}

SCRIPT(gallery_close_dialog, Value button, Value) {
  const Value layer = button[parent];
  layer[destroy]();
}

EVENT(oGallery, Create_0) {
  event_inherited();
  const Value ember = advanced_part_type.make(struct_of({{sprite_field, sprGlow},
                                                         {life, array_of(0.6, 1.4)},
                                                         {size, array_of(0.15, 0.4)},
                                                         {size_end, 0},
                                                         {speed_field, array_of(60, 220)},
                                                         {direction_field, array_of(60, 120)},
                                                         {gravity_field, 160},
                                                         {spin, array_of(-200, 200)},
                                                         {additive, true},
                                                         {color, array_of(0x60E0FF, 0x2080FF, 0x1010A0)}}));
  self[sparks] = advanced_part_system.make();
  advanced_part_emitter.make(
      self[sparks], struct_of({{type, ember}, {rate, 120}, {shape, particles::kEllipse}, {x1, 60}, {y1, 660}, {x2, 340}, {y2, 690}}));
  self[clicks] = 0;
  self[progress] = 0;
  self[interface][addContent](controls_window(self));
  self[interface][addContent](progress_window(self));
  self[interface][addContent](text_window());
  self[interface][addContent](tabs_window());
}

EVENT(oGallery, Step_0) {
  event_inherited();
  const Real dt = global[dt_steady];
  self[progress] = (self[progress] + 20 * dt) % 100;
  self[sparks][update]();
}

EVENT(oGallery, Draw_64) {
  // The drawing helpers, behind the windows.
  const Real percent = self[progress], share = percent / 100;
  draw_set_font(fntTitle);
  draw_text_outlined(60, 400, "Outlined text", c_white, 0x802010, 2);
  draw_text_shadowed(60, 440, "Shadowed text", 0x4CC2F2, 0, 2);
  draw_healthbar_circular(90, 540, 36, 9, share, c_lime, 0x303030);
  draw_sprite_radial(sprGem, 0, 190, 540, share, c_white, 1);
  draw_sprite_radial(sprPlanet, 0, 290, 540, share, c_white, 1);
  self[sparks][draw]();
  event_inherited();
}
