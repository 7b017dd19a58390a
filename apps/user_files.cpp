#include "apps/user_files.h"

#include <fstream>
#include <iostream>
#include <memory>

#include "engine/files/paths.h"
#include "runtime/variables_calls/log.h"

namespace arena::apps {

void start_log() {
  const std::filesystem::path folder = files::user_data_folder();
  auto file = std::make_shared<std::ofstream>();
  if (!folder.empty()) file->open(folder / "arena.log");
  set_log_sink([file](std::string_view line) {
    std::cerr << line << "\n";
    if (file->is_open()) *file << line << "\n" << std::flush;
  });
}

std::filesystem::path crash_report_file() {
  const std::filesystem::path folder = files::user_data_folder();
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
  return files::utf8_of(is_second_best ? pictures / "arena" : here);
}

}  // namespace arena::apps
