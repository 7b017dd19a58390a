#include "tools/sources/sources.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

namespace sources {
namespace {

Json read(const std::string& assets, const std::string& name) {
  std::ifstream stream(assets + "/" + name);
  if (!stream) throw std::runtime_error(name + ": cannot be read");
  try {
    return Json::parse(stream);
  } catch (const Json::exception& error) {
    throw std::runtime_error(name + ": " + error.what());
  }
}

Json read_if_there(const std::string& assets, const std::string& name) {
  return std::filesystem::exists(assets + "/" + name) ? read(assets, name) : Json::object();
}

void add(const std::string& file, const Json& more, Json& all) {
  for (const auto& [name, json] : more.items()) {
    if (all.contains(name)) throw std::runtime_error(file + ": there is a '" + name + "' already");
    all[name] = json;
  }
}

// The files of rooms, rooms.json first, the others by name.
std::vector<std::string> room_files(const std::string& assets) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(assets + "/rooms")) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() == ".json" && name != "rooms.json") names.push_back("rooms/" + name);
  }
  std::sort(names.begin(), names.end());
  names.insert(names.begin(), "rooms/rooms.json");
  return names;
}

Json numbers_in_order(const Json& named) {
  Json numbers = Json::object();
  for (const auto& [name, json] : named.items()) {
    const std::size_t next = numbers.size();
    numbers[name] = next;
  }
  return numbers;
}

Json index_in_order(const Sources& sources) {
  Json objects = Json::array();
  for (const auto& [name, json] : sources.objects.items()) objects.push_back(name);
  return {{"objects", objects},
          {"rooms", numbers_in_order(sources.rooms)},
          {"fonts", numbers_in_order(sources.fonts)},
          {"sounds", numbers_in_order(sources.sounds)},
          {"sprites", numbers_in_order(sources.sprites)}};
}

}  // namespace

Sources read_sources(const std::string& assets) {
  Sources all;
  all.sprites = read_if_there(assets, "sprites/sprites.json");
  all.fonts = read_if_there(assets, "fonts.json");
  all.sounds = read_if_there(assets, "sounds/sounds.json");
  all.objects = read_if_there(assets, "objects.json");
  all.requirements = read_if_there(assets, "requires.json");
  all.rooms = Json::object();
  for (const std::string& file : room_files(assets)) {
    const Json json = read(assets, file);
    add(file, json.value("rooms", Json::object()), all.rooms);
    add(file, json.value("objects", Json::object()), all.objects);
    if (json.contains("first")) all.first_room = json.at("first");
    if (json.contains("starters")) all.starters = json.at("starters");
  }
  if (all.starters.is_null()) all.starters = Json::array();
  if (all.first_room.empty()) throw std::runtime_error("rooms/rooms.json: \"first\" names no room");
  all.index = std::filesystem::exists(assets + "/index.json") ? read(assets, "index.json") : index_in_order(all);
  return all;
}

}  // namespace sources
