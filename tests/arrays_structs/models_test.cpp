// Random programs over arrays, lists, maps and grids, compared step by step with plain standard containers.
#include <algorithm>
#include <map>
#include <memory>
#include <random>

#include "runtime/arrays_structs/collector.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Models : public TestGame {
 protected:
  int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  std::string name(int variable) { return std::string("v") + static_cast<char>('a' + variable); }
  static std::string text_of(const std::vector<int>& values) {
    std::string text = "[";
    for (const int value : values) text += (text.size() > 1 ? "," : "") + std::to_string(value);
    return text + "]";
  }
  std::mt19937 random_{static_cast<std::uint32_t>(from_environment("ARENA_SEED", 20240607))};
};

// A variable holds an array together with others until one of them writes. Functions that work in place change what they are given, and
// whoever holds it sees that.
TEST_F(Models, ArraysAreSharedUntilSomebodyWrites) {
  constexpr int kVariables = 5;
  std::shared_ptr<std::vector<int>> held[kVariables];
  for (int v = 0; v < kVariables; ++v) {
    held[v] = std::make_shared<std::vector<int>>();
    eval(name(v) + " = []");
  }
  const auto own = [&](int v) {
    if (held[v].use_count() > 1) held[v] = std::make_shared<std::vector<int>>(*held[v]);
  };
  for (int round = 0; round < 2500 * longer(); ++round) {
    const int v = pick(kVariables), other = pick(kVariables), value = pick(1000), size = static_cast<int>(held[v]->size());
    std::string statement;
    switch (pick(9)) {
      case 0:
        statement = name(v) + " = " + name(other);
        held[v] = held[other];
        break;
      case 1:
      case 2: {
        const int at = pick(size + 2);  // also behind the end: the gap is filled with zeros
        statement = name(v) + "[" + std::to_string(at) + "] = " + std::to_string(value);
        own(v);
        if (at >= size) held[v]->resize(static_cast<std::size_t>(at) + 1, 0);
        (*held[v])[static_cast<std::size_t>(at)] = value;
        break;
      }
      case 3:
        statement = "array_push(" + name(v) + ", " + std::to_string(value) + ")";
        held[v]->push_back(value);
        break;
      case 4: {
        const int at = pick(size + 1);
        statement = "array_insert(" + name(v) + ", " + std::to_string(at) + ", " + std::to_string(value) + ")";
        held[v]->insert(held[v]->begin() + at, value);
        break;
      }
      case 5: {
        if (size == 0) continue;
        const int at = pick(size), count = 1 + pick(3);
        statement = "array_delete(" + name(v) + ", " + std::to_string(at) + ", " + std::to_string(count) + ")";
        held[v]->erase(held[v]->begin() + at, held[v]->begin() + std::min(size, at + count));
        break;
      }
      case 6:
        statement = "array_sort(" + name(v) + ", true)";
        std::sort(held[v]->begin(), held[v]->end());
        break;
      case 7:
        statement = name(v) + " = [" + std::to_string(value) + ", 7]";
        held[v] = std::make_shared<std::vector<int>>(std::vector<int>{value, 7});
        break;
      default:
        statement = name(v) + " += 0; 0";  // an array plus a number fails and loses nothing
        break;
    }
    eval(statement);
    if (round % 400 == 0) collect_everything();
    for (int each = 0; each < kVariables; ++each)
      ASSERT_EQ(eval(name(each)), text_of(*held[each])) << "after " << statement << ", round " << round;
  }
}

