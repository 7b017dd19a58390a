// Creation, destruction, order, events, collisions, rooms.
#include <cmath>
#include <nlohmann/json.hpp>

#include "runtime/instances_loop/collision_shapes.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/world.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Instances : public TestGame {
 protected:
  int create(const std::string& object, double x = 0, double y = 0) {
    return static_cast<int>(
        number("instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layMobs\", " + object + ")"));
  }
};

TEST_F(Instances, AreFoundByIdObjectAndReference) {
  const int bullet = create("oBulletProjectile", 10, 20);
  const std::string id = std::to_string(bullet);
  check({{"oBulletProjectile.y", "20"}, {"oBullet.y", "20"}});  // a parent finds its children
  EXPECT_EQ(eval("(" + id + ").x"), "10");
  EXPECT_EQ(eval("ref(67108865, " + id + ").x"), "10");
  EXPECT_EQ(eval("with (oBullet) { global.me = self } global.me.x"), "10");
  EXPECT_EQ(eval("global.me == " + id), "true");
}

TEST_F(Instances, CreateRunsBeforeTheCallReturnsAndFieldsBeforeCreate) {
  check({{"instance_create_layer(0, 0, \"layMobs\", oFader).timer", "0.10"},
         {"instance_create_layer(1, 2, \"layMobs\", oFader, {sprite_index: 30, image_alpha: 0.25}); [oFader.sprite_index, oFader.timer]",
          "[-1,0.10]"},
         {"f = instance_find(oFader, 1); [f.sprite_index, f.image_alpha]", "[30,0.25]"},
         {"instance_create_layer(0, 0, \"nowhere\", oFader)",
          "! instance_create_layer argument 3 incorrect type (string) expecting a layer of this room"},
         {"instance_create_layer(0, 0, \"layMobs\", 99)",
          "! instance_create_layer argument 4 invalid reference to (object) - requested 99 max is 25"}});
}

TEST_F(Instances, AreGoneFromDestroyOnButReadableByTheirHolder) {
  create("oBullet", 5, 5);
  check({
      {"with (oBullet) { global.held = self }; instance_exists(oBullet)", "true"},
      {"instance_destroy(oBullet); [instance_exists(oBullet), instance_number(oBullet), collision_point(5, 5, oBullet, false, false)]",
       "[false,0,-4]"},
      {"global.held.damage", "1"},
      {"instance_exists(global.held)", "false"},
      {"instance_destroy(global.held); 1", "1"},
  });
  step(3);
  check({{"global.held.damage", "1"}});
}

TEST_F(Instances, ANewInstanceTakesPartFromTheNextPassOn) {
  // The gun fires in its Step: the bullet's own Step comes a frame later, its drawing does not.
  eval("instance_create_layer(500, 500, \"layPlayer\", oPlayer); 1");
  eval("g = instance_create_layer(500, 500, \"layPickups\", oGun); g.owner = oPlayer.id; g.base_bullet_type = 0; g.is_firing = true");
  step();
  check({{"instance_number(oBulletProjectile)", "1"}, {"oBulletProjectile.life_timer", "0"}});
  const auto draws = ask({{"draws", true}})["draws"];
  EXPECT_GT(draws.size(), 0u);
  eval("g.is_firing = false");
  step();
  check({{"oBulletProjectile.life_timer == global.dt_steady", "true"}});
}

TEST_F(Instances, WithVisitsThoseAliveAtItsStartInOrder) {
  for (int i = 0; i < 3; ++i) create("oBullet", i * 10, 0);
  check({
      {"global.seen = []; with (oBullet) { array_push(global.seen, x) } global.seen", "[0,10,20]"},
      {"global.n = 0; with (oBullet) { global.n += 1; instance_create_layer(0, 0, \"layMobs\", oBullet) } global.n", "3"},
      {"global.n = 0; with (oBullet) { global.n += 1; instance_destroy(oBullet) } global.n", "1"},
  });
}

