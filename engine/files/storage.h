#pragma once
// The folder that a game may write to, as the few steps that systems offer. Three forms: a folder of the disk, one in memory for whoever
// must leave nothing behind, and in tests one that fails and forgets as disks do.
//
// Names are those of sandbox.h, and "" is the folder itself; a ~ in a name marks what is the program's own, out of the reach of scripts.
// What was written or renamed may be lost or come in another order when the machine stops, until it was synced.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace arena::files {

class Storage {
 public:
  enum class Outcome : std::uint8_t { kDone, kMissing, kFull, kRefused };
  enum Attribute : std::int32_t { kReadOnly = 1, kHidden = 2, kFolder = 4 };
  struct Facts {
    bool is_there = false;
    std::int64_t size = 0;
    std::int64_t seconds = 0;  // since 1970 began, when it was last written
    std::int32_t attributes = 0;
    bool is_folder() const { return (attributes & kFolder) != 0; }
  };
  struct Entry {
    std::string name;  // without its folder
    bool is_folder = false;
  };
  static constexpr std::int64_t kLargestFile = std::int64_t{1} << 28;  // bytes that are read

  virtual ~Storage() = default;
  // Refused as well: what is larger than kLargestFile, no ordinary file, or lies behind a link that leads out.
  virtual Outcome read(const std::string& name, std::string& into) = 0;
  // A new file in an existing folder, or the one of that name emptied first. After a failure it may have some of the bytes.
  virtual Outcome write(const std::string& name, std::string_view bytes) = 0;
  virtual Outcome sync(const std::string& name) = 0;
  // Within a folder; takes the place of a file of the new name.
  virtual Outcome rename(const std::string& from, const std::string& to) = 0;
  virtual Outcome remove(const std::string& name) = 0;
  // In an existing one.
  virtual Outcome make_folder(const std::string& name) = 0;
  virtual Outcome remove_folder(const std::string& name) = 0;  // an empty one
  virtual Outcome sync_folder(const std::string& name) = 0;
  virtual Facts facts(const std::string& name) = 0;
  virtual Outcome set_attributes(const std::string& name, std::int32_t attributes) = 0;
  // In no order; empty when there is no such folder.
  virtual std::vector<Entry> list(const std::string& folder) = 0;
  // Whether from here on, as long as this lives, no other program writes here. Asked again it may have become so.
  virtual bool lock() = 0;

  // Hears while much is read or written how far it is, in bytes.
  std::function<void(std::int64_t done, std::int64_t total)> on_progress;
};

// A folder of the disk, made when it is first written to. Empty: there is none, and nothing can be written.
std::unique_ptr<Storage> folder_storage(const std::string& utf8_path);
// Gone with its end.
std::unique_ptr<Storage> memory_storage();

}  // namespace arena::files
