#pragma once
// Files as scripts know them: the save folder, then what was packed with the game. What the machine says passes as an answer from outside,
// so that a replay needs no disk and leaves it alone.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/files/safe_store.h"
#include "runtime/session/state.h"

namespace arena::files {

// By name; the bytes outlive the game.
using PackedFiles = std::map<std::string, std::string_view, std::less<>>;
void use_packed_files(PackedFiles files);

std::optional<std::string> read_file(const std::string& name, SafeStore::Trust trust = SafeStore::Trust::kChecked);
// False when nothing can be written. While a set is open (begin_set) all is kept back.
bool save_file(const std::string& name, std::string bytes);
bool change_files(Changes changes);
Storage::Facts facts_of(const std::string& name, bool& is_packed);
// Names that fit, without their folder, sorted.
std::vector<std::string> names_like(const std::string& pattern, bool folders);
// All files in a folder and those inside it, packed ones included.
std::vector<std::string> names_below(const std::string& folder);
bool make_folder(const std::string& name);
bool remove_folder(const std::string& name);
bool set_attributes(const std::string& name, std::int32_t attributes);

void begin_set();
bool end_set();
bool wait_for_disk();

// Asynchronously: the result comes through the input queue, with that number.
std::uint32_t begin_load(const std::string& name);
std::uint32_t begin_save(const std::string& name, std::string bytes);
// What is on its way, by number.
struct Request {
  std::string name;
  bool is_save = false;
  static constexpr auto fields() { return std::tuple(field("name", &Request::name), field("is_save", &Request::is_save)); }
};
// Nothing for a number that nobody waits for: of another course of things, which a restored state does not know.
std::optional<Request> find_request(std::uint32_t ticket);
void end_request(std::uint32_t ticket);
std::optional<std::string> packed_file(const std::string& name);
// Puts what arrived into the input queue: between two frames, and once for each. Never in a replay, whose queue has it.
void deliver_arrivals();
// The next frame takes the queue as it is now.
void end_delivery();

}  // namespace arena::files
