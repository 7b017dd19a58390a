// Layout against rectangles that a browser gave for the same trees. New seeds: tools/flex_oracle/make_cases.py SEED COUNT FILE, then run
// this test with FLEX_CASES=FILE.
#include "toolkit/ui/layout/flexbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

namespace arena::test {
namespace {

using namespace layout;

std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, at);) parts.push_back(part);
  return parts;
}

Length length_of(const std::string& text) {
  if (text == "auto") return {};
  const double value = std::stod(text);
  return text.back() == '%' ? Length::percent(value) : Length::pixels(value);
}

const std::map<std::string, Direction> kDirections = {{"row", Direction::kRow},
                                                      {"row-reverse", Direction::kRowReverse},
                                                      {"column", Direction::kColumn},
                                                      {"column-reverse", Direction::kColumnReverse}};
const std::map<std::string, Justify> kJustify = {{"flex-start", Justify::kStart},    {"flex-end", Justify::kEnd},
                                                 {"center", Justify::kCenter},       {"space-between", Justify::kBetween},
                                                 {"space-around", Justify::kAround}, {"space-evenly", Justify::kEvenly}};
const std::map<std::string, Align> kAlign = {
    {"stretch", Align::kStretch},       {"flex-start", Align::kStart},    {"flex-end", Align::kEnd},        {"center", Align::kCenter},
    {"space-between", Align::kBetween}, {"space-around", Align::kAround}, {"space-evenly", Align::kEvenly}, {"baseline", Align::kBaseline}};
const std::map<std::string, Edge> kEdges = {{"left", kLeft}, {"top", kTop}, {"right", kRight}, {"bottom", kBottom}};

void set(Style& style, const std::string& property, const std::string& value) {
  const std::vector<std::string> words = split(property, '-');
  const std::size_t axis = words.back() == "height" ? 1 : 0;
  if (property == "flex-direction") {
    style.direction = kDirections.at(value);
  } else if (property == "flex-wrap") {
    style.wrap = value == "wrap" ? Wrap::kWrap : Wrap::kReverse;
  } else if (property == "justify-content") {
    style.justify = kJustify.at(value);
  } else if (words[0] == "align") {
    (words[1] == "items" ? style.align_items : words[1] == "self" ? style.align_self : style.align_content) = kAlign.at(value);
  } else if (words.back() == "gap") {
    style.gap[words[0] == "row" ? 1 : 0] = length_of(value);
  } else if (property == "flex-grow") {
    style.grow = std::stod(value);
  } else if (property == "flex-shrink") {
    style.shrink = std::stod(value);
  } else if (property == "flex-basis") {
    style.basis = length_of(value);
  } else if (property == "aspect-ratio") {
    style.aspect_ratio = std::stod(value);
  } else if (property == "overflow") {
    style.clips = true;
  } else if (property == "position") {
    style.position = Position::kAbsolute;
  } else if (words[0] == "padding") {
    style.padding[kEdges.at(words[1])] = length_of(value);
  } else if (words[0] == "margin") {
    style.margin[kEdges.at(words[1])] = length_of(value);
  } else if (words[0] == "border") {
    style.border[kEdges.at(words[1])] = std::stod(value);
  } else if (words[0] == "min") {
    style.min_size[axis] = length_of(value);
  } else if (words[0] == "max") {
    style.max_size[axis] = length_of(value);
  } else if (property == "width" || property == "height") {
    style.size[axis] = length_of(value);
  } else {
    style.inset[kEdges.at(property)] = length_of(value);
  }
}

Style sized(double width, double height) {
  Style style;
  style.size = {Length::pixels(width), Length::pixels(height)};
  return style;
}

// Eight pixels a letter, ten a line.
class Letters final : public Content {
 public:
  explicit Letters(std::vector<int> words) : words_(std::move(words)) {}
  double narrowest() const override { return 8.0 * *std::max_element(words_.begin(), words_.end()); }
  double widest() const override {
    int letters = static_cast<int>(words_.size()) - 1;
    for (const int word : words_) letters += word;
    return 8.0 * letters;
  }
  double height_at(double width) const override {
    int lines = 1;
    double used = -8;
    for (const int word : words_) {
      if (used + 8 + word * 8.0 > width + 1e-6) {
        ++lines;
        used = -8;
      }
      used += 8 + word * 8.0;
    }
    return lines * 10.0;
  }

 private:
  std::vector<int> words_;
};

