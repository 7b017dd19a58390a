// What all rooms of the menu share: their look, and the way back.
#include "samples/sample.h"

#include <algorithm>

#include "toolkit/support/drawing.h"
#include "toolkit/support/resolution.h"
#include "toolkit/ui/paint.h"

namespace game {
namespace {

const Variable manager_update{"update"};

const Sample* first = nullptr;

constexpr int kNight = 0x2A1C10, kField = 0x33241A, kHover = 0x7A5A3E;

}  // namespace

Sample::Sample(int number, const char* called, const char* says, int shown)
    : room(number), title(called), about(says), picture(shown), next_(first) {
  first = this;
}

std::vector<const Sample*> Sample::all() {
  std::vector<const Sample*> list;
  for (const Sample* each = first; each != nullptr; each = each->next_) list.push_back(each);
  std::sort(list.begin(), list.end(), [](const Sample* a, const Sample* b) { return a->room < b->room; });
  return list;
}

Value make_style() {
  const Value made = TuiStyle.make(
      struct_of({{color_text, kPale}, {color_faint, kQuiet}, {color_accent, kAmber}, {color_field, kField}, {color_hover, kHover}}));
  made[setMinSize](20, 20);
  made[setSprites](sprPanel, sprPanel);
  made[setSpriteProgressBar](sprBarBack, sprBarFill);
  made[setFonts](fntUi, fntUi, fntTitle);
  return made;
}

Value make_title_style() {
  const Value made = make_style();
  made[setFonts](fntTitle, fntTitle, fntTitle);
  return made;
}

void follow_window() {
  const Value manager = getTarnResolutionManager();
  manager[manager_update]();
  manager[fitRoom]();
}

}  // namespace game

EVENT(oSample, Create_0) {
  self[interface] = TuiMain.make();
  self[interface][setStyle](make_style());
}

EVENT(oSample, Step_0) {
  follow_window();
  self[interface][update]();
}

EVENT(oSample, Draw_64) {
  self[interface][render]();
  const KeptDrawState kept;
  draw_set_font(fntUi);
  draw_set_halign(fa_center);
  draw_set_valign(fa_bottom);
  draw_text_shadowed(display_get_gui_width() / 2, display_get_gui_height() - 10, "Esc  back to the menu", kQuiet, kNight, 1);
}

EVENT(oSample, KeyPress_27) { room_goto(rMenu); }
