#pragma once
// Sound as a model in game time: voices with handles, positions, gains and ends. A device follows the model; without one the game is
// the same game. Positions are room pixels, times seconds of game time.
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "runtime/session/state.h"

namespace arena::audio {

inline constexpr std::int32_t kFirstHandle = 300000;  // handles of playing sounds; below are sound assets

// Sound falls off with distance as the model says; the numbers are those that scripts use.
enum class Falloff : std::int32_t {
  kNone = 0,
  kInverse = 1,
  kInverseClamped = 2,
  kLinear = 3,
  kLinearClamped = 4,
  kExponent = 5,
  kExponentClamped = 6
};

struct Clip {
  std::string name;
  std::int32_t rate = 44100;
  std::vector<std::int16_t> samples;  // mono
  double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

// What a handle stands for. Sounds of one asset that start within 50 ms form a group, which a device plays as one sound: a volley does
// not rattle. To scripts every member sounds.
struct Voice {
  std::int32_t handle = 0, sound = -1;
  std::int32_t group = 0;  // the handle of the first member
  double gain = 1, pitch = 1, priority = 0;
  bool loop = false, is_paused = false, is_positional = false;
  double x = 0, y = 0, z = 0;
  double reference = 100, maximum = 1000, factor = 1;  // distances in pixels
  double offset = 0;                                   // seconds of the clip that were played
  static constexpr auto fields() {
    return std::tuple(field("handle", &Voice::handle), field("sound", &Voice::sound), field("group", &Voice::group),
                      field("gain", &Voice::gain), field("pitch", &Voice::pitch), field("priority", &Voice::priority),
                      field("loop", &Voice::loop), field("is_paused", &Voice::is_paused), field("is_positional", &Voice::is_positional),
                      field("x", &Voice::x), field("y", &Voice::y), field("z", &Voice::z), field("reference", &Voice::reference),
                      field("maximum", &Voice::maximum), field("factor", &Voice::factor), field("offset", &Voice::offset));
  }
};

// What follows the model. Called once a frame with every group that should sound, the most important first: its handle is the group's.
class Device {
 public:
  virtual ~Device() = default;
  virtual void load(const std::vector<Clip>& clips) = 0;
  struct Listener {
    double x = 0, y = 0, z = 0;
    std::array<double, 3> at = {0, 0, 1}, up = {0, -1, 0};
    static constexpr auto fields() {
      return std::tuple(field("x", &Listener::x), field("y", &Listener::y), field("z", &Listener::z), field("at", &Listener::at),
                        field("up", &Listener::up));
    }
  };
  // Silence: the voices that follow from now on are others, even where they bear the same handles.
  virtual void forget() = 0;
  virtual void follow(const std::vector<Voice>& voices, const Listener& listener, Falloff falloff, double master_gain) = 0;
};

// What a frame may change of the sounds.
struct SoundState {
  Device::Listener listener;
  Falloff falloff = Falloff::kNone;
  double master_gain = 1;
  std::vector<Voice> playing, started;  // those started since last asked
  struct Fade {
    std::int32_t handle = 0;
    double target = 0, per_second = 0;
    static constexpr auto fields() {
      return std::tuple(field("handle", &Fade::handle), field("target", &Fade::target), field("per_second", &Fade::per_second));
    }
  };
  std::vector<Fade> fades;
  std::int32_t next_handle = kFirstHandle;
  double clock = 0;  // seconds of game time
  struct Start {
    std::int32_t group = 0;
    double time = -1;
    static constexpr auto fields() { return std::tuple(field("group", &Start::group), field("time", &Start::time)); }
  };
  std::map<std::pair<std::int32_t, bool>, Start> starts;  // the newest group of each sound, with and without a place

  // What was started is for a tool that asks, not for the game.
  static constexpr auto fields() {
    return std::tuple(
        field("listener", &SoundState::listener), field("falloff", &SoundState::falloff), field("master_gain", &SoundState::master_gain),
        field("playing", &SoundState::playing), derived("started", &SoundState::started), field("fades", &SoundState::fades),
        field("next_handle", &SoundState::next_handle), field("clock", &SoundState::clock), field("starts", &SoundState::starts));
  }
};

class Audio : public SoundState {
 public:
  std::vector<Clip> clips;  // by sound number; nameless: no such sound

  bool has_sound(std::int32_t sound) const;
  // Gives the handle. Devices play the most important ones; the model has room for all.
  std::int32_t play(const Voice& voice);
  // By handle, or every voice of a sound asset.
  void stop(std::int32_t handle_or_sound);
  void stop_all();
  void set_paused(std::int32_t handle_or_sound, bool paused);
  void set_gain(std::int32_t handle_or_sound, double gain, double seconds);
  void set_pitch(std::int32_t handle_or_sound, double pitch);
  bool is_playing(std::int32_t handle_or_sound) const;
  bool is_paused(std::int32_t handle_or_sound) const;
  bool exists(std::int32_t handle_or_sound) const;
  const Voice* find(std::int32_t handle) const;
  // The groups that should sound, each as the loudest of its members, the most important first.
  std::vector<Voice> sounding() const;
  // Game time passes: voices end.
  void advance(double seconds);
  void feed(Device& device) const;
  const std::vector<Voice>& voices() const { return playing; }
  // Loudness of a voice at the listener by the falloff model, 0 to its gain.
  double loudness(const Voice& voice) const;
  // Voices started since last asked.
  std::vector<Voice> take_started();

  using State = SoundState;
  void save(State& into) const { into = static_cast<const SoundState&>(*this); }
  void load(const State& from) { static_cast<SoundState&>(*this) = from; }
  void restart() { static_cast<SoundState&>(*this) = SoundState(); }  // nothing sounds, nothing was started

 private:
  template <class Voices>
  static auto at_handle(Voices& voices, std::int32_t handle);
  template <class Change>
  void for_matching(std::int32_t handle_or_sound, Change change);
};

Audio& audio();
// The sound played at the nearest end of every volume: the gain factor of a distance.
double falloff_gain(Falloff model, double distance, double reference, double maximum, double factor);

}  // namespace arena::audio
