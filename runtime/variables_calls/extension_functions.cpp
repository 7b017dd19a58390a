#include "runtime/variables_calls/extension_functions.h"

#include <vector>

#include "runtime/session/session.h"

namespace arena {
namespace {

const Part<std::vector<ScriptFunction>> extensions{PartLevel::kScripts, "extension functions"};

}  // namespace

std::int32_t add_extension_function(ScriptFunction function) {
  extensions().push_back(function);
  return kFirstExtensionNumber + static_cast<std::int32_t>(extensions().size());
}

ScriptFunction extension_function(std::int32_t number) {
  const std::int64_t place = static_cast<std::int64_t>(number) - kFirstExtensionNumber - 1;
  return place >= 0 && place < static_cast<std::int64_t>(extensions().size()) ? extensions()[static_cast<std::size_t>(place)] : nullptr;
}

}  // namespace arena
