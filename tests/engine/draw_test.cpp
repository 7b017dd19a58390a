// What the drawing functions of scripts send to the graphics card. The GUI layer is one pixel a unit here.
#include <algorithm>
#include <chrono>
#include <cmath>

#include "engine/draw/draw_service.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Drawing : public TestGame {
 protected:
  struct Box {
    double left, top, right, bottom;
  };
  static Box box_of(const std::vector<Drawn>& vertices) {
    Box box{1e9, 1e9, -1e9, -1e9};
    for (const Drawn& each : vertices) {
      box = {std::min<double>(box.left, each.x), std::min<double>(box.top, each.y), std::max<double>(box.right, each.x),
             std::max<double>(box.bottom, each.y)};
    }
    return box;
  }
  Box box(const std::string& statement) { return box_of(drawn(statement)); }
  void expect_box(const std::string& statement, const Box& wanted, double tolerance = 1e-3) {
    const Box made = box(statement);
    EXPECT_TRUE(std::fabs(made.left - wanted.left) <= tolerance && std::fabs(made.top - wanted.top) <= tolerance &&
                std::fabs(made.right - wanted.right) <= tolerance && std::fabs(made.bottom - wanted.bottom) <= tolerance)
        << statement << " covers " << made.left << ", " << made.top << " to " << made.right << ", " << made.bottom;
  }
  static double area_of(const std::vector<Drawn>& vertices) {
    double twice = 0;
    for (std::size_t i = 0; i + 2 < vertices.size(); i += 3) {
      const Drawn &a = vertices[i], &b = vertices[i + 1], &c = vertices[i + 2];
      twice += std::fabs(static_cast<double>((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y)));
    }
    return twice / 2;
  }
};

TEST_F(Drawing, ShapesCoverWhatTheySay) {
  expect_box("draw_rectangle(10, 20, 30, 50, false)", {10, 20, 30, 50});
  expect_box("draw_rectangle(10, 20, 30, 50, true)", {9.5, 19.5, 30.5, 50.5});
  expect_box("draw_line(10, 20, 10, 60)", {9.5, 20, 10.5, 60});
  expect_box("draw_line_width(10, 20, 50, 20, 6)", {10, 17, 50, 23});
  expect_box("draw_point(7, 8)", {7, 8, 8, 9});
  expect_box("draw_triangle(0, 0, 10, 0, 0, 20, false)", {0, 0, 10, 20});
  expect_box("draw_triangle(10, 20, 40, 20, 40, 60, true)", {9.6, 19.5, 40.5, 60.3}, 1e-3);
  expect_box("draw_set_circle_precision(64); draw_ellipse(10, 20, 110, 60, false)", {10, 20, 110, 60});
  expect_box("draw_set_circle_precision(64); draw_circle(100, 100, 10, true)", {89.5, 89.5, 110.5, 110.5}, 0.02);
  EXPECT_NEAR(area_of(drawn("draw_rectangle(10, 20, 30, 50, false)")), 600, 1e-3);
  EXPECT_NEAR(area_of(drawn("draw_triangle(0, 0, 10, 0, 0, 20, false)")), 100, 1e-3);
  EXPECT_NEAR(area_of(drawn("draw_triangle(10, 20, 40, 20, 40, 60, true)")), 30 + 40 + 50, 1e-3) << "its sides, one pixel wide";
  EXPECT_NEAR(area_of(drawn("draw_set_circle_precision(0); draw_circle(300, 300, 100, false)")), 31416, 31416 * 0.01);
  EXPECT_NEAR(area_of(drawn("draw_set_circle_precision(4); draw_circle(300, 300, 10, false)")), 200, 1e-3) << "a square on its corner";
  EXPECT_EQ(drawn("draw_line(5, 5, 5, 5)").size(), 0U) << "no direction, no line";
}

