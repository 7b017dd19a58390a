#include "runtime/input/outside.h"

#include <utility>

#include "runtime/session/session.h"

namespace arena {
namespace {

struct Outside {
  std::function<void(const std::string&)> listener;
  std::function<std::string()> source;
};
const Part<Outside> part{PartLevel::kWorld, "outside"};

}  // namespace

std::string answer_from_outside(const std::function<std::string()>& ask_machine) {
  std::string answer = part().source ? part().source() : ask_machine();
  if (part().listener) part().listener(answer);
  return answer;
}

void hear_answers(std::function<void(const std::string&)> listener) { part().listener = std::move(listener); }
void give_answers(std::function<std::string()> source) { part().source = std::move(source); }

}  // namespace arena
