#include "engine/recording/replay.h"

#include <algorithm>

#include "engine/host/state_hash.h"
#include "runtime/checks/assert.h"
#include "runtime/input/outside.h"

namespace arena::recording {
namespace {

// By name; "state" when no short figure of a part tells where.
std::vector<std::string> different_parts(const Checkpoint& said, const Checkpoint& now) {
  std::vector<std::string> found;
  if (now.hash == said.hash) return found;
  const auto note_missing = [&](const std::vector<Checkpoint::Figure>& from, const std::vector<Checkpoint::Figure>& in) {
    for (const Checkpoint::Figure& figure : from) {
      const bool is_known = std::find(found.begin(), found.end(), figure.part) != found.end();
      if (!is_known && std::find(in.begin(), in.end(), figure) == in.end()) found.push_back(figure.part);
    }
  };
  note_missing(said.figures, now.figures);
  note_missing(now.figures, said.figures);
  if (found.empty()) found.emplace_back("state");
  return found;
}

}  // namespace

std::string misfit(const Beginning& recorded, const Beginning& here) {
  if (recorded.game != here.game) return "the recording is of '" + recorded.game + "', this is '" + here.game + "'";
  if (!recorded.version.empty() && recorded.version != here.version) {
    return "the recording was made by version " + recorded.version + " of the game, this is version " + here.version;
  }
  if (recorded.data_hash != 0 && recorded.data_hash != here.data_hash) return "the recording was made with another data file";
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

const std::vector<std::string>& Replay::answers() const {
  if (is_finished_) return recording_.last_answers;
  return frame_ == 0 ? recording_.start.answers : recording_.frames[frame_ - 1].answers;
}

// A script that asks more often than it did is on another way already, and gets nothing.
std::string Replay::next_answer() { return answer_ < answers().size() ? answers()[answer_++] : std::string(); }

// Its questions were asked when it ran.
void Replay::restart_at(std::size_t frame) {
  ARENA_ASSERT(frame <= frames());
  frame_ = frame;
  is_finished_ = false;
  answer_ = answers().size();
  requests_ = 0;
}

void Replay::after_frame() {
  if (witness_ != nullptr) witness_->after_frame();
}

void Replay::perform(const std::vector<std::string>& requests) {
  if (!perform_) return;
  for (const std::string& request : requests) perform_(request);
}

void Replay::console_says(const std::string& text) {
  if (witness_ != nullptr) witness_->hear(text);
}

bool Replay::finish() {
  if (is_finished_ || recording_.last_requests.empty()) return false;
  is_finished_ = true;
  answer_ = 0;
  perform(recording_.last_requests);
  requests_ = recording_.last_requests.size();
  return true;
}

void Replay::step(host::Game& game) {
  const SessionScope scope(game.session());
  const Frame& next = recording_.frames[frame_++];
  answer_ = requests_ = 0;
  perform(next.requests);
  replace_queued_input(next.input);
  game.run_frame(next.microseconds);
}

std::size_t Replay::checkpoints_passed() const {
  const auto next = std::upper_bound(recording_.checkpoints.begin(), recording_.checkpoints.end(), frame_,
                                     [](std::size_t frames, const Checkpoint& each) { return frames < each.frames; });
  return static_cast<std::size_t>(next - recording_.checkpoints.begin());
}

std::vector<std::string> Replay::differences() {
  const std::pair<std::size_t, std::size_t> here(frame_, requests_);
  const auto said =
      std::lower_bound(recording_.checkpoints.begin(), recording_.checkpoints.end(), here,
                       [](const Checkpoint& each, const auto& place) { return std::pair(each.frames, each.requests) < place; });
  if (said == recording_.checkpoints.end() || std::pair(said->frames, said->requests) != here) return {};
  std::vector<std::string> found = different_parts(*said, checkpoint_of(frame_, host::state_figures(), recording_.figure_bits));
  if (witness_ == nullptr) return found;
  const Witnessed now = witness_->take();
  if (!said->shown.has_value()) return found;
  if (now.drawing != said->shown->drawing) found.emplace_back("drawing calls");
  if (now.sounds != said->shown->sounds) found.emplace_back("sounds that started");
  if (now.replies != said->shown->replies) found.emplace_back("replies");
  return found;
}

std::string Replay::difference() {
  const std::vector<std::string> parts = differences();
  if (parts.empty()) return "";
  std::string words = "from second " + std::to_string(checkpoints_passed()) + " on (by frame " + std::to_string(frame()) + "), in ";
  for (std::size_t i = 0; i < parts.size(); ++i) words += (i > 0 ? ", " : "") + parts[i];
  return words;
}

std::string same_run(const Replay& replay) {
  return "the same run: " + std::to_string(replay.frame()) + " frames, " + std::to_string(replay.checkpoints_passed()) + " hashes";
}

}  // namespace arena::recording