TEST_F(Drawing, ColoursAlphaAndBlendingGoAlong) {
  // Scripts say blue, green, red from the high byte down; vertices red first.
  EXPECT_EQ(drawn("draw_set_colour(197121); draw_rectangle(0, 0, 9, 9, false)")[0].color, 0xFF030201);
  EXPECT_EQ(drawn("draw_set_colour(255); draw_set_alpha(0.5); draw_rectangle(0, 0, 9, 9, false); draw_set_alpha(1)")[0].color >> 24, 128U);
  const std::vector<Drawn> corners = drawn("draw_rectangle_colour(0, 0, 8, 8, 1, 2, 3, 4, false)");
  for (const Drawn& each : corners) {
    const std::uint32_t wanted = each.x == 0 ? (each.y == 0 ? 1U : 4U) : each.y == 0 ? 2U : 3U;
    EXPECT_EQ(each.color & 0xFFFFFF, wanted) << each.x << " " << each.y;
  }
  for (const Drawn& each : drawn("draw_circle_colour(50, 50, 9, 255, 0, false)"))
    EXPECT_EQ(each.color & 0xFF, each.x == 50 && each.y == 50 ? 255U : 0U);
  const std::vector<Drawn> line = drawn("draw_line_width_colour(0, 5, 100, 5, 2, 10, 20)");
  for (const Drawn& each : line) EXPECT_EQ(each.color & 0xFF, each.x == 0 ? 10U : 20U);
  EXPECT_EQ(drawn("gpu_set_blendmode(1); draw_point(1, 1); gpu_set_blendmode(0)")[0].state.blend, gpu::Blend::kAdd);
  check({{"draw_set_colour(77); draw_set_alpha(0.25); draw_set_halign(1); draw_set_valign(2); draw_set_font(2)", "undefined"},
         {"[draw_get_colour(), draw_get_alpha(), draw_get_halign(), draw_get_valign(), draw_get_font()]", "[77,0.25,1,2,2]"},
         {"draw_set_halign(9); draw_get_halign()", "2"},
         {"draw_set_font(99)", "! draw_set_font argument 1 invalid reference to (font) - requested 99"},
         {"draw_sprite(999, 0, 0, 0)", "! draw_sprite argument 1 invalid reference to (sprite) - requested 999 max is 58"}});
}

TEST_F(Drawing, SpritesScaleTurnAndStretchAroundTheirOrigin) {
  // The enemy's picture is trimmed: all boxes are told from the plain one.
  const Box plain = box("draw_sprite(31, 0, 400, 300)");
  const double left = plain.left - 400, top = plain.top - 300, right = plain.right - 400, bottom = plain.bottom - 300;
  ASSERT_GT(right - left, 10);
  expect_box("draw_sprite_ext(31, 0, 400, 300, 2, 3, 0, 16777215, 1)", {400 + 2 * left, 300 + 3 * top, 400 + 2 * right, 300 + 3 * bottom});
  expect_box("draw_sprite_ext(31, 0, 400, 300, -1, 1, 0, 16777215, 1)", {400 - right, 300 + top, 400 - left, 300 + bottom});
  // A quarter turn counter-clockwise takes what is right of the origin above it.
  expect_box("draw_sprite_ext(31, 0, 400, 300, 1, 1, 90, 16777215, 1)", {400 + top, 300 - right, 400 + bottom, 300 - left});
  // The whole of it as a part stands without its origin; half a part is half of that.
  const double x = number("sprite_get_xoffset(31)"), y = number("sprite_get_yoffset(31)"), width = number("sprite_get_width(31)"),
               height = number("sprite_get_height(31)");
  const std::string size = std::to_string(width) + ", " + std::to_string(height);
  expect_box("draw_sprite_part(31, 0, 0, 0, " + size + ", 100, 50)", {100 + x + left, 50 + y + top, 100 + x + right, 50 + y + bottom});
  expect_box("draw_sprite_part(31, 0, " + std::to_string(width / 2) + ", 0, " + size + ", 100, 50)",
             {100, 50 + y + top, 100 + x + right - width / 2, 50 + y + bottom});
  expect_box("draw_sprite_stretched(31, 0, 100, 50, " + std::to_string(2 * width) + ", " + std::to_string(height) + ")",
             {100 + 2 * (x + left), 50 + y + top, 100 + 2 * (x + right), 50 + y + bottom});
  const auto tinted = drawn("draw_sprite_stretched_ext(31, 0, 100, 50, 64, 64, 255, 0.5)");
  EXPECT_EQ(tinted[0].color, 0x800000FF);
  EXPECT_EQ(drawn("draw_sprite(31, 0, -500, 300)").size(), 0U) << "what nobody sees is not sent";
  // A part takes its share of the texture.
  const auto whole = drawn("draw_sprite_part(57, 0, 0, 0, 64, 64, 0, 0)"), half = drawn("draw_sprite_part(57, 0, 0, 0, 32, 64, 0, 0)");
  const auto reach = [](const std::vector<Drawn>& vertices) {
    float low = 1, high = 0;
    for (const Drawn& each : vertices) low = std::min(low, each.u), high = std::max(high, each.u);
    return static_cast<double>(high - low);
  };
  EXPECT_NEAR(reach(half) / reach(whole), box_of(half).right / box_of(whole).right, 0.05);
}

