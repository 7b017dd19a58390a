// The support library: particles, resolution, structs, validation, pictures of the screen.
#include <filesystem>
#include <fstream>

#include "runtime/input/input_state.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Support : public PlayedGame {
 protected:
  void window(int width, int height) {
    InputEvent size;
    size.type = InputEvent::Type::kWindowSize;
    size.code = width;
    size.value = height;
    push_input(size);
    step();
    eval("getTarnResolutionManager().update()");
  }
};

TEST_F(Support, ParticlesLiveFlyAndEnd) {
  eval(
      "global.dt_steady = 0.1; global.t = new advanced_part_type({sprite: 33, life: 1, speed: 100, direction: 0, drag: 0}); global.s = new "
      "advanced_part_system()");
  check({
      {"global.s.burst(global.t, 50, 10, 20); global.s.count()", "50"},
      {"global.s.update(); global.s.count()", "50"},
      {"repeat_ = 0; global.s.update(); global.s.update(); global.s.update(); global.s.update(); global.s.update(); global.s.update(); "
       "global.s.update(); global.s.update(); global.s.count()",
       "50"},
      {"global.s.update(); global.s.update(); global.s.count()", "0"},
  });
  // One that leaves three more at its end, and a trail of ten a second.
  check({
      {"global.e = new advanced_part_type({sprite: 34, life: 5}); global.p = new advanced_part_type({sprite: 33, life: 0.35, end_type: "
       "global.e, end_count: 3, trail_type: global.e, trail_rate: 10}); 1",
       "1"},
      {"global.s.burst(global.p, 1, 0, 0); global.s.update(); global.s.count()", "2"},
      {"global.s.update(); global.s.update(); global.s.update(); global.s.count()", "6"},  // three of the trail, three at the end
      {"global.s.clear(); global.s.count()", "0"},
      {"global.m = new advanced_part_emitter(global.s, {type: global.e, rate: 25, shape: 2, x1: 0, y1: 0, x2: 10, y2: 10}); "
       "global.s.update(); global.s.update(); global.s.count()",
       "5"},
      {"global.m.stop(); global.s.update(); global.s.count()", "5"},
      {"part_emit(global.s.handle, 99, 1, 0, 0, 0, 0, 0)", "! part_emit argument 2 invalid reference to (particle type) - requested 99"},
      {"global.s.destroy(); global.s.count()", "! part_system_count argument 1 invalid reference to (particle system) - requested 1"},
  });
}

TEST_F(Support, TheSameSeedGivesTheSameParticles) {
  eval(
      "global.dt_steady = 0.1; global.t = new advanced_part_type({sprite: 33, life: [1, 9], speed: [10, 100], turn: 90, gravity: 50}); "
      "global.s = new advanced_part_system()");
  const char* const run =
      "random_set_seed(4); global.s.clear(); global.s.burstShape(global.t, 500, 3, 0, 0, 100, 50); global.s.update(); [global.s.count(), "
      "random(1000)]";
  const std::string first = eval(run);
  EXPECT_EQ(eval(run), first);
}

TEST_F(Support, ParticlesDrawNothingFromTheGamesChance) {
  eval("global.dt_steady = 0.1; global.t = new advanced_part_type({sprite: 33, life: [1, 9]}); global.s = new advanced_part_system()");
  const std::string without = eval("random_set_seed(4); random(1000)");
  EXPECT_EQ(eval("random_set_seed(4); global.s.burst(global.t, 500, 0, 0); global.s.update(); random(1000)"), without);
  // However many are wanted, so many there are at most.
  check({{"global.s.burst(global.t, 1e12, 0, 0); global.s.count()", "100000"},
         {"global.t.set({trail_type: global.t, trail_rate: 1e300, end_type: global.t, end_count: 1e300, life: 0.01}); 1", "1"},
         {"global.s.update(); global.s.update(); global.s.count() <= 200000", "true"},
         {"part_type_set(global.t.handle, {life: kind(2), color: kind(2), alpha: kind(2)})", "undefined"}});
}

TEST_F(Support, TheResolutionFollowsTheWindowInHalfSteps) {
  struct Case {
    int width, height;
    const char* expected;  // scale, GUI size
  };
  const Case cases[] = {{1280, 720, "[1,1280,720]"},  {1920, 1080, "[1.50,1280,720]"}, {2560, 1440, "[2,1280,720]"},
                        {3840, 2160, "[3,1280,720]"}, {7680, 4320, "[6,1280,720]"},    {1000, 900, "[1,1000,900]"},
                        {704, 396, "[1,704,396]"},    {3440, 1440, "[2,1720,720]"},    {1366, 768, "[1,1366,768]"},
                        {352, 198, "[0.50,704,396]"}};
  for (const Case& each : cases) {
    window(each.width, each.height);
    EXPECT_EQ(eval("r = getTarnResolutionManager(); [r.scale, r.gui_width, r.gui_height]"), each.expected)
        << each.width << " x " << each.height;
    EXPECT_EQ(eval("[display_get_gui_width(), display_get_gui_height()] == 0"), "false");
    const std::string whole = "{x:0,y:0,width:" + std::to_string(each.width) + ",height:" + std::to_string(each.height) + "}";
    EXPECT_EQ(eval("getTarnResolutionManager().guiRectangle()"), whole);
  }
  window(1280, 720);
  check({{"r.setScale(1.5); [r.scale, display_get_gui_width()]", "[1.50,853]"},
         {"r.setScale(5); display_get_gui_width()", "704"},
         {"r.setScale(0); r.scale", "1"},
         {"getTarnResolutionManager() == r", "true"}});
}

