#include "engine/platform/system_machine.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>

#include "engine/files/paths.h"
#include "runtime/calendar/calendar.h"

namespace arena::platform {
namespace {

bool local_time(std::int64_t utc_seconds, std::tm& local) {
#ifdef _WIN32
  // Its library knows no time before 1970 and none behind 3000.
  const std::time_t moment = static_cast<std::time_t>(std::clamp<std::int64_t>(utc_seconds, 0, 32'535'000'000));
  return localtime_s(&local, &moment) == 0;
#else
  const std::time_t moment = static_cast<std::time_t>(utc_seconds);
  return localtime_r(&moment, &local) != nullptr;
#endif
}

class SystemMachine final : public machine::Machine {
 public:
  std::int64_t now_microseconds() const override {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(since).count();
  }

  std::int32_t zone_offset(std::int64_t utc_seconds) const override {
#ifdef _WIN32
    utc_seconds = std::clamp<std::int64_t>(utc_seconds, 0, 32'535'000'000);
#endif
    std::tm local{};
    if (!local_time(utc_seconds, local)) return 0;
    const double shown = calendar::moment_of({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                                              static_cast<double>(std::min(local.tm_sec, 59))});
    return static_cast<std::int32_t>(shown - static_cast<double>(utc_seconds));
  }

  std::string locale() const override {
    SDL_Locale* const preferred = SDL_GetPreferredLocales();
    if (preferred == nullptr) return "";
    std::string name = preferred[0].language != nullptr ? preferred[0].language : "";
    if (!name.empty() && preferred[0].country != nullptr) name += std::string("-") + preferred[0].country;
    SDL_free(preferred);
    return name;
  }

  std::string environment(const std::string& name) const override {
#ifdef _WIN32
    const wchar_t* const value = _wgetenv(files::path_of(name).c_str());
    return value != nullptr ? files::utf8_of(std::filesystem::path(value)) : "";
#else
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? value : "";
#endif
  }

  bool open_address(const std::string& address) const override { return SDL_OpenURL(address.c_str()) == 0; }
};

}  // namespace

const machine::Machine& system_machine() {
  static const SystemMachine machine;
  return machine;
}

}  // namespace arena::platform