TEST_F(Instances, AlarmsCountDownInFrames) {
  create("oBullet");
  eval("oBullet.alarm[0] = 3");
  step(2);
  check({{"oBullet.alarm[0]", "1"}});
  step(2);
  check({{"oBullet.alarm[0]", "-1"}, {"oBullet.alarm[11]", "-1"}});
}

TEST_F(Instances, KeysHaveEdgesForOneFrame) {
  key(65, true);
  step();
  check({{"keyboard_check(65)", "true"}, {"keyboard_check_pressed(65)", "true"}, {"keyboard_check_pressed(1)", "true"}});
  step();
  check({{"keyboard_check(65)", "true"}, {"keyboard_check_pressed(65)", "false"}});
  key(65, false);
  step();
  check({{"keyboard_check(65)", "false"}, {"keyboard_check_released(65)", "true"}, {"keyboard_check(0)", "true"}});
}

TEST_F(Instances, ThePointerStaysWhereItWasPutInTheRoom) {
  ask({{"mouse", {900, 540}}});
  step();
  check({{"[mouse_x, mouse_y]", "[900,540]"}});
  ask({{"mouse", {640, 360}}, {"gui", true}});
  step();
  check({{"[device_mouse_x_to_gui(0), device_mouse_y_to_gui(0)]", "[640,360]"}, {"mouse_x", "960"}});
}

TEST_F(Instances, BuiltInMotion) {
  create("oBullet");
  eval("oBullet.speed = 10; oBullet.direction = 90");
  check({{"[oBullet.hspeed, oBullet.vspeed]", "[0,-10]"}});
  step(3);
  check({{"[oBullet.x, oBullet.y, oBullet.yprevious]", "[0,-30,-20]"}});
  eval("oBullet.hspeed = 3; oBullet.vspeed = 4; oBullet.friction = 1");
  check({{"oBullet.speed", "5"}});
  step();
  check({{"oBullet.speed", "4"}});
}

TEST_F(Instances, RoomsEndWithCleanUpAndKeepThePersistent) {
  create("oBullet");
  eval("room_goto(rTest); 1");
  step();
  check({{"instance_exists(oBullet)", "false"},
         {"instance_number(oSteadyDeltaTime)", "1"},
         {"room_goto(4)", "! room_goto argument 1 invalid reference to (room) - requested 4 max is 3"}});
}

// Exact shapes against a plain test of many points: two shapes overlap when some point lies in both.
bool inside(const CollisionShape& shape, double x, double y) {
  const double dx = x - shape.x, dy = y - shape.y, cross = shape.ux * shape.vy - shape.uy * shape.vx;
  const double u = (dx * shape.vy - dy * shape.vx) / cross, v = (shape.ux * dy - shape.uy * dx) / cross;
  return shape.form == CollisionShape::Form::kEllipse ? u * u + v * v <= 1 : std::fabs(u) <= 1 && std::fabs(v) <= 1;
}

