// Decals: what a layer holds, what it lets go, and what drawing it costs.
#include "engine/draw/stickers.h"

#include <chrono>

#include "engine/draw/draw_service.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Decals : public PlayedGame {};

TEST_F(Decals, HoldWhatWasAddedTheNewestLast) {
  check({
      {"global.d = new Stickers(100); global.d.Count()", "0"},
      {"global.d.Add(33, 5, 10, 20, 2, 0.5, 90, 255, 0.75); global.d.Add(34); 1",
       "! stickers_add argument 4 incorrect type (undefined) expecting a Number (WBGR)"},
      {"global.d.Add(34, 0, 3000, -50); [global.d.Count(), global.d.At(0).sprite, global.d.At(1).sprite]", "[2,33,34]"},
      {"global.d.At(0)", "{sprite:33,image:5,x:10,y:20,xscale:2,yscale:0.50,angle:90,color:255,alpha:0.75}"},
      {"s = global.d.At(1); [s.xscale, s.angle, s.color, s.alpha]", "[1,0,16777215,1]"},
      {"global.d.At(2)", "! index out of bounds request 2 maximum size is 2"},
      {"global.d.Add(9999, 0, 1, 1)", "! stickers_add argument 2 invalid reference to (sprite) - requested 9999 max is 58"},
      {"global.d.Clear(); global.d.Count()", "0"},
      {"global.d.Add(33, 0, 1, 1); global.d.Destroy(); global.d.Destroy(); global.d.Add(33, 0, 1, 1); global.d.DrawCamera(); "
       "global.d.Count()",
       "0"},
  });
}

TEST_F(Decals, PastTheCapacityTheOldestGo) {
  draw::StickerLayer layer(1000);
  for (int i = 0; i < 5000; ++i) {
    layer.add({33, 0, {static_cast<double>(i * 37 % 5000), static_cast<double>(i * 91 % 3000), 1, 1, 0, static_cast<std::uint32_t>(i), 1}});
    ASSERT_LE(layer.count(), 1000u);
    ASSERT_EQ(layer.at(layer.count() - 1).at.color, static_cast<std::uint32_t>(i));
  }
  // Whatever is left is in order, and nothing young was lost: at most one region's share is missing.
  EXPECT_GT(layer.count(), 900u);
  for (std::size_t i = 1; i < layer.count(); ++i) ASSERT_LT(layer.at(i - 1).at.color, layer.at(i).at.color);
  EXPECT_GT(layer.at(0).at.color, 3900u);
  for (std::uint32_t young = 4500; young < 5000; ++young) ASSERT_EQ(layer.at(layer.count() - (5000 - young)).at.color, young);
}

TEST_F(Decals, AFullViewIsAFewDraws) {
  draw::StickerLayer layer(50000);
  for (int i = 0; i < 50000; ++i)
    layer.add({33, 0, {static_cast<double>(i * 37 % 3072), static_cast<double>(i * 91 % 3072), 1, 1, 0, 255, 1}});
  draw::Draw& on = *draw::draw_service();
  eval("camera_set_view_pos(view_get_camera(0), 600, 900)");
  for (int frame = 0; frame < 3; ++frame) {
    on.begin_world(1280, 720);
    layer.draw(on);
    on.end_frame();
  }
  EXPECT_LE(on.gpu().statistics().draw_calls, 16);
  EXPECT_GE(on.gpu().statistics().draw_calls, 4);
  // Out of view nothing is drawn.
  eval("camera_set_view_pos(view_get_camera(0), 90000, 900)");
  on.begin_world(1280, 720);
  layer.draw(on);
  on.end_frame();
  EXPECT_EQ(on.gpu().statistics().draw_calls, 0);
  // New ones show at once, before they are baked.
  eval("camera_set_view_pos(view_get_camera(0), 600, 900)");
  layer.add({34, 0, {1500, 1500, 1, 1, 0, 255, 1}});
  on.begin_world(1280, 720);
  layer.draw(on);
  on.end_frame();
  EXPECT_GT(on.gpu().statistics().triangles, 0);
  layer.drop_meshes();
}

}  // namespace
}  // namespace arena::test
