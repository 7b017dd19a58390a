#include "apps/user_files.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "apps/game_description.h"
#include "engine/files/paths.h"
#include "runtime/reports/log.h"

namespace arena::apps {

namespace {

constexpr std::size_t kLargestLog = 8 << 20;  // bytes

// Named after the game, arena.log; when it is full, or another run's, it becomes arena-1.log in place of an older one.
class LogFile {
 public:
  explicit LogFile(std::filesystem::path folder) : folder_(std::move(folder)) { begin(); }
  void write(std::string_view line) {
    if (written_ + line.size() + 1 > kLargestLog) begin();
    stream_ << line << "\n" << std::flush;
    written_ += line.size() + 1;
  }

 private:
  void begin() {
    stream_.close();
    stream_.clear();
    written_ = 0;
    if (folder_.empty()) return;
    std::error_code ignored;  // what cannot be kept is written over
    const std::string name = game_description().name;
    std::filesystem::rename(folder_ / (name + ".log"), folder_ / (name + "-1.log"), ignored);
    stream_.open(folder_ / (name + ".log"));
  }

  std::filesystem::path folder_;
  std::ofstream stream_;
  std::size_t written_ = 0;
};

// What is kept of one run after the other bears numbers that go on: the order of the runs, whatever the clock says.
struct Numbered {
  std::uint32_t number;
  std::filesystem::path path;
};

// In that order.
std::vector<Numbered> numbered_in(const std::filesystem::path& folder, std::string_view prefix, std::string_view ending) {
  std::vector<Numbered> found;
  std::error_code ignored;
  for (const auto& each : std::filesystem::directory_iterator(folder, ignored)) {
    const std::string name = files::utf8_of(each.path().filename());
    if (name.size() <= prefix.size() + ending.size() || !name.starts_with(prefix) || !name.ends_with(ending)) continue;
    const char *const first = name.data() + prefix.size(), *const last = name.data() + name.size() - ending.size();
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(first, last, number);
    if (error == std::errc() && end == last && number < UINT32_MAX) found.push_back({number, each.path()});
  }
  std::sort(found.begin(), found.end(), [](const Numbered& a, const Numbered& b) { return a.number < b.number; });
  return found;
}

}  // namespace

void start_log() {
  set_log_sink([file = std::make_shared<LogFile>(files::user_data_folder(game_description().name))](std::string_view line, bool is_note) {
    if (!is_note) std::cerr << line << "\n";
    platform::keep_for_crash(line);
    file->write(line);
  });
}

void end_log() { set_log_sink({}); }

platform::CrashFolder next_crash_folder(const std::string& data) {
  constexpr std::size_t kKept = 10;  // crashes
  platform::CrashFolder next;
  const std::filesystem::path folder = files::user_data_folder(game_description().name);
  next.trouble = std::string(game_description().name) + ": there is no place for what is left of a crash";
  if (folder.empty()) return next;
  next.crashes = folder / "crashes";
  next.trouble = std::string(game_description().name) + ": " + files::on_one_line(files::utf8_of(next.crashes)) +
                 ": what is left of a crash cannot be written";
  const std::vector<Numbered> crashes = numbered_in(next.crashes, "crash-", "");
  std::error_code ignored;
  std::size_t oldest = 0;
  for (; oldest + kKept < crashes.size(); ++oldest) std::filesystem::remove_all(crashes[oldest].path, ignored);
  if (crashes.size() >= kKept) next.oldest = crashes[oldest].path;
  if (!crashes.empty()) next.number = static_cast<std::uintptr_t>(crashes.back().number) + 1;
  const std::filesystem::path program = files::program_file();
  next.play = program.empty() ? game_description().name : files::shell_word(files::utf8_of(program));
  if (!data.empty()) next.play += " --data " + files::shell_word(files::utf8_of(std::filesystem::absolute(files::path_of(data), ignored)));
  next.play += " --replay";
  next.play_until = "--before-fault";
  return next;
}

std::filesystem::path new_recording_file() {
  constexpr std::size_t kKept = 20;  // runs, the new one included
  std::filesystem::path folder = files::user_data_folder(game_description().name);
  if (folder.empty()) return folder;
  folder /= "recordings";
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  const std::vector<Numbered> runs = numbered_in(folder, "run-", ".rec");
  for (std::size_t i = 0; i + kKept <= runs.size(); ++i) std::filesystem::remove(runs[i].path, ignored);
  return folder / ("run-" + std::to_string(runs.empty() ? 1 : runs.back().number + 1) + ".rec");
}

std::string save_folder() {
  const std::filesystem::path folder = files::user_data_folder(game_description().name);
  return folder.empty() ? "" : files::utf8_of(folder / "saves");
}

std::string screenshot_folder() {
#ifdef _WIN32
  const std::filesystem::path here = files::program_file().parent_path() / "Screenshots";
#else
  const std::filesystem::path here = "Screenshots";
#endif
  const std::filesystem::path pictures = files::pictures_folder();
  const bool is_second_best = !pictures.empty() && !files::can_write_in(here);
  return files::utf8_of(is_second_best ? pictures / game_description().name : here);
}

}  // namespace arena::apps
