#include "engine/files/safe_store.h"

#include <algorithm>
#include <charconv>

#include "engine/files/sandbox.h"
#include "engine/formats/hashes.h"
#include "engine/formats/utf8.h"

namespace arena::files {
namespace {

using Outcome = Storage::Outcome;

constexpr const char *kIndex = "~index", *kFreshIndex = "~index~new";
constexpr std::string_view kHeading = "saved files 1\n";

std::string fresh(const std::string& name) { return name + "~new"; }
std::string former(const std::string& name) { return name + "~old"; }

std::string without_slash(std::string folder) {
  if (!folder.empty()) folder.pop_back();
  return folder;
}

std::string sentence(const std::string& name, Outcome outcome) {
  return name + (outcome == Outcome::kFull ? ": cannot be saved, the disk is full" : ": cannot be saved");
}

// What somebody can have typed.
bool is_plain_text(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::uint32_t each = formats::next_character(bytes, at);
    if (each == formats::kNoCharacter || each == 127 || (each < ' ' && each != '\t' && each != '\r' && each != '\n')) return false;
  }
  return !bytes.empty();
}

// A number and the blank behind it.
template <class Number>
bool take_number(std::string_view& line, Number& into, int base) {
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), into, base);
  if (error != std::errc() || end == line.data() + line.size() || *end != ' ') return false;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()) + 1);
  return true;
}

std::string hexadecimal(std::uint32_t number) {
  char digits[16];
  return {digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr};
}

}  // namespace

SafeStore::Sum SafeStore::sum_of(std::string_view bytes) { return {formats::crc32_of(bytes), static_cast<std::int64_t>(bytes.size())}; }

// A line a file: checksum and size of the last generation and of the one before, the name. At the end the checksum of all that.
std::string SafeStore::index_text(const Index& index) {
  std::string text(kHeading);
  for (const auto& [name, of] : index) {
    for (const Sum& sum : {of.last, of.before}) text += hexadecimal(sum.crc) + ' ' + std::to_string(sum.size) + ' ';
    text += name + '\n';
  }
  return text + "sum " + hexadecimal(formats::crc32_of(text)) + '\n';
}

bool SafeStore::parse_index(std::string_view text, Index& into) {
  into.clear();
  const std::size_t last = text.rfind("sum ");
  if (!text.starts_with(kHeading) || last == std::string_view::npos) return false;
  if (text.substr(last) != "sum " + hexadecimal(formats::crc32_of(text.substr(0, last))) + '\n') return false;
  std::string_view rest = text.substr(kHeading.size(), last - kHeading.size());
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    Generations read;
    for (Sum* const sum : {&read.last, &read.before}) {
      if (!take_number(line, sum->crc, 16) || !take_number(line, sum->size, 10)) return false;
    }
    into[std::string(line)] = read;
  }
  return true;
}

// As long as another program may write, what it wrote is read anew.
void SafeStore::follow_index() {
  if (is_locked_) return;
  std::string text;
  if (storage_.read(kIndex, text) != Outcome::kDone || !parse_index(text, index_)) index_.clear();
}

std::optional<std::string> SafeStore::find(const std::string& name, const Sum& wanted) {
  if (!wanted.exists()) return std::nullopt;
  std::string bytes;
  for (const std::string& each : {name, fresh(name), former(name)}) {
    if (storage_.read(each, bytes) == Outcome::kDone && sum_of(bytes) == wanted) return bytes;
  }
  return std::nullopt;
}

bool SafeStore::has(const std::string& name, const Sum& wanted) {
  std::string bytes;
  return wanted.exists() && storage_.read(name, bytes) == Outcome::kDone && sum_of(bytes) == wanted;
}

std::optional<std::string> SafeStore::read(const std::string& name, Trust trust, std::string& damage) {
  damage.clear();
  std::string bytes;
  for (int attempt = 0; attempt < 2; ++attempt) {
    follow_index();
    const auto known = index_.find(name);
    if (known == index_.end()) return storage_.read(name, bytes) == Outcome::kDone ? std::optional(bytes) : std::nullopt;
    if (!known->second.last.exists()) return std::nullopt;
    if (std::optional<std::string> found = find(name, known->second.last)) return found;
    if (is_locked_) break;  // nobody saved it anew meanwhile
  }
  const Outcome outcome = storage_.read(name, bytes);
  if (trust == Trust::kMayBeEdited && outcome == Outcome::kDone && is_plain_text(bytes)) return bytes;
  if (outcome == Outcome::kMissing) return std::nullopt;  // somebody took it away
  std::optional<std::string> before = find(name, index_[name].before);
  damage = name + (before ? ": the file is damaged, the one saved before it is read" : ": the file is damaged");
  return before;
}

