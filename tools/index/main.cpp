// asset_index INDEX.JSON HEADER: writes the header through which game code names its assets. The numbers stand once, in the index.
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace {

// Entries in order of their numbers.
std::map<int, std::string> by_number(const nlohmann::ordered_json& entries) {
  std::map<int, std::string> ordered;
  for (const auto& [name, number] : entries.items()) {
    if (!ordered.emplace(number.get<int>(), name).second)
      throw std::runtime_error("number " + number.dump() + " is given twice, again to " + name);
  }
  return ordered;
}

std::string header_of(const nlohmann::ordered_json& index) {
  std::string text =
      "#pragma once\n// Written from assets/index.json: the assets by name.\n#include \"runtime/script/handles.h\"\n\n"
      "namespace arena::game {\n\n";
  int number = 0;
  for (const auto& object : index.at("objects")) {
    text += "inline constexpr script::ObjectName " + object.get<std::string>() + "{" + std::to_string(number++) + "};\n";
  }
  for (const char* family : {"rooms", "fonts", "sounds", "sprites"}) {
    text += "\n";
    for (const auto& [place, name] : by_number(index.at(family)))
      text += "inline constexpr int " + name + " = " + std::to_string(place) + ";\n";
  }
  return text + "\n}  // namespace arena::game\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: asset_index INDEX.JSON HEADER\n";
    return 2;
  }
  try {
    std::ifstream source(argv[1]);
    if (!source) throw std::runtime_error("cannot be read");
    const std::string text = header_of(nlohmann::ordered_json::parse(source));
    std::ofstream(argv[2]) << text;
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << "\n";
    return 1;
  }
}
