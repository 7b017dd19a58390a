#include "engine/files/save_folder.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "runtime/reports/log.h"
#include "runtime/session/session.h"

namespace arena::files {
namespace {

const Part<std::unique_ptr<SaveFolder>> part{PartLevel::kServices, "save folder"};

}  // namespace

SaveFolder& save_folder() {
  if (part() == nullptr) part() = std::make_unique<SaveFolder>(memory_storage(), false);
  return *part();
}

void use_save_folder(std::unique_ptr<Storage> storage) {
  part() = storage != nullptr ? std::make_unique<SaveFolder>(std::move(storage), true) : nullptr;
}

SaveFolder::SaveFolder(std::unique_ptr<Storage> storage, bool has_worker)
    : storage_(std::move(storage)), store_(*storage_), has_worker_(has_worker) {
  storage_->on_progress = [this](std::int64_t done, std::int64_t total) {
    const std::lock_guard lock(mutex_);
    if (jobs_.empty() || jobs_.front()->ticket == 0) return;
    const std::uint32_t ticket = jobs_.front()->ticket;
    if (!arrivals_.empty() && arrivals_.back().ticket == ticket) arrivals_.pop_back();
    arrivals_.push_back({Arrival::Status::kProgress, ticket, done, total, ""});
  };
}

SaveFolder::~SaveFolder() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  if (worker_.joinable()) worker_.join();
  if (!problem_.empty()) say(problem_);
}

void SaveFolder::give(Job job) {
  std::unique_lock lock(mutex_);
  jobs_.push_back(std::make_unique<Job>(std::move(job)));
  if (has_worker_ && !worker_.joinable()) {
    try {
      worker_ = std::thread([this] { work(); });
    } catch (const std::system_error&) {  // where there can be none, the caller waits
    }
  }
  if (worker_.joinable()) {
    changed_.notify_all();
    return;
  }
  Job& now = *jobs_.front();
  lock.unlock();
  run(now);
  finish();
}

void SaveFolder::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return ends_ || !jobs_.empty(); });
    if (jobs_.empty()) return;
    const Job& job = *jobs_.front();
    lock.unlock();
    run(job);
    finish();
    lock.lock();
    changed_.notify_all();
  }
}

void SaveFolder::run(const Job& job) {
  Arrival arrival;
  arrival.ticket = job.ticket;
  std::string problem;
  bool is_done = false;
  try {
    const std::lock_guard lock(store_mutex_);
    if (job.name.empty()) {
      is_done = store_.change(job.changes, problem);
      for (const auto& [name, bytes] : job.changes.written) arrival.total += static_cast<std::int64_t>(bytes.size());
    } else {
      std::optional<std::string> found = store_.read(job.name, SafeStore::Trust::kChecked, problem);
      is_done = found.has_value();
      if (is_done) arrival.text = std::move(*found);
      arrival.total = static_cast<std::int64_t>(arrival.text.size());
    }
  } catch (const std::bad_alloc&) {
    is_done = false;
    problem = "the memory has run out";
  }
  arrival.status = is_done ? Arrival::Status::kDone : Arrival::Status::kFailed;
  arrival.done = is_done ? arrival.total : 0;
  if (!is_done) arrival.text = problem;
  const std::lock_guard lock(mutex_);
  if (!problem.empty()) problem_ = problem;
  if (!is_done && job.name.empty()) has_failed_ = true;
  if (is_done && job.name.empty()) could_save_ = true;
  if (job.ticket == 0) return;
  std::erase_if(arrivals_, [&](const Arrival& each) { return each.ticket == job.ticket; });
  arrivals_.push_back(std::move(arrival));
}

void SaveFolder::finish() {
  const std::lock_guard lock(mutex_);
  jobs_.pop_front();
}

void SaveFolder::drain() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return jobs_.empty(); });
}

// Once, until something could be saved again.
void SaveFolder::say(const std::string& problem) {
  if (problem != said_) log_warning(problem);
  said_ = problem;
}

