#include "engine/files/paths.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#ifdef _WIN32
#include <shlobj.h>
#include <windows.h>
#endif

namespace arena::files {
namespace {

std::filesystem::path made(const std::filesystem::path& folder) {
  std::error_code failure;
  if (!folder.empty()) std::filesystem::create_directories(folder, failure);
  return failure ? std::filesystem::path() : folder;
}

#ifdef _WIN32
std::filesystem::path known_folder(const KNOWNFOLDERID& which) {
  wchar_t* text = nullptr;
  std::filesystem::path folder;
  if (SUCCEEDED(SHGetKnownFolderPath(which, 0, nullptr, &text))) folder = text;
  CoTaskMemFree(text);
  return folder;
}
#else
std::filesystem::path named_by(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : "";  // relative ones count as unset
}

std::filesystem::path in_home(std::string_view name) {
  const char* const home = std::getenv("HOME");
  return home != nullptr && *home != 0 ? std::filesystem::path(home) / name : std::filesystem::path();
}

std::filesystem::path first_of(const std::filesystem::path& wanted, const std::filesystem::path& otherwise) {
  return wanted.empty() ? otherwise : wanted;
}

// Desktops keep where the user's folders are, often in the user's language, in lines like XDG_PICTURES_DIR="$HOME/Bilder".
std::filesystem::path named_by_desktop(const std::string& variable) {
  const std::string start = variable + "=\"", home = "$HOME/";
  std::ifstream file(first_of(named_by("XDG_CONFIG_HOME"), in_home(".config")) / "user-dirs.dirs");
  for (std::string line; std::getline(file, line);) {
    const std::size_t end = line.rfind('"');
    if (line.rfind(start, 0) != 0 || end < start.size()) continue;
    const std::string value = line.substr(start.size(), end - start.size());
    if (value.rfind(home, 0) == 0) return in_home(value.substr(home.size()));
    if (value.rfind('/', 0) == 0) return value;
  }
  return {};
}
#endif

}  // namespace

std::filesystem::path path_of(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

std::string utf8_of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string on_one_line(std::string text) {
  for (char& each : text) {
    if (static_cast<unsigned char>(each) < ' ' || each == 127) each = '?';
  }
  return text;
}

std::string shell_word(const std::string& text) {
#ifdef _WIN32
  constexpr std::string_view kHarmless = "/._-+:=,\\";
#else
  constexpr std::string_view kHarmless = "/._-+:=,";
#endif
  const auto is_harmless = [&](char each) {
    return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') || (each >= '0' && each <= '9') ||
           kHarmless.find(each) != std::string_view::npos;
  };
  if (!text.empty() && std::all_of(text.begin(), text.end(), is_harmless)) return text;
#ifdef _WIN32
  return '"' + text + '"';  // no path has one inside
#else
  std::string word = "'";
  for (const char each : text) each == '\'' ? word += "'\\''" : word += each;
  return word + "'";
#endif
}

std::filesystem::path program_file() {
#ifdef _WIN32
  std::wstring text(32768, L'\0');  // the longest path there is
  text.resize(GetModuleFileNameW(nullptr, text.data(), static_cast<DWORD>(text.size())));
  return text;
#else
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure);
#endif
}

std::filesystem::path user_data_folder(std::string_view program) {
#ifdef _WIN32
  const std::filesystem::path base = known_folder(FOLDERID_LocalAppData);
#else
  const std::filesystem::path base = first_of(named_by("XDG_DATA_HOME"), in_home(".local/share"));
#endif
  return base.empty() ? base : made(base / program);
}

std::filesystem::path pictures_folder() {
#ifdef _WIN32
  return known_folder(FOLDERID_Pictures);
#else
  return first_of(named_by("XDG_PICTURES_DIR"), first_of(named_by_desktop("XDG_PICTURES_DIR"), in_home("Pictures")));
#endif
}

bool can_write_in(const std::filesystem::path& folder) {
  if (made(folder).empty()) return false;
  const std::filesystem::path probe = folder / ".can-write-here";
  const bool writes = std::ofstream(probe).put('.').good();
  std::error_code ignored;
  std::filesystem::remove(probe, ignored);
  return writes;
}

}  // namespace arena::files
