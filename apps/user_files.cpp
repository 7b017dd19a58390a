#include "apps/user_files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "runtime/variables_calls/log.h"

namespace arena::apps {

std::string user_data_folder() {
#ifdef _WIN32
  const char* base = std::getenv("LOCALAPPDATA");
  const std::filesystem::path folder = base != nullptr ? std::filesystem::path(base) / "arena" : std::filesystem::path();
#else
  const char* base = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  const std::filesystem::path folder = base != nullptr && *base != 0 ? std::filesystem::path(base) / "arena"
                                       : home != nullptr             ? std::filesystem::path(home) / ".local/share/arena"
                                                                     : std::filesystem::path();
#endif
  std::error_code failure;
  if (folder.empty()) return {};
  std::filesystem::create_directories(folder, failure);
  return failure ? std::string() : folder.string();
}

void start_log() {
  const std::string folder = user_data_folder();
  auto file = std::make_shared<std::ofstream>();
  if (!folder.empty()) file->open(folder + "/arena.log");
  set_log_sink([file](std::string_view line) {
    std::cerr << line << "\n";
    if (file->is_open()) *file << line << "\n" << std::flush;
  });
}

std::string write_crash_report(const std::string& report) {
  const std::string folder = user_data_folder();
  if (folder.empty()) return {};
  const std::string path = folder + "/crash-report.txt";
  std::ofstream stream(path);
  stream << report;
  return stream ? path : std::string();
}

}  // namespace arena::apps
