// What scripts ask of the world: measures of instances, overlaps, layers, rooms, time, views and the keyboard's state.
#include <nlohmann/json.hpp>

#include "runtime/input/input_state.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/reports/report.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

// With a sprite of 20 x 10 pixels whose origin lies at (5, 2) and whose mask goes from (2, 1) to (18, 9).
class World : public TestGame {
 protected:
  World() {
    SpriteInfo sprite;
    sprite.name = "sprTest";
    sprite.width = 20;
    sprite.height = 10;
    sprite.origin_x = 5;
    sprite.origin_y = 2;
    sprite.frames = 3;
    sprite.left = 2;
    sprite.top = 1;
    sprite.right = 18;
    sprite.bottom = 9;
    finish_sprite_info(sprite);
    sprite_infos().push_back(sprite);
    eval("global.seen = []; global.hooks = {}; spr = " + std::to_string(sprite_infos().size() - 1));
    eval("global.a = instance_create_layer(100, 50, \"layMobs\", oProbe, {sprite_index: spr})");
  }
  ~World() override { sprite_infos().pop_back(); }
  // As the first instance would ask.
  void check_as_a(const std::vector<Row>& rows) {
    const int self = static_cast<int>(number("global.a"));
    for (const Row& row : rows) {
      const auto reply = ask({{"eval", row.statement}, {"self", self}});
      EXPECT_EQ(reply.contains("error") ? "! " + reply["error"].get<std::string>() : reply["text"].get<std::string>(), row.expected)
          << row.statement;
    }
  }
};

TEST_F(World, InstancesMeasureWithTheirScaleAndAngle) {
  check({
      {"a = global.a; [a.sprite_width, a.sprite_height, a.sprite_xoffset, a.sprite_yoffset, a.image_number]", "[20,10,5,2,3]"},
      {"[a.bbox_left, a.bbox_top, a.bbox_right, a.bbox_bottom]", "[97,49,113,57]"},
      {"a.image_xscale = 2; [a.sprite_width, a.sprite_xoffset, a.bbox_left, a.bbox_right]", "[40,10,94,126]"},
      // Mirrored, the mask lies on the other side of the origin.
      {"a.image_xscale = -1; [a.bbox_left, a.bbox_right]", "[87,103]"},
      // A quarter turn: the mask's centre, (5, 3) from the origin, comes to (3, -5); width and height change places.
      {"a.image_xscale = 1; a.image_angle = 90; [a.bbox_left, a.bbox_top, a.bbox_right, a.bbox_bottom]", "[99,37,107,53]"},
      {"a.image_angle = 0; a.sprite_index = -1; [a.sprite_width, a.image_number, a.bbox_left, a.bbox_right]", "[0,0,100,100]"},
      {"a.mask_index = spr; [a.sprite_width, a.bbox_left]", "[0,97]"},
      {"a.bbox_left = 5", "! unable to set built in variable bbox_left\n"},
      {"[sprite_get_name(spr), sprite_get_number(spr), sprite_exists(spr), sprite_exists(-1)]", "[\"sprTest\",3,true,false]"},
      {"sprite_get_number(-4)", "! sprite_get_number argument 1 invalid reference to (sprite) - requested -4 max is 59"},
  });
}

