// Settings as scripts call them.
#define ARENA_DEFINES_BUILTINS

#include "engine/files/file_arguments.h"
#include "engine/files/game_files.h"
#include "engine/formats/exact_numbers.h"
#include "engine/formats/ini_document.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/inis.h"
#include "runtime/session/state.h"
#include "runtime/values/refs.h"

namespace arena {
namespace documents {

// One that is open.
struct Ini {
  formats::IniDocument document;
  void visit_content(StateVisitor& visitor) { visitor.text(document.text()); }
  static constexpr auto fields() { return std::tuple(derived("document", &Ini::document)); }
};

namespace {
struct Inis {
  std::map<std::int32_t, Ini> all;
  static constexpr auto fields() { return std::tuple(field("all", &Inis::all)); }
};
const StatePart<Inis> part{PartLevel::kServices, "inis"};
const RefKind refs{ref_type::kIni, "ini"};
}  // namespace
}  // namespace documents

// Its handle is a small number, given again.
struct IniArgument {
  formats::IniDocument* document;
  std::int32_t handle;
};
template <>
struct Argument<IniArgument> {
  static constexpr bool consumes = true;
  static IniArgument get(const CallContext& call, int at) {
    IniArgument argument{nullptr, -1};
    if (!is_number_like(argument_at(call, at))) {
      report_argument_type(call, at, "ini");
      return argument;
    }
    argument.handle = to_int32(argument_at(call, at));
    const auto found = documents::part().all.find(argument.handle);
    if (found == documents::part().all.end()) {
      report_invalid_resource(at + 1, "ini", argument.handle, -1);
    } else {
      argument.document = &found->second.document;
    }
    return argument;
  }
};

namespace documents {
namespace {

std::int32_t make(std::string_view text) {
  std::int32_t handle = 0;
  for (const auto& [taken, ini] : part().all) {
    if (taken == handle) ++handle;
  }
  part().all[handle].document = formats::IniDocument(text);
  return handle;
}

// Whether there can be such names; reports otherwise.
bool check_names(std::string_view section, std::string_view key) {
  std::string_view flaw = formats::IniDocument::flaw_of_section(section);
  if (flaw.empty()) flaw = formats::IniDocument::flaw_of_key(key);
  if (!flaw.empty()) report_error(messages::kFormat, current_builtin_name(), flaw);
  return flaw.empty();
}

RValue array_of(const std::vector<std::string>& texts) {
  RValue made = make_array();
  for (const std::string& text : texts) array_append(*made.array, make_string(text));
  return made;
}

std::int32_t create() { return make(""); }
std::int32_t parse(std::string_view text) { return make(text); }
std::int32_t open(FileName name) { return make(files::read_file(name.name, files::SafeStore::Trust::kMayBeEdited).value_or("")); }
void close(IniArgument a) { part().all.erase(a.handle); }
std::string text(IniArgument a) { return a.document->text(); }
bool save(IniArgument a, FileName name) { return files::save_file(name.name, a.document->text()); }

double get_number(IniArgument a, std::string_view section, std::string_view key, double otherwise) {
  const std::optional<std::string> found = a.document->get(section, key);
  return found ? formats::read_exact(*found).value_or(otherwise) : otherwise;
}
RValue get_text(IniArgument a, std::string_view section, std::string_view key, const RValue& otherwise) {
  const std::optional<std::string> found = a.document->get(section, key);
  if (found) return make_string(*found);
  return otherwise.is_undefined() ? make_string("") : otherwise;
}
void set_text(IniArgument a, std::string_view section, std::string_view key, std::string_view value) {
  if (check_names(section, key)) a.document->set(section, key, value);
}
void set_number(IniArgument a, std::string_view section, std::string_view key, double number) {
  set_text(a, section, key, formats::exact_text(number));
}
bool key_exists(IniArgument a, std::string_view section, std::string_view key) { return a.document->get(section, key).has_value(); }
void key_delete(IniArgument a, std::string_view section, std::string_view key) { a.document->remove_key(section, key); }
RValue key_names(IniArgument a, std::string_view section) { return array_of(a.document->keys(section)); }
bool section_exists(IniArgument a, std::string_view section) { return a.document->has_section(section); }
void section_delete(IniArgument a, std::string_view section) { a.document->remove_section(section); }
RValue section_names(IniArgument a) { return array_of(a.document->sections()); }

constexpr Implementation kRows[] = {
    implement<script::ini_create, create>,
    implement<script::ini_parse, parse>,
    implement<script::ini_open, open>,
    implement<script::ini_close, close>,
    implement<script::ini_save, save>,
    implement<script::ini_text, text>,
    implement<script::ini_get_number, get_number>,
    implement<script::ini_get_text, get_text>,
    implement<script::ini_set_number, set_number>,
    implement<script::ini_set_text, set_text>,
    implement<script::ini_key_exists, key_exists>,
    implement<script::ini_key_delete, key_delete>,
    implement<script::ini_key_names, key_names>,
    implement<script::ini_section_exists, section_exists>,
    implement<script::ini_section_delete, section_delete>,
    implement<script::ini_section_names, section_names>,
};
const BuiltinTable table("Settings (INI)",
                         "By handle: they live until they are closed. The section \"\" holds the keys before the first one. Names are told "
                         "apart by their case; of a "
                         "key that comes twice the last one counts. What is not changed stays as it stands, comments included.",
                         kRows);

}  // namespace
}  // namespace documents
}  // namespace arena
