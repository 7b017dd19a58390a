#pragma once
// A room of the menu. A new one is a script file beside gallery.cpp, which begins with
//
//   const Sample sample{rSounds, "Sounds", "What is heard, and from where", sprShip};
//
// and holds the handlers of its object, and a file in assets/rooms with the room and that object, whose parent is oSample: it brings the
// look, the way back to the menu, and a place for widgets, `interface`.
#include "samples/assets.h"
#include "toolkit/ui/ui.h"

namespace game {

class Sample {
 public:
  Sample(int room, const char* title, const char* about, int picture);
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;
  const int room;
  const char *const title, *const about;
  const int picture;

  // All of them, in order of their rooms.
  static std::vector<const Sample*> all();

 private:
  const Sample* const next_;
};

inline const Variable interface { "interface" };

// The samples' look: night blue and amber.
inline constexpr int kPale = 0xF2EADF, kQuiet = 0xB9A58F, kAmber = 0x61C8FF;
Value make_style();
// The same with bold text, for what stands above other text.
Value make_title_style();
// Keeps window, GUI and view together: once a step.
void follow_window();

}  // namespace game