void SafeStore::settle(const std::string& name) {
  const auto known = index_.find(name);
  if (!storage_.facts(fresh(name)).is_there) return;
  const bool is_valid = known != index_.end() && has(fresh(name), known->second.last);
  if (!is_valid || has(name, known->second.last)) {
    storage_.remove(fresh(name));
    return;
  }
  if (has(name, known->second.before)) storage_.rename(name, former(name));
  storage_.rename(fresh(name), name);
  storage_.sync_folder(without_slash(folder_of(name)));
}

bool SafeStore::write_synced(const std::string& name, std::string_view bytes, std::string& problem) {
  Outcome outcome = storage_.write(name, bytes);
  if (outcome == Outcome::kDone) outcome = storage_.sync(name);
  if (outcome == Outcome::kDone) return true;
  problem = sentence(name.substr(0, name.find('~')), outcome);
  storage_.remove(name);
  return false;
}

bool SafeStore::prepare(const std::string& name, const std::string& bytes, Prepared& into, std::string& problem) {
  const Storage::Facts facts = storage_.facts(name);
  if (facts.is_folder() || (facts.attributes & Storage::kReadOnly) != 0) {
    problem = name + (facts.is_folder() ? ": cannot be saved, it is a folder" : ": cannot be saved, it is read-only");
    return false;
  }
  if (!make_folders(without_slash(folder_of(name)))) {
    problem = name + ": cannot be saved, its folder cannot be made";
    return false;
  }
  settle(name);
  if (storage_.facts(fresh(name)).is_there) {  // a save that is valid, and cannot be put in its place
    problem = sentence(name, Outcome::kRefused);
    return false;
  }
  const auto known = index_.find(name);
  const Generations before = known != index_.end() ? known->second : Generations();
  std::string current;
  const bool is_there = storage_.read(name, current) == Outcome::kDone;
  const bool has_former = has(former(name), before.before);
  // What is damaged takes no good generation's place.
  into.keeps_last = is_there && !(before.last.exists() && sum_of(current) != before.last && has_former);
  if (into.keeps_last) {
    into.generations.before = sum_of(current);
  } else if (has_former) {
    into.generations.before = before.before;
  }
  into.generations.last = sum_of(bytes);
  return write_synced(fresh(name), bytes, problem);
}

bool SafeStore::sync_folders(const std::set<std::string>& names, std::string& problem) {
  std::set<std::string> folders;
  for (const std::string& name : names) folders.insert(without_slash(folder_of(name)));
  for (const std::string& folder : folders) {
    const Outcome outcome = storage_.sync_folder(folder);
    if (outcome == Outcome::kDone || outcome == Outcome::kMissing) continue;
    problem = sentence(folder, outcome);
    return false;
  }
  return true;
}

bool SafeStore::write_index(const Index& next, bool& is_valid, std::string& problem) {
  if (!write_synced(kFreshIndex, index_text(next), problem)) return false;
  if (const Outcome outcome = storage_.rename(kFreshIndex, kIndex); outcome != Outcome::kDone) {
    problem = sentence("the list of saved files", outcome);
    storage_.remove(kFreshIndex);
    return false;
  }
  is_valid = true;
  return sync_folders({kIndex}, problem);
}

void SafeStore::put_in_place(const std::map<std::string, Prepared>& prepared, const std::set<std::string>& removed) {
  std::set<std::string> names = removed;
  for (const auto& [name, each] : prepared) {
    if (each.keeps_last) storage_.rename(name, former(name));
    storage_.rename(fresh(name), name);
    names.insert(name);
  }
  for (const std::string& name : removed) {
    for (const std::string& each : {name, former(name), fresh(name)}) storage_.remove(each);
  }
  std::string ignored;  // all is valid already; what is left to do is done before the next save
  sync_folders(names, ignored);
}