TEST_F(Drawing, NineSlicesKeepTheirCorners) {
  // The panel in nine parts: whatever the size, the parts meet and cover the same box as the stretched picture.
  for (const char* const size : {"300, 200", "40, 30", "10, 10"}) {
    const std::string call = std::string("(57, 0, 100, 100, ") + size;
    const std::vector<Drawn> parts = drawn("draw_sprite_nineslice" + call + ", 0.25, 16777215, 1)");
    EXPECT_EQ(parts.size() % 6, 0U);
    const Box whole = box_of(parts);
    EXPECT_GE(whole.left, 100);
    EXPECT_GE(whole.top, 100);
    EXPECT_NEAR(area_of(parts), (whole.right - whole.left) * (whole.bottom - whole.top), 0.5) << size << ": no gaps and no overlaps";
  }
  EXPECT_EQ(drawn("draw_sprite_nineslice(57, 0, 100, 100, 300, 200, 0, 16777215, 1)").size(), 6U) << "no corners: stretched";
  EXPECT_EQ(drawn("draw_sprite_nineslice(57, 0, 100, 100, 0, 200, 0.25, 16777215, 1)").size(), 0U);
}

TEST_F(Drawing, TextsStandWhereTheyAreAligned) {
  eval("draw_set_font(2)");
  const double width = number("string_width(\"Wave 12\")"), height = number("string_height(\"Wave 12\")");
  const Box plain = box("draw_set_halign(0); draw_set_valign(0); draw_text(400, 300, \"Wave 12\")");
  EXPECT_TRUE(plain.left > 390 && plain.right < 400 + width + 10 && plain.top > 290 && plain.bottom < 300 + height + 10);
  const auto moved = [&](const std::string& statement, double dx, double dy) {
    expect_box(statement, {plain.left + dx, plain.top + dy, plain.right + dx, plain.bottom + dy}, 0.01);
  };
  moved("draw_set_halign(1); draw_text(400, 300, \"Wave 12\")", -width / 2, 0);
  moved("draw_set_halign(2); draw_text(400, 300, \"Wave 12\")", -width, 0);
  moved("draw_set_halign(0); draw_set_valign(1); draw_text(400, 300, \"Wave 12\")", 0, -height / 2);
  moved("draw_set_valign(2); draw_text(400, 300, \"Wave 12\")", 0, -height);
  moved("draw_set_valign(0); draw_text_ext(400, 300, \"Wave 12\", -1, 1000)", 0, 0);
  // Twice as large around the place it stands at; turned a half, on its other side.
  const double left = plain.left - 400, top = plain.top - 300, right = plain.right - 400, bottom = plain.bottom - 300;
  expect_box("draw_text_transformed(400, 300, \"Wave 12\", 2, 2, 0)", {400 + 2 * left, 300 + 2 * top, 400 + 2 * right, 300 + 2 * bottom},
             0.01);
  expect_box("draw_text_transformed(400, 300, \"Wave 12\", 1, 1, 180)", {400 - right, 300 - bottom, 400 - left, 300 - top}, 0.01);
  // Broken between the words: two lines, as tall and as wide as they measure.
  EXPECT_EQ(number("string_height_ext(\"Wave 12\", -1, string_width(\"Wave\") + 1)"), 2 * height);
  EXPECT_EQ(number("string_height_ext(\"Wave 12\", 100, string_width(\"Wave\") + 1)"), 100 + height);
  EXPECT_EQ(number("string_width_ext(\"Wave 12\", -1, string_width(\"Wave\") + 1)"), number("string_width(\"Wave\")"));
  const Box broken = box("draw_text_ext(400, 300, \"Wave 12\", 100, string_width(\"Wave\") + 1)");
  EXPECT_NEAR(broken.bottom - plain.bottom, 100, 2);
  EXPECT_NEAR(number("string_height_ext(\"a b c\", -1, 1)"), 3 * height, 1e-9) << "a word wider than the line stands alone";
  EXPECT_EQ(drawn("draw_text(0, 0, \"   \")").size(), 0U);
}

