// The licence flag as scripts read it. Its answers come from outside, so that a recording plays alike in every build.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>
#include <vector>

#include "engine/licence/licence.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/licence.h"
#include "runtime/input/outside.h"

namespace arena::licence {
namespace {

std::string get_edition() {
  return answer_from_outside([] { return std::string(edition()); });
}
bool scripts_have_feature(std::string_view feature) {
  return answer_from_outside([&] { return std::string(has_feature(feature) ? "1" : ""); }) == "1";
}
RValue get_features() {
  const std::string answer = answer_from_outside([] {
    std::string all;
    for (const std::string& feature : features()) all += feature + " ";
    return all;
  });
  std::vector<RValue> names;
  for (std::size_t from = 0; from < answer.size();) {
    const std::size_t end = std::min(answer.find(' ', from), answer.size());
    names.push_back(make_string(answer.substr(from, end - from)));
    from = end + 1;
  }
  return make_array(names.data(), static_cast<std::int32_t>(names.size()));
}

constexpr Implementation kRows[] = {
    implement<script::licence_get_edition, get_edition>,
    implement<script::licence_get_features, get_features>,
    implement<script::licence_has_feature, scripts_have_feature>,
};
const BuiltinTable table("Licence flag", "Fixed when the program is compiled; `--version` shows it.", kRows);

}  // namespace
}  // namespace arena::licence
