// One recording in two builds of the game, frame by frame: where the other one goes its own way, and in what.
#include <iostream>

#include "apps/modes.h"
#include "engine/files/paths.h"
#include "engine/host/state_hash.h"
#include "engine/platform/child_output.h"
#include "engine/platform/end_requests.h"
#include "engine/recording/replay.h"

namespace arena::apps {
namespace {

using platform::ChildOutput;
using platform::NextTick;

class CompareMode final : public Mode {
 public:
  CompareMode(host::Game& game, recording::Replay& replay, const Options& options)
      : game_(game), replay_(replay), options_(options), other_(start({"--hashes", "-"})) {}

  NextTick tick() override {
    if (platform::end_request() != 0) return NextTick::kNever;
    if (other_ == nullptr) return fail(files::on_one_line(options_.compare) + ": the program cannot be started");
    std::string line;
    if (!other_->next(line)) return end();
    if (replay_.is_at_end()) return fail("the other build goes on behind the last frame");
    replay_.step(game_);
    if (line == hash_line(replay_.frame())) return NextTick::kAtOnce;
    other_.reset();
    return fail("the builds differ from frame " + std::to_string(replay_.frame()) + " on" + what_differs());
  }

 private:
  std::unique_ptr<ChildOutput> start(std::vector<std::string> how) const {
    how.insert(how.end(), {"--headless", "--replay", options_.replay});
    if (!options_.data.empty()) how.insert(how.end(), {"--data", options_.data});
    if (options_.frames >= 0) how.insert(how.end(), {"--frames", std::to_string(options_.frames)});
    return ChildOutput::start(files::path_of(options_.compare), how);
  }

  NextTick end() {
    const int status = other_->wait();
    if (status != 0)
      return fail("the other build ended with status " + std::to_string(status) + " behind frame " + std::to_string(replay_.frame()));
    std::cout << "the same run in both builds: " << replay_.frame() << " frames" << std::endl;
    return NextTick::kNever;
  }

  // Of the frame that has just run.
  std::string what_differs() const {
    const std::unique_ptr<ChildOutput> other = start({"--describe", "--frames", std::to_string(replay_.frame())});
    const std::string there = other != nullptr ? other->rest() : std::string();
    const std::string found = there.empty() ? std::string() : host::first_difference(host::describe_state(), there);
    return found.empty() ? std::string() : ", in " + found;
  }

  host::Game& game_;
  recording::Replay& replay_;
  const Options& options_;
  std::unique_ptr<ChildOutput> other_;
};

}  // namespace

std::unique_ptr<Mode> compare_mode(host::Game& game, recording::Replay& replay, const Options& options) {
  return std::make_unique<CompareMode>(game, replay, options);
}

}  // namespace arena::apps
