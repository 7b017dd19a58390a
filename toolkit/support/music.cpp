#include "toolkit/support/music.h"

namespace game {
namespace {

const Variable playlist{"playlist"}, current_track_id{"current_track_id"}, current_track{"current_track"}, state{"state"};
const Variable shuffle_mode{"shuffle_mode"}, shuffle_order{"shuffle_order"}, shuffle_index{"shuffle_index"},
    current_volume{"current_volume"};

const Variable _generate_shuffle_order{"_generate_shuffle_order"}, _get_current_index{"_get_current_index"},
    _start_current{"_start_current"};
const Variable play{"play"}, pause{"pause"}, stop{"stop"}, shuffle{"shuffle"}, next{"next"}, previous{"previous"}, volume{"volume"},
    load{"load"};
const Variable update{"update"}, clear{"clear"}, print_list{"print_list"};

constexpr std::int64_t kStopped = 0, kPlaying = 1, kPaused = 2;
constexpr int kNoTrack = -1;
constexpr int kPriority = 1;

Real track_count(const ObjectSelf& player) { return array_length(player[playlist]); }

// To the place `by` further in the order that is in force; past an end it goes on at the other one, shuffled anew when it was the last.
void move_track(const ObjectSelf& player, Real by) {
  const Real count = track_count(player);
  if (!player[shuffle_mode]) {
    const Real now = player[current_track_id];
    player[current_track_id] = (now + by + count) % count;
    return;
  }
  Real place = player[shuffle_index];
  place += by;
  if (place >= count) {
    player[shuffle_order] = player[_generate_shuffle_order]();
    place = 0;
  }
  if (place < 0) place = count - 1;
  player[shuffle_index] = place;
  const Value order = player[shuffle_order];
  player[current_track_id] = Value(order[place]);
}

}  // namespace
}  // namespace game

METHOD(Value, VoliMusic, _generate_shuffle_order) {
  const Real count = track_count(self);
  const Value order = array_create(0);
  for (Real i = 0; i < count; i += 1) array_push(order, i);
  for (Real i = count - 1; i > 0; i -= 1) array_swap(order, i, irandom(i));
  return order;
}

METHOD(Value, VoliMusic, _get_current_index) {
  if (!self[shuffle_mode]) return self[current_track_id];
  const Value order = self[shuffle_order];
  return Value(order[self[shuffle_index]]);
}

METHOD(void, VoliMusic, _start_current) {
  if (track_count(self) == 0) return;
  const Value tracks = self[playlist];
  self[current_track] = audio_play_sound(tracks[self[_get_current_index]()], kPriority, false, self[current_volume]);
  self[state] = int64(kPlaying);
}

METHOD(void, VoliMusic, play) {
  if (track_count(self) == 0) return;
  if (self[state] == kPaused) {
    audio_resume_sound(self[current_track]);
    self[state] = int64(kPlaying);
  } else if (self[state] == kStopped) {
    self[_start_current]();
  }
}

METHOD(void, VoliMusic, pause) {
  if (self[state] != kPlaying) return;
  audio_pause_sound(self[current_track]);
  self[state] = int64(kPaused);
}

METHOD(void, VoliMusic, stop) {
  if (self[current_track] != kNoTrack) {
    audio_stop_sound(self[current_track]);
    self[current_track] = kNoTrack;
  }
  self[state] = int64(kStopped);
}

// Switches the mode, or sets it to the argument when there is one. The current track keeps its place in the sequence.
METHOD(void, VoliMusic, shuffle, Value wanted) {
  self[shuffle_mode] = is_undefined(wanted) ? !self[shuffle_mode] : bool(wanted);
  if (!self[shuffle_mode]) return;
  self[shuffle_order] = self[_generate_shuffle_order]();
  self[shuffle_index] = 0;
  const Value order = self[shuffle_order];
  for (Real i = 0; i < array_length(order); i += 1) {
    if (Value(order[i]) == self[current_track_id]) self[shuffle_index] = i;
  }
}

METHOD(void, VoliMusic, next) {
  self[stop]();
  if (track_count(self) == 0) return;
  move_track(self, 1);
  self[_start_current]();
}

METHOD(void, VoliMusic, previous) {
  self[stop]();
  if (track_count(self) == 0) return;
  move_track(self, -1);
  self[_start_current]();
}

METHOD(void, VoliMusic, volume, Value gain) {
  self[current_volume] = checked::clamp(gain, 0, 1);
  if (self[current_track] != kNoTrack && audio_exists(self[current_track]))  // a paused one, too
    audio_sound_gain(self[current_track], self[current_volume], 0);
}

METHOD(void, VoliMusic, load, Value tracks) {
  self[playlist] = array_concat(self[playlist], is_array(tracks) ? tracks : array_of(tracks));
  if (self[shuffle_mode]) {
    self[shuffle_order] = self[_generate_shuffle_order]();
    self[shuffle_index] = 0;
  }
}

METHOD(void, VoliMusic, update) {
  if (self[state] == kPlaying && self[current_track] != kNoTrack && !audio_is_playing(self[current_track])) self[next]();
}

METHOD(void, VoliMusic, clear) {
  self[stop]();
  self[playlist] = array_create(0);
  self[current_track_id] = 0;
  self[shuffle_order] = array_create(0);
  self[shuffle_index] = 0;
}

METHOD(void, VoliMusic, print_list) {
  const Value tracks = self[playlist];
  for (const Value& track : elements(tracks)) show_debug_message(string(track));
}

CONSTRUCTOR(VoliMusic) {
  self[playlist] = array_create(0);
  self[current_track_id] = 0;
  self[current_track] = kNoTrack;
  self[state] = int64(kStopped);
  self[shuffle_mode] = false;
  self[shuffle_order] = array_create(0);
  self[shuffle_index] = 0;
  self[current_volume] = 1;

  self[_generate_shuffle_order] = bind(self, VoliMusic__generate_shuffle_order);
  self[_get_current_index] = bind(self, VoliMusic__get_current_index);
  self[_start_current] = bind(self, VoliMusic__start_current);
  self[play] = bind(self, VoliMusic_play);
  self[pause] = bind(self, VoliMusic_pause);
  self[stop] = bind(self, VoliMusic_stop);
  self[shuffle] = bind(self, VoliMusic_shuffle);
  self[next] = bind(self, VoliMusic_next);
  self[previous] = bind(self, VoliMusic_previous);
  self[volume] = bind(self, VoliMusic_volume);
  self[load] = bind(self, VoliMusic_load);
  self[update] = bind(self, VoliMusic_update);
  self[clear] = bind(self, VoliMusic_clear);
  self[print_list] = bind(self, VoliMusic_print_list);
}