TEST(Shapes, OverlapAgreesWithSampledPoints) {
  RandomGenerator random(42);
  int overlapping = 0;
  for (int round = 0; round < 3000; ++round) {
    CollisionShape shapes[2];
    for (CollisionShape& shape : shapes) {
      const double angle = random.unit() * 6.28, width = 3 + random.unit() * 20, height = 3 + random.unit() * 20;
      shape.form = random.unit() < 0.5 ? CollisionShape::Form::kEllipse : CollisionShape::Form::kParallelogram;
      shape.x = random.unit() * 50;
      shape.y = random.unit() * 50;
      shape.ux = std::cos(angle) * width;
      shape.uy = std::sin(angle) * width;
      shape.vx = -std::sin(angle) * height;
      shape.vy = std::cos(angle) * height;
    }
    int hits = 0;
    for (double y = -30; y < 80; y += 0.5) {
      for (double x = -30; x < 80; x += 0.5) hits += inside(shapes[0], x, y) && inside(shapes[1], x, y) ? 1 : 0;
    }
    const bool overlap = shapes_overlap(shapes[0], shapes[1]);
    overlapping += overlap ? 1 : 0;
    if (hits > 0) {
      EXPECT_TRUE(overlap) << "round " << round;
    }
    if (hits == 0 && overlap) {  // a sliver between the samples: growing both a little must not be needed, shrinking must part them
      CollisionShape smaller = shapes[0];
      for (double* axis : {&smaller.ux, &smaller.uy, &smaller.vx, &smaller.vy}) *axis *= 0.8;
      CollisionShape other = shapes[1];
      for (double* axis : {&other.ux, &other.uy, &other.vx, &other.vy}) *axis *= 0.8;
      EXPECT_FALSE(shapes_overlap(smaller, other)) << "round " << round;
    }
    EXPECT_EQ(overlap, shapes_overlap(shapes[1], shapes[0]));
  }
  EXPECT_GT(overlapping, 500);
}

TEST_F(Instances, AnimationsEndInEveryFrameWhateverTheirSpeed) {
  struct {
    const char* start;
    double index;
  } const rows[] = {{"image_index = 5; image_speed = 2.5", 1.5},
                    {"image_index = 0.5; image_speed = -1", 5.5},
                    {"image_index = 0; image_speed = 600001", 1},
                    {"image_index = 0; image_speed = infinity", 0},
                    {"image_index = 0; image_speed = NaN", 0},
                    {"image_index = infinity; image_speed = 1", 0},
                    {"image_index = NaN; image_speed = 1", 0},
                    {"image_index = 6e300; image_speed = 1", std::fmod(6e300, 6)},
                    {"image_index = 0; image_speed = -6e300", std::fmod(6 - std::fmod(6e300, 6), 6)}};
  create("oBullet");
  for (const auto& row : rows) {
    eval(std::string("with (oBullet) { sprite_index = 13; ") + row.start + " }");
    ASSERT_EQ(number("oBullet.image_number"), 6);
    step();
    EXPECT_EQ(number("oBullet.image_index"), row.index) << row.start;
  }
}

TEST_F(Instances, AreMadeWholeOrNotAtAll) {
  eval("global.seen = []; global.hooks = {}");
  const std::string before = eval("instance_count");
  check({{"instance_create_layer(0, 0, \"layMobs\", oProbe, {mark: \"a\", id: 5})", "! unable to set built in variable id\n"},
         {"instance_create_depth(0, 0, 7, oProbe, {depth: [], mark: \"a\"})", "! REAL argument incorrect type array"},
         {"global.seen", "[]"},
         {"instance_exists(oProbe)", "false"}});
  eval("global.hooks.Create_0 = method(undefined, grid_insert)");
  EXPECT_EQ(eval("instance_create_layer(0, 0, \"layMobs\", oProbe)").substr(0, 1), "!");
  check({{"global.seen", "[\"?:Create_0\"]"}, {"instance_exists(oProbe)", "false"}});
  step();
  EXPECT_EQ(eval("instance_count"), before);
  EXPECT_EQ(eval("global.seen"), "[\"?:Create_0\"]") << "no event finds what failed";
}

TEST_F(Instances, TheWorldHolds200000) {
  const std::int32_t kind = object_types().find("oBullet");
  const int first = create("oBullet");
  while (world().live_count() < 200000) world().create(0, 0, -1, 0, kind, nullptr, nullptr);
  check({{"instance_create_depth(0, 0, 0, oBullet)", "! cannot create another instance: the world holds 200000 already"},
         {"instance_count", "200000"},
         {("instance_destroy(" + std::to_string(first) + "); instance_exists(instance_create_depth(0, 0, 0, oBullet))").c_str(), "true"}});
}

}  // namespace
}  // namespace arena::test
