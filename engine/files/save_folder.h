#pragma once
// The game's own files while it runs. What is saved is handed to a worker and a frame goes on at once; whoever reads sees it saved
// already. The worker holds bytes of its own and no value of scripts.
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engine/files/safe_store.h"

namespace arena::files {

// What became of what was asked with a ticket, or how far it is.
struct Arrival {
  enum class Status : std::uint8_t { kProgress, kDone, kFailed } status = Status::kDone;
  std::uint32_t ticket = 0;
  std::int64_t done = 0, total = 0;  // bytes
  std::string text;                  // what was read; of a failure a sentence
};

class SaveFolder {
 public:
  // Without a worker all is done when it is asked.
  SaveFolder(std::unique_ptr<Storage> storage, bool has_worker);
  // What was saved reaches the disk first.
  ~SaveFolder();
  SaveFolder(const SaveFolder&) = delete;
  SaveFolder& operator=(const SaveFolder&) = delete;

  std::optional<std::string> read(const std::string& name, SafeStore::Trust trust);
  // False, and the log says so once, when nothing can be written. What goes wrong later the log says, too. With a ticket it arrives.
  bool save(Changes changes, std::uint32_t ticket = 0);
  void load(const std::string& name, std::uint32_t ticket);
  // Waits for the worker; whether all that was saved since the last time is on the disk.
  bool wait();
  Storage::Facts facts(const std::string& name);
  std::vector<Storage::Entry> list(const std::string& folder);
  std::vector<std::string> files_below(const std::string& folder);
  bool make_folder(const std::string& name);
  bool remove_folder(const std::string& name);
  bool set_attributes(const std::string& name, std::int32_t attributes);
  // What arrived since last asked, in that order; of what goes on the last progress.
  std::vector<Arrival> take_arrivals();
  std::uint32_t new_ticket() { return ++last_ticket_; }
  bool knows(std::uint32_t ticket);

 private:
  struct Job {
    Changes changes;
    std::string name;  // of what is loaded; "": the changes are saved
    std::uint32_t ticket = 0;
  };
  void give(Job job);
  void work();
  void run(const Job& job);
  void finish();
  void drain();
  void say(const std::string& problem);
  void say_what_waits();

  const std::unique_ptr<Storage> storage_;
  SafeStore store_;
  std::mutex store_mutex_;  // one at a time reads or writes the storage

  std::mutex mutex_;  // over all that follows
  std::condition_variable changed_;
  std::deque<std::unique_ptr<Job>> jobs_;  // the first one is at work; they stay where they are
  std::vector<Arrival> arrivals_;
  std::string problem_;  // the last, as long as the log does not have it
  bool ends_ = false, has_failed_ = false, could_save_ = false;
  // Only for who asks, not for the worker:
  std::string said_;  // the last problem that the log has
  std::uint32_t last_ticket_ = 0;
  const bool has_worker_;
  std::thread worker_;  // begins with the first job
};

// That of the session: in memory until another is given.
SaveFolder& save_folder();
void use_save_folder(std::unique_ptr<Storage> storage);

}  // namespace arena::files
