#include "engine/files/paths.h"

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
// The folder that the environment names, or this one in the user's home.
std::filesystem::path user_folder(const char* variable, const char* below_home) {
  const char* const named = std::getenv(variable);
  if (named != nullptr && *named == '/') return named;  // relative ones count as unset
  const char* const home = std::getenv("HOME");
  return home != nullptr && *home != 0 ? std::filesystem::path(home) / below_home : std::filesystem::path();
}
#endif

}  // namespace

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

std::filesystem::path user_data_folder() {
#ifdef _WIN32
  const std::filesystem::path base = known_folder(FOLDERID_LocalAppData);
#else
  const std::filesystem::path base = user_folder("XDG_DATA_HOME", ".local/share");
#endif
  return base.empty() ? base : made(base / "arena");
}

std::filesystem::path pictures_folder() {
#ifdef _WIN32
  return known_folder(FOLDERID_Pictures);
#else
  return user_folder("XDG_PICTURES_DIR", "Pictures");
#endif
}

bool can_write_in(const std::filesystem::path& folder) {
  if (made(folder).empty()) return false;
  const std::filesystem::path probe = folder / ".arena-writes-here";
  const bool writes = std::ofstream(probe).put('.').good();
  std::error_code ignored;
  std::filesystem::remove(probe, ignored);
  return writes;
}

}  // namespace arena::files
