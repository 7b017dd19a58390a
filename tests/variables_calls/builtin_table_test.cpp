// The table of built-in functions in the documents and the one in the program name the same functions.
#include <fstream>
#include <set>

#include "runtime/variables_calls/functions.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class BuiltinTableTest : public TestGame {};

TEST_F(BuiltinTableTest, IsTheOneInTheDocuments) {
  std::set<std::string> documented, built;
  std::ifstream stream(ARENA_SOURCE "/docs/builtins.md");
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind("| `", 0) == 0) documented.insert(line.substr(3, line.find('`', 3) - 3));
  }
  for (std::int32_t i = 0; i < builtin_count(); ++i) built.insert(builtin_at(i).name);
  for (const std::string& name : documented) EXPECT_EQ(built.count(name), 1u) << name << " is documented but not built";
  for (const std::string& name : built) EXPECT_EQ(documented.count(name), 1u) << name << " is built but not documented";
}

}  // namespace
}  // namespace arena::test
