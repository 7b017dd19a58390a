#include "engine/files/disk_sync.h"

#include <system_error>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace arena::files {
namespace {

void bring_to_disk(const std::filesystem::path& file) {
#ifdef _WIN32
  const HANDLE opened = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return;
  FlushFileBuffers(opened);
  CloseHandle(opened);
#else
  const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // what is no ordinary file holds nobody up
  if (opened < 0) return;
  fsync(opened);
  close(opened);
#endif
}

}  // namespace

DiskSync::DiskSync(std::filesystem::path file) : file_(std::move(file)) {
  try {
    worker_ = std::thread([this] { work(); });
  } catch (const std::system_error&) {
  }
}

DiskSync::~DiskSync() {
  if (!worker_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_one();
  worker_.join();
}

void DiskSync::request() {
  if (!worker_.joinable()) return bring_to_disk(file_);
  {
    const std::lock_guard lock(mutex_);
    is_wanted_ = true;
  }
  changed_.notify_one();
}

void DiskSync::work() {
  std::unique_lock lock(mutex_);
  while (is_wanted_ || !ends_) {
    changed_.wait(lock, [&] { return is_wanted_ || ends_; });
    if (!std::exchange(is_wanted_, false)) continue;
    lock.unlock();
    bring_to_disk(file_);
    lock.lock();
  }
}

}  // namespace arena::files
