#pragma once
// The two process-wide locks of the runtime: "StringLock" over string reference counts and "NurseryMutex" over allocation. Script
// code lives on one thread, so a lock is taken only while a worker thread that may hold strings or allocate is registered.
#include <atomic>
#include <mutex>

#include "runtime/checks/assert.h"

namespace arena {

class WorkerLock {
 public:
  enum Which { kStringCounts, kNursery };
  explicit WorkerLock(Which which) {
    if (registered_workers.load(std::memory_order_relaxed) == 0) return;
    locked_ = &mutexes[which];
    locked_->lock();
  }
  ~WorkerLock() {
    if (locked_ != nullptr) locked_->unlock();
  }
  // Whether others wait for it: only while a worker is registered.
  bool is_taken() const { return locked_ != nullptr; }
  WorkerLock(const WorkerLock&) = delete;
  WorkerLock& operator=(const WorkerLock&) = delete;

  inline static std::atomic<int> registered_workers{0};

 private:
  inline static std::mutex mutexes[2];
  std::mutex* locked_ = nullptr;
};

// Held for as long as a worker thread may touch values. Register before the thread starts, on the main thread; the worker enters the
// session whose values they are (SessionScope).
class WorkerRegistration {
 public:
  WorkerRegistration() { WorkerLock::registered_workers.fetch_add(1); }
  ~WorkerRegistration() {
    [[maybe_unused]] const int before = WorkerLock::registered_workers.fetch_sub(1);
    ARENA_ASSERT(before > 0);
  }
  WorkerRegistration(const WorkerRegistration&) = delete;
  WorkerRegistration& operator=(const WorkerRegistration&) = delete;
};

}  // namespace arena
