#pragma once
// Sound as a model in game time: voices with handles, positions, gains and ends. A device follows the model; without one the game is
// the same game. Positions are room pixels, times seconds of game time.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

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
};

// What follows the model. Called once a frame with every group that should sound, the most important first: its handle is the group's.
class Device {
 public:
  virtual ~Device() = default;
  virtual void load(const std::vector<Clip>& clips) = 0;
  struct Listener {
    double x = 0, y = 0, z = 0;
    double at[3] = {0, 0, 1}, up[3] = {0, -1, 0};
  };
  virtual void follow(const std::vector<Voice>& voices, const Listener& listener, Falloff falloff, double master_gain) = 0;
};

class Audio {
 public:
  std::vector<Clip> clips;  // by sound number; nameless: no such sound
  Device::Listener listener;
  Falloff falloff = Falloff::kNone;
  double master_gain = 1;

  bool has_sound(std::int32_t sound) const;
  // Gives the handle. Devices play the most important ones; the model has room for all.
  std::int32_t play(const Voice& voice);
  // By handle, or every voice of a sound asset.
  void stop(std::int32_t handle_or_sound);
  void stop_all();
  // As at start: nothing sounds, nothing was started.
  void reset();
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
  const std::vector<Voice>& voices() const { return voices_; }
  // Loudness of a voice at the listener by the falloff model, 0 to its gain.
  double loudness(const Voice& voice) const;
  // Voices started since last asked.
  std::vector<Voice> take_started();

 private:
  struct Fade {
    std::int32_t handle;
    double target, per_second;
  };
  template <class Voices>
  static auto at_handle(Voices& voices, std::int32_t handle);
  template <class Change>
  void for_matching(std::int32_t handle_or_sound, Change change);
  std::vector<Voice> voices_, started_;
  std::vector<Fade> fades_;
  std::int32_t next_handle_ = kFirstHandle;
  double clock_ = 0;  // seconds of game time
  struct Start {
    std::int32_t group = 0;
    double time = -1;
  };
  std::map<std::pair<std::int32_t, bool>, Start> starts_;  // the newest group of each sound, with and without a place
};

Audio& audio();
// The sound played at the nearest end of every volume: the gain factor of a distance.
double falloff_gain(Falloff model, double distance, double reference, double maximum, double factor);

}  // namespace arena::audio
