// Keys as they come from the system: places for letters and digits, what the layout says for the rest.
#include "engine/platform/window.h"

#include <SDL.h>

#include "engine/platform/key_codes.h"
#include "runtime/input/input_state.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

TEST(KeyCodes, LettersAndDigitsArePlacesAndOthersWhatTheLayoutSays) {
  struct Case {
    const char* label;
    int scancode, keycode, expected;
  };
  const Case cases[] = {{"W, US", SDL_SCANCODE_W, SDLK_w, 'W'},
                        {"W's place, Russian", SDL_SCANCODE_W, 0x446, 'W'},
                        {"W's place, French", SDL_SCANCODE_W, SDLK_z, 'W'},
                        {"A's place, French", SDL_SCANCODE_A, SDLK_q, 'A'},
                        {"Y's place, German", SDL_SCANCODE_Y, SDLK_z, 'Y'},
                        {"1's place, French", SDL_SCANCODE_1, SDLK_AMPERSAND, '1'},
                        {"0's place, French", SDL_SCANCODE_0, 0xE0, '0'},
                        {"9", SDL_SCANCODE_9, SDLK_9, '9'},
                        {"Caps Lock that was made Escape", SDL_SCANCODE_CAPSLOCK, SDLK_ESCAPE, 27},
                        {"F12", SDL_SCANCODE_F12, SDLK_F12, 123},
                        {"right Shift", SDL_SCANCODE_RSHIFT, SDLK_RSHIFT, 16},
                        {"a semicolon's place, German", SDL_SCANCODE_SEMICOLON, 0xF6, 186},
                        {"5 of the number pad", SDL_SCANCODE_KP_5, SDLK_KP_5, 101},
                        {"mute", SDL_SCANCODE_MUTE, SDLK_MUTE, 0}};
  for (const Case& each : cases) EXPECT_EQ(platform::key_code(each.scancode, each.keycode), each.expected) << each.label;
  for (std::size_t i = 0; i < platform::kPlaces; ++i) {
    const int code = platform::place_code(i);
    EXPECT_EQ(platform::key_code(platform::scancode_of(code), 0), code);
    EXPECT_NE(us_key_name(code), "") << code;
  }
}

TEST(KeyCodes, LabelsAreCapitals) {
  struct Case {
    int keycode;
    const char* expected;
  };
  const Case cases[] = {{'w', "W"},   {'&', "&"},   {0xE9, "É"},  {0xF7, "÷"}, {0x446, "Ц"}, {0x451, "Ё"},
                        {0x142, "Ł"}, {0x161, "Š"}, {0x3C3, "Σ"}, {0x5D0, ""}, {' ', ""},    {SDLK_UP, ""}};
  for (const Case& each : cases) EXPECT_EQ(platform::key_label(each.keycode), each.expected) << each.keycode;
}

TEST(Window, KeysOfAnyLayoutReachTheGame) {
  std::string problem;
  platform::WindowOptions options;
  options.offscreen = true;
  const std::unique_ptr<platform::Window> window = platform::open_window(options, problem);
  ASSERT_NE(window, nullptr) << problem;
  const auto press = [&](Uint32 type, SDL_Scancode scancode, SDL_Keycode keycode, bool repeats = false) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.scancode = scancode;
    event.key.keysym.sym = keycode;
    event.key.repeat = repeats;
    SDL_PushEvent(&event);
  };
  reset_input();
  set_typed("abc");
  press(SDL_KEYDOWN, SDL_SCANCODE_W, 0x446);
  press(SDL_KEYDOWN, SDL_SCANCODE_Q, SDLK_a);  // French
  press(SDL_KEYDOWN, SDL_SCANCODE_E, 0x443);   // Russian
  press(SDL_KEYDOWN, SDL_SCANCODE_BACKSPACE, SDLK_BACKSPACE);
  press(SDL_KEYDOWN, SDL_SCANCODE_BACKSPACE, SDLK_BACKSPACE, true);
  window->poll();
  begin_input_frame();
  for (const int place : {'W', 'Q', 'E'}) EXPECT_TRUE(key_test(place, &Switch::pressed)) << place;
  EXPECT_FALSE(key_test('A', &Switch::pressed));
  EXPECT_EQ(input_state().typed, "a");
  press(SDL_KEYDOWN, SDL_SCANCODE_W, 0x446, true);
  press(SDL_KEYUP, SDL_SCANCODE_W, SDLK_z);  // the layout changed meanwhile
  window->poll();
  begin_input_frame();
  EXPECT_FALSE(key_test('W', &Switch::pressed));
  EXPECT_FALSE(key_test('W', &Switch::down));
  reset_input();
}

