#pragma once
// A disk as it is at its worst: what was written, renamed or removed since the last sync may be there after a stop of the machine or not,
// each for itself, and a file that was not synced may have any of its bytes.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "engine/files/storage.h"

namespace arena::test {

class ModelDisk final : public files::Storage {
 public:
  // The call with this number (from 0) fails for want of room, or with `from_then_on` all behind it, too; -1: none.
  int failing_call = -1;
  bool fails_from_then_on = false;
  // Heard before each call that changes something.
  std::function<void()> before_call;
  int calls() const { return calls_; }

  Outcome read(const std::string& name, std::string& into) override;
  Outcome write(const std::string& name, std::string_view bytes) override;
  Outcome sync(const std::string& name) override;
  Outcome rename(const std::string& from, const std::string& to) override;
  Outcome remove(const std::string& name) override;
  Outcome make_folder(const std::string& name) override;
  Outcome remove_folder(const std::string& name) override;
  Outcome sync_folder(const std::string& name) override;
  Facts facts(const std::string& name) override;
  Outcome set_attributes(const std::string&, std::int32_t) override { return Outcome::kRefused; }
  std::vector<Entry> list(const std::string& folder) override;
  bool lock() override { return true; }

  // All that happened so far is on the disk for good.
  void settle();
  // What may be there when the machine stops after so many steps since the last settling: calls use(disk) for each possible disk, at most
  // `most` of them for one place, then for some chosen by chance.
  std::size_t steps() const { return log_.size(); }
  void each_crash(std::size_t after, std::size_t most, const std::function<void(ModelDisk&)>& use) const;

 private:
  using Files = std::map<std::string, int>;  // names and the contents they lead to
  struct Step {
    enum class Kind { kLink, kRename, kUnlink, kFolder, kNoFolder, kContent, kSync, kSyncFolder } kind;
    std::string name, to;
    int content = -1;
  };
  bool may_happen(Outcome& outcome);
  void take(const Step& step);
  static void apply(const Step& step, Files& files, std::map<std::string, int>& folders);
  static std::string folder_of(const std::string& name);

  Files files_, settled_files_;
  std::map<std::string, int> folders_{{"", 0}}, settled_folders_{{"", 0}};
  std::vector<std::string> contents_;
  std::vector<bool> settled_contents_;
  std::vector<Step> log_;
  int calls_ = 0;
};

}  // namespace arena::test
