// The model of sounds in game time: what plays, how loud, and for how long. No device is needed.
#include "engine/audio/audio.h"

#include <gtest/gtest.h>

namespace arena::audio {
namespace {

class Sounds : public ::testing::Test {
 protected:
  Sounds() {
    for (const double seconds : {1.0, 2.0}) {
      Clip clip;
      clip.name = "snd";
      clip.rate = 100;
      clip.samples.resize(static_cast<std::size_t>(seconds * 100));
      audio_.clips.push_back(clip);
    }
  }
  std::int32_t play(std::int32_t sound, bool loop = false, double pitch = 1, double offset = 0) {
    Voice voice;
    voice.sound = sound;
    voice.loop = loop;
    voice.pitch = pitch;
    voice.offset = offset;
    return audio_.play(voice);
  }
  Audio audio_;
};

TEST_F(Sounds, EndWithTheirClip) {
  const std::int32_t plain = play(0), fast = play(0, false, 2), late = play(0, false, 1, 0.75), loop = play(0, true);
  EXPECT_TRUE(audio_.is_playing(plain) && audio_.is_playing(0) && !audio_.is_playing(1));
  audio_.advance(0.3);
  EXPECT_FALSE(audio_.is_playing(late));
  audio_.advance(0.3);
  EXPECT_TRUE(audio_.is_playing(plain));
  EXPECT_FALSE(audio_.is_playing(fast));
  audio_.set_paused(plain, true);
  audio_.advance(10);
  EXPECT_TRUE(audio_.is_paused(plain) && audio_.exists(plain) && !audio_.is_playing(plain)) << "a pause stands still";
  audio_.set_paused(plain, false);
  audio_.advance(0.3);
  EXPECT_TRUE(audio_.is_playing(plain));
  audio_.advance(0.2);
  EXPECT_FALSE(audio_.exists(plain));
  EXPECT_TRUE(audio_.is_playing(loop));
  EXPECT_LT(audio_.find(loop)->offset, 1) << "it went round";
  // A pitch that would never let it end is no pitch.
  const std::int32_t still = play(0, false, 0), backwards = play(0, false, -1);
  audio_.advance(150);
  EXPECT_FALSE(audio_.exists(still) || audio_.exists(backwards));
}

TEST_F(Sounds, FadesArriveAndTheNewestHolds) {
  const std::int32_t one = play(0, true), other = play(0, true);
  audio_.set_gain(one, 0, 1);
  audio_.advance(0.25);
  EXPECT_NEAR(audio_.find(one)->gain, 0.75, 1e-12);
  EXPECT_EQ(audio_.find(other)->gain, 1);
  audio_.set_gain(one, 1, 0.5);  // turns back from where it is
  audio_.advance(0.25);
  EXPECT_NEAR(audio_.find(one)->gain, 0.875, 1e-12);
  audio_.advance(5);
  EXPECT_EQ(audio_.find(one)->gain, 1);
  audio_.set_gain(one, 0.5, 0);
  audio_.advance(1);
  EXPECT_EQ(audio_.find(one)->gain, 0.5) << "nothing pulls it back";
  audio_.set_gain(0, 0.25, 1);  // by the asset: all of them
  audio_.advance(2);
  EXPECT_EQ(audio_.find(one)->gain + audio_.find(other)->gain, 0.5);
}

TEST_F(Sounds, StopByHandleByAssetAndAll) {
  const std::int32_t first = play(0), second = play(0), third = play(1);
  audio_.stop(first);
  EXPECT_TRUE(!audio_.exists(first) && audio_.exists(second));
  audio_.stop(0);
  EXPECT_TRUE(!audio_.exists(second) && audio_.exists(third));
  audio_.stop_all();
  EXPECT_TRUE(audio_.voices().empty());
  audio_.stop(first);  // twice is harmless
  EXPECT_GT(play(0), third) << "handles are never given again";
}

TEST_F(Sounds, TheMostImportantComeFirstThenTheLoudest) {
  Voice voice;
  voice.sound = 0;
  voice.is_positional = true;
  audio_.falloff = Falloff::kLinearClamped;
  const auto at = [&](double x, double priority, std::int32_t sound) {
    voice.x = x;
    voice.priority = priority;
    voice.sound = sound;
    return audio_.play(voice);
  };
  const std::int32_t far = at(900, 0, 0), important = at(800, 5, 1);
  audio_.advance(0.2);  // no longer of one volley
  const std::int32_t near = at(200, 0, 0);
  const std::vector<Voice> order = audio_.sounding();
  ASSERT_EQ(order.size(), 3U);
  EXPECT_EQ(order[0].handle, important);
  EXPECT_EQ(order[1].handle, near);
  EXPECT_EQ(order[2].handle, far);
  // One more within 50 ms joins the group, which is then heard as loud as its loudest member.
  at(150, 0, 0);
  EXPECT_EQ(audio_.sounding().size(), 3U);
  EXPECT_EQ(audio_.sounding()[1].x, 150);
}

TEST(Falloffs, FollowTheirFormulas) {
  struct Case {
    Falloff model;
    double distance, factor, gain;
  };
  // From 100 to 500 pixels.
  const Case cases[] = {{Falloff::kNone, 1e6, 1, 1},
                        {Falloff::kInverse, 200, 1, 0.5},
                        {Falloff::kInverse, 1000, 1, 0.1},
                        {Falloff::kInverseClamped, 1000, 1, 0.2},
                        {Falloff::kInverse, 50, 1, 1},
                        {Falloff::kInverse, 200, 3, 0.25},
                        {Falloff::kLinear, 300, 1, 0.5},
                        {Falloff::kLinear, 300, 0.5, 0.75},
                        {Falloff::kLinear, 900, 1, 0},
                        {Falloff::kLinearClamped, 50, 1, 1},
                        {Falloff::kExponent, 200, 2, 0.25},
                        {Falloff::kExponent, 1000, 1, 0.1},
                        {Falloff::kExponentClamped, 1000, 1, 0.2}};
  for (const Case& each : cases) {
    EXPECT_NEAR(falloff_gain(each.model, each.distance, 100, 500, each.factor), each.gain, 1e-12)
        << static_cast<int>(each.model) << " at " << each.distance;
  }
  EXPECT_EQ(falloff_gain(Falloff::kLinear, 300, 100, 100, 1), 1) << "no range, no falloff";
}

}  // namespace
}  // namespace arena::audio