// A window that only keeps what it was told.
struct PretendedWindow final : platform::Window {
  bool poll() override { return true; }
  std::unique_ptr<gpu::Backend> create_backend(std::string&) override { return nullptr; }
  void drawable_size(int& wide, int& high) const override { wide = width, high = height; }
  void announce() override {}
  bool takes_screenshot() override { return false; }
  void show_cursor(bool shown) override { cursor = shown; }
  void toggle_fullscreen() override { fullscreen = !fullscreen; }
  bool is_fullscreen() const override { return fullscreen; }
  void resize(int wide, int high) override { width = wide, height = high; }
  void set_clipboard(const std::string& text) override { copied = text; }
  std::string clipboard() const override { return copied; }
  std::vector<platform::Display> displays() const override { return {{}, {1920, 0, 1280, 1024, 75, 120, 1920, 30, 1280, 994}}; }
  int display() const override { return 1; }
  void position(int& across, int& down) const override { across = x, down = y; }
  void move(int across, int down) override { x = across, y = down; }
  void set_title(const std::string& text) override { title = text; }
  void set_icon(const std::vector<std::uint8_t>& rgba, int wide, int high) override {
    EXPECT_EQ(rgba.size(), static_cast<std::size_t>(wide * high * 4));
    icon = wide;
  }
  void set_border(bool wanted) override { border = wanted; }
  void minimise() override { minimised = true; }
  void restore() override { minimised = false; }
  bool is_minimised() const override { return minimised; }
  void keep_display_awake(bool wanted) override { awake = wanted; }
  void leave_closing_to_game(bool wanted) override { game_closes = wanted; }

  bool cursor = true, fullscreen = false, border = true, minimised = false, awake = false, game_closes = false;
  int width = 640, height = 360, x = 0, y = 0, icon = 0;
  std::string copied, title;
};

class WindowOfScripts : public TestGame {
 protected:
  WindowOfScripts() { platform::use_window(&window); }
  ~WindowOfScripts() override { platform::use_window(nullptr); }
  PretendedWindow window;
};

TEST_F(WindowOfScripts, FollowsAtOnce) {
  for (const bool hidden : {true, true, false, true}) {
    eval(hidden ? "window_set_cursor(-1)" : "window_set_cursor(0)");
    EXPECT_EQ(window.cursor, !hidden);
    PretendedWindow next;
    platform::use_window(&next);
    EXPECT_EQ(next.cursor, !hidden) << "a window that is opened later";
    platform::use_window(&window);
  }
  eval("game_restart()");
  step();
  EXPECT_TRUE(window.cursor) << "hidden by the run before";

  for (const bool wanted : {true, true, false, false, true}) {
    eval(wanted ? "window_set_fullscreen(true)" : "window_set_fullscreen(false)");
    EXPECT_EQ(window.fullscreen, wanted);
    EXPECT_EQ(eval("window_get_fullscreen()"), wanted ? "true" : "false");
  }
  for (const char* const refused : {"0, 100", "100, 0", "-1, 100", "100, -1"}) eval(std::string("window_set_size(") + refused + ")");
  EXPECT_EQ(std::pair(window.width, window.height), std::pair(640, 360));
  eval("window_set_size(1, 700)");
  EXPECT_EQ(std::pair(window.width, window.height), std::pair(1, 700));

  window.copied = "from elsewhere";
  check({{"clipboard_has_text()", "true"}, {"clipboard_get_text()", "from elsewhere"}});
  eval("clipboard_set_text(\"\")");
  check({{"clipboard_has_text()", "false"}});
  eval("clipboard_set_text(\"ours\")");
  EXPECT_EQ(window.copied, "ours");
}

TEST_F(WindowOfScripts, StandsAndLooksAsTheySay) {
  check({{"display_get_count()", "2"},
         {"display_get_of_window()", "1"},
         {"d = display_get(1); [d.x, d.y, d.width, d.height, d.frequency, d.dpi, d.work_x, d.work_y, d.work_width, d.work_height]",
          "[1920,0,1280,1024,75,120,1920,30,1280,994]"}});
  eval("window_set_position(-30, 99999999)");
  EXPECT_EQ(std::pair(window.x, window.y), std::pair(-30, 1 << 20));
  check({{"[window_get_x(), window_get_y()]", "[-30,1048576]"}, {"window_is_minimised()", "false"}});
  eval("window_minimise()");
  check({{"window_is_minimised()", "true"}});
  eval("window_restore()");
  check({{"window_is_minimised()", "false"}});
  eval("window_set_icon(sprPlayer, 0)");
  EXPECT_GT(window.icon, 0);

  // What is said to one window a later one hears, and a restart takes back.
  eval("window_set_caption(\"Wave 3\"); window_set_borderless(true); display_set_awake(false)");
  PretendedWindow next;
  platform::use_window(&next);
  for (const PretendedWindow* const each : {&window, &next}) {
    EXPECT_EQ(each->title, "Wave 3");
    EXPECT_FALSE(each->border);
    EXPECT_FALSE(each->awake);
  }
  eval("game_restart()");
  step();
  EXPECT_EQ(next.title, "");
  EXPECT_TRUE(next.border && next.awake);
  platform::use_window(&window);
}

}  // namespace
}  // namespace arena::test
