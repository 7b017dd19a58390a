#include "game/support/warnings.h"

namespace game {

void warn_once(const Variable& told, const char* message) {
  if (variable_global_exists(told.text)) return;
  global[told] = true;
  show_debug_message(string_of("WARNING: {0}", message));
}

}  // namespace game
