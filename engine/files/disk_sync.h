#pragma once
// What a program wrote may stand in the system's memory for half a minute before it is on the disk. This brings a file there, now and then,
// while the program goes on.
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

namespace arena::files {

class DiskSync {
 public:
  // The file exists, or soon will; what cannot be brought to the disk is the system's affair.
  explicit DiskSync(std::filesystem::path file);
  // The last request is carried out.
  ~DiskSync();
  DiskSync(const DiskSync&) = delete;
  DiskSync& operator=(const DiskSync&) = delete;

  // All that was handed to the system before is to reach the disk soon. Returns at once.
  void request();

 private:
  void work();
  const std::filesystem::path file_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool is_wanted_ = false, ends_ = false;
  std::thread worker_;  // not running where there can be none: then the caller waits
};

}  // namespace arena::files
