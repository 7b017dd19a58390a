#include "engine/platform/sdl_gamepads.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "runtime/input/gamepads.h"
#include "runtime/reports/log.h"

namespace arena::platform {
namespace {

constexpr double kFullAxis = 32768, kDegrees = 57.29577951308232, kEarth = 9.80665;

const char* text_or_none(const char* text) { return text != nullptr ? text : ""; }

// What is printed on its buttons. Buttons are told apart by where they lie.
const char* labels_of(SDL_GameController* controller) {
  switch (SDL_GameControllerGetType(controller)) {
    case SDL_CONTROLLER_TYPE_XBOX360:
    case SDL_CONTROLLER_TYPE_XBOXONE: return "letters";
    case SDL_CONTROLLER_TYPE_PS3:
    case SDL_CONTROLLER_TYPE_PS4:
    case SDL_CONTROLLER_TYPE_PS5: return "shapes";
    case SDL_CONTROLLER_TYPE_NINTENDO_SWITCH_PRO: return "swapped letters";
    default: return "";
  }
}

PadDescription description_of(SDL_GameController* controller) {
  PadDescription made;
  char guid[33];
  SDL_JoystickGetGUIDString(SDL_JoystickGetGUID(SDL_GameControllerGetJoystick(controller)), guid, sizeof guid);
  made.guid = guid;
  made.serial = text_or_none(SDL_GameControllerGetSerial(controller));
  made.name = text_or_none(SDL_GameControllerName(controller));
  made.labels = labels_of(controller);
  if (SDL_GameControllerHasRumble(controller)) made.abilities += "vibration ";
  if (SDL_GameControllerHasRumbleTriggers(controller)) made.abilities += "trigger-vibration ";
  if (SDL_GameControllerHasLED(controller)) made.abilities += "light ";
  if (SDL_GameControllerHasSensor(controller, SDL_SENSOR_GYRO)) made.abilities += "motion ";
  return made;
}

std::uint16_t motor(double strength) { return static_cast<std::uint16_t>(std::lround(strength * 65535)); }
std::uint32_t milliseconds(double seconds) { return static_cast<std::uint32_t>(std::ceil(seconds * 1000)); }

}  // namespace

SdlGamepads::SdlGamepads() {
  SDL_SetHint(SDL_HINT_GAMECONTROLLER_USE_BUTTON_LABELS, "0");
  is_there_ = SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) == 0;
  if (!is_there_) log_note(std::string("no gamepads can be used: ") + SDL_GetError());
}

SdlGamepads::~SdlGamepads() {
  for (const auto& [number, device] : devices_) SDL_GameControllerClose(device.controller);
  if (is_there_) SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

void SdlGamepads::announce() {
  moves_.clear();
  push_pad_gone(-1);
  for (auto& [number, device] : devices_) {
    device.told = {};
    push(number, device);
  }
}

void SdlGamepads::push(std::int32_t number, const Device& device) { push_pad(number, description_of(device.controller)); }

void SdlGamepads::plug_in(int index) {
  SDL_GameController* const controller = SDL_GameControllerOpen(index);
  if (controller == nullptr) return log_note(std::string("a gamepad cannot be used: ") + SDL_GetError());
  const std::int32_t number = SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(controller));
  if (!devices_.emplace(number, Device{controller}).second) return SDL_GameControllerClose(controller);
  tell_moves();
  push(number, devices_.at(number));
}

void SdlGamepads::plug_out(std::int32_t number) {
  const auto found = devices_.find(number);
  if (found == devices_.end()) return;
  tell_moves();
  push_pad_gone(number);
  SDL_GameControllerClose(found->second.controller);
  devices_.erase(found);
}

// Of a way in one direction only the end is told: pads say every millimetre, and nothing follows from what lies in between.
void SdlGamepads::move(std::int32_t device, int axis, double position) {
  Move* last[2] = {};
  for (auto each = moves_.rbegin(); each != moves_.rend() && last[1] == nullptr; ++each) {
    if (!each->is_sensor && each->device == device && each->axis == axis) last[last[0] != nullptr ? 1 : 0] = &*each;
  }
  const bool goes_on = last[1] != nullptr && (last[0]->value - last[1]->value) * (position - last[0]->value) >= 0;
  if (goes_on) {
    last[0]->value = position;
  } else {
    moves_.push_back({device, axis, false, position});
  }
}

