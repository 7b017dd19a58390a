#include "apps/user_files.h"

#include <fstream>
#include <iostream>
#include <memory>

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
