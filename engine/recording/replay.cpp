#include "engine/recording/replay.h"

#include <algorithm>

#include "engine/host/state_hash.h"
#include "runtime/checks/assert.h"
#include "runtime/input/outside.h"

namespace arena::recording {

std::string misfit(const Beginning& recorded, const Beginning& here) {
  if (recorded.game != here.game) return "the recording is of '" + recorded.game + "', this is '" + here.game + "'";
  if (recorded.version != here.version) {
    return "the recording was made by version " + recorded.version + " of the game, this is version " + here.version;
  }
  if (recorded.data_hash != here.data_hash) return "the recording was made with another data file";
  return "";
}

void Replay::prepare(host::GameOptions& options) {
  options.room = recording_.beginning.room;
  options.has_seed = recording_.beginning.has_seed;
  options.seed = recording_.beginning.seed;
  options.first_input = &recording_.start.input;
  options.listener = this;
}

void Replay::before_start() {
  give_answers([this] { return next_answer(); });
}

// Those of the frame that runs; a script that asks more often than it did is on another way already, and gets nothing.
std::string Replay::next_answer() { return answer_ < running().answers.size() ? running().answers[answer_++] : std::string(); }

// Its questions were asked when it ran.
void Replay::restart_at(std::size_t frame) {
  ARENA_ASSERT(frame <= frames());
  frame_ = frame;
  answer_ = running().answers.size();
}

void Replay::step(host::Game& game) {
  const SessionScope scope(game.session());
  const Frame& next = recording_.frames[frame_++];
  answer_ = 0;
  replace_queued_input(next.input);
  game.run_frame(next.microseconds);
}

std::size_t Replay::checkpoints_passed() const {
  const auto next = std::upper_bound(recording_.checkpoints.begin(), recording_.checkpoints.end(), frame_,
                                     [](std::size_t frames, const Checkpoint& each) { return frames < each.frames; });
  return static_cast<std::size_t>(next - recording_.checkpoints.begin());
}

std::vector<std::string> Replay::differences() const {
  const auto said = std::lower_bound(recording_.checkpoints.begin(), recording_.checkpoints.end(), frame_,
                                     [](const Checkpoint& each, std::size_t frames) { return each.frames < frames; });
  std::vector<std::string> found;
  if (said == recording_.checkpoints.end() || said->frames != frame_) return found;
  const Checkpoint now = checkpoint_of(frame_, host::state_figures());
  if (now.hash == said->hash) return found;
  const auto note_missing = [&](const std::vector<Checkpoint::Figure>& from, const std::vector<Checkpoint::Figure>& in) {
    for (const Checkpoint::Figure& figure : from) {
      const bool is_known = std::find(found.begin(), found.end(), figure.part) != found.end();
      if (!is_known && std::find(in.begin(), in.end(), figure) == in.end()) found.push_back(figure.part);
    }
  };
  note_missing(said->figures, now.figures);
  note_missing(now.figures, said->figures);
  if (found.empty()) found.push_back("state");
  return found;
}

std::string Replay::difference() const {
  const std::vector<std::string> parts = differences();
  if (parts.empty()) return "";
  std::string words = "from second " + std::to_string(checkpoints_passed()) + " on (by frame " + std::to_string(frame()) + "), in ";
  for (std::size_t i = 0; i < parts.size(); ++i) words += (i > 0 ? ", " : "") + parts[i];
  return words;
}

}  // namespace arena::recording
