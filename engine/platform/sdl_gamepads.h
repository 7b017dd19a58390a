#pragma once
// Gamepads on SDL 2: its database says which button is which. What happens to them is pushed into the input queue, and they do what the
// game's state says of them.
#include <SDL.h>

#include <cstdint>
#include <map>
#include <vector>

namespace arena::platform {

class SdlGamepads {
 public:
  SdlGamepads();
  ~SdlGamepads();
  SdlGamepads(const SdlGamepads&) = delete;
  SdlGamepads& operator=(const SdlGamepads&) = delete;

  // All that are there, as if they were plugged in now, and nothing else.
  void announce();
  // Events of other kinds are left alone.
  void handle(const SDL_Event& event);
  // After the last event for now: axes are told, and the devices follow the state of the current session.
  void end_poll();

 private:
  // What a device was told last.
  struct Told {
    std::uint32_t body = 0, triggers = 0;
    std::int32_t light = -1, player = -1;
    bool motion = false;
  };
  struct Device {
    SDL_GameController* controller;
    Told told = {};
  };
  struct Move {
    std::int32_t device;
    int axis;
    bool is_sensor;
    double value;
  };
  void plug_in(int index);
  void plug_out(std::int32_t device);
  void push(std::int32_t number, const Device& device);
  void move(std::int32_t device, int axis, double position);
  void feel(const SDL_ControllerSensorEvent& event);
  void tell_moves();
  void follow();

  bool is_there_ = false;
  std::map<std::int32_t, Device> devices_;  // by SDL's number of the plugging in
  std::vector<Move> moves_;                 // not told yet
};

}  // namespace arena::platform
