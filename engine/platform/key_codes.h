#pragma once
// From the keys of the keyboard to the key codes of scripts, and what stands on the keys. Letters, digits and signs are places on the
// keyboard, named by the US layout; all other keys are what the layout makes of them. Keys are given as SDL numbers them.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace arena::platform {

// 0 for keys that have none.
int key_code(int scancode, int keycode);

// Keys that are places, by their key codes.
inline constexpr std::string_view kLettersAndDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
// ; = , - . / ` [ \ ] ' and the key beside the left Shift that US keyboards lack.
inline constexpr std::array<int, 12> kSigns = {186, 187, 188, 189, 190, 191, 192, 219, 220, 221, 222, 226};
inline constexpr std::size_t kPlaces = kLettersAndDigits.size() + kSigns.size();
constexpr int place_code(std::size_t place) {
  return place < kLettersAndDigits.size() ? kLettersAndDigits[place] : kSigns[place - kLettersAndDigits.size()];
}
// Where such a key is, as SDL numbers places.
int scancode_of(int code);
// What is printed on a key that types `keycode`: a capital where there is one. "" where the US letter serves: for dead keys, and for
// scripts without capitals, whose keyboards carry the US letters, too.
std::string key_label(int keycode);

}  // namespace arena::platform
