// Any text is a table of actions or a sentence, and what is read is written as the same text; whatever comes from gamepads, axes stay in
// their range.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "runtime/input/actions.h"
#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"
#include "runtime/program/names.h"
#include "runtime/session/session.h"

namespace {

using namespace arena;

void read_actions(std::string_view text) {
  std::string problem, second;
  if (!set_actions_text(text, problem)) return require(problem.starts_with("line "));
  const std::string written = actions_text();
  require(set_actions_text(written, problem));
  require(actions_text() == written);
}

// Eleven bytes an event: type, device, value, position.
void play_pads(std::string_view bytes) {
  using Type = InputEvent::Type;
  for (; bytes.size() >= 11; bytes.remove_prefix(11)) {
    InputEvent event;
    const int first = static_cast<int>(Type::kPad), kinds = static_cast<int>(Type::kPointerInside) - first + 1;
    event.type = static_cast<Type>(first + static_cast<unsigned char>(bytes[0]) % kinds);
    event.code = static_cast<signed char>(bytes[1]);
    event.value = static_cast<signed char>(bytes[2]);
    std::memcpy(&event.x, bytes.data() + 3, sizeof event.x);
    if (event.type == Type::kPad) event.text = bytes.substr(0, 40);
    push_input(event);
    if (bytes[0] < 0) begin_input_frame();
  }
  begin_input_frame();
  for (const Pad& pad : gamepads()) {
    for (int axis = 0; axis < kPadAxes; ++axis) require(pad_axis(pad, axis) >= -1 && pad_axis(pad, axis) <= 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  look_up_names();
  Session session;  // what is read lives in it
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  read_actions(bytes);
  play_pads(bytes);
  return 0;
}
