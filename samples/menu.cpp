// The first room: a card for each sample, over a sky in which lights drift.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"
#include "toolkit/support/motion.h"
#include "toolkit/support/particles.h"

namespace game {
extern const Script<void(Value, Value)> menu_open;

namespace {

const Variable lights{"lights"}, drawLights{"draw"}, type{"type"}, rate{"rate"}, shape{"shape"}, x1{"x1"}, y1{"y1"}, x2{"x2"}, y2{"y2"};
const Variable sprite_field{"sprite"}, life{"life"}, size{"size"}, size_end{"size_end"}, speed_field{"speed"}, direction_field{"direction"};
const Variable additive{"additive"}, column_gap{"column_gap"}, row_gap{"row_gap"}, flex_wrap{"flex_wrap"},
    justify_content{"justify_content"}, align_items{"align_items"}, flex_grow{"flex_grow"}, flex_basis{"flex_basis"},
    inset_left{"inset_left"}, inset_top{"inset_top"}, inset_right{"inset_right"}, is_absolute{"is_absolute"}, name_field{"name"},
    age{"age"};

constexpr Real kCardWidth = 372, kCardHeight = 116, kPicture = 64, kTop = 210, kGap = 20, kMargin = 60;  // GUI pixels
constexpr int kNight = 0x2A1C10;
constexpr Real kTitleAt = 76, kLineAt = 138;  // GUI pixels from the top

Value make_card(const Sample& sample) {
  const Value card = TuiButton.make(struct_of({{width, kCardWidth}, {height, kCardHeight}, {column_gap, 18}, {name_field, sample.title}}));
  card[setFlexDirection](tui::kRow);
  card[setPadding](20, 14);
  card[setData]("room", sample.room);
  card[addEvent]("click", menu_open);
  const Value picture = TuiImage.make(struct_of({{value, sample.picture}, {maintain_aspect, true}, {width, kPicture}, {height, kPicture}}));
  const Value words = TuiColumn.make(struct_of({{flex_grow, 1}, {flex_basis, 0}, {row_gap, 6}}));
  const Value heading = TuiText.make(struct_of({{value, sample.title}, {color, kAmber}}));
  heading[setStyle](make_title_style());
  words[addContent](
      array_of(heading, TuiText.make(struct_of({{value, sample.about}, {text_scale, 0.85}, {overflow, tui::kOverflowWrap}}))));
  words[setMouseIgnoreAll]();
  picture[setMouseIgnore]();
  card[addContent](array_of(picture, words));
  return card;
}

// Soft lights that drift upwards through the whole room.
Value make_lights() {
  const Value light = advanced_part_type.make(struct_of({{sprite_field, sprGlow},
                                                         {life, array_of(6, 12)},
                                                         {size, array_of(0.3, 1.4)},
                                                         {size_end, 0},
                                                         {speed_field, array_of(8, 30)},
                                                         {direction_field, array_of(50, 130)},
                                                         {additive, true},
                                                         {alpha, array_of(0, 0.35, 0)},
                                                         {color, array_of(0xE8C757, 0xB0825C, 0x7A52C4)}}));
  const Value system = advanced_part_system.make();
  advanced_part_emitter.make(system, struct_of({{type, light},
                                                {rate, 9},
                                                {shape, particles::kRectangle},
                                                {x1, 0},
                                                {y1, 80},
                                                {x2, Value(Real(room_width))},
                                                {y2, Value(Real(room_height))}}));
  return system;
}

}  // namespace
}  // namespace game

SCRIPT(menu_open, Value card, Value) { room_goto(card[getData]("room")); }

EVENT(oMenu, Create_0) {
  self[age] = 0;
  self[lights] = make_lights();
  self[interface] = TuiMain.make();
  self[interface][setStyle](make_style());
  const Value cards = TuiRow.make(struct_of({{name_field, "cards"},
                                             {is_absolute, true},
                                             {inset_left, kMargin},
                                             {inset_right, kMargin},
                                             {inset_top, kTop},
                                             {flex_wrap, tui::kWrap},
                                             {justify_content, tui::kCenter},
                                             {column_gap, kGap},
                                             {row_gap, kGap}}));
  for (const Sample* sample : Sample::all()) cards[addContent](make_card(*sample));
  self[interface][addContent](cards);
}

EVENT(oMenu, Step_0) {
  follow_window();
  self[age] += global[dt_steady];
  self[lights][update]();
  self[interface][update]();
}

EVENT(oMenu, Draw_64) {
  self[lights][drawLights]();
  {
    const KeptDrawState kept;
    const Real middle = display_get_gui_width() / 2;
    draw_sprite_ext(sprPlanet, 0, middle - 175, kTitleAt + Wave(-5, 5, 4, 0), 1.3, 1.3, Wave(-4, 4, 7, 0), c_white, 1);
    draw_set_halign(fa_center);
    draw_set_valign(fa_middle);
    draw_set_font(fntTitle);
    draw_set_colour(kAmber);
    draw_text_transformed(middle + 20, kTitleAt, "SAMPLES", 2.4, 2.4, 0);
    draw_set_font(fntUi);
    draw_text_shadowed(middle, kLineAt, "What the runtime can do, a room for each. Its script and its data are a short file each.", kPale,
                       kNight, 1);
    draw_set_valign(fa_bottom);
    draw_text_shadowed(middle, display_get_gui_height() - 10, "Click a card, or Tab and Enter      F11 fullscreen      Esc quit", kQuiet,
                       kNight, 1);
  }
  self[interface][render]();
}

EVENT(oMenu, KeyPress_27) { game_end(); }
