// A graphics card that goes away, played by a backend that keeps account of what it was given.
#include <map>

#include "engine/gpu/backend.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using gpu::Vertex;

// What the card holds and what it drew; shared with the test, for the Gpu owns the backend.
struct Card {
  std::map<std::uint32_t, std::vector<std::uint8_t>> textures;
  std::map<std::uint32_t, std::size_t> meshes;
  std::vector<std::uint32_t> drawn_textures, drawn_meshes;
  bool is_lost = false, comes_back = true;
  int restores = 0;
  std::uint32_t last_id = 0;
};

class LossyBackend final : public gpu::Backend {
 public:
  explicit LossyBackend(Card& card) : card_(card) {}
  std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) override {
    if (card_.is_lost || width > 4096) return 0;
    card_.textures[++card_.last_id].assign(pixels, pixels + std::ptrdiff_t{width} * height * 4);
    return card_.last_id;
  }
  void destroy_texture(std::uint32_t texture) override { card_.textures.erase(texture); }
  std::uint32_t create_mesh(const Vertex*, std::size_t count) override {
    if (card_.is_lost) return 0;
    card_.meshes[++card_.last_id] = count;
    return card_.last_id;
  }
  void destroy_mesh(std::uint32_t mesh) override { card_.meshes.erase(mesh); }
  void draw_mesh(std::uint32_t texture, const gpu::State&, std::uint32_t mesh, const gpu::Transform&) override {
    if (card_.is_lost) return;
    card_.drawn_textures.push_back(texture);
    card_.drawn_meshes.push_back(mesh);
  }
  void begin_frame(int, int, std::uint32_t) override { card_.drawn_textures.clear(), card_.drawn_meshes.clear(); }
  void draw(std::uint32_t texture, const gpu::State&, const Vertex*, std::size_t) override {
    if (!card_.is_lost) card_.drawn_textures.push_back(texture);
  }
  void end_frame() override {}
  std::vector<std::uint8_t> read_pixels(int, int) override { return {}; }
  bool can_be_lost() const override { return true; }
  bool is_lost() const override { return card_.is_lost; }
  void lose() override {
    card_.is_lost = true;
    card_.textures.clear();
    card_.meshes.clear();
  }
  bool restore() override {
    ++card_.restores;
    if (card_.comes_back) card_.is_lost = false;
    return card_.comes_back;
  }

 private:
  Card& card_;
};

class DeviceLoss : public ::testing::Test {
 protected:
  gpu::TextureId texture(std::uint8_t shade) {
    const std::uint8_t pixel[4] = {shade, shade, shade, 255};
    return on.create_texture(1, 1, pixel);
  }
  // The shade of the texture that a draw with this id reaches; -1: none.
  int drawn(gpu::TextureId id) {
    on.begin_frame(8, 8, 0);
    const Vertex triangle[3] = {};
    on.draw({id, gpu::Blend::kNormal, 1, {}}, triangle, 3);
    on.end_frame();
    if (card.drawn_textures.size() != 1 || !card.textures.contains(card.drawn_textures[0])) return -1;
    return card.textures[card.drawn_textures[0]][0];
  }
  Card card;
  gpu::Gpu on{std::make_unique<LossyBackend>(card)};
};

TEST_F(DeviceLoss, EverythingThatLivesComesBackUnderItsId) {
  const gpu::TextureId one = texture(10), two = texture(20), three = texture(30);
  const Vertex vertices[6] = {};
  const gpu::MeshId mesh = on.create_mesh(vertices, 6), dead_mesh = on.create_mesh(vertices, 3);
  on.destroy_texture(two);
  on.destroy_mesh(dead_mesh);
  on.lose_device();
  EXPECT_EQ(drawn(one), 10);
  EXPECT_EQ(drawn(three), 30);
  EXPECT_EQ(drawn(two), -1) << "what was destroyed stays so";
  EXPECT_EQ(card.textures.size(), 2u);
  ASSERT_EQ(card.meshes.size(), 1u);
  EXPECT_EQ(card.meshes.begin()->second, 6u);
  on.begin_frame(8, 8, 0);
  on.draw_mesh({one, gpu::Blend::kNormal, 1, {}}, mesh, {});
  on.draw_mesh({one, gpu::Blend::kNormal, 1, {}}, dead_mesh, {});
  on.end_frame();
  EXPECT_EQ(card.drawn_meshes, std::vector<std::uint32_t>{card.meshes.begin()->first});
  EXPECT_EQ(card.restores, 1);
}

TEST_F(DeviceLoss, TheGameGoesOnUntilTheCardIsBack) {
  const gpu::TextureId before = texture(10);
  on.lose_device();
  card.comes_back = false;
  gpu::TextureId meanwhile;
  for (int frame = 0; frame < 5; ++frame) {
    EXPECT_EQ(drawn(before), -1);
    if (frame == 2) meanwhile = texture(50);
    if (frame == 3) on.destroy_texture(before);
  }
  EXPECT_EQ(card.restores, 5) << "tried once a frame";
  EXPECT_NE(meanwhile.value, 0u);
  card.comes_back = true;
  EXPECT_EQ(drawn(meanwhile), 50);
  EXPECT_EQ(drawn(before), -1);
  EXPECT_EQ(card.textures.size(), 1u);
  on.destroy_texture(meanwhile);
  EXPECT_EQ(card.textures.size(), 0u);
}

TEST_F(DeviceLoss, WhatTheCardCannotMakeHasNoId) {
  const std::vector<std::uint8_t> wide(20000);
  EXPECT_EQ(on.create_texture(5000, 1, wide.data()).value, 0u);
  const gpu::TextureId fine = texture(7);
  on.lose_device();
  EXPECT_EQ(drawn(fine), 7);
}

// A long evening bakes and frees hundreds of thousands of meshes, all in the same few places.
TEST_F(DeviceLoss, WhatIsAliveIsFoundHoweverManyCameBefore) {
  const gpu::Vertex vertices[3] = {};
  gpu::MeshId first_mesh, mesh;
  gpu::TextureId first_texture, last_texture;
  for (int made = 0; made < 300000; ++made) {
    mesh = on.create_mesh(vertices, 3);
    last_texture = texture(9);
    if (made == 0) first_mesh = mesh, first_texture = last_texture;
    ASSERT_EQ(drawn(last_texture), 9) << made;
    if (made == 299999) break;
    on.destroy_mesh(mesh);
    on.destroy_texture(last_texture);
  }
  EXPECT_EQ(drawn(first_texture), -1);
  EXPECT_EQ(card.textures.size(), 1u) << "whoever is not found is not freed either";
  EXPECT_EQ(card.meshes.size(), 1u);
  card.drawn_meshes.clear();
  on.begin_frame(8, 8, 0);
  on.draw_mesh({last_texture, gpu::Blend::kNormal, 1, {}}, mesh, {});
  on.draw_mesh({last_texture, gpu::Blend::kNormal, 1, {}}, first_mesh, {});
  on.end_frame();
  EXPECT_EQ(card.drawn_meshes.size(), 1u);
}

TEST_F(DeviceLoss, StaleIdsNeverReachTheNextOwnerOfTheirPlace) {
  std::vector<gpu::TextureId> stale;
  for (int round = 0; round < 50; ++round) {
    const gpu::TextureId id = texture(static_cast<std::uint8_t>(round));
    EXPECT_EQ(drawn(id), round);
    for (const gpu::TextureId old : stale) ASSERT_EQ(drawn(old), -1);
    on.destroy_texture(id);
    stale.push_back(id);
    if (round % 10 == 0) on.lose_device();
  }
}

}  // namespace
}  // namespace arena::test
