// What became of files that were read or saved while the game went on, as the events Async_2 tell it.
#include "engine/buffers/buffer.h"
#include "engine/files/game_files.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/instances_loop/async_results.h"
#include "runtime/program/names.h"
#include "runtime/values/strings.h"

namespace arena::buffers {
namespace {

void set(PropertyObject* object, std::string_view name, const RValue& value) { store_variable(object, variable_id(name), value); }

// The text begins with a letter: P progress, D done, F failed.
RValue file_result(const InputEvent& event) {
  const std::uint32_t ticket = static_cast<std::uint32_t>(event.code);
  const std::optional<files::Request> request = files::find_request(ticket);
  if (!request || event.text.empty()) return {};
  const bool goes_on = event.text[0] == 'P';
  bool is_done = event.text[0] == 'D';
  std::string content = event.text.substr(1);
  if (!goes_on) files::end_request(ticket);
  if (!goes_on && !is_done && !request->is_save) {  // not saved yet, but it may have been packed
    const std::optional<std::string> packed = content.empty() ? files::packed_file(request->name) : std::nullopt;
    is_done = packed.has_value();
    content = packed.value_or(content.empty() ? request->name + ": there is no such file" : content);
  }
  const RValue made = make_struct();
  PropertyObject* const object = property_object(made);
  set(object, "id", RValue(static_cast<double>(ticket)));
  set(object, "name", make_string(request->name));
  set(object, "action", make_string(request->is_save ? "save" : "load"));
  set(object, "status", make_string(goes_on ? "progress" : is_done ? "done" : "failed"));
  const double size = static_cast<double>(content.size());
  set(object, "done", RValue(is_done && !request->is_save ? size : event.x));
  set(object, "total", RValue(is_done && !request->is_save ? size : event.y));
  set(object, "buffer", RValue(is_done && !request->is_save ? make_buffer(content) : -1.0));
  set(object, "message", make_string(goes_on || is_done ? "" : content));
  return made;
}

const AsyncSource source{kAsyncFile, file_result};

}  // namespace
}  // namespace arena::buffers
