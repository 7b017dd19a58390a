// Text files, binary files and folders, as scripts call them. A file that is open for writing is state of the game; it goes to the disk
// whole when it is closed.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>
#include <cmath>

#include "engine/files/file_arguments.h"
#include "engine/files/game_files.h"
#include "engine/formats/exact_numbers.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/builtins/files.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/async_results.h"
#include "runtime/session/pooled_bytes.h"
#include "runtime/values/refs.h"
#include "runtime/values/text.h"

namespace arena {
namespace files {

enum class OpenFor : std::uint8_t { kReading, kWriting, kChanging };

// Its bytes stand among the session's own blocks, and so does it.
struct OpenFile {
  std::uint64_t position = 0;
  OpenFor open_for = OpenFor::kReading;
  PooledText name;
  PooledBytes content;

  static constexpr auto fields() {
    return std::tuple(field("position", &OpenFile::position), field("open_for", &OpenFile::open_for), field("name", &OpenFile::name),
                      field("content", &OpenFile::content));
  }
  static void* operator new(std::size_t bytes) { return allocate_block(bytes); }
  static void operator delete(void* block, std::size_t bytes) { free_block(block, bytes); }
};

namespace {
const StatePart<ContainerTable<OpenFile>> text_files{PartLevel::kServices, "text files"};
const StatePart<ContainerTable<OpenFile>> binary_files{PartLevel::kServices, "binary files"};
const RefKind text_refs{ref_type::kTextFile, "text file"}, binary_refs{ref_type::kBinaryFile, "binary file"};

OpenFile* find_open(const ContainerTable<OpenFile>& table, const CallContext& call, int at, const char* kind, std::int32_t& handle) {
  if (!is_number_like(argument_at(call, at))) {
    report_argument_type(call, at, kind);
    return nullptr;
  }
  handle = to_int32(argument_at(call, at));
  OpenFile* const found = table.find(handle);
  if (found == nullptr) report_invalid_resource(at + 1, kind, handle, -1);
  return found;
}
}  // namespace
}  // namespace files

struct TextFileArgument {
  files::OpenFile* file;
  std::int32_t handle;
};
struct BinaryFileArgument {
  files::OpenFile* file;
  std::int32_t handle;
};
template <>
struct Argument<TextFileArgument> {
  static constexpr bool consumes = true;
  static TextFileArgument get(const CallContext& call, int at) {
    TextFileArgument argument{nullptr, -1};
    argument.file = files::find_open(files::text_files(), call, at, "text file", argument.handle);
    return argument;
  }
};
template <>
struct Argument<BinaryFileArgument> {
  static constexpr bool consumes = true;
  static BinaryFileArgument get(const CallContext& call, int at) {
    BinaryFileArgument argument{nullptr, -1};
    argument.file = files::find_open(files::binary_files(), call, at, "binary file", argument.handle);
    return argument;
  }
};

namespace files {
namespace {

std::int32_t open(ContainerTable<OpenFile>& table, const FileName& name, OpenFor how, std::string_view content) {
  const std::int32_t handle = table.create();
  OpenFile& made = *table.find(handle);
  made.open_for = how;
  made.name = name.name;
  made.content.bytes = content;
  return handle;
}
std::int32_t open_existing(ContainerTable<OpenFile>& table, const FileName& name, OpenFor how) {
  const std::optional<std::string> content = read_file(name.name);
  return content ? open(table, name, how, *content) : -1;
}
bool close(ContainerTable<OpenFile>& table, OpenFile& file, std::int32_t handle) {
  const bool is_written = file.open_for == OpenFor::kReading || save_file(std::string(file.name), std::string(file.content.view()));
  table.destroy(handle);
  return is_written;
}

// Reports otherwise.
bool require(const char* kind, const OpenFile& file, std::int32_t handle, bool is_for_reading) {
  const bool is_open_for_it = file.open_for == OpenFor::kChanging || (file.open_for == OpenFor::kReading) == is_for_reading;
  if (!is_open_for_it) report_error(messages::kNotOpenFor, current_builtin_name(), 1, kind, handle, is_for_reading ? "reading" : "writing");
  return is_open_for_it;
}
bool can_read(const TextFileArgument& a) { return require("text file", *a.file, a.handle, true); }
bool can_write(const TextFileArgument& a) { return require("text file", *a.file, a.handle, false); }

std::string_view rest(const OpenFile& file) {
  const std::string_view all = file.content.view();
  return all.substr(std::min(static_cast<std::size_t>(file.position), all.size()));
}

std::int32_t text_open(FileName name) { return open_existing(text_files(), name, OpenFor::kReading); }
std::int32_t text_create(FileName name) { return open(text_files(), name, OpenFor::kWriting, ""); }
std::int32_t text_append(FileName name) { return open(text_files(), name, OpenFor::kWriting, read_file(name.name).value_or("")); }
bool text_close(TextFileArgument a) { return close(text_files(), *a.file, a.handle); }
bool text_is_at_end(TextFileArgument a) { return !can_read(a) || rest(*a.file).empty(); }
std::string text_read_line(TextFileArgument a) {
  if (!can_read(a)) return "";
  const std::string_view left = rest(*a.file);
  const std::size_t newline = std::min(left.find('\n'), left.size());
  a.file->position += std::min(newline + 1, left.size());
  const bool has_return = newline > 0 && newline < left.size() && left[newline - 1] == '\r';
  return std::string(left.substr(0, has_return ? newline - 1 : newline));
}
std::string text_read_text(TextFileArgument a) {
  if (!can_read(a)) return "";
  const std::string left(rest(*a.file));
  a.file->position = a.file->content.view().size();
  return left;
}
// Goes behind what was read; where no number stands, nowhere.
double text_read_number(TextFileArgument a) {
  if (!can_read(a)) return 0;
  const std::string_view left = rest(*a.file);
  const std::size_t begin = std::min(left.find_first_not_of(" \t,;"), left.size());
  const std::size_t end = std::min(left.find_first_of(" \t,;\r\n", begin), left.size());
  const std::string_view word = left.substr(begin, end - begin);
  const std::optional<double> number = formats::read_exact(word);
  if (number) a.file->position += end;
  return number.value_or(0);
}

void write_value(OpenFile& file, const RValue& value) {
  file.content.bytes += value.kind() == kNumber ? formats::exact_text(value.real) : to_text(value);
}
void text_write(TextFileArgument a, const RValue& value) {
  if (can_write(a)) write_value(*a.file, value);
}
void text_write_line(TextFileArgument a, const RValue& value) {
  if (!can_write(a)) return;
  if (!value.is_undefined()) write_value(*a.file, value);
  a.file->content.bytes += '\n';
}

std::int32_t binary_open(FileName name) { return open_existing(binary_files(), name, OpenFor::kReading); }
std::int32_t binary_create(FileName name) { return open(binary_files(), name, OpenFor::kWriting, ""); }
std::int32_t binary_change(FileName name) { return open_existing(binary_files(), name, OpenFor::kChanging); }
bool binary_close(BinaryFileArgument a) { return close(binary_files(), *a.file, a.handle); }
double binary_size(BinaryFileArgument a) { return static_cast<double>(a.file->content.view().size()); }
double binary_get_position(BinaryFileArgument a) { return static_cast<double>(a.file->position); }
void binary_set_position(BinaryFileArgument a, double position) {
  const double size = binary_size(a);
  a.file->position = static_cast<std::uint64_t>(position > 0 ? std::min(std::floor(position), size) : 0);
}
std::int32_t binary_read_byte(BinaryFileArgument a) {
  if (!require("binary file", *a.file, a.handle, true)) return -1;
  const std::string_view left = rest(*a.file);
  if (left.empty()) return -1;
  ++a.file->position;
  return static_cast<unsigned char>(left.front());
}
void binary_write_byte(BinaryFileArgument a, std::int32_t byte) {
  if (!require("binary file", *a.file, a.handle, false)) return;
  if (byte < 0 || byte > 255) return report_error(messages::kFormat, current_builtin_name(), "a byte is a number from 0 to 255");
  PooledText& bytes = a.file->content.bytes;
  if (a.file->position < bytes.size()) {
    bytes[static_cast<std::size_t>(a.file->position)] = static_cast<char>(byte);
  } else {
    bytes += static_cast<char>(byte);
  }
  ++a.file->position;
}

Storage::Facts facts(const std::string& name) {
  bool is_packed = false;
  return facts_of(name, is_packed);
}
bool is_file(const std::string& name) {
  const Storage::Facts found = facts(name);
  return found.is_there && !found.is_folder();
}
bool exists(FileName name) { return is_file(name.name); }
double size(FileName name) {
  const Storage::Facts found = facts(name.name);
  return found.is_there && !found.is_folder() ? static_cast<double>(found.size) : -1;
}
double time(FileName name) { return static_cast<double>(facts(name.name).seconds); }
std::int32_t get_attributes(FileName name) {
  bool is_packed = false;
  const Storage::Facts found = facts_of(name.name, is_packed);
  return found.is_there ? found.attributes | (is_packed ? 8 : 0) : -1;
}
bool set_file_attributes(FileName name, std::int32_t attributes) { return set_attributes(name.name, attributes); }

bool is_saved_file(const std::string& name) {
  bool is_packed = false;
  const Storage::Facts found = facts_of(name, is_packed);
  return found.is_there && !is_packed && !found.is_folder();
}
bool remove(FileName name) {
  if (!is_saved_file(name.name)) return false;
  Changes changes;
  changes.removed.insert(name.name);
  return change_files(std::move(changes));
}
// Files by their new names; one that is read nowhere is left out.
bool copy_all(const std::vector<std::pair<std::string, std::string>>& names, bool moves) {
  Changes changes;
  for (const auto& [from, to] : names) {
    std::optional<std::string> content = read_file(from);
    if (!content) return false;
    changes.written[to] = std::move(*content);
  }
  for (const auto& [from, to] : names) {
    if (moves && !changes.written.contains(from)) changes.removed.insert(from);
  }
  return change_files(std::move(changes));
}
bool copy(FileName from, FileName to) { return is_file(from.name) && copy_all({{from.name, to.name}}, false); }
bool rename(FileName from, FileName to) {
  return is_saved_file(from.name) && (from.name == to.name || copy_all({{from.name, to.name}}, true));
}

// Nothing is copied into itself.
bool copy_folder(const std::string& from, const std::string& to, bool moves) {
  if (!facts(from).is_folder() || (to + '/').starts_with(from + '/')) return false;
  std::vector<std::pair<std::string, std::string>> names;
  for (const std::string& name : names_below(from)) names.emplace_back(name, to + name.substr(from.size()));
  const bool is_done = make_folder(to) && (names.empty() || copy_all(names, moves));
  return is_done && (!moves || remove_folder(from));
}
bool folder_copy(FileName from, FileName to) { return copy_folder(from.name, to.name, false); }
bool folder_rename(FileName from, FileName to) {
  bool is_packed = false;
  const bool is_there = facts_of(from.name, is_packed).is_folder();
  return is_there && !is_packed && copy_folder(from.name, to.name, true);
}
bool folder_exists(FileName name) { return facts(name.name).is_folder(); }
bool folder_create(FileName name) { return make_folder(name.name); }
bool folder_delete(FileName name) { return remove_folder(name.name); }

RValue found_name(const std::vector<std::string>& names, std::vector<std::string>::const_iterator at) {
  return at == names.end() ? RValue() : make_string(*at);
}
template <bool folders>
RValue find_first(const CallContext& call, std::string_view) {
  const std::string pattern = checked_pattern(call, 0);
  const std::vector<std::string> names = pattern.empty() ? std::vector<std::string>() : names_like(pattern, folders);
  return found_name(names, names.begin());
}
template <bool folders>
RValue find_next(const CallContext& call, std::string_view, std::string_view name) {
  const std::string pattern = checked_pattern(call, 0);
  const std::vector<std::string> names = pattern.empty() ? std::vector<std::string>() : names_like(pattern, folders);
  return found_name(names, std::upper_bound(names.begin(), names.end(), name));
}

constexpr Implementation kRows[] = {
    implement<script::async_result, current_async_result>,
    implement<script::text_file_open, text_open>,
    implement<script::text_file_create, text_create>,
    implement<script::text_file_append, text_append>,
    implement<script::text_file_close, text_close>,
    implement<script::text_file_is_at_end, text_is_at_end>,
    implement<script::text_file_read_line, text_read_line>,
    implement<script::text_file_read_text, text_read_text>,
    implement<script::text_file_read_number, text_read_number>,
    implement<script::text_file_write, text_write>,
    implement<script::text_file_write_line, text_write_line>,
    implement<script::binary_file_open, binary_open>,
    implement<script::binary_file_create, binary_create>,
    implement<script::binary_file_change, binary_change>,
    implement<script::binary_file_close, binary_close>,
    implement<script::binary_file_size, binary_size>,
    implement<script::binary_file_get_position, binary_get_position>,
    implement<script::binary_file_set_position, binary_set_position>,
    implement<script::binary_file_read_byte, binary_read_byte>,
    implement<script::binary_file_write_byte, binary_write_byte>,
    implement<script::file_exists, exists>,
    implement<script::file_size, size>,
    implement<script::file_get_time, time>,
    implement<script::file_get_attributes, get_attributes>,
    implement<script::file_set_attributes, set_file_attributes>,
    implement<script::file_delete, remove>,
    implement<script::file_copy, copy>,
    implement<script::file_rename, rename>,
    implement<script::file_find_first, find_first<false>>,
    implement<script::file_find_next, find_next<false>>,
    implement<script::folder_find_first, find_first<true>>,
    implement<script::folder_find_next, find_next<true>>,
    implement<script::folder_exists, folder_exists>,
    implement<script::folder_create, folder_create>,
    implement<script::folder_delete, folder_delete>,
    implement<script::folder_copy, folder_copy>,
    implement<script::folder_rename, folder_rename>,
    implement<script::save_set_begin, begin_set>,
    implement<script::save_set_end, end_set>,
    implement<script::save_wait, wait_for_disk>,
};
const BuiltinTable table(
    "Files and folders",
    "Names are relative, with / between folders. A file is looked for in the game's save folder, then among those that were packed with "
    "the "
    "game; writing goes to the save folder. What is written to a file is there when it is closed, whole or, after a crash, not at all.",
    kRows);

}  // namespace
}  // namespace files
}  // namespace arena
