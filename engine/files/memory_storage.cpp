#include <map>

#include "engine/files/storage.h"

namespace arena::files {
namespace {

class MemoryStorage final : public Storage {
 public:
  Outcome read(const std::string& name, std::string& into) override {
    const auto found = files_.find(name);
    if (found == files_.end()) return Outcome::kMissing;
    into = found->second.bytes;
    return Outcome::kDone;
  }
  Outcome write(const std::string& name, std::string_view bytes) override {
    if (folders_.contains(name)) return Outcome::kRefused;
    if (!has_folder_of(name)) return Outcome::kMissing;
    files_[name].bytes = bytes;
    return Outcome::kDone;
  }
  Outcome sync(const std::string& name) override { return files_.contains(name) ? Outcome::kDone : Outcome::kMissing; }
  Outcome rename(const std::string& from, const std::string& to) override {
    auto moved = files_.extract(from);
    if (moved.empty()) return Outcome::kMissing;
    files_[to] = std::move(moved.mapped());
    return Outcome::kDone;
  }
  Outcome remove(const std::string& name) override { return files_.erase(name) > 0 ? Outcome::kDone : Outcome::kMissing; }
  Outcome make_folder(const std::string& name) override {
    if (files_.contains(name)) return Outcome::kRefused;
    if (!has_folder_of(name)) return Outcome::kMissing;
    folders_[name];
    return Outcome::kDone;
  }
  Outcome remove_folder(const std::string& name) override {
    if (!folders_.contains(name)) return Outcome::kMissing;
    if (!list(name).empty()) return Outcome::kRefused;
    folders_.erase(name);
    return Outcome::kDone;
  }
  Outcome sync_folder(const std::string&) override { return Outcome::kDone; }
  Facts facts(const std::string& name) override {
    Facts found;
    const auto file = files_.find(name);
    found.is_there = file != files_.end() || name.empty() || folders_.contains(name);
    if (file != files_.end()) {
      found.size = static_cast<std::int64_t>(file->second.bytes.size());
      found.attributes = file->second.attributes;
    } else if (found.is_there) {
      found.attributes = kFolder;
    }
    return found;
  }
  Outcome set_attributes(const std::string& name, std::int32_t attributes) override {
    const auto file = files_.find(name);
    if (file == files_.end()) return Outcome::kMissing;
    file->second.attributes = attributes & (kReadOnly | kHidden);
    return Outcome::kDone;
  }
  std::vector<Entry> list(const std::string& folder) override {
    std::vector<Entry> found;
    const std::string inside = folder.empty() ? "" : folder + "/";
    const auto take = [&](const std::string& name, bool is_folder) {
      if (name.size() > inside.size() && name.starts_with(inside) && name.find('/', inside.size()) == std::string::npos)
        found.push_back({name.substr(inside.size()), is_folder});
    };
    for (const auto& [name, file] : files_) take(name, false);
    for (const auto& [name, nothing] : folders_) take(name, true);
    return found;
  }
  bool lock() override { return true; }

 private:
  struct File {
    std::string bytes;
    std::int32_t attributes = 0;
  };
  bool has_folder_of(const std::string& name) const {
    const std::size_t slash = name.rfind('/');
    return slash == std::string::npos || folders_.contains(name.substr(0, slash));
  }
  std::map<std::string, File> files_;
  std::map<std::string, int> folders_;
};

}  // namespace

std::unique_ptr<Storage> memory_storage() { return std::make_unique<MemoryStorage>(); }

}  // namespace arena::files