TEST_F(World, OverlapsAreFoundByEveryKindOfQuestion) {
  eval(
      "global.b = instance_create_layer(200, 50, \"layMobs\", oProbeChild, {sprite_index: spr}); global.c = instance_create_layer(150, 50, "
      "\"layMobs\", oProbe, {sprite_index: spr})");
  check({
      {"collision_point(98, 50, oProbe, false, false) == global.a", "true"},
      {"collision_point(96, 50, oProbe, false, false)", "-4"},
      {"collision_point(198, 50, oProbe, false, false) == global.b", "true"},  // children count
      {"collision_rectangle(0, 0, 97, 500, oProbe, false, false)", "-4"},      // shapes that only touch do not overlap
      {"collision_rectangle(0, 0, 98, 500, oProbe, false, false) == global.a", "true"},
      {"collision_circle(105, 70, 12, oProbe, false, false)", "-4"},
      {"collision_circle(105, 70, 14, oProbe, false, false) == global.a", "true"},
      {"collision_ellipse(60, 40, 99, 60, oProbe, false, false) == global.a", "true"},
      {"collision_ellipse(60, 56, 99, 96, oProbe, false, false)", "-4"},
      {"collision_line(0, 0, 0, 99, oProbe, false, false)", "-4"},
      {"collision_line(90, 40, 120, 60, oProbe, false, false) == global.a", "true"},
      {"[position_meeting(98, 50, oProbe), position_meeting(96, 50, oProbe)]", "[true,false]"},
      {"l = ds_list_create(); [collision_rectangle_list(0, 0, 500, 500, oProbe, false, false, l, false), ds_list_size(l)]", "[3,3]"},
      // Ordered by the distance from the middle of the rectangle, which is nearest to the second.
      {"ds_list_clear(l); collision_rectangle_list(90, 0, 310, 100, oProbe, false, false, l, true); [ds_list_find_value(l, 0) == global.b, "
       "ds_list_find_value(l, 1) == "
       "global.c, ds_list_find_value(l, 2) == global.a]",
       "[true,true,true]"},
      {"ds_list_clear(l); collision_circle_list(120, 50, 60, [oProbe, oProbeChild, global.a], false, false, l, true)", "2"},  // each once
      {"[ds_list_find_value(l, 0) == global.a, ds_list_find_value(l, 1) == global.c]", "[true,true]"},
      {"collision_line_list(0, 50, 500, 50, oProbe, false, false, 999, true)",
       "! collision_line_list argument 8 invalid reference to (list) - requested 999"},
  });
  check_as_a({
      {"collision_point(98, 50, oProbe, false, true)", "-4"},  // not me
      {"place_meeting(x + 40, y, oProbe)", "true"},
      {"instance_place(x + 40, y, oProbe) == global.c", "true"},
      {"instance_place(x + 20, y, oProbe)", "-4"},
      {"[place_empty(x, y), place_empty(x + 100, y)]", "[true,false]"},
      {"distance_to_object(global.c)", "34"},      // from 113 to 147
      {"distance_to_object(oProbeChild)", "84"},   // from 113 to 197
      {"distance_to_object(oBullet)", "1000000"},  // there is none
      {"distance_to_point(116, 61)", "5"},         // three right of the box and four below
      {"distance_to_point(100, 50)", "0"},
  });
}

TEST_F(World, LayersOrderWhatStandsOnThem) {
  check({
      {"l = layer_create(-77, \"fx\"); [layer_exists(\"fx\"), layer_get_id(\"fx\") == l, layer_get_depth(\"fx\"), layer_get_depth(l)]",
       "[true,true,-77,-77]"},
      {"[layer_exists(\"none\"), layer_get_id(\"none\"), layer_exists(undefined)]", "[false,-1,false]"},
      {"global.a.layer = l; [global.a.depth, global.a.layer == l]", "[-77,true]"},
      {"global.a.layer = 12345; global.a.depth", "-77"},                    // no such layer: it stays
      {"global.a.depth = NaN; global.a.depth = NaN; global.a.depth", "0"},  // listed once all the same
      {"n = instance_create_depth(0, 0, NaN, oProbe); [n.depth, layer_get_depth(layer_create(NaN))]", "[0,0]"},
      {"instance_destroy(n); global.a.depth = 5; global.a.depth", "5"},
      {"instance_create_layer(0, 0, \"none\", oProbe)",
       "! instance_create_layer argument 3 incorrect type (string) expecting a layer of this room"},
      {"instance_create_layer(0, 0, 12345, oProbe)", "! instance_create_layer argument 3 invalid reference to (layer) - requested 12345"},
      {"layer_get_depth([])", "! layer_get_depth argument 1 incorrect type (array) expecting a layer"},
  });
  // A hidden layer hides what stands on it, and nothing else.
  const auto drawn_in_all = [&] {
    eval("global.seen = []");
    step();
    return eval("n = 0; i = 0; global.seen_draw = array_contains(global.seen, \"?:Draw_0\")");
  };
  eval("global.a.layer = layer_get_id(\"fx\")");
  EXPECT_EQ(drawn_in_all(), "true");
  eval("layer_set_visible(\"fx\", false)");
  EXPECT_EQ(drawn_in_all(), "false");
}

TEST_F(World, RoomsTimeAndCounts) {
  EXPECT_EQ(number("instance_count"), number("instance_number(all)"));
  step();
  const double before = number("get_timer()");
  step();
  EXPECT_EQ(number("get_timer()") - before, 16667);
  EXPECT_NEAR(number("fps"), 60, 0.01);
  check({{"room_get_name(room)", "rTest"},
         {"room_get_name(77)", "! room_get_name argument 1 invalid reference to (room) - requested 77 max is 3"}});
  eval("room_restart()");
  step();
  check({{"instance_exists(oProbe)", "false"}, {"room_get_name(room)", "rTest"}});
  eval("room = 1");
  step();
  check(
      {{"room == 1", "true"}, {"room = 99", "! room_goto argument 1 invalid reference to (room) - requested 99 max is 3"}, {"room", "1"}});
}

