// Finding overlaps in a crowd: every query and every collision event against a plain test of all pairs.
#include <cmath>
#include <set>

#include "runtime/instances_loop/collisions.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/resolve.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Overlaps : public TestGame {
 protected:
  // Instances of many sizes and angles, some far outside the room.
  std::vector<CInstance*> scatter(int count, int object, RandomGenerator& random) {
    std::vector<CInstance*> made;
    for (int i = 0; i < count; ++i) {
      const double spread = i % 10 == 0 ? 20000 : 1500;
      CInstance* instance = world().create((random.unit() - 0.2) * spread, (random.unit() - 0.2) * spread,
                                           world().find_layer("layMobs")->id, 0, object, nullptr, nullptr);
      instance->sprite_index = static_cast<double>(random.integer(1, 30));
      if (find_sprite(static_cast<std::int32_t>(instance->sprite_index)) == nullptr) instance->sprite_index = 30;
      instance->image_angle = random.unit() * 360;
      instance->image_xscale = (random.unit() - 0.3) * (i % 25 == 0 ? 30 : 2);
      instance->image_yscale = (random.unit() - 0.3) * 2;
      made.push_back(instance);
    }
    return made;
  }
};

TEST_F(Overlaps, QueriesFindExactlyWhatOverlaps) {
  eval("global.seen = []; global.hooks = {}");
  RandomGenerator random(5);
  const std::vector<CInstance*> all = scatter(300, kProbe, random);
  std::size_t found_in_all = 0;
  for (int round = 0; round < 200; ++round) {
    const double x = (random.unit() - 0.1) * 1500, y = (random.unit() - 0.1) * 1500, w = random.unit() * 600, h = random.unit() * 600;
    const CollisionShape shapes[] = {circle_shape(x, y, w / 2), rectangle_shape(x, y, x + w, y + h), segment_shape(x, y, x + w, y - h),
                                     ellipse_shape(x, y, x + w, y + h)};
    for (const CollisionShape& shape : shapes) {
      std::vector<CInstance*> expected;
      for (CInstance* instance : all) {
        if (instance != all[0] && shapes_overlap(shape_of(*instance), shape)) expected.push_back(instance);
      }
      ASSERT_EQ(overlapping(shape, kProbe, true, all[0]), expected) << "round " << round;
      ASSERT_EQ(first_overlapping(shape, kProbe, true, all[0]), expected.empty() ? nullptr : expected.front());
      found_in_all += expected.size();
    }
  }
  EXPECT_GT(found_in_all, 1000u);
}

TEST_F(Overlaps, EventsRunForEveryPairOnce) {
  eval("global.seen = []; global.hooks = {}");
  RandomGenerator random(9);
  std::vector<CInstance*> owners = scatter(250, kProbeChild, random), others = scatter(250, kProbe, random);
  owners.insert(owners.end(), others.begin(), others.end());
  for (int frame = 0; frame < 5; ++frame) {
    std::size_t expected = 0;
    for (CInstance* instance : owners) {
      instance->x += (random.unit() - 0.5) * 200;
      instance->image_angle += 40;
    }
    for (CInstance* owner : owners) {
      if (owner->type->index != kProbeChild) continue;
      for (CInstance* other : owners) expected += owner != other && shapes_overlap(shape_of(*owner), shape_of(*other)) ? 1 : 0;
    }
    eval("global.seen = []");
    run_collision_events();
    EXPECT_EQ(number("array_length(global.seen)"), static_cast<double>(expected)) << "frame " << frame;
    EXPECT_GT(expected, 10u);
  }
}

