// asset_index ASSETS HEADER: writes the header through which game code names its assets. The numbers stand once, in the index.
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "tools/sources/sources.h"

namespace {

// Entries in order of their numbers.
std::map<int, std::string> by_number(const sources::Json& entries) {
  std::map<int, std::string> ordered;
  for (const auto& [name, number] : entries.items()) {
    if (!ordered.emplace(number.get<int>(), name).second)
      throw std::runtime_error("number " + number.dump() + " is given twice, again to " + name);
  }
  return ordered;
}

std::string header_of(const sources::Json& index) {
  std::string text =
      "#pragma once\n// Written from the folder of assets: what stands there by name.\n#include \"runtime/script/handles.h\"\n\n"
      "namespace game {\n\n";
  int number = 0;
  for (const auto& object : index.at("objects")) {
    text += "inline constexpr arena::script::ObjectName " + object.get<std::string>() + "{" + std::to_string(number++) + "};\n";
  }
  text += "inline constexpr int kObjectCount = " + std::to_string(number) + ";\n";
  for (const char* family : {"rooms", "fonts", "sounds", "sprites"}) {
    text += "\n";
    for (const auto& [place, name] : by_number(index.at(family)))
      text += "inline constexpr int " + name + " = " + std::to_string(place) + ";\n";
  }
  return text + "\n}  // namespace game\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: asset_index ASSETS HEADER\n";
    return 2;
  }
  try {
    const std::string text = header_of(sources::read_sources(argv[1]).index);
    std::ostringstream before;
    before << std::ifstream(argv[2]).rdbuf();
    if (before.str() == text) return 0;  // nothing needs to be compiled anew
    if (!(std::ofstream(argv[2]) << text << std::flush)) throw std::runtime_error(std::string(argv[2]) + ": cannot be written");
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << "\n";
    return 1;
  }
}
