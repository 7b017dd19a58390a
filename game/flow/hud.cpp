#include "game/flow/hud.h"

#include "game/combat/names.h"
#include "game/loot/modifier.h"

namespace game {
namespace {

const Variable flex_grow{"flex_grow"};

constexpr Real kNumberWidth = 44;                                       // GUI pixels: three digits
constexpr Real kLabelWidth = 64, kBarsWidth = 256, kWeaponWidth = 512;  // GUI pixels
constexpr Real kWeaponPicture = 96, kWeaponPictureHeight = 48;          // GUI pixels: six slots fit beside it
constexpr Real kSlot = 40, kSlotGap = 4;                                // GUI pixels
constexpr Real kLabelScale = 0.7;                                       // "HEALTH: " in its width
constexpr Real kSpace = 16;                                             // GUI pixels around and between everything
constexpr int kCyan = 16776960;

Value make_panel(const Value& across) {
  const Value panel =
      TuiImage.make(struct_of({{value, sprPanel}, {alpha, 0.5}, {maintain_aspect, true}, {color, c_white}, {width, across}}));
  panel[setPadding](kSpace);
  panel[setGap](kSpace);
  return panel;
}

Value row_of(const Value& one, const Value& two) {
  const Value row = TuiRow.make();
  row[addContent](array_of(one, two));
  return row;
}

Value label(const char* text) { return TuiText.make(struct_of({{value, text}, {text_halign, 2}})); }
Value bar_label(const char* text) {
  return TuiText.make(struct_of({{value, text}, {width, kLabelWidth}, {overflow, tui::kOverflowClip}, {text_scale, kLabelScale}}));
}
// A number in a box of its own, so that nothing moves when it gets more digits.
Value bound_text(const ObjectName& object, const char* variable) {
  const Value text = TuiText.make(struct_of({{width, kNumberWidth}, {rounding, 0}}));
  text[bindVariable](object, variable);
  return text;
}

}  // namespace

void build_hud() {
  const Value root = TuiMain.make();
  global[game_ui] = root;
  root[setPadding](kSpace);
  root[setGap](kSpace);
  root[setStyle](Value(global[game_ui_style]));

  const Value waves = make_panel("auto"), bars = make_panel(kBarsWidth), weapon = make_panel(kWeaponWidth);
  global[ui_waves] = waves;
  global[ui_player_hud] = bars;
  global[ui_weapon] = weapon;
  waves[setMouseIgnoreAll]();
  bars[setMouseIgnoreAll]();
  weapon[setFlexDirection](tui::kRow);

  const Value health = TuiProgressBar.make(struct_of({{rounding, 1}})),
              energy = TuiProgressBar.make(struct_of({{rounding, 1}, {color, kCyan}}));
  global[ui_hpbar] = health;
  global[ui_energybar] = energy;
  health[bindVariable](oPlayer, "hp");
  energy[bindVariable](oPlayer, "dash_energy");
  bars[addContent](array_of(row_of(bar_label("HEALTH: "), health), row_of(bar_label("ENERGY: "), energy)));
  waves[addContent](array_of(row_of(label("Wave: "), bound_text(oLevel1, "wave_count")),
                             row_of(label("Seconds left to new wave: "), bound_text(oLevel1, "wave_timer"))));

  const Value top = TuiRow.make();
  top[setPadding](kSpace);
  top[setGap](kSpace);
  top[setFlexWrap](tui::kWrap);  // in narrow windows the panels stand below one another
  top[addContent](array_of(waves, bars, weapon));
  root[addContent](top);
}

void rebuild_weapon_panel() {
  const Value panel = global[ui_weapon];
  panel[destroyContent]();
  if (!instance_exists(oPlayer) || oPlayer[gun] == noone || !instance_exists(oPlayer[gun])) return;
  const Value carried = oPlayer[gun], slots = carried[modifiers];
  panel[addContent](TuiImage.make(struct_of({{value, sprGun},
                                             {image, carried[gun_picture]},
                                             {color, carried[image_blend]},
                                             {maintain_aspect, true},
                                             {width, kWeaponPicture},
                                             {height, kWeaponPictureHeight}})));
  for (const Value& each : elements(slots)) {
    const Value box = TuiBox.make(struct_of({{width, kSlot}, {height, kSlot}, {color, c_white}}));
    box[setPadding](kSlotGap);
    if (each != noone) {
      const Value picture =
          TuiImage.make(struct_of({{value, Value(each[icon])}, {image, modifier_picture(each)}, {maintain_aspect, true}, {flex_grow, 1}}));
      picture[setTooltip](Value(each[description]));
      box[addContent](picture);
    }
    panel[addContent](box);
  }
}

}  // namespace game