// A mask of single pixels against the same pixels as little boxes, one by one, at every angle and scale.
TEST_F(Overlaps, PreciseMasksAreTheirPixels) {
  RandomGenerator random(31);
  eval("global.seen = []; global.hooks = {}");
  CInstance& instance = *world().create(50, 50, -1, 0, kProbe, nullptr, nullptr);
  SpriteInfo sprite;
  sprite.name = "sprPixels";
  sprite.width = sprite.right = 11;  // not whole bytes
  sprite.height = sprite.bottom = 7;
  sprite.origin_x = 3;
  sprite.origin_y = 5;
  sprite.mask = MaskKind::kPrecise;
  sprite.precise.resize(2 * 7);
  std::vector<std::pair<int, int>> set;
  for (int row = 0; row < 7; ++row) {
    for (int column = 0; column < 11; ++column) {
      if (random.unit() < 0.7) continue;
      sprite.precise[static_cast<std::size_t>(row * 2 + column / 8)] |= static_cast<std::uint8_t>(1 << column % 8);
      set.emplace_back(column, row);
    }
  }
  SpriteInfo pixel = sprite;
  pixel.mask = MaskKind::kRotatedRectangle;
  sprite_infos().push_back(sprite);
  sprite_infos().push_back(pixel);
  const double precise_index = static_cast<double>(sprite_infos().size() - 2), pixel_index = precise_index + 1;
  int hits = 0;
  for (int round = 0; round < 2000; ++round) {
    instance.image_angle = round % 3 == 0 ? 0 : random.unit() * 360;
    instance.image_xscale = (random.unit() - 0.5) * 6;
    instance.image_yscale = (random.unit() - 0.5) * 6;
    const double x = 20 + random.unit() * 60, y = 20 + random.unit() * 60, size = random.unit() * 8;
    const CollisionShape others[] = {circle_shape(x, y, size), rectangle_shape(x, y, x + size, y + 1), point_shape(x, y)};
    for (const CollisionShape& other : others) {
      bool expected = false;
      instance.sprite_index = pixel_index;
      for (const auto& [column, row] : set) {
        SpriteInfo& one = sprite_infos().back();
        one.left = column;
        one.right = column + 1;
        one.top = row;
        one.bottom = row + 1;
        expected = expected || shapes_overlap(shape_of(instance), other);
      }
      instance.sprite_index = precise_index;
      EXPECT_EQ(shapes_overlap(shape_of(instance), other), expected) << "round " << round;
      EXPECT_EQ(shapes_overlap(other, shape_of(instance)), expected) << "round " << round;
      hits += expected ? 1 : 0;
    }
  }
  EXPECT_GT(hits, 200);
  sprite_infos().resize(sprite_infos().size() - 2);
}

// What is huge overlaps everybody, what is nowhere nobody; neither costs the others their buckets.
TEST_F(Overlaps, WhatIsHugeOrNowhereHidesNobody) {
  eval("global.seen = []; global.hooks = {}");
  RandomGenerator random(4);
  std::vector<CInstance*> owners = scatter(150, kProbeChild, random), others = scatter(150, kProbe, random);
  owners.insert(owners.end(), others.begin(), others.end());
  const double odd[] = {1e9, NAN, INFINITY, -1e300};
  for (std::size_t i = 0; i < owners.size(); i += 30) {
    owners[i]->image_xscale = odd[i / 30 % 4];
    owners[i + 1]->x = odd[i / 30 % 4];
    owners[i + 2]->image_yscale = odd[i / 30 % 4];
    owners[i + 3]->y = -odd[i / 30 % 4];
  }
  std::size_t expected = 0;
  for (CInstance* owner : owners) {
    if (owner->type->index != kProbeChild) continue;
    for (CInstance* other : owners) expected += owner != other && shapes_overlap(shape_of(*owner), shape_of(*other)) ? 1 : 0;
  }
  eval("global.seen = []");
  run_collision_events();
  EXPECT_EQ(number("array_length(global.seen)"), static_cast<double>(expected));
  EXPECT_GT(expected, 400u);
  check({{"ds = ds_list_create(); collision_circle_list(0, 0, 5, kind(2), false, true, ds, false)", "0"}});
}

}  // namespace
}  // namespace arena::test
