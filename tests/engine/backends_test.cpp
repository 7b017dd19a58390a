// Small pictures that prove what backend.h promises, and the falloff of sound measured in rendered samples.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "engine/audio/openal/openal.h"
#include "engine/gpu/backend.h"
#include "engine/gpu/recorder/recorder.h"
#include "engine/platform/window.h"
#include "tests/engine/scenes.h"
#include "tests/support/test_game.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace arena::test {
namespace {

// Graphics drivers keep what they allocate until the process ends: that is not for the leak checker.
#ifdef __SANITIZE_ADDRESS__
using DriverKeepsMemory = __lsan::ScopedDisabler;
#else
struct DriverKeepsMemory {
  DriverKeepsMemory() {}
};
#endif

using gpu::Vertex;

constexpr std::uint32_t kRed = 0xFF0000FF, kHalfGreen = 0x8000FF00;

std::string pixel(const std::vector<std::uint8_t>& pixels, int x, int y) {
  const std::size_t at = (static_cast<std::size_t>(y) * kSceneSize + static_cast<std::size_t>(x)) * 4;
  return std::to_string(pixels[at]) + "," + std::to_string(pixels[at + 1]) + "," + std::to_string(pixels[at + 2]);
}

// The backend of this platform, drawing where nobody sees it.
class Pictures : public ::testing::Test {
 protected:
  Pictures() {
    const DriverKeepsMemory allowed;
    platform::WindowOptions options;
    options.offscreen = true;
    options.width = options.height = kSceneSize;
    window_ = platform::open_window(options, problem_);
    if (window_ != nullptr) gpu_ = std::make_unique<gpu::Gpu>(window_->create_backend(problem_));
  }
  ~Pictures() override {
    const DriverKeepsMemory allowed;
    gpu_.reset();
    window_.reset();
  }
  void SetUp() override { ASSERT_NE(gpu_, nullptr) << problem_; }
  std::vector<std::uint8_t> picture_of(const Scene& scene) {
    gpu_->begin_frame(kSceneSize, kSceneSize, 0);
    scene.draw(*gpu_);
    std::vector<std::uint8_t> pixels = gpu_->read_pixels();
    gpu_->end_frame();
    return pixels;
  }