TEST_F(World, WhoLosesTheFocusLetsGoOfEverything) {
  const auto focus = [&](int gained) {
    InputEvent event;
    event.type = InputEvent::Type::kFocus;
    event.value = gained;
    push_input(event);
    step();
  };
  key(68, true);
  ask({{"button", 1}, {"down", true}});
  step();
  check({{"[keyboard_check(68), mouse_check_button(1), keyboard_lastkey, window_has_focus()]", "[true,true,68,true]"}});
  focus(0);
  check({{"[keyboard_check(68), keyboard_check_released(68), mouse_check_button_released(1), window_has_focus()]",
          "[false,true,true,false]"}});
  focus(1);
  check({{"[keyboard_check(68), window_has_focus()]", "[false,true]"}});
  key(68, true);
  step();
  check({{"keyboard_clear(68); [keyboard_check(68), keyboard_check_pressed(68)]", "[false,false]"}, {"keyboard_clear(-5)", "undefined"}});
}

TEST_F(World, TypedTextIsCollectedUntilItIsCleared) {
  const auto type = [&](const std::string& text) {
    InputEvent event;
    event.type = InputEvent::Type::kText;
    event.text = text;
    push_input(event);
  };
  type("añ");
  step();
  type("€b");
  step(3);
  check({{"[keyboard_string, keyboard_text()]", "[\"añ€b\",\"\"]"}});
  key(8, true);
  key(8, true);  // the keyboard repeats it
  type("c");
  key(8, false);
  step();
  check({{"keyboard_string", "añc"},
         {"keyboard_string = \"né\"; keyboard_string", "né"},
         {"keyboard_string = 12; keyboard_string", "12"},
         {"keyboard_string = \"\"; keyboard_string", ""}});
  key(8, true);
  type(std::string(1500, 'x') + "ñy");
  step();
  check({{"[string_length(keyboard_string), string_copy(keyboard_string, 1022, 3)]", "[1024,\"xñy\"]"},
         {"keyboard_string = string_repeat(\"€\", 2000); string_length(keyboard_string)", "1024"}});
  eval("game_restart()");
  step();
  check({{"keyboard_string", ""}});
}

TEST_F(World, KeysAreCalledAsThePlayersLayoutCallsThem) {
  const auto label = [&](int code, const std::string& text) {
    InputEvent event;
    event.type = InputEvent::Type::kKeyLabel;
    event.code = code;
    event.text = text;
    push_input(event);
  };
  const char* const some =
      "global.k = keyboard_key_name; [global.k(87), global.k(65), global.k(49), global.k(16), global.k(27), global.k(123), global.k(255), "
      "global.k(-1)]";
  check({{some, "[\"W\",\"A\",\"1\",\"Shift\",\"Esc\",\"F12\",\"\",\"\"]"}});
  label('W', "Ц");
  label('A', "Q");
  label(-5, "x");
  step();
  check({{some, "[\"Ц\",\"Q\",\"1\",\"Shift\",\"Esc\",\"F12\",\"\",\"\"]"}});
  eval("game_restart()");
  label('W', "");
  step();
  check({{"[keyboard_key_name(87), keyboard_key_name(65)]", "[\"W\",\"Q\"]"}});  // a restart changes no keyboard
  label('A', "");
  step();
}

TEST_F(World, ViewsShowWhatTheirCameraSees) {
  check({
      {"c = camera_create(); camera_set_view_pos(c, 100, 200); camera_set_view_size(c, 640, 360); view_set_camera(0, c); "
       "view_set_visible(0, true); view_camera[0] == c",
       "true"},
      {"[camera_get_view_x(c), camera_get_view_y(c), camera_get_view_width(c), camera_get_view_height(c)]", "[100,200,640,360]"},
      {"view_set_visible(1000000000, true); view_set_visible(-1000000000, true); view_set_camera(1000000000, c); "
       "[view_get_camera(1000000000), view_get_camera(-1), view_get_camera(8)]",
       "[-1,-1,-1]"},  // no such views
      {"camera_get_view_width(99)", "! camera_get_view_width argument 1 invalid reference to (camera) - requested 99"},
  });
  {
    const ErrorSuppression quiet;
    check({{"[camera_get_view_x(99), camera_get_view_width(99)]", "[0,0]"}});
  }
  // The middle of a window of twice the size shows the middle of the view; turned a half, left is right.
  ask({{"mouse", {640, 360}}, {"gui", true}});
  step();
  check({{"[mouse_x, mouse_y]", "[420,380]"}});
  ask({{"mouse", {0, 0}}, {"gui", true}});
  step();
  check({{"[mouse_x, mouse_y]", "[100,200]"}});
  eval("camera_set_view_angle(c, 180)");
  step();
  EXPECT_NEAR(number("mouse_x"), 740, 1e-6);
  EXPECT_NEAR(number("mouse_y"), 560, 1e-6);
  check({{"view_camera[0] = -1; view_camera[0]", "-1"}, {"view_set_camera(99, c)", "undefined"}});
  const std::string gone = eval("c");
  EXPECT_EQ(eval("camera_destroy(c); camera_get_view_x(c)"),
            "! camera_get_view_x argument 1 invalid reference to (camera) - requested " + gone);
}

}  // namespace
}  // namespace arena::test
