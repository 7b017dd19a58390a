#include "engine/files/game_files.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "engine/files/sandbox.h"
#include "engine/files/save_folder.h"
#include "runtime/input/input_state.h"
#include "runtime/input/outside.h"
#include "runtime/instances_loop/async_results.h"
#include "runtime/session/state.h"

namespace arena::files {
namespace {

const Part<bool> is_delivered{PartLevel::kServices, "delivery of files"};
const Part<PackedFiles> packed{PartLevel::kServices, "packed files"};

// What is kept back until the set is whole, and what is on its way.
struct FilesState {
  bool is_set_open = false;
  std::map<std::string, std::string> written;
  std::vector<std::string> removed;
  std::map<std::uint32_t, Request> requests;
  static constexpr auto fields() {
    return std::tuple(field("is_set_open", &FilesState::is_set_open), field("written", &FilesState::written),
                      field("removed", &FilesState::removed), field("requests", &FilesState::requests));
  }
};
const StatePart<FilesState> part{PartLevel::kServices, "files"};

bool is_removed(const std::string& name) {
  return part().is_set_open && std::find(part().removed.begin(), part().removed.end(), name) != part().removed.end();
}

bool yes(const std::string& answer) { return answer == "1"; }
template <class Ask>
bool ask(Ask question) {
  return yes(answer_from_outside([&] { return question() ? "1" : ""; }));
}

// Lines, as an answer.
std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += name + '\n';
  return text;
}
std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string ticket_answer(std::uint32_t ticket) { return std::to_string(ticket); }
std::uint32_t ticket_of(const std::string& answer) { return static_cast<std::uint32_t>(std::strtoul(answer.c_str(), nullptr, 10)); }

std::uint32_t begun(const std::string& answer, const std::string& name, bool is_save) {
  const std::uint32_t ticket = ticket_of(answer);
  if (ticket != 0) part().requests[ticket] = {name, is_save};
  return ticket;
}

// Of a state that was put back: what was on its way then has arrived long ago, and does not come again.
bool is_lost(std::uint32_t ticket) {
  const auto is_its_own = [&](const InputEvent& event) {
    return event.type == InputEvent::Type::kAsync && event.code == static_cast<std::int32_t>(ticket);
  };
  return !save_folder().knows(ticket) && std::none_of(queued_input().begin(), queued_input().end(), is_its_own);
}

void push_arrival(const Arrival& arrival) {
  InputEvent event;
  event.type = InputEvent::Type::kAsync;
  event.code = static_cast<std::int32_t>(arrival.ticket);
  event.value = kAsyncFile;
  event.x = static_cast<double>(arrival.done);
  event.y = static_cast<double>(arrival.total);
  event.text = "PDF"[static_cast<int>(arrival.status)] + arrival.text;
  push_input(event);
}

}  // namespace

void use_packed_files(PackedFiles files) { packed() = std::move(files); }

std::optional<std::string> read_file(const std::string& name, SafeStore::Trust trust) {
  if (const auto kept = part().written.find(name); kept != part().written.end()) return kept->second;
  if (!is_removed(name)) {
    const std::string answer = answer_from_outside([&] {
      std::optional<std::string> found = save_folder().read(name, trust);
      return found ? '+' + *found : std::string();
    });
    if (!answer.empty()) return answer.substr(1);
  }
  return packed_file(name);
}

bool change_files(Changes changes) {
  FilesState& state = part();
  if (state.is_set_open) {
    for (auto& [name, bytes] : changes.written) {
      std::erase(state.removed, name);
      state.written[name] = std::move(bytes);
    }
    for (const std::string& name : changes.removed) {
      state.written.erase(name);
      if (!is_removed(name)) state.removed.push_back(name);
    }
    return true;
  }
  return ask([&] { return save_folder().save(std::move(changes)); });
}

bool save_file(const std::string& name, std::string bytes) {
  Changes changes;
  changes.written[name] = std::move(bytes);
  return change_files(std::move(changes));
}

void begin_set() { part().is_set_open = true; }

bool end_set() {
  FilesState& state = part();
  if (!state.is_set_open) return true;
  Changes changes;
  changes.written = std::move(state.written);
  changes.removed.insert(state.removed.begin(), state.removed.end());
  state.is_set_open = false;
  state.written.clear();
  state.removed.clear();
  if (changes.written.empty() && changes.removed.empty()) return true;
  return change_files(std::move(changes));
}

bool wait_for_disk() {
  return ask([] { return save_folder().wait(); });
}

