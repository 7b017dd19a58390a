#pragma once
// From the keys of the keyboard to the key codes of scripts, and what stands on the keys. Letters and digits are places on the keyboard,
// named by the US layout; all other keys are what the layout makes of them. Keys are given as SDL numbers them.
#include <string>
#include <string_view>

namespace arena::platform {

// 0 for keys that have none.
int key_code(int scancode, int keycode);

// The key codes of letters and digits.
inline constexpr std::string_view kPlaces = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
// Where such a key is, as SDL numbers places.
int scancode_of(char place);
// What is printed on a key that types `keycode`: a capital where there is one. "" where the US letter serves: for dead keys, and for
// scripts without capitals, whose keyboards carry the US letters, too.
std::string key_label(int keycode);

}  // namespace arena::platform
