#pragma once
// What scripts ask of the machine in the middle of a frame: the clock's seed, the text on the clipboard, whether the window fills the
// screen. Every answer passes through here, so that a recording has it and a replay gives the same one.
#include <functional>
#include <string>

namespace arena {

// The machine's answer; in a replay, the one that was recorded.
std::string answer_from_outside(const std::function<std::string()>& ask_machine);

// Hears of every answer that a script gets; empty: nobody does. The one who heard before is given back, so that who comes in between can
// pass answers on.
using AnswerListener = std::function<void(const std::string& answer)>;
AnswerListener hear_answers(AnswerListener listener);
// From now on answers come from here and the machine is not asked; empty: from the machine. The source before is given back.
using AnswerSource = std::function<std::string()>;
AnswerSource give_answers(AnswerSource source);
// Whether it is the machine that answers now.
bool asks_machine();

}  // namespace arena
