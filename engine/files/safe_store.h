#pragma once
// Files that are saved whole or not at all, some of them as one. In a storage a file F has up to three names:
//
//   F        as it was saved last, a plain file for whoever looks into the folder
//   F~old    the generation before
//   F~new    one that is being saved
//   ~index   for each file the checksums of the last generation and the one before; its renaming makes a save valid
//
// A save writes and syncs F~new of all its files, then puts a new ~index in the place of the old one, then renames. Whoever reads takes of
// the three names the one that has the checksum in the index; where none has, the generation before. Files that the index does not know are
// taken as they are.
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/files/storage.h"

namespace arena::files {

// What is to become of files, as one.
struct Changes {
  std::map<std::string, std::string> written;  // by name
  std::set<std::string> removed;
};

class SafeStore {
 public:
  explicit SafeStore(Storage& storage) : storage_(storage) {}

  enum class Trust : std::uint8_t { kChecked, kMayBeEdited };
  // Nothing when there is none. `damage` is a sentence when the generation before was taken, or nothing could be. kMayBeEdited: somebody
  // may have changed the file by hand, so that another text than the one that was saved counts, too.
  std::optional<std::string> read(const std::string& name, Trust trust, std::string& damage);
  // False with a sentence in `problem`: all is as it was. Folders are made as they are needed.
  bool change(const Changes& changes, std::string& problem);
  Storage::Facts facts(const std::string& name);
  // Of a folder, "" for the outermost; sorted by the bytes of their names.
  std::vector<Storage::Entry> list(const std::string& folder);
  bool make_folders(const std::string& name);
  // With all in it; it exists.
  bool remove_folder(const std::string& name, std::string& problem);
  // All files in a folder and in those inside, with their whole names.
  std::vector<std::string> files_below(const std::string& folder);

 private:
  // A checksum and a size; size -1: there is no such generation.
  struct Sum {
    std::uint32_t crc = 0;
    std::int64_t size = -1;
    bool exists() const { return size >= 0; }
    bool operator==(const Sum&) const = default;
  };
  struct Generations {
    Sum last, before;  // a last one that does not exist: the file was removed
  };
  using Index = std::map<std::string, Generations>;

  // What a save has worked out about a file before it becomes valid.
  struct Prepared {
    Generations generations;
    bool keeps_last = false;  // what is there becomes the generation before
  };

  static Sum sum_of(std::string_view bytes);
  static bool parse_index(std::string_view text, Index& into);
  static std::string index_text(const Index& index);
  void follow_index();
  // The content with that sum, under one of the file's names; nothing when none has it.
  std::optional<std::string> find(const std::string& name, const Sum& wanted);
  bool has(const std::string& name, const Sum& wanted);
  // F~new may hold a save that is valid: it is put in its place. Otherwise it goes.
  void settle(const std::string& name);
  bool prepare(const std::string& name, const std::string& bytes, Prepared& into, std::string& problem);
  bool write_synced(const std::string& name, std::string_view bytes, std::string& problem);
  bool sync_folders(const std::set<std::string>& names, std::string& problem);
  bool write_index(const Index& next, bool& is_valid, std::string& problem);
  void put_in_place(const std::map<std::string, Prepared>& prepared, const std::set<std::string>& removed);
  // Files that were removed are gone for good, so that the index need not know them.
  void forget_removed(Index& next);

  Storage& storage_;
  Index index_;
  bool is_locked_ = false;
};

}  // namespace arena::files