TEST_F(Drawing, LongTextsTakeTimeInProportion) {
  // A megabyte in words of three letters: a measure that reads the rest of the text for every line needs hours.
  eval("draw_set_font(2); global.long_text = string_repeat(\"abc \", 250000)");
  const double height = number("string_height(\"abc\")"), words = number("string_width(\"abc abc\") + 1");
  const auto began = std::chrono::steady_clock::now();
  EXPECT_NEAR(number("string_height_ext(global.long_text, -1, " + std::to_string(words) + ")"), 125001 * height, 1);
  EXPECT_NEAR(number("string_height_ext(global.long_text, -1, 1)"), 250001 * height, 1) << "every word alone, and the last blank";
  EXPECT_NEAR(number("string_width_ext(global.long_text, -1, " + std::to_string(words) + ")"), words - 1, 1e-9);
  EXPECT_EQ(number("string_height_ext(string_repeat(\"a\", 1000000), -1, 100)"), height) << "one word of a megabyte";
  EXPECT_EQ(number("string_length(string_replace_all(global.long_text, \"a\", \"aa\"))"), 1250000);
  eval("draw_text_ext(0, 0, global.long_text, -1, " + std::to_string(words) + ")");
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
  // A broken byte does not swallow the blank behind it.
  EXPECT_EQ(draw::draw_service()->measure("abc\xC3 abc", -1, 1).height, 2 * height);
}

TEST_F(Drawing, ColouredTextsGoFromCornerToCorner) {
  const std::vector<Drawn> glyphs =
      drawn("draw_set_halign(0); draw_set_valign(0); draw_text_colour(400, 300, \"MMMM\", 0, 200, 200, 0, 0.5)");
  const double width = number("string_width(\"MMMM\")");
  ASSERT_EQ(glyphs.size(), 4 * 6U);
  for (const Drawn& each : glyphs) {
    EXPECT_NEAR(each.color & 0xFF, 200 * std::clamp((static_cast<double>(each.x) - 400) / width, 0.0, 1.0), 2) << each.x;
    EXPECT_EQ(each.color >> 24, 128U);
  }
  const std::vector<Drawn> down = drawn("draw_text_colour(400, 300, \"MMMM\", 0, 0, 200, 200, 1)");
  EXPECT_LT(down[0].color & 0xFF, down[2].color & 0xFF);
  EXPECT_EQ(down[0].color, down[1].color);
}

TEST_F(Drawing, ScissorsCutEachInsideTheOneBefore) {
  const std::vector<Drawn> cut = drawn(
      "gpu_push_scissor(100, 100, 200, 100); draw_point(1, 1); gpu_push_scissor(50, 150, 100, 500); draw_point(2, 2); gpu_pop_scissor(); "
      "draw_point(3, 3); gpu_pop_scissor(); gpu_pop_scissor(); draw_point(4, 4); gpu_push_scissor(900, 900, 10, 10)");
  ASSERT_EQ(cut.size(), 4 * 6U);
  const auto clip_at = [](const std::vector<Drawn>& vertices, std::size_t at) {
    const gpu::Clip& clip = vertices[at].state.clip;
    return std::to_string(clip.x) + "," + std::to_string(clip.y) + " " + std::to_string(clip.width) + "x" + std::to_string(clip.height);
  };
  const std::string none = clip_at(drawn("draw_point(1, 1)"), 0);
  EXPECT_EQ(clip_at(cut, 0), "100,100 200x100");
  EXPECT_EQ(clip_at(cut, 6), "100,150 50x50");
  EXPECT_EQ(clip_at(cut, 12), "100,100 200x100");
  EXPECT_EQ(clip_at(cut, 18), none);
  EXPECT_EQ(clip_at(drawn("draw_point(1, 1)"), 0), none) << "what nobody popped is gone with the next frame";
}

