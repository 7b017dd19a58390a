#include "apps/user_files.h"

#include <algorithm>
#include <cstdio>
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

}  // namespace

void start_log() {
  set_log_sink([file = std::make_shared<LogFile>(files::user_data_folder(game_description().name))](std::string_view line, bool is_note) {
    if (!is_note) std::cerr << line << "\n";
    file->write(line);
  });
}

void end_log() { set_log_sink({}); }

std::filesystem::path crash_report_file() {
  const std::filesystem::path folder = files::user_data_folder(game_description().name);
  return folder.empty() ? folder : folder / "crash-report.txt";
}

std::string write_crash_report(const std::string& report) {
  const std::filesystem::path path = crash_report_file();
  if (path.empty()) return {};
  std::ofstream stream(path);
  stream << report << std::flush;
  return stream ? files::utf8_of(path) : std::string();
}

std::filesystem::path new_recording_file() {
  constexpr std::size_t kKept = 20;  // runs, the new one included
  std::filesystem::path folder = files::user_data_folder(game_description().name);
  if (folder.empty()) return folder;
  folder /= "recordings";
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  // Names are numbers that go on: the order of the runs, whatever the clock says.
  std::vector<std::pair<std::uint64_t, std::filesystem::path>> runs;
  for (const auto& each : std::filesystem::directory_iterator(folder, ignored)) {
    const std::string name = files::utf8_of(each.path().filename());
    unsigned long long number = 0;
    int end = 0;
    if (std::sscanf(name.c_str(), "run-%llu.rec%n", &number, &end) == 1 && static_cast<std::size_t>(end) == name.size())
      runs.emplace_back(number, each.path());
  }
  std::sort(runs.begin(), runs.end());
  const std::uint64_t next = runs.empty() ? 1 : runs.back().first + 1;
  for (std::size_t i = 0; i + kKept <= runs.size(); ++i) std::filesystem::remove(runs[i].second, ignored);
  return folder / ("run-" + std::to_string(next) + ".rec");
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
