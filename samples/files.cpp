// Files: settings in an INI that remember how often the room was opened, notes that are saved and loaded while the room goes on, and what
// lies in the save folder.
#include "samples/sample.h"

namespace game {
extern const Script<void(Value, Value)> files_save, files_load, files_forget;

namespace {

const Sample sample{rFiles, "Files", "Settings and saves that are there next time", sprGem};

const Variable opened{"opened"}, notes{"notes"}, progress{"progress"}, told{"told"}, listed{"listed"}, buffer_field{"buffer"},
    status{"status"}, action{"action"}, done{"done"}, total{"total"}, message{"message"}, id_field{"id"}, lines{"lines"},
    column_gap{"column_gap"}, row_gap{"row_gap"}, inset_left{"inset_left"}, inset_top{"inset_top"}, name_field{"name"}, prefix{"prefix"},
    suffix{"suffix"}, written{"written"};

constexpr const char* kSettings = "samples/settings.ini";
constexpr const char* kNotes = "samples/notes.json";
constexpr int kRepeats = 20000;  // of a note, so that there is something to wait for

Value shown(const Value& holder, const char* variable, const char* before) {
  const Value text = TuiText.make(struct_of({{prefix, before}, {overflow, tui::kOverflowWrap}}));
  text[bindVariable](holder, variable);
  return text;
}

Value button(const char* words, const char* called, const Script<void(Value, Value)>& what) {
  const Value made = TuiButton.make(struct_of({{value, words}, {name_field, called}}));
  made[addEvent]("click", what);
  return made;
}

// The names in the folder, one behind the other.
Value names_found() {
  Value all = "";
  for (Value name = file_find_first("samples/*"); !is_undefined(name); name = file_find_next("samples/*", name)) all = all + " " + name;
  return all;
}

// Counts the visits in a file that the player may read and change.
Real count_visit() {
  const Real settings = ini_open(kSettings);
  const Real times = ini_get_number(settings, "visits", "count", 0) + 1;
  ini_set_number(settings, "visits", "count", times);
  ini_save(settings, kSettings);
  ini_close(settings);
  return times;
}

}  // namespace
}  // namespace game

SCRIPT(files_save, Value, Value) {
  const Value kept = array_create(kRepeats, "a note of the samples");
  const Real bytes = buffer_from_text(json_text(struct_of({{notes, kept}, {opened, Value(oFiles[opened])}})));
  buffer_save_async(bytes, kNotes);
  buffer_destroy(bytes);
  oFiles[told] = "saving ...";
}

SCRIPT(files_load, Value, Value) {
  buffer_load_async(kNotes);
  oFiles[told] = "loading ...";
}

SCRIPT(files_forget, Value, Value) {
  file_delete(kNotes);
  file_delete(kSettings);
  oFiles[told] = "deleted";
  oFiles[listed] = names_found();
}

EVENT(oFiles, Create_0) {
  event_inherited();
  self[opened] = count_visit();
  self[told] = "";
  self[progress] = 0;
  self[listed] = names_found();
  const Value window = TuiWindow.make(struct_of({{value, "Files"}, {width, 560}, {inset_left, 360}, {inset_top, 120}, {row_gap, 10}}));
  const Value buttons = TuiRow.make(struct_of({{column_gap, 12}}));
  buttons[addContent](button("Save notes", "save", files_save));
  buttons[addContent](button("Load notes", "load", files_load));
  buttons[addContent](button("Delete all", "forget", files_forget));
  const Value bar = TuiProgressBar.make(struct_of({{rounding, 0}, {suffix, " %"}}));
  bar[bindVariable](self[id], "progress");
  window[addContent](shown(self[id], "opened", "Opened so often: "));
  window[addContent](array_of(buttons, bar));
  window[addContent](shown(self[id], "told", "Last: "));
  window[addContent](shown(self[id], "listed", "In the folder:"));
  self[interface][addContent](window);
}

EVENT(oFiles, Async_2) {
  const Value result = async_result();
  const Real share = Real(Value(result[done])) / max(1, Real(Value(result[total])));
  self[progress] = 100 * share;
  if (result[status] == "progress") return;
  self[told] = Value(result[action]) + " " + Value(result[status]) + " " + Value(result[message]);
  self[listed] = names_found();
  if (result[action] == "save" || result[status] == "failed") return;
  const Value read = json_parse(buffer_text(result[buffer_field]));
  buffer_destroy(result[buffer_field]);
  self[told] = string_of("{0} notes, saved at visit {1}", array_length(read[notes]), Value(read[opened]));
}