void SafeStore::forget_removed(Index& next) {
  std::set<std::string> names;
  for (const auto& [name, generations] : next) {
    if (generations.last.exists()) continue;
    names.insert(name);
    for (const std::string& each : {name, former(name), fresh(name)}) storage_.remove(each);
  }
  std::string ignored;
  if (names.empty() || !sync_folders(names, ignored)) return;
  for (const std::string& name : names) {
    if (!storage_.facts(name).is_there && !storage_.facts(former(name)).is_there) next.erase(name);
  }
}

bool SafeStore::change(const Changes& changes, std::string& problem) {
  if (!storage_.lock()) {
    problem = "nothing can be saved: the folder cannot be written, or another program has it";
    return false;
  }
  follow_index();
  is_locked_ = true;
  Index next = index_;
  forget_removed(next);
  std::map<std::string, Prepared> prepared;
  std::set<std::string> names;
  bool is_ready = true;
  for (const auto& [name, bytes] : changes.written) {
    is_ready = is_ready && prepare(name, bytes, prepared[name], problem);
    next[name] = prepared[name].generations;
    names.insert(name);
  }
  for (const std::string& name : changes.removed) next[name] = {};
  bool is_valid = false;
  const bool is_done = is_ready && sync_folders(names, problem) && write_index(next, is_valid, problem);
  if (is_valid) {
    index_ = std::move(next);
    put_in_place(prepared, changes.removed);
  } else {
    for (const auto& [name, each] : prepared) {
      if (each.generations.last.exists()) storage_.remove(fresh(name));
    }
  }
  return is_done;
}

Storage::Facts SafeStore::facts(const std::string& name) {
  follow_index();
  const auto known = index_.find(name);
  if (known == index_.end()) return storage_.facts(name);
  if (!known->second.last.exists()) return {};
  Storage::Facts found = storage_.facts(name), waiting = storage_.facts(fresh(name));
  const bool is_waiting = waiting.is_there && waiting.size == known->second.last.size && found.size != waiting.size;
  return is_waiting || !found.is_there ? waiting : found;
}

std::vector<Storage::Entry> SafeStore::list(const std::string& folder) {
  follow_index();
  const std::string inside = folder.empty() ? "" : folder + "/";
  std::map<std::string, bool> found;
  for (Storage::Entry& each : storage_.list(folder)) {
    const bool is_waiting = each.name.ends_with("~new") && index_.contains(inside + each.name.substr(0, each.name.size() - 4));
    if (is_waiting) each.name.resize(each.name.size() - 4);
    if (!flaw_of_name(inside + each.name).empty()) continue;
    const auto known = index_.find(inside + each.name);
    if (each.is_folder || known == index_.end() || known->second.last.exists()) found[each.name] = each.is_folder;
  }
  std::vector<Storage::Entry> sorted;
  sorted.reserve(found.size());
  for (const auto& [name, is_folder] : found) sorted.push_back({name, is_folder});
  return sorted;
}

bool SafeStore::make_folders(const std::string& name) {
  for (std::size_t end = 0; end < name.size();) {
    end = std::min(name.find('/', end == 0 ? 0 : end + 1), name.size());
    const std::string folder = name.substr(0, end);
    if (storage_.facts(folder).is_folder()) continue;
    if (storage_.make_folder(folder) != Outcome::kDone || storage_.sync_folder(without_slash(folder_of(folder))) != Outcome::kDone)
      return false;
  }
  return true;
}

std::vector<std::string> SafeStore::files_below(const std::string& folder) {
  std::vector<std::string> found;
  for (const Storage::Entry& each : list(folder)) {
    const std::string name = folder.empty() ? each.name : folder + "/" + each.name;
    if (!each.is_folder) {
      found.push_back(name);
    } else {
      const std::vector<std::string> inside = files_below(name);
      found.insert(found.end(), inside.begin(), inside.end());
    }
  }
  return found;
}

bool SafeStore::remove_folder(const std::string& name, std::string& problem) {
  Changes changes;
  for (const std::string& each : files_below(name)) changes.removed.insert(each);
  if (!change(changes, problem)) return false;
  for (const Storage::Entry& each : list(name)) {
    if (each.is_folder && !remove_folder(name + "/" + each.name, problem)) return false;
  }
  for (const Storage::Entry& each : storage_.list(name)) {
    if (!each.is_folder && each.name.find('~') != std::string::npos) storage_.remove(name + "/" + each.name);
  }
  if (storage_.remove_folder(name) != Outcome::kDone) problem = name + ": cannot be deleted";
  return problem.empty();
}

}  // namespace arena::files
