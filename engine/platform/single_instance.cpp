#include "engine/platform/single_instance.h"

#include "engine/files/paths.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace arena::platform {

#ifdef _WIN32

struct SingleInstance::Lock {
  HANDLE mutex = nullptr;
};

SingleInstance::SingleInstance(const std::string& name) {
  if (name.empty()) return;
  lock_ = std::make_unique<Lock>();
  lock_->mutex = CreateMutexW(nullptr, FALSE, (L"Local\\" + files::path_of(name + " runs").wstring()).c_str());
  is_first_ = lock_->mutex == nullptr || GetLastError() != ERROR_ALREADY_EXISTS;
}

SingleInstance::~SingleInstance() {
  if (lock_ != nullptr && lock_->mutex != nullptr) CloseHandle(lock_->mutex);
}

#else

struct SingleInstance::Lock {
  int file = -1;
};

SingleInstance::SingleInstance(const std::string& name) {
  const std::filesystem::path folder = name.empty() ? std::filesystem::path() : files::user_data_folder(name);
  if (folder.empty()) return;
  lock_ = std::make_unique<Lock>();
  lock_->file = open((folder / "running.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  is_first_ = lock_->file < 0 || flock(lock_->file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

SingleInstance::~SingleInstance() {
  if (lock_ != nullptr && lock_->file >= 0) close(lock_->file);
}

#endif

}  // namespace arena::platform
