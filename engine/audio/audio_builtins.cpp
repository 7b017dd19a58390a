// The sound functions of scripts. A sound is an asset's number or the handle of one that plays.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>

#include "engine/audio/audio.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/sounds.h"
#include "runtime/values/refs.h"

namespace arena::audio {
namespace {

const RefKind sound_refs{ref_type::kSound, "sound", [](std::int32_t index) {
                           return audio().has_sound(index) ? audio().clips[static_cast<std::size_t>(index)].name : std::string();
                         }};
const RefKind sound_instance_refs{ref_type::kSoundInstance, "sound instance"};

bool require_sound(std::int32_t sound) {
  if (audio().has_sound(sound)) return true;
  report_invalid_resource(1, "sound", sound, static_cast<std::int32_t>(audio().clips.size()));
  return false;
}

std::int32_t play_sound(std::int32_t sound, double priority, bool loop, double gain, double offset, double pitch) {
  if (!require_sound(sound)) return -1;
  Voice voice;
  voice.sound = sound;
  voice.priority = priority;
  voice.loop = loop;
  voice.gain = gain;
  voice.offset = offset;
  voice.pitch = pitch;
  return audio().play(voice);
}

std::int32_t play_sound_at(std::int32_t sound, double x, double y, double z, double reference, double maximum, double factor, bool loop,
                           double priority) {
  if (!require_sound(sound)) return -1;
  Voice voice;
  voice.sound = sound;
  voice.is_positional = true;
  voice.x = x;
  voice.y = y;
  voice.z = z;
  voice.reference = reference;
  voice.maximum = maximum;
  voice.factor = factor;
  voice.loop = loop;
  voice.priority = priority;
  return audio().play(voice);
}

void stop_sound(std::int32_t which) { audio().stop(which); }
void stop_all() { audio().stop_all(); }
void pause_sound(std::int32_t which) { audio().set_paused(which, true); }
void resume_sound(std::int32_t which) { audio().set_paused(which, false); }
void sound_gain(std::int32_t which, double gain, double milliseconds) { audio().set_gain(which, gain, milliseconds / 1000); }
void sound_pitch(std::int32_t which, double pitch) { audio().set_pitch(which, pitch); }
double sound_get_gain(std::int32_t which) {
  const Voice* voice = audio().find(which);
  return voice != nullptr ? voice->gain : 1;
}
double sound_get_pitch(std::int32_t which) {
  const Voice* voice = audio().find(which);
  return voice != nullptr ? voice->pitch : 1;
}
double sound_length(std::int32_t which) {
  const Voice* voice = audio().find(which);
  const std::int32_t sound = voice != nullptr ? voice->sound : which;
  return require_sound(sound) ? audio().clips[static_cast<std::size_t>(sound)].seconds() : 0;
}
bool exists(const RValue& which) { return is_number_like(which) && audio().exists(to_int32(which)); }
bool is_playing(std::int32_t which) { return audio().is_playing(which); }
bool is_paused(std::int32_t which) { return audio().is_paused(which); }
void listener_position(double x, double y, double z) {
  audio().listener.x = x;
  audio().listener.y = y;
  audio().listener.z = z;
}
void listener_orientation(double at_x, double at_y, double at_z, double up_x, double up_y, double up_z) {
  Device::Listener& listener = audio().listener;
  listener.at[0] = at_x;
  listener.at[1] = at_y;
  listener.at[2] = at_z;
  listener.up[0] = up_x;
  listener.up[1] = up_y;
  listener.up[2] = up_z;
}
void set_falloff_model(std::int32_t model) { audio().falloff = static_cast<Falloff>(std::clamp(model, 0, 6)); }
void master_gain(double gain) { audio().master_gain = std::max(0.0, gain); }

constexpr Implementation kRows[] = {
    implement<script::audio_play_sound, play_sound>,
    implement<script::audio_play_sound_at, play_sound_at>,
    implement<script::audio_stop_sound, stop_sound>,
    implement<script::audio_stop_all, stop_all>,
    implement<script::audio_pause_sound, pause_sound>,
    implement<script::audio_resume_sound, resume_sound>,
    implement<script::audio_sound_gain, sound_gain>,
    implement<script::audio_sound_pitch, sound_pitch>,
    implement<script::audio_sound_get_gain, sound_get_gain>,
    implement<script::audio_sound_get_pitch, sound_get_pitch>,
    implement<script::audio_sound_length, sound_length>,
    implement<script::audio_exists, exists>,
    implement<script::audio_is_playing, is_playing>,
    implement<script::audio_is_paused, is_paused>,
    implement<script::audio_listener_position, listener_position>,
    implement<script::audio_listener_orientation, listener_orientation>,
    implement<script::audio_falloff_set_model, set_falloff_model>,
    implement<script::audio_master_gain, master_gain>,
};
const BuiltinTable table("Sound", "A sound is an asset's number or the handle of one that plays.", kRows);

}  // namespace
}  // namespace arena::audio