  std::string problem_;
  std::unique_ptr<platform::Window> window_;
  std::unique_ptr<gpu::Gpu> gpu_;
};

TEST_F(Pictures, TheBackendKeepsTheContract) {
  const DriverKeepsMemory allowed;
  gpu::Gpu& on = *gpu_;

  // Two by two: red, green over blue, white; rows from the top.
  const std::uint8_t four[16] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
  const gpu::TextureId texture = on.create_texture(2, 2, four);
  on.begin_frame(64, 64, 0x000000);
  solid(on, 0, 0, 16, 16, kRed);        // top left
  solid(on, 8, 0, 16, 16, kHalfGreen);  // half over it
  solid(on, 48, 48, 64, 64, 0xFF404040);
  solid(on, 56, 48, 64, 64, 0xFF202020, gpu::Blend::kAdd);
  solid(on, 48, 56, 56, 64, 0xFF101010, gpu::Blend::kSubtract);
  const auto corner = [&](float x, float y, float u, float v) {
    return Vertex{x, y, u, v, 0xFFFFFFFF, static_cast<float>(gpu::Paint::kTexture)};
  };
  const Vertex picture[] = {corner(16, 16, 0, 0), corner(48, 16, 1, 0), corner(48, 48, 1, 1),
                            corner(16, 16, 0, 0), corner(48, 48, 1, 1), corner(16, 48, 0, 1)};
  on.draw({texture, gpu::Blend::kNormal, 1, {}}, picture, 6);
  const std::vector<std::uint8_t> pixels = on.read_pixels();
  on.end_frame();
  EXPECT_EQ(pixel(pixels, 2, 2), "255,0,0");
  EXPECT_EQ(pixel(pixels, 12, 2), "127,128,0");
  EXPECT_EQ(pixel(pixels, 2, 60), "0,0,0") << "y points down";
  EXPECT_EQ(pixel(pixels, 50, 50), "64,64,64");
  EXPECT_EQ(pixel(pixels, 60, 50), "96,96,96");
  EXPECT_EQ(pixel(pixels, 50, 60), "48,48,48");
  EXPECT_EQ(pixel(pixels, 18, 18), "255,0,0");
  EXPECT_EQ(pixel(pixels, 46, 18), "0,255,0");
  EXPECT_EQ(pixel(pixels, 18, 46), "0,0,255");
  on.destroy_texture(texture);
  on.begin_frame(64, 64, 0);
  on.draw({texture, gpu::Blend::kNormal, 1, {}}, picture, 6);
  EXPECT_EQ(pixel(on.read_pixels(), 18, 18), "0,0,0") << "a stale id draws nothing";
}

TEST_F(Pictures, ClipsAndMeshes) {
  const DriverKeepsMemory allowed;
  gpu::Gpu& on = *gpu_;

  const auto corner = [&](float x, float y) { return Vertex{x, y, 0, 0, kRed, static_cast<float>(gpu::Paint::kSolid)}; };
  const Vertex square[] = {corner(0, 0), corner(8, 0), corner(8, 8), corner(0, 0), corner(8, 8), corner(0, 8)};
  const gpu::MeshId mesh = on.create_mesh(square, 6);
  on.begin_frame(64, 64, 0);
  on.draw({{}, gpu::Blend::kNormal, 1, {0, 0, 10, 4}}, square, 6);  // only the upper half of it
  gpu::Transform twice_as_large;
  twice_as_large.a = twice_as_large.d = 2;
  twice_as_large.e = 32;
  twice_as_large.f = 40;
  on.draw_mesh({{}, gpu::Blend::kNormal, 1, {}}, mesh, twice_as_large);
  gpu::Transform turned;  // x goes down, y to the left
  turned.a = turned.d = 0;
  turned.b = -1;
  turned.c = 1;
  turned.e = 60;
  on.draw_mesh({{}, gpu::Blend::kNormal, 1, {52, 0, 4, 64}}, mesh, turned);
  on.draw({{}, gpu::Blend::kNormal, 1, {}}, square, 0);
  solid(on, 0, 56, 4, 64, kRed);  // streams go on as before after a mesh
  const std::vector<std::uint8_t> pixels = on.read_pixels();
  EXPECT_EQ(pixel(pixels, 2, 2), "255,0,0");
  EXPECT_EQ(pixel(pixels, 2, 5), "0,0,0") << "cut";
  EXPECT_EQ(pixel(pixels, 33, 41), "255,0,0");
  EXPECT_EQ(pixel(pixels, 47, 55), "255,0,0");
  EXPECT_EQ(pixel(pixels, 49, 41), "0,0,0");
  EXPECT_EQ(pixel(pixels, 54, 4), "255,0,0");
  EXPECT_EQ(pixel(pixels, 58, 4), "0,0,0") << "the clip holds for meshes, too";
  EXPECT_EQ(pixel(pixels, 2, 60), "255,0,0");
  on.end_frame();
  on.destroy_mesh(mesh);
  on.begin_frame(64, 64, 0);
  on.draw_mesh({{}, gpu::Blend::kNormal, 1, {}}, mesh, twice_as_large);
  EXPECT_EQ(pixel(on.read_pixels(), 33, 41), "0,0,0") << "a stale id draws nothing";
}

// Everything that the graphics card held comes back, under the ids that the engine knows.
TEST_F(Pictures, SurviveTheLossOfTheDevice) {
  const DriverKeepsMemory allowed;
  const std::uint8_t green[4] = {0, 255, 0, 255};
  const gpu::TextureId texture = gpu_->create_texture(1, 1, green), gone = gpu_->create_texture(1, 1, green);
  const auto corner = [&](float x, float y) { return Vertex{x, y, 0, 0, 0xFFFFFFFF, static_cast<float>(gpu::Paint::kTexture)}; };
  const Vertex square[] = {corner(0, 0), corner(64, 0), corner(64, 64), corner(0, 0), corner(64, 64), corner(0, 64)};
  const gpu::MeshId mesh = gpu_->create_mesh(square, 6);
  gpu_->destroy_texture(gone);
  const std::vector<std::uint8_t> before = picture_of(scenes().front());
  gpu_->begin_frame(kSceneSize, kSceneSize, 0);
  gpu_->lose_device();
  solid(*gpu_, 0, 0, 9, 9, kRed);  // into nothing
  const gpu::TextureId made_meanwhile = gpu_->create_texture(1, 1, green);
  gpu_->end_frame();
  EXPECT_EQ(picture_of(scenes().front()), before);
  for (const gpu::TextureId each : {texture, made_meanwhile}) {
    gpu_->begin_frame(kSceneSize, kSceneSize, 0);
    gpu_->draw_mesh({each, gpu::Blend::kNormal, 1, {}}, mesh, {0.5F, 0, 0, 0.5F, 0, 0});
    EXPECT_EQ(pixel(gpu_->read_pixels(), 20, 20), "0,255,0");
    EXPECT_EQ(pixel(gpu_->read_pixels(), 40, 40), "0,0,0");
    gpu_->end_frame();
  }
}

// A window that changes its size, down to nothing as a minimised one has it.
TEST_F(Pictures, FollowTheSizeOfTheTarget) {
  const DriverKeepsMemory allowed;
  for (const int size : {64, 200, 0, 33, 64}) {
    gpu_->begin_frame(size, size, 0);
    solid(*gpu_, 0, 0, 1000, 1000, kRed);
    const std::vector<std::uint8_t> pixels = gpu_->read_pixels();
    gpu_->end_frame();
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(size) * static_cast<std::size_t>(size) * 4);
    if (size == 64) {
      EXPECT_EQ(pixel(pixels, 63, 63), "255,0,0");
    }
  }
}

