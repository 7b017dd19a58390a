// The playlist rule by rule: what it starts, pauses and goes on to, in game time.
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Music : public PlayedGame {
 protected:
  Music() { eval("global.m = new VoliMusic()"); }
};

TEST_F(Music, AnEmptyListDoesNothing) {
  check({
      {"global.m.play(); global.m.next(); global.m.previous(); global.m.update(); [global.m.state, global.m.current_track, "
       "global.m.current_track_id]",
       "[0,-1,0]"},
      {"typeof(global.m.state)", "int64"},
      {"global.m.volume(1.5); a = global.m.current_volume; global.m.volume(-2); [a, global.m.current_volume]", "[1,0]"},
  });
}

TEST_F(Music, PlaysPausesAndStops) {
  check({
      {"global.m.load(5); global.m.load([6, 7]); global.m.playlist", "[5,6,7]"},
      {"global.m.volume(0.5); global.m.play(); [global.m.state, audio_is_playing(global.m.current_track), "
       "audio_sound_get_gain(global.m.current_track)]",
       "[1,true,0.50]"},
      {"h = global.m.current_track; global.m.play(); global.m.current_track == h", "true"},
      {"global.m.pause(); [global.m.state, audio_is_paused(global.m.current_track)]", "[2,true]"},
      {"global.m.pause(); global.m.update(); [global.m.state, global.m.current_track_id]", "[2,0]"},
      {"global.m.play(); [global.m.state, audio_is_paused(global.m.current_track)]", "[1,false]"},
      {"global.m.volume(0.25); audio_sound_get_gain(global.m.current_track)", "0.25"},
      {"global.m.pause(); global.m.volume(0.75); global.m.play(); audio_sound_get_gain(global.m.current_track)", "0.75"},
      {"h = global.m.current_track; global.m.stop(); [global.m.state, global.m.current_track, audio_is_playing(h)]", "[0,-1,false]"},
  });
}

TEST_F(Music, TheNextStartsWhenOneEnds) {
  eval("global.m.load([5, 6]); global.m.play()");
  step(60);  // the first one lasts 0.12 s
  check({{"global.m.update(); [global.m.current_track_id, global.m.state, audio_is_playing(global.m.current_track)]", "[1,1,true]"}});
  check({{"global.m.next(); global.m.current_track_id", "0"},
         {"global.m.previous(); global.m.current_track_id", "1"},
         {"global.m.previous(); global.m.current_track_id", "0"}});
  check({{"global.m.clear(); [global.m.playlist, global.m.current_track_id, global.m.state]", "[[],0,0]"}});
}

TEST_F(Music, ShufflingVisitsEveryTrackOnceARound) {
  eval("global.m.load([5, 6, 7, 8, 0]); global.m.next(); global.m.next(); global.m.shuffle(1)");
  check({{"global.m.shuffle_order[global.m.shuffle_index] == global.m.current_track_id", "true"}, {"global.m.current_track_id", "2"}});
  // From the start of a fresh round on, five steps visit all five.
  eval("global.m.load([]); global.m.current_track_id = global.m.shuffle_order[0]");
  std::vector<bool> seen(5, false);
  for (int i = 0; i < 5; ++i) {
    seen[static_cast<std::size_t>(number("global.m._get_current_index()"))] = true;
    if (i < 4) eval("global.m.next()");
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 5);
  check({{"global.m.next(); global.m.shuffle_index", "0"},
         {"global.m.previous(); global.m.shuffle_index", "4"},
         {"global.m.shuffle(); global.m.shuffle_mode", "false"}});
}

TEST_F(Music, TheRealTracksAreThere) {
  for (const char* track : {"3", "4"}) {
    const double seconds = number(std::string("audio_sound_length(") + track + ")");
    EXPECT_GT(seconds, 60);
    EXPECT_LT(seconds, 90);
  }
}

}  // namespace
}  // namespace arena::test
