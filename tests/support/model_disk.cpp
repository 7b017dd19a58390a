#include "tests/support/model_disk.h"

#include <random>

namespace arena::test {

std::string ModelDisk::folder_of(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? "" : name.substr(0, slash);
}

bool ModelDisk::may_happen(Outcome& outcome) {
  if (before_call) before_call();
  const int call = calls_++;
  const bool fails = failing_call >= 0 && (call == failing_call || (fails_from_then_on && call > failing_call));
  outcome = fails ? Outcome::kFull : Outcome::kDone;
  return !fails;
}

void ModelDisk::apply(const Step& step, Files& files, std::map<std::string, int>& folders) {
  using Kind = Step::Kind;
  switch (step.kind) {
    case Kind::kLink: files[step.name] = step.content; break;
    case Kind::kUnlink: files.erase(step.name); break;
    case Kind::kFolder: folders[step.name]; break;
    case Kind::kNoFolder: folders.erase(step.name); break;
    case Kind::kRename:
      if (const auto from = files.find(step.name); from != files.end()) {
        files[step.to] = from->second;
        files.erase(from);
      }
      break;
    default: break;
  }
}

void ModelDisk::take(const Step& step) {
  apply(step, files_, folders_);
  log_.push_back(step);
}

files::Storage::Outcome ModelDisk::read(const std::string& name, std::string& into) {
  const auto found = files_.find(name);
  if (found == files_.end()) return Outcome::kMissing;
  into = contents_[static_cast<std::size_t>(found->second)];
  return Outcome::kDone;
}

// A write that fails leaves half.
files::Storage::Outcome ModelDisk::write(const std::string& name, std::string_view bytes) {
  Outcome outcome;
  const bool is_whole = may_happen(outcome);
  if (!folders_.contains(folder_of(name))) return Outcome::kMissing;
  if (files_.contains(name)) take({Step::Kind::kUnlink, name, "", -1});
  const int content = static_cast<int>(contents_.size());
  contents_.emplace_back(is_whole ? bytes : bytes.substr(0, bytes.size() / 2));
  settled_contents_.push_back(false);
  take({Step::Kind::kLink, name, "", content});
  take({Step::Kind::kContent, name, "", content});
  return outcome;
}

files::Storage::Outcome ModelDisk::sync(const std::string& name) {
  Outcome outcome;
  if (!files_.contains(name)) return Outcome::kMissing;
  if (may_happen(outcome)) take({Step::Kind::kSync, name, "", files_[name]});
  return outcome;
}

files::Storage::Outcome ModelDisk::rename(const std::string& from, const std::string& to) {
  Outcome outcome;
  if (!files_.contains(from)) return Outcome::kMissing;
  if (may_happen(outcome)) take({Step::Kind::kRename, from, to, -1});
  return outcome;
}

files::Storage::Outcome ModelDisk::remove(const std::string& name) {
  Outcome outcome;
  if (!files_.contains(name)) return Outcome::kMissing;
  if (may_happen(outcome)) take({Step::Kind::kUnlink, name, "", -1});
  return outcome;
}

files::Storage::Outcome ModelDisk::make_folder(const std::string& name) {
  Outcome outcome;
  if (may_happen(outcome)) take({Step::Kind::kFolder, name, "", -1});
  return outcome;
}

files::Storage::Outcome ModelDisk::remove_folder(const std::string& name) {
  Outcome outcome;
  if (may_happen(outcome)) take({Step::Kind::kNoFolder, name, "", -1});
  return outcome;
}

files::Storage::Outcome ModelDisk::sync_folder(const std::string& name) {
  Outcome outcome;
  if (may_happen(outcome)) take({Step::Kind::kSyncFolder, name, "", -1});
  return outcome;
}

files::Storage::Facts ModelDisk::facts(const std::string& name) {
  Facts found;
  const auto file = files_.find(name);
  found.is_there = file != files_.end() || folders_.contains(name);
  if (file != files_.end()) {
    found.size = static_cast<std::int64_t>(contents_[static_cast<std::size_t>(file->second)].size());
  } else if (found.is_there) {
    found.attributes = kFolder;
  }
  return found;
}

std::vector<files::Storage::Entry> ModelDisk::list(const std::string& folder) {
  std::vector<Entry> found;
  for (const auto& [name, content] : files_) {
    if (folder_of(name) == folder) found.push_back({folder.empty() ? name : name.substr(folder.size() + 1), false});
  }
  for (const auto& [name, nothing] : folders_) {
    if (!name.empty() && folder_of(name) == folder) found.push_back({folder.empty() ? name : name.substr(folder.size() + 1), true});
  }
  return found;
}

void ModelDisk::settle() {
  log_.clear();
  settled_files_ = files_;
  settled_folders_ = folders_;
  settled_contents_.assign(contents_.size(), true);
  calls_ = 0;
}

void ModelDisk::each_crash(std::size_t after, std::size_t most, const std::function<void(ModelDisk&)>& use) const {
  using Kind = Step::Kind;
  // Steps whose folder was synced later are there for certain, and so are contents.
  std::vector<bool> is_certain(after, false), has_content = settled_contents_;
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < after; ++i) {
    if (log_[i].kind == Kind::kSync) has_content[static_cast<std::size_t>(log_[i].content)] = true;
    if (log_[i].kind == Kind::kContent || log_[i].kind == Kind::kSync || log_[i].kind == Kind::kSyncFolder) continue;
    for (std::size_t later = i; later < after; ++later)
      is_certain[i] = is_certain[i] || (log_[later].kind == Kind::kSyncFolder && log_[later].name == folder_of(log_[i].name));
    if (!is_certain[i]) open.push_back(i);
  }
  std::mt19937_64 chance(after);
  const bool tries_all = open.size() < 20 && (std::size_t{1} << open.size()) <= most;
  const std::size_t rounds = tries_all ? std::size_t{1} << open.size() : most;
  for (std::size_t round = 0; round < rounds; ++round) {
    const std::uint64_t chosen = tries_all ? round : chance();
    for (int shape = 0; shape < 4; ++shape) {
      ModelDisk disk;
      disk.files_ = settled_files_;
      disk.folders_ = settled_folders_;
      disk.contents_ = contents_;
      for (std::size_t i = 0; i < after; ++i) {
        std::size_t place = 0;
        while (place < open.size() && open[place] != i) ++place;
        if (is_certain[i] || (place < open.size() && (chosen >> (place % 64) & 1) != 0)) apply(log_[i], disk.files_, disk.folders_);
      }
      // Nothing, half, zeroes, or all.
      for (std::size_t i = 0; i < disk.contents_.size(); ++i) {
        std::string& bytes = disk.contents_[i];
        if (!has_content[i] && shape < 3)
          bytes = shape == 0 ? "" : shape == 1 ? bytes.substr(0, bytes.size() / 2) : std::string(bytes.size(), '\0');
      }
      disk.settle();
      use(disk);
    }
  }
}

}  // namespace arena::test
