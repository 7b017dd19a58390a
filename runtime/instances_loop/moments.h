#pragma once
// What scripts call worth finding again: a wave, a death. It is no state of the game, and the game never hears who listens.
#include <functional>
#include <string_view>

namespace arena {

void mark_moment(std::string_view text);
// Hears of every moment of the current session; empty: nobody does.
void hear_moments(std::function<void(std::string_view text)> listener);

}  // namespace arena