TEST_F(Models, ListsKeepTheirOrder) {
  std::vector<int> model;
  eval("l = ds_list_create()");
  for (int round = 0; round < 1500 * longer(); ++round) {
    const int value = pick(40), size = static_cast<int>(model.size());
    const std::string shown = std::to_string(value);
    switch (pick(6)) {
      case 0:
      case 1:
        eval("ds_list_add(l, " + shown + "); 1");
        model.push_back(value);
        break;
      case 2: {
        const int at = pick(size + 1);
        eval("ds_list_insert(l, " + std::to_string(at) + ", " + shown + "); 1");
        model.insert(model.begin() + at, value);
        break;
      }
      case 3:
        if (size == 0) break;
        {
          const int at = pick(size);
          eval("ds_list_delete(l, " + std::to_string(at) + "); 1");
          model.erase(model.begin() + at);
        }
        break;
      case 4:
        if (size == 0) break;
        {
          const int at = pick(size);
          eval("ds_list_set(l, " + std::to_string(at) + ", " + shown + "); 1");
          model[static_cast<std::size_t>(at)] = value;
        }
        break;
      default: {
        const auto found = std::find(model.begin(), model.end(), value);
        ASSERT_EQ(number("ds_list_find_index(l, " + shown + ")"), found == model.end() ? -1 : found - model.begin());
        break;
      }
    }
    ASSERT_EQ(number("ds_list_size(l)"), static_cast<double>(model.size()));
    if (model.empty()) continue;
    const int at = pick(static_cast<int>(model.size()));
    ASSERT_EQ(number("ds_list_find_value(l, " + std::to_string(at) + ")"), model[static_cast<std::size_t>(at)]);
  }
}

TEST_F(Models, MapsAnswerForEveryKey) {
  std::map<std::string, int> model;
  eval("m = ds_map_create()");
  for (int round = 0; round < 1500 * longer(); ++round) {
    const std::string key = "\"k" + std::to_string(pick(60)) + "\"";
    const int value = pick(1000);
    const int action = pick(4);
    if (action < 2) {
      eval("ds_map_set(m, " + key + ", " + std::to_string(value) + "); 1");
      model[key] = value;
    } else if (action == 2) {
      eval("ds_map_delete(m, " + key + "); 1");
      model.erase(key);
    }
    const auto found = model.find(key);
    ASSERT_EQ(eval("ds_map_exists(m, " + key + ")"), found != model.end() ? "true" : "false");
    ASSERT_EQ(eval("ds_map_find_value(m, " + key + ")"), found != model.end() ? std::to_string(found->second) : "undefined");
    ASSERT_EQ(number("ds_map_size(m)"), static_cast<double>(model.size()));
  }
  // Going from key to key meets every one once.
  std::size_t met = 0;
  for (std::string key = eval("k = ds_map_find_first(m); k"); key != "undefined"; key = eval("k = ds_map_find_next(m, k); k")) {
    EXPECT_EQ(model.erase("\"" + key + "\""), 1u) << key;
    ASSERT_LT(++met, 100u);
  }
  EXPECT_TRUE(model.empty());
}

// Clearing only touches what was written since the last time, if that is known: every way in and out of that knowledge.
TEST_F(Models, GridsAreClearedWhatever) {
  constexpr int kWidth = 90, kHeight = 70;
  std::vector<std::string> model(kWidth * kHeight, "0");
  eval("g = ds_grid_create(90, 70)");
  const auto cell = [&](int column, int row) -> std::string& { return model[static_cast<std::size_t>(row * kWidth + column)]; };
  const char* const values[] = {"0", "-4", "\"text\"", "[1,2]", "5"};
  for (int round = 0; round < 40 * longer(); ++round) {
    const int writes = round % 8 == 7 ? 5000 : pick(30);  // sometimes more than a grid remembers
    for (int i = 0; i < writes; ++i) {
      const int column = pick(kWidth), row = pick(kHeight), which = pick(5);
      const std::string place = std::to_string(column) + ", " + std::to_string(row);
      if (i % 5 == 4 && cell(column, row) != "text" && cell(column, row) != "[1,2]") {
        eval("ds_grid_add(g, " + place + ", 3); 1");
        cell(column, row) = std::to_string(std::stoi(cell(column, row)) + 3);
      } else {
        eval("ds_grid_set(g, " + place + ", " + values[which] + "); 1");
        cell(column, row) = which == 2 ? "text" : values[which];
      }
    }
    for (int i = 0; i < 60; ++i) {
      const int column = pick(kWidth), row = pick(kHeight);
      ASSERT_EQ(eval("ds_grid_get(g, " + std::to_string(column) + ", " + std::to_string(row) + ")"), cell(column, row))
          << "round " << round;
    }
    const int ground = pick(5);
    if (round % 3 == 0) continue;
    eval(std::string("ds_grid_clear(g, ") + values[ground] + "); 1");
    std::fill(model.begin(), model.end(), ground == 2 ? "text" : values[ground]);
  }
}

}  // namespace
}  // namespace arena::test