// For the comparison of platforms: every scene as raw bytes, beside the program.
TEST_F(Pictures, OfAllScenesAreKeptForComparison) {
  const DriverKeepsMemory allowed;
  std::filesystem::create_directories(ARENA_BINARY "/scenes");
  for (const Scene& scene : scenes()) {
    const std::vector<std::uint8_t> pixels = picture_of(scene);
    EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(), [](std::uint8_t channel) { return channel > 100 && channel < 255; }))
        << scene.name;
    std::ofstream(std::string(ARENA_BINARY "/scenes/") + scene.name, std::ios::binary)
        .write(reinterpret_cast<const char*>(pixels.data()), static_cast<std::streamsize>(pixels.size()));
  }
}

TEST(Batches, StatesThatDoNotChangeShareADraw) {
  auto recorder = std::make_unique<gpu::Recorder>();
  gpu::Recorder& seen = *recorder;
  gpu::Gpu on(std::move(recorder));
  const std::uint8_t white[4] = {255, 255, 255, 255};
  const gpu::TextureId one = on.create_texture(1, 1, white), two = on.create_texture(1, 1, white);
  const Vertex triangle[3] = {};
  on.begin_frame(10, 10, 0);
  for (int i = 0; i < 100; ++i) {
    on.draw({one, gpu::Blend::kNormal, 1, {}}, triangle, 3);
    solid(on, 0, 0, 1, 1, kRed);  // shapes join the open batch
  }
  on.draw({two, gpu::Blend::kNormal, 1, {}}, triangle, 3);
  on.draw({two, gpu::Blend::kAdd, 1, {}}, triangle, 3);
  on.end_frame();
  EXPECT_EQ(seen.draws.size(), 3u);
  EXPECT_EQ(on.statistics().triangles, 302);
}

double loudness_at(audio::LoopbackDevice& device, double distance) {
  audio::Audio& model = audio::audio();
  model.restart();
  model.falloff = audio::Falloff::kLinearClamped;
  audio::Voice voice;
  voice.sound = 5;
  voice.is_positional = true;
  voice.y = distance;
  voice.reference = 500;
  voice.maximum = 2000;
  model.play(voice);
  model.feed(device);
  std::vector<std::int16_t> samples(4096);
  device.pull(samples.data(), 2048);
  double energy = 0;
  for (const std::int16_t sample : samples) energy += static_cast<double>(sample) * sample;
  model.restart();
  model.feed(device);
  device.pull(samples.data(), 2048);
  return std::sqrt(energy / 4096);
}

class Sound : public TestGame {};

TEST_F(Sound, FallsOffAsTheModelSays) {
  std::string problem;
  const auto device = audio::open_openal_loopback(problem);
  ASSERT_NE(device, nullptr) << problem;
  device->load(audio::audio().clips);
  const double near = loudness_at(*device, 500), half = loudness_at(*device, 1250), far = loudness_at(*device, 2000);
  EXPECT_GT(near, 500);
  EXPECT_NEAR(half / near, 0.5, 0.02);
  EXPECT_LT(far, near / 100);
  EXPECT_NEAR(audio::falloff_gain(audio::Falloff::kLinearClamped, 1250, 500, 2000, 1), 0.5, 1e-12);
  EXPECT_NEAR(audio::falloff_gain(audio::Falloff::kInverse, 1000, 500, 2000, 1), 0.5, 1e-12);
  EXPECT_NEAR(audio::falloff_gain(audio::Falloff::kExponent, 1000, 500, 2000, 2), 0.25, 1e-12);
}

TEST_F(Sound, EndsInGameTimeAndPauses) {
  eval("h = audio_play_sound(6, 1, false)");
  EXPECT_EQ(eval("audio_is_playing(h)"), "true");
  eval("audio_pause_sound(h)");
  step(120);
  check({{"[audio_is_playing(h), audio_is_paused(h), audio_exists(h)]", "[false,true,true]"}});
  eval("audio_resume_sound(h); audio_sound_pitch(h, 0.5)");
  step(15);
  EXPECT_EQ(eval("audio_is_playing(h)"), "true") << "half the pitch takes twice as long";
  step(15);
  check({{"[audio_is_playing(h), audio_exists(h), audio_exists(6)]", "[false,false,true]"},
         {"audio_play_sound(9, 1, false)", "! audio_play_sound argument 1 invalid reference to (sound) - requested 9 max is 9"},
         {"audio_play_sound(99, 1, false)", "! audio_play_sound argument 1 invalid reference to (sound) - requested 99 max is 9"}});
}

}  // namespace
}  // namespace arena::test
