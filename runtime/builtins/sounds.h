#pragma once
// Sound. A sound is an asset's number or the handle of one that plays. Gains: 1 is as recorded; pitches are factors.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(audio_exists, Flag(Any), "which", "Whether the sound exists, or still plays or is paused.");
BUILTIN(audio_falloff_set_model, void(In<Whole, 0, 6>), "model",
        "How sounds fade with distance: 0 not, 1 inverse, 3 linear, 5 exponential; 2, 4 and 6 the same within the distances alone.");
BUILTIN(audio_is_paused, Flag(SoundOrVoice), "which", "Whether it is paused.");
BUILTIN(audio_is_playing, Flag(SoundOrVoice), "which", "Whether it plays.");
BUILTIN(audio_listener_orientation, void(Number, Number, Number, Number, Number, Number), "at_x, at_y, at_z, up_x, up_y, up_z",
        "Where the listener looks and what is up.");
BUILTIN(audio_listener_position, void(Number, Number, Number), "x, y, z", "Where the listener is.");
BUILTIN(audio_master_gain, void(Number), "gain", "How loud all is, at least 0.");
BUILTIN(audio_pause_sound, void(SoundOrVoice), "which", "Pauses it.");
BUILTIN(audio_play_sound, Voice(SoundIndex, Number, Flag, Or<Number, 1>, Or<Number, 0>, Or<Number, 1>),
        "sound, priority, loop, gain, offset, pitch",
        "Plays a sound from an offset in seconds on; when there are too many, those of low priority end. Gives its handle.");
BUILTIN(audio_play_sound_at, Voice(SoundIndex, Number, Number, Number, Number, Number, Number, Flag, Number),
        "sound, x, y, z, reference, maximum, factor, loop, priority",
        "Plays a sound at a place: full up to the reference distance, faded by the factor up to the maximum. Gives its handle.");
BUILTIN(audio_resume_sound, void(SoundOrVoice), "which", "Lets it go on.");
BUILTIN(audio_sound_gain, void(SoundOrVoice, Number, Or<Number, 0>), "which, gain, milliseconds",
        "How loud it is, after a while if one is given.");
BUILTIN(audio_sound_get_gain, Number(SoundOrVoice), "which", "How loud it is; 1 when it does not play.");
BUILTIN(audio_sound_get_pitch, Number(SoundOrVoice), "which", "Its pitch; 1 when it does not play.");
BUILTIN(audio_sound_length, Number(SoundOrVoice), "which", "How many seconds the sound takes.");
BUILTIN(audio_sound_pitch, void(SoundOrVoice, Number), "which, pitch", "Sets the pitch.");
BUILTIN(audio_stop_all, void(), "", "Ends all that plays.");
BUILTIN(audio_stop_sound, void(SoundOrVoice), "which", "Ends it.");

}  // namespace arena::script