// Only the latest counts.
void SdlGamepads::feel(const SDL_ControllerSensorEvent& event) {
  if (event.sensor != SDL_SENSOR_GYRO && event.sensor != SDL_SENSOR_ACCEL) return;
  const bool turns = event.sensor == SDL_SENSOR_GYRO;
  for (int i = 0; i < 3; ++i) {
    const Move next{event.which, (turns ? 0 : 3) + i, true, static_cast<double>(event.data[i]) * (turns ? kDegrees : 1 / kEarth)};
    const auto known = std::find_if(moves_.begin(), moves_.end(), [&](const Move& each) {
      return each.is_sensor && each.device == next.device && each.axis == next.axis;
    });
    if (known != moves_.end()) {
      known->value = next.value;
    } else {
      moves_.push_back(next);
    }
  }
}

void SdlGamepads::tell_moves() {
  for (const Move& each : moves_) (each.is_sensor ? push_pad_sensor : push_pad_axis)(each.device, each.axis, each.value);
  moves_.clear();
}

void SdlGamepads::handle(const SDL_Event& event) {
  switch (event.type) {
    case SDL_CONTROLLERDEVICEADDED: plug_in(event.cdevice.which); break;
    case SDL_CONTROLLERDEVICEREMOVED: plug_out(event.cdevice.which); break;
    case SDL_CONTROLLERBUTTONDOWN:
    case SDL_CONTROLLERBUTTONUP:
      if (!devices_.contains(event.cbutton.which)) break;
      push_pad_button(event.cbutton.which, event.cbutton.button, event.type == SDL_CONTROLLERBUTTONDOWN);
      break;
    case SDL_CONTROLLERAXISMOTION:
      if (devices_.contains(event.caxis.which)) move(event.caxis.which, event.caxis.axis, event.caxis.value / kFullAxis);
      break;
    case SDL_CONTROLLERSENSORUPDATE:
      if (devices_.contains(event.csensor.which)) feel(event.csensor);
      break;
    case SDL_JOYDEVICEADDED:
      if (SDL_IsGameController(event.jdevice.which) == SDL_FALSE)
        log_note(std::string(text_or_none(SDL_JoystickNameForIndex(event.jdevice.which))) + " is no gamepad that the database knows");
      break;
    default: break;
  }
}

void SdlGamepads::end_poll() {
  tell_moves();
  follow();
}

void SdlGamepads::follow() {
  for (int place = 0; place < kPads; ++place) {
    const Pad& pad = gamepads().data()[place];
    const auto found = pad.is_connected ? devices_.find(pad.device) : devices_.end();
    if (found == devices_.end()) continue;
    SDL_GameController* const controller = found->second.controller;
    Told& told = found->second.told;
    if (std::exchange(told.body, pad.body.asked) != pad.body.asked)
      SDL_GameControllerRumble(controller, motor(pad.body.first), motor(pad.body.second), milliseconds(pad.body.seconds));
    if (std::exchange(told.triggers, pad.triggers.asked) != pad.triggers.asked)
      SDL_GameControllerRumbleTriggers(controller, motor(pad.triggers.first), motor(pad.triggers.second),
                                       milliseconds(pad.triggers.seconds));
    if (std::exchange(told.light, pad.light) != pad.light && pad.light >= 0) {
      const auto channel = [&](int shift) { return static_cast<std::uint8_t>(pad.light >> shift & 255); };
      SDL_GameControllerSetLED(controller, channel(0), channel(8), channel(16));
    }
    const std::int32_t player = pad.player >= 0 ? pad.player : place;
    if (std::exchange(told.player, player) != player) SDL_GameControllerSetPlayerIndex(controller, player);
    if (std::exchange(told.motion, pad.wants_motion) != pad.wants_motion) {
      for (const SDL_SensorType sensor : {SDL_SENSOR_GYRO, SDL_SENSOR_ACCEL})
        SDL_GameControllerSetSensorEnabled(controller, sensor, pad.wants_motion ? SDL_TRUE : SDL_FALSE);
    }
  }
}

}  // namespace arena::platform
