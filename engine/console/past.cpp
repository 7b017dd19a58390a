#include "engine/console/past.h"

#include <algorithm>
#include <utility>

#include "engine/console/draw_calls.h"
#include "engine/files/game_files.h"
#include "engine/host/game.h"

namespace arena::console {
namespace {

constexpr std::size_t kKeyframeEvery = 60;              // frames: so many are run again at most
constexpr std::size_t kMostEvaluatedBytes = 16u << 20;  // remembered; beyond them remembering begins anew
constexpr std::size_t kLongestName = 100;               // bytes

// Answers from here while one lives.
class AnswersGiven {
 public:
  explicit AnswersGiven(AnswerSource source) : before_(give_answers(std::move(source))) {}
  ~AnswersGiven() { give_answers(std::move(before_)); }
  AnswersGiven(const AnswersGiven&) = delete;
  AnswersGiven& operator=(const AnswersGiven&) = delete;

 private:
  AnswerSource before_;
};

}  // namespace

Past::Past(host::Game& game, std::function<void(const json&)> evaluate) : game_(game), evaluate_(std::move(evaluate)) {}

Past::~Past() {
  if (hears_answers_) hear_answers(std::move(heard_before_));
}

void Past::save(const std::string& name) {
  if (name.empty() || name.size() > kLongestName)
    throw RequestError{"the name of a snapshot has 1 to " + std::to_string(kLongestName) + " bytes"};
  if (named_.size() >= kMostSnapshots && !named_.contains(name))
    throw RequestError{"there are " + std::to_string(kMostSnapshots) + " snapshots already; one that has a name can be taken anew"};
  named_[name] = snapshot();
}

void Past::restore(const std::string& name) {
  const auto found = named_.find(name);
  if (found == named_.end()) throw RequestError{"there is no snapshot '" + name + "'"};
  game_.restore(*found->second);
  if (!keyframes_.empty()) begin();
}

void Past::rewind(std::int64_t frames) {
  if (keyframes_.empty()) {
    if (frames > 0) throw RequestError{"no frames are remembered; {\"rewind\": 0} begins with it"};
    return begin();
  }
  if (const std::size_t kept = std::min(moments_.size(), static_cast<std::size_t>(kMostRewound)); static_cast<std::size_t>(frames) > kept)
    throw RequestError{"the last " + std::to_string(kept) + " frames are remembered, no more"};
  const std::size_t target = last_frame() - static_cast<std::size_t>(frames);
  while (keyframes_.back().frame > target) keyframes_.pop_back();
  next_ = {};
  game_.restore(*keyframes_.back().snapshot);
  const std::size_t first = keyframes_.front().frame;
  for (; moments_.size() > target - first; moments_.pop_back()) evaluated_bytes_ -= moments_.back().bytes;
  is_running_again_ = true;
  try {
    for (std::size_t i = keyframes_.back().frame - first; i < moments_.size(); ++i) run_again(moments_[i], i + 1 == moments_.size());
  } catch (...) {
    forget();
    throw;
  }
  is_running_again_ = false;
}

void Past::note_evaluation(const json& request) {
  if (keyframes_.empty() || is_running_again_) return;
  const std::size_t bytes = request["eval"].get_ref<const std::string&>().size();
  if (evaluated_bytes_ + next_.bytes + bytes > kMostEvaluatedBytes) begin();
  next_.bytes += bytes;
  next_.evaluated.push_back(request);
}

void Past::run_frame(std::int64_t microseconds) {
  if (keyframes_.empty()) return game_.run_frame(microseconds);
  files::deliver_arrivals();
  next_.input = queued_input();
  next_.microseconds = microseconds;
  try {
    game_.run_frame(microseconds);
  } catch (...) {
    forget();  // half a frame cannot be run again
    throw;
  }
  evaluated_bytes_ += next_.bytes;
  moments_.push_back(std::exchange(next_, {}));
  if (last_frame() - keyframes_.back().frame >= kKeyframeEvery) take_keyframe();
  drop_oldest();
}

void Past::begin() {
  forget();
  take_keyframe();
  if (std::exchange(hears_answers_, true)) return;
  heard_before_ = hear_answers([this](const std::string& answer) {
    if (heard_before_) heard_before_(answer);
    if (!keyframes_.empty() && !is_running_again_) next_.answers.push_back(answer);
  });
}

void Past::forget() {
  keyframes_.clear();
  moments_.clear();
  next_ = {};
  evaluated_bytes_ = 0;
  is_running_again_ = false;
}

std::unique_ptr<Snapshot> Past::snapshot() const {
  auto taken = std::make_unique<Snapshot>();
  game_.take_snapshot(*taken);
  return taken;
}

void Past::take_keyframe() { keyframes_.push_back({keyframes_.empty() ? 0 : last_frame(), snapshot()}); }

// What no rewinding can reach.
void Past::drop_oldest() {
  while (keyframes_.size() > 1 && keyframes_[1].frame + static_cast<std::size_t>(kMostRewound) <= last_frame()) {
    for (std::size_t left = keyframes_[1].frame - keyframes_[0].frame; left > 0; --left) {
      evaluated_bytes_ -= moments_.front().bytes;
      moments_.pop_front();
    }
    keyframes_.pop_front();
  }
}

void Past::run_again(const Moment& moment, bool is_last) {
  std::size_t given = 0;
  const AnswersGiven scope([&] { return given < moment.answers.size() ? moment.answers[given++] : std::string(); });
  for (const json& request : moment.evaluated) evaluate_(request);
  replace_queued_input(moment.input);
  const FrameDrawCalls kept(is_last);
  game_.run_frame(moment.microseconds);
}

}  // namespace arena::console