Storage::Facts facts_of(const std::string& name, bool& is_packed) {
  is_packed = false;
  Storage::Facts found;
  if (const auto kept = part().written.find(name); kept != part().written.end()) {
    found.is_there = true;
    found.size = static_cast<std::int64_t>(kept->second.size());
    return found;
  }
  if (!is_removed(name)) {
    std::istringstream answer(answer_from_outside([&] {
      const Storage::Facts facts = save_folder().facts(name);
      if (!facts.is_there) return std::string();
      return std::to_string(facts.size) + ' ' + std::to_string(facts.seconds) + ' ' + std::to_string(facts.attributes);
    }));
    found.is_there = static_cast<bool>(answer >> found.size >> found.seconds >> found.attributes);
    if (found.is_there) return found;
  }
  const auto file = packed().find(name);
  const auto inside = packed().lower_bound(name + '/');
  found = {};
  if (file != packed().end()) {
    found.size = static_cast<std::int64_t>(file->second.size());
    found.attributes = Storage::kReadOnly;
  } else if (inside != packed().end() && inside->first.starts_with(name + '/')) {
    found.attributes = Storage::kFolder;
  } else {
    return found;
  }
  found.is_there = is_packed = true;
  return found;
}

std::vector<std::string> names_like(const std::string& pattern, bool folders) {
  const std::string folder = folder_of(pattern), last = pattern.substr(folder.size());
  std::set<std::string> found;
  const std::string answer = answer_from_outside([&] {
    std::vector<std::string> names;
    for (const Storage::Entry& each : save_folder().list(folder.substr(0, folder.empty() ? 0 : folder.size() - 1))) {
      if (each.is_folder == folders) names.push_back(each.name);
    }
    return joined(names);
  });
  for (const std::string& name : split(answer)) {
    if (folders || !is_removed(folder + name)) found.insert(name);
  }
  const auto add = [&](std::string_view name) {
    if (!name.starts_with(folder)) return;
    name.remove_prefix(folder.size());
    const std::size_t slash = name.find('/');
    if (folders == (slash != std::string_view::npos)) found.emplace(name.substr(0, slash));
  };
  for (const auto& [name, bytes] : packed()) add(name);
  for (const auto& [name, bytes] : part().written) add(name);
  std::vector<std::string> fitting;
  for (const std::string& name : found) {
    if (fits_pattern(last, name)) fitting.push_back(name);
  }
  return fitting;
}

std::vector<std::string> names_below(const std::string& folder) {
  const std::vector<std::string> saved = split(answer_from_outside([&] { return joined(save_folder().files_below(folder)); }));
  std::set<std::string> found;
  for (const std::string& name : saved) {
    if (!is_removed(name)) found.insert(name);
  }
  const auto add = [&](const std::string& name) {
    if (name.starts_with(folder + '/')) found.insert(name);
  };
  for (const auto& [name, bytes] : packed()) add(name);
  for (const auto& [name, bytes] : part().written) add(name);
  return {found.begin(), found.end()};
}

bool make_folder(const std::string& name) {
  return ask([&] { return save_folder().make_folder(name); });
}
bool remove_folder(const std::string& name) {
  return ask([&] { return save_folder().remove_folder(name); });
}
bool set_attributes(const std::string& name, std::int32_t attributes) {
  return ask([&] { return save_folder().set_attributes(name, attributes); });
}

std::uint32_t begin_load(const std::string& name) {
  return begun(answer_from_outside([&] {
                 const std::uint32_t ticket = save_folder().new_ticket();
                 save_folder().load(name, ticket);
                 return ticket_answer(ticket);
               }),
               name, false);
}

std::uint32_t begin_save(const std::string& name, std::string bytes) {
  return begun(answer_from_outside([&] {
                 const std::uint32_t ticket = save_folder().new_ticket();
                 Changes changes;
                 changes.written[name] = std::move(bytes);
                 save_folder().save(std::move(changes), ticket);
                 return ticket_answer(ticket);
               }),
               name, true);
}

void deliver_arrivals() {
  if (!asks_machine() || std::exchange(is_delivered(), true)) return;
  for (const Arrival& arrival : save_folder().take_arrivals()) push_arrival(arrival);
  for (const auto& [ticket, request] : part().requests) {
    if (is_lost(ticket)) push_arrival({Arrival::Status::kFailed, ticket, 0, 0, request.name + ": was interrupted"});
  }
}

void end_delivery() { is_delivered() = false; }

std::optional<Request> find_request(std::uint32_t ticket) {
  const auto found = part().requests.find(ticket);
  return found != part().requests.end() ? std::optional(found->second) : std::nullopt;
}
void end_request(std::uint32_t ticket) { part().requests.erase(ticket); }

std::optional<std::string> packed_file(const std::string& name) {
  const auto found = packed().find(name);
  return found != packed().end() ? std::optional(std::string(found->second)) : std::nullopt;
}

}  // namespace arena::files