// With the mutex held.
void SaveFolder::say_what_waits() {
  if (std::exchange(could_save_, false)) said_.clear();
  if (!problem_.empty()) say(std::exchange(problem_, {}));
}

std::optional<std::string> SaveFolder::read(const std::string& name, SafeStore::Trust trust) {
  {
    const std::lock_guard lock(mutex_);
    for (auto job = jobs_.rbegin(); job != jobs_.rend(); ++job) {
      const auto found = (*job)->changes.written.find(name);
      if (found != (*job)->changes.written.end()) return found->second;
      if ((*job)->changes.removed.contains(name)) return std::nullopt;
    }
  }
  std::string damage;
  const std::lock_guard lock(store_mutex_);
  std::optional<std::string> found = store_.read(name, trust, damage);
  if (!damage.empty()) say(damage);
  return found;
}

bool SaveFolder::save(Changes changes, std::uint32_t ticket) {
  bool can_write = false;
  {
    std::unique_lock lock(mutex_);
    can_write = worker_.joinable() && !jobs_.empty();  // it has the lock, or says that it has not
  }
  if (!can_write) {
    const std::lock_guard lock(store_mutex_);
    can_write = storage_->lock();
  }
  if (!can_write) {
    say("nothing can be saved: the folder cannot be written, or another program has it");
    const std::lock_guard lock(mutex_);
    has_failed_ = true;
    if (ticket != 0) arrivals_.push_back({Arrival::Status::kFailed, ticket, 0, 0, said_});
    return false;
  }
  Job job;
  job.changes = std::move(changes);
  job.ticket = ticket;
  give(std::move(job));
  return true;
}

void SaveFolder::load(const std::string& name, std::uint32_t ticket) {
  Job job;
  job.name = name;
  job.ticket = ticket;
  give(std::move(job));
}

bool SaveFolder::wait() {
  drain();
  const std::lock_guard lock(mutex_);
  say_what_waits();
  return !std::exchange(has_failed_, false);
}

Storage::Facts SaveFolder::facts(const std::string& name) {
  {
    const std::lock_guard lock(mutex_);
    for (auto job = jobs_.rbegin(); job != jobs_.rend(); ++job) {
      const auto found = (*job)->changes.written.find(name);
      if (found != (*job)->changes.written.end()) return {true, static_cast<std::int64_t>(found->second.size()), 0, 0};
      if ((*job)->changes.removed.contains(name)) return {};
    }
  }
  const std::lock_guard lock(store_mutex_);
  return store_.facts(name);
}

std::vector<Storage::Entry> SaveFolder::list(const std::string& folder) {
  drain();
  const std::lock_guard lock(store_mutex_);
  return store_.list(folder);
}

std::vector<std::string> SaveFolder::files_below(const std::string& folder) {
  drain();
  const std::lock_guard lock(store_mutex_);
  return store_.files_below(folder);
}

bool SaveFolder::make_folder(const std::string& name) {
  drain();
  const std::lock_guard lock(store_mutex_);
  return storage_->lock() && store_.make_folders(name);
}

bool SaveFolder::remove_folder(const std::string& name) {
  drain();
  const std::lock_guard lock(store_mutex_);
  std::string problem;
  return store_.facts(name).is_folder() && store_.remove_folder(name, problem);
}

bool SaveFolder::set_attributes(const std::string& name, std::int32_t attributes) {
  drain();
  const std::lock_guard lock(store_mutex_);
  return storage_->lock() && storage_->set_attributes(name, attributes) == Storage::Outcome::kDone;
}

std::vector<Arrival> SaveFolder::take_arrivals() {
  const std::lock_guard lock(mutex_);
  say_what_waits();
  return std::exchange(arrivals_, {});
}

bool SaveFolder::knows(std::uint32_t ticket) {
  const std::lock_guard lock(mutex_);
  const auto is_it = [&](const auto& each) { return each->ticket == ticket; };
  return std::any_of(jobs_.begin(), jobs_.end(), is_it) ||
         std::any_of(arrivals_.begin(), arrivals_.end(), [&](const Arrival& each) { return each.ticket == ticket; });
}

}  // namespace arena::files
