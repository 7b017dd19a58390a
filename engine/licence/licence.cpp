#include "engine/licence/licence.h"

#include <algorithm>
#include <sstream>

namespace arena::licence {
namespace {

std::vector<std::string> words_of(const char* text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

}  // namespace

std::string_view edition() { return ARENA_EDITION; }

const std::vector<std::string>& features() {
  static const std::vector<std::string> all = words_of(ARENA_FEATURES);
  return all;
}

bool has_feature(std::string_view feature) { return std::find(features().begin(), features().end(), feature) != features().end(); }

std::string in_words() {
  std::string text = "edition " + std::string(edition()) + ", features ";
  if (features().empty()) return text + "none";
  for (std::size_t i = 0; i < features().size(); ++i) text += (i > 0 ? ", " : "") + features()[i];
  return text;
}

}  // namespace arena::licence
