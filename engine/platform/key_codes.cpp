#include "engine/platform/key_codes.h"

#include <SDL_keycode.h>
#include <SDL_scancode.h>

#include <algorithm>

namespace arena::platform {
namespace {

// In the order of kSigns.
constexpr std::array<int, kSigns.size()> kSignPlaces = {SDL_SCANCODE_SEMICOLON,    SDL_SCANCODE_EQUALS,      SDL_SCANCODE_COMMA,
                                                        SDL_SCANCODE_MINUS,        SDL_SCANCODE_PERIOD,      SDL_SCANCODE_SLASH,
                                                        SDL_SCANCODE_GRAVE,        SDL_SCANCODE_LEFTBRACKET, SDL_SCANCODE_BACKSLASH,
                                                        SDL_SCANCODE_RIGHTBRACKET, SDL_SCANCODE_APOSTROPHE,  SDL_SCANCODE_NONUSBACKSLASH};

// SDL counts the digits from 1 to 9 and then 0, as they stand.
static_assert(SDL_SCANCODE_Z - SDL_SCANCODE_A == 25 && SDL_SCANCODE_0 - SDL_SCANCODE_1 == 9 && SDL_SCANCODE_KP_9 - SDL_SCANCODE_KP_1 == 8 &&
              SDLK_F24 - SDLK_F13 == 11);

// The capital of a Latin, Greek or Cyrillic letter; any other character of these scripts as it is; 0 for the rest.
int capital(int character) {
  const auto within = [&](int first, int last) { return character >= first && character <= last; };
  if (within('a', 'z') || (within(0xE0, 0xFE) && character != 0xF7)) return character - 0x20;
  if (within(0x100, 0x17F) && character != 0x131 && character != 0x138 && character != 0x149 && character != 0x17F) {
    const bool odd_is_small = character < 0x138 || within(0x14A, 0x177);
    if (character == 0x178) return character;
    return (character % 2 == 1) == odd_is_small ? character - 1 : character;
  }
  if (within(0x3B1, 0x3C9)) return character == 0x3C2 ? 0x3A3 : character - 0x20;
  if (within(0x430, 0x44F)) return character - 0x20;
  if (within(0x450, 0x45F)) return character - 0x50;
  const bool is_shown = within(0x21, 0x7E) || within(0xA1, 0xFF) || within(0x391, 0x3A9) || within(0x400, 0x42F);
  return is_shown ? character : 0;
}

}  // namespace

int key_code(int scancode, int keycode) {
  if (scancode >= SDL_SCANCODE_A && scancode <= SDL_SCANCODE_Z) return scancode - SDL_SCANCODE_A + 'A';
  if (scancode >= SDL_SCANCODE_1 && scancode <= SDL_SCANCODE_9) return scancode - SDL_SCANCODE_1 + '1';
  if (scancode == SDL_SCANCODE_0) return '0';
  if (const auto sign = std::find(kSignPlaces.begin(), kSignPlaces.end(), scancode); sign != kSignPlaces.end())
    return kSigns[static_cast<std::size_t>(sign - kSignPlaces.begin())];
  if (scancode >= SDL_SCANCODE_KP_1 && scancode <= SDL_SCANCODE_KP_9) return scancode - SDL_SCANCODE_KP_1 + 97;
  if (keycode >= SDLK_F1 && keycode <= SDLK_F12) return keycode - SDLK_F1 + 112;
  if (keycode >= SDLK_F13 && keycode <= SDLK_F24) return keycode - SDLK_F13 + 124;
  switch (keycode) {
    case SDLK_BACKSPACE: return 8;
    case SDLK_TAB: return 9;
    case SDLK_RETURN:
    case SDLK_KP_ENTER: return 13;
    case SDLK_LSHIFT:
    case SDLK_RSHIFT: return 16;
    case SDLK_LCTRL:
    case SDLK_RCTRL: return 17;
    case SDLK_LALT:
    case SDLK_RALT: return 18;
    case SDLK_PAUSE: return 19;
    case SDLK_CAPSLOCK: return 20;
    case SDLK_ESCAPE: return 27;
    case SDLK_SPACE: return 32;
    case SDLK_PAGEUP: return 33;
    case SDLK_PAGEDOWN: return 34;
    case SDLK_END: return 35;
    case SDLK_HOME: return 36;
    case SDLK_LEFT: return 37;
    case SDLK_UP: return 38;
    case SDLK_RIGHT: return 39;
    case SDLK_DOWN: return 40;
    case SDLK_INSERT: return 45;
    case SDLK_DELETE: return 46;
    case SDLK_APPLICATION: return 93;
    case SDLK_KP_0: return 96;
    case SDLK_KP_MULTIPLY: return 106;
    case SDLK_KP_PLUS: return 107;
    case SDLK_KP_MINUS: return 109;
    case SDLK_KP_PERIOD: return 110;
    case SDLK_KP_DIVIDE: return 111;
    case SDLK_NUMLOCKCLEAR: return 144;
    case SDLK_SCROLLLOCK: return 145;
    default: return 0;
  }
}

int scancode_of(int code) {
  if (code >= 'A' && code <= 'Z') return code - 'A' + SDL_SCANCODE_A;
  if (code >= '0' && code <= '9') return code == '0' ? SDL_SCANCODE_0 : code - '1' + SDL_SCANCODE_1;
  const auto sign = std::find(kSigns.begin(), kSigns.end(), code);
  return sign != kSigns.end() ? kSignPlaces[static_cast<std::size_t>(sign - kSigns.begin())] : SDL_SCANCODE_UNKNOWN;
}

std::string key_label(int keycode) {
  const int shown = (keycode & SDLK_SCANCODE_MASK) == 0 ? capital(keycode) : 0;
  if (shown == 0) return "";
  if (shown < 0x80) return std::string(1, static_cast<char>(shown));
  return {static_cast<char>(0xC0 | shown >> 6), static_cast<char>(0x80 | (shown & 0x3F))};
}

}  // namespace arena::platform
