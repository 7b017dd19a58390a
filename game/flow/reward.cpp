#include "game/flow/reward.h"

#include "game/combat/weapon.h"
#include "game/loot/modifier.h"
#include "game/loot/pickups.h"
#include "toolkit/ui/ui.h"

namespace game {
namespace {

const Variable screen_name{"name"}, left{"inset_left"}, top{"inset_top"};

constexpr Real kCard = 200, kPicture = 32, kTextHeight = 64, kSpace = 16, kMargin = 8;  // GUI pixels
constexpr int kModifierColour = 7595775;                                                // red 255, green 230, blue 115
constexpr const char* kRule = "________________________";
constexpr Real kRuleScale = 0.75;  // the rule fits the card

Value line(const Value& text, Real scale = 1) { return TuiText.make(struct_of({{value, text}, {text_halign, 1}, {text_scale, scale}})); }

// A card to click: the picture, the name, a rule, what it does.
Value make_card(int colour, const Value& sprite, int frame, const Value& title, const Value& text) {
  const Value card = TuiButton.make(struct_of({{width, kCard}, {height, kCard}, {color, colour}}));
  card[centerContent]();
  card[setPadding](kMargin);
  const Value parts = array_of(
      TuiImage.make(struct_of({{value, sprite}, {image, frame}, {width, kPicture}, {height, kPicture}, {maintain_aspect, true}})),
      line(title), line(kRule, kRuleScale),
      TuiText.make(struct_of(
          {{value, text}, {width, "100%"}, {height, kTextHeight}, {text_halign, 1}, {text_valign, 0}, {overflow, tui::kOverflowWrap}})));
  for (const Value& part : elements(parts)) part[setMouseIgnore]();
  card[addContent](parts);
  return card;
}

}  // namespace
}  // namespace game

// What is chosen falls at the player's feet.
METHOD(Value, oLevel1, takeWeaponCard, Value card) {
  moment_mark("reward");
  createGunPickup(oPlayer[x], oPlayer[y], card[getData]("gun"));
  return oLevel1[closeRewardScreen]();
}

METHOD(Value, oLevel1, takeModifierCard, Value card) {
  moment_mark("reward");
  createModifierPickup(oPlayer[x], oPlayer[y], card[getData]("mod"));
  return oLevel1[closeRewardScreen]();
}

METHOD(void, oLevel1, resumeWaves, Value screen) {
  const Value level = screen[getData]("LevelInstance");
  level[wave_pause] = false;
}

METHOD(void, oLevel1, createReward, Value wanted_rarity) {
  self[wave_pause] = true;
  window_set_cursor(kArrowCursor);
  const Value offered_gun = randomWeapon(is_undefined(wanted_rarity) ? Value(-1) : wanted_rarity), offered_mod = randomModifier();

  const Value screen = TuiBox.make(struct_of({{screen_name, "rewardScreen"}, {left, 0}, {top, 0}}));
  self[reward_screen] = screen;
  screen[setFlexDirection](tui::kRow);
  screen[centerContent]();
  screen[setGap](kSpace);
  screen[setPositionAbsolute]();
  screen[bringToFront]();
  screen[setFullSize]();
  screen[setData]("LevelInstance", self[id]);
  screen[addEvent]("destroy", bind(self, oLevel1_resumeWaves));

  const Value weapon_card = make_card(static_cast<int>(getColorByRarity(offered_gun[rarity]).number()), sprCardWeapon,
                                      weapon_picture(offered_gun), offered_gun[name], offered_gun[description]);
  weapon_card[setData]("gun", offered_gun);
  weapon_card[addEvent]("click", bind(self, oLevel1_takeWeaponCard));
  const Value modifier_card =
      make_card(kModifierColour, offered_mod[icon], modifier_picture(offered_mod), offered_mod[name], offered_mod[description]);
  modifier_card[setData]("mod", offered_mod);
  modifier_card[addEvent]("click", bind(self, oLevel1_takeModifierCard));
  screen[addContent](array_of(weapon_card, modifier_card));
  global[game_ui][addContent](screen);
}

// The variable keeps the destroyed screen until the next one.
METHOD(void, oLevel1, closeRewardScreen) {
  if (self[reward_screen] != -1) self[reward_screen][destroy]();
  window_set_cursor(kNoCursor);
}