TEST_F(Support, StructsAreCopiedAndMergedDeeply) {
  check({
      {"a = {n: 1, list: [1, {k: 2}], inner: {x1: 5}}; a.me = a; b = struct_copy_deep(a); b.list[1].k = 9; b.inner.x1 = 6; [a.list[1].k, "
       "a.inner.x1, b.me == b, b.me == a]",
       "[2,5,true,false]"},
      {"struct_copy_deep(7)", "7"},
      {"a = {n: 1, inner: {x1: 1, y1: 2}}; b = {m: 3, inner: {y1: 9, z1: [1]}}; struct_merge(a, b); b.inner.z1[0] = 5; a",
       "{n:1,inner:{x1:1,y1:9,z1:[1]},m:3}"},
      {"a = {}; b = {}; a.other = b; b.other = a; struct_merge(a, b); a.other == b", "true"},
      {"struct_merge({k: 1}, 5)", "{k:1}"},
  });
}

TEST_F(Support, TextsAreValidated) {
  check({
      {"[string_is_empty(\"\"), string_is_empty(\" \"), string_is_empty(\"a\"), string_is_empty(undefined)]", "[true,true,false,true]"},
      {"[string_is_integer(\"-12\"), string_is_integer(\"1.0\"), string_is_integer(\"\"), string_is_integer(\"-\"), string_is_integer(12)]",
       "[true,false,false,false,false]"},
      {"[string_is_number(\"-12.5\"), string_is_number(\".5\"), string_is_number(\"5.\"), string_is_number(\"1e-3\"), "
       "string_is_number(\"1e\"), string_is_number(\".\")]",
       "[true,true,true,true,false,false]"},
      {"[string_is_email(\"a@b.c\"), string_is_email(\"a@b\"), string_is_email(\"@b.c\"), string_is_email(\"a@b.\"), string_is_email(\"a "
       "b@c.d\"), string_is_email(\"a@@b.c\"), string_is_email(\"a@.c\")]",
       "[true,false,false,false,false,false,false]"},
      {"[string_has_length(\"añ€\", 3, 3), string_has_length(\"\", 1, 5), string_has_length(5, 0, 9)]", "[true,false,false]"},
      {"[string_has_only(\"abba\", \"ab\"), string_has_only(\"abc\", \"ab\"), string_has_only(\"€\", \"€ñ\")]", "[true,false,true]"},
  });
}

TEST_F(Support, DrawingHelpersDrawAndReportNothing) {
  eval("instance_create_depth(0, 0, 0, oBullet)");
  check({
      {"draw_text_outlined(10, 10, \"text\", 16777215, 0, 2); draw_text_shadowed(10, 10, 5, 255, 0, 1); 1", "1"},
      {"draw_healthbar_circular(50, 50, 30, 6, 0.4, 255, 0); draw_healthbar_circular(50, 50, 30, 30, 7, 255, 0); 1", "1"},
      {"draw_sprite_radial(30, 0, 50, 50, 0.3, 16777215, 1); draw_sprite_radial(30, 0, 50, 50, -2, 16777215, 1); 1", "1"},
  });
}

// Draw events run in every frame; of those that nobody sees only the one that is kept costs the graphics card anything.
TEST(HiddenFrames, OnlyTheOneThatIsKeptReachesTheCard) {
  std::string problem;
  host::GameOptions options;
  options.data = data::open_data_file(data_file_path(), problem);
  ASSERT_NE(options.data, nullptr) << problem;
  auto backend = std::make_unique<gpu::Recorder>();
  const gpu::Recorder& card = *backend;
  options.backend = std::move(backend);
  options.extra_objects = probe_objects();
  options.shows_frames = false;
  const host::Started started = host::Game::start(std::move(options));
  ASSERT_NE(started.game, nullptr) << started.problem;
  console::Console console(*started.game);
  EXPECT_EQ(console.answer(R"({"step": 5})").find("error"), std::string::npos);
  EXPECT_EQ(card.draws.size(), 0U);
  EXPECT_NE(console.answer(R"({"draws": true})").find("draw_text"), std::string::npos);
  const std::string picture = temporary_path("hidden.png");
  ASSERT_TRUE(started.game->save_screenshot(picture));
  const std::size_t drawn = card.draws.size();
  EXPECT_GT(drawn, 0U);
  console.answer(R"({"step": 5})");
  EXPECT_EQ(card.draws.size(), drawn) << "closed again";
  std::filesystem::remove(picture);
}

TEST_F(Support, ScreenshotsNeverReplaceAFile) {
  const std::string folder = temporary_path("shots");
  std::filesystem::create_directories(folder);
  EXPECT_EQ(host::Game::free_screenshot_name(folder), folder + "/screenshot-001.png");
  std::ofstream(folder + "/screenshot-001.png") << "mine";
  std::ofstream(folder + "/screenshot-003.png") << "mine";
  EXPECT_EQ(host::Game::free_screenshot_name(folder), folder + "/screenshot-002.png");
  ASSERT_TRUE(game->save_screenshot(folder + "/screenshot-002.png"));
  EXPECT_FALSE(std::filesystem::exists(folder + "/screenshot-002.png.new"));
  EXPECT_EQ(host::Game::free_screenshot_name(folder), folder + "/screenshot-004.png");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace arena::test