TEST(Flexbox, ContentDecidesWhereTheStyleDoesNot) {
  const Letters text({4, 4, 4});  // 112 pixels on one line, 32 at its narrowest
  Tree tree;
  Style row = sized(200, 100);
  row.align_items = Align::kStart;
  const std::int32_t root = tree.add(kNoBox, row);
  const std::int32_t alone = tree.add(root, {}, &text);
  Style fixed = sized(150, 20);
  fixed.shrink = 0;
  tree.add(root, fixed);
  tree.lay_out(400, 400);
  EXPECT_EQ(tree.at(alone).width, 50);  // what the other leaves: two lines would need 72
  EXPECT_EQ(tree.at(alone).height, 30);

  tree.clear();
  tree.add(kNoBox, sized(100, 100));
  Style padded;
  padded.align_self = Align::kStart;
  padded.padding = {Length::pixels(5), Length::pixels(6), Length::pixels(7), Length::pixels(8)};
  const std::int32_t wrapped = tree.add(0, padded, &text);
  tree.lay_out(400, 400);
  EXPECT_EQ(tree.at(wrapped).width, 100);
  EXPECT_EQ(tree.at(wrapped).height, 20 + 14);  // 88 pixels hold two words
}

TEST(Flexbox, IsAPureFunction) {
  Tree tree;
  Style root = sized(300, 200);
  root.wrap = Wrap::kWrap;
  tree.add(kNoBox, root);
  for (int i = 0; i < 20; ++i) {
    Style child = sized(20 + i * 3, 10);
    child.grow = 1;
    tree.add(0, child);
  }
  tree.lay_out(400, 400);
  std::vector<double> first;
  for (std::int32_t i = 0; i < tree.count(); ++i)
    first.insert(first.end(), {tree.at(i).x, tree.at(i).y, tree.at(i).width, tree.at(i).height});
  tree.at(0).style.size[0] = Length::pixels(77);
  tree.lay_out(400, 400);
  tree.at(0).style.size[0] = Length::pixels(300);
  tree.lay_out(400, 400);
  std::vector<double> again;
  for (std::int32_t i = 0; i < tree.count(); ++i)
    again.insert(again.end(), {tree.at(i).x, tree.at(i).y, tree.at(i).width, tree.at(i).height});
  EXPECT_EQ(first, again);
}

TEST(Flexbox, AgreesWithABrowser) {
  const char* given = std::getenv("FLEX_CASES");
  std::ifstream file(given != nullptr ? given : ARENA_SOURCE "/tests/ui/flex_cases.txt");
  ASSERT_TRUE(file) << "the file of cases is not there";
  int trees = 0, boxes = 0, wrong = 0;
  Tree tree;
  for (std::string line; std::getline(file, line); ++trees) {
    tree.clear();
    std::vector<std::int32_t> ancestors;
    std::vector<std::array<double, 4>> expected;
    const bool is_round =
        line.find('%') == std::string::npos && line.find("grow") == std::string::npos && line.find("ratio") == std::string::npos;
    for (const std::string& text : split(line, ' ')) {
      const std::vector<std::string> parts = split(text, '|');
      Style style;
      for (const std::string& pair : split(parts[1], ';')) set(style, pair.substr(0, pair.find(':')), pair.substr(pair.find(':') + 1));
      const auto depth = static_cast<std::size_t>(std::stoi(parts[0]));
      ancestors.resize(depth);
      ancestors.push_back(tree.add(depth == 0 ? kNoBox : ancestors[depth - 1], style));
      const std::vector<std::string> numbers = split(parts[2], ',');
      expected.push_back({std::stod(numbers[0]), std::stod(numbers[1]), std::stod(numbers[2]), std::stod(numbers[3])});
    }
    tree.lay_out(600, 400);
    const double tolerance = is_round ? 1.0 / 32 : 0.25;
    bool is_right = true;
    std::ostringstream difference;
    for (std::int32_t i = 0; i < tree.count(); ++i, ++boxes) {
      const Box& box = tree.at(i);
      const std::array<double, 4> found{box.x, box.y, box.width, box.height};
      for (std::size_t n = 0; n < 4; ++n) {
        if (std::fabs(found[n] - expected[static_cast<std::size_t>(i)][n]) <= tolerance) continue;
        if (is_right) {
          difference << "box " << i << " has " << found[0] << "," << found[1] << "," << found[2] << "," << found[3] << " instead of ";
          for (const double number : expected[static_cast<std::size_t>(i)]) difference << number << ",";
        }
        is_right = false;
      }
    }
    if (is_right) continue;
    if (++wrong <= 5 || std::getenv("FLEX_ALL") != nullptr) ADD_FAILURE() << "tree " << trees << ": " << difference.str() << "\n" << line;
  }
  EXPECT_EQ(wrong, 0) << "of " << trees << " trees with " << boxes << " boxes";
  EXPECT_GE(trees, 1000);
}

}  // namespace
}  // namespace arena::test