TEST_F(Drawing, ParticlesAreDrawnOverTheirLives) {
  eval(
      "global.s = new advanced_part_system(); global.t = new advanced_part_type({sprite: 13, life: 1, size: 1, "
      "size_end: 3, speed: 40, direction: 90, alpha: [1, 0.5, 0], color: [255, 0], additive: true}); global.s.burst(global.t, 3, 600, "
      "400)");
  const std::vector<Drawn> young = drawn("global.s.draw()");
  ASSERT_EQ(young.size(), 3 * 6U);
  EXPECT_EQ(young[0].state.blend, gpu::Blend::kAdd);
  EXPECT_EQ(young[0].color, 0xFF0000FF);
  eval("global.dt_steady = 0.25; global.s.update(); global.s.update()");
  const std::vector<Drawn> middle = drawn("global.s.draw()");
  EXPECT_EQ(middle[0].color >> 24, 128U) << "half way, half of its alpha";
  EXPECT_NEAR(middle[0].color & 0xFF, 128, 1);
  const Box before = box_of(young), after = box_of(middle);
  EXPECT_NEAR(after.right - after.left, 2 * (before.right - before.left), 1e-2) << "from one to three times its size";
  EXPECT_NEAR((before.top + before.bottom) / 2 - (after.top + after.bottom) / 2, 20, 1e-2) << "40 px/s upwards";
  EXPECT_EQ(drawn("draw_point(1, 1)")[0].state.blend, gpu::Blend::kNormal) << "the blend mode was put back";
  // Emitted along a line, every one lies on it.
  eval("global.s.clear(); global.s.burstShape(global.t, 50, 1, 100, 100, 200, 300)");
  const std::vector<Drawn> line = drawn("global.s.draw()");
  ASSERT_EQ(line.size(), 50 * 6U);
  const auto middle_of = [&](std::size_t at) {
    return Box{(line[at].x + line[at + 2].x) / 2.0, (line[at].y + line[at + 2].y) / 2.0, 0, 0};
  };
  double low = 1e9, high = -1e9;
  for (std::size_t i = 0; i < line.size(); i += 6) {
    const Box here = middle_of(i), first = middle_of(0);
    EXPECT_NEAR(here.top - first.top, 2 * (here.left - first.left), 0.1);
    low = std::min(low, here.left);
    high = std::max(high, here.left);
  }
  EXPECT_TRUE(high - low <= 100 && high - low > 50) << low << " " << high;
}

TEST_F(Drawing, WhatIsNoNumberIsNotSeen) {
  const std::vector<Drawn> faint = drawn("draw_sprite_ext(13, NaN, 100, 100, 1, 1, 0, NaN, NaN)");
  ASSERT_FALSE(faint.empty());
  EXPECT_EQ(faint[0].color, 0u);
  for (const char* statement : {"draw_set_alpha(NaN); draw_circle(100, 100, NaN, false); draw_set_alpha(1)",
                                "draw_text_colour(100, 100, \" \", NaN, infinity, -1, 1e300, NaN)", "draw_line(NaN, 0, infinity, 5)",
                                "draw_sprite_stretched_ext(13, infinity, 0, 0, 1e300, NaN, -infinity, 2)"}) {
    for (const Drawn& each : drawn(statement)) EXPECT_TRUE(each.state.blend == gpu::Blend::kNormal) << statement;
    EXPECT_EQ(eval("1"), "1");
  }
}

TEST_F(Drawing, LongTextsAreBrokenInOneGo) {
  eval("line = string_height(\"a\"); wide = string_width(\"word word\")");
  check({{"string_height_ext(string_repeat(\"word \", 100000), line, wide + 1) == 50001 * line", "true"},
         {"string_height_ext(string_repeat(\"word \", 100000), line, 1) == 100001 * line", "true"},
         {"string_height_ext(string_repeat(\"w\", 500000), line, 1) == line", "true"}});
}

// What was current before a handler that needs a look of its own is current after it, for whoever draws next in the same frame.
TEST_F(Drawing, HandlersPutBackWhatTheyChange) {
  eval("global.seen = []; global.hooks = {Draw_64: method(undefined, draw_the_statement)}");
  statement_to_draw =
      "global.then = [draw_get_colour(), draw_get_alpha(), draw_get_font(), draw_get_halign(), draw_get_valign(), gpu_get_blendmode()]";
  eval("global.statistics = {kills: 3}");
  const auto kinds = [&](gpu::Blend blend) {
    return std::count_if(recorder->draws.begin(), recorder->draws.end(), [&](const auto& draw) { return draw.state.blend == blend; });
  };
  for (const char* object : {"oDeathScreen", "oPrepare1", "oExplosion"}) {
    eval(std::string("global.i = instance_create_layer(0, 0, \"layMobs\", ") + object + ", {start_timer_on: true})");
    ASSERT_EQ(eval("instance_exists(global.i)"), "true") << object;
    eval("global.asks = instance_create_depth(0, 0, -1000000, oProbe)");  // younger: its Draw events come later
    eval("draw_set_colour(77); draw_set_alpha(0.25); draw_set_font(3); draw_set_halign(2); draw_set_valign(1); gpu_set_blendmode(3)");
    step(2);
    const bool is_light = std::string(object) == "oExplosion";
    EXPECT_EQ(eval(is_light ? "global.then[5]" : "global.then"), is_light ? "3" : "[77,0.25,3,2,1,3]") << object;
    EXPECT_EQ(kinds(gpu::Blend::kAdd) > 0, is_light) << object;
    eval("instance_destroy(global.i); instance_destroy(global.asks)");
  }
}

}  // namespace
}  // namespace arena::test
