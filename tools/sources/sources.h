#pragma once
// A game's folder of assets as text, the way both the packer and the header of asset names see it.
//
//   sprites/sprites.json, fonts.json, sounds/sounds.json    each may be missing: there are none
//   objects.json                                            the object types
//   rooms/rooms.json                                        "first", "starters" and "rooms"
//   rooms/*.json                                            more of them: "rooms" and the "objects" that only they need
//   requires.json                                           "edition" and "features" that the program must have; it may be missing
//   index.json                                              the numbers of all; without it they follow the order in which things stand
#include <nlohmann/json.hpp>
#include <string>

namespace sources {

using Json = nlohmann::ordered_json;

struct Sources {
  Json sprites, fonts, sounds, objects, rooms;  // each by name
  Json starters;                                // names of objects
  std::string first_room;
  Json requirements;  // "edition": a name; "features": names; each may be missing
  Json index;         // "objects": names in order of their numbers; "rooms", "fonts", "sounds", "sprites": numbers by name
};

// Throws std::runtime_error, which names the file, for what cannot be read or is there twice.
Sources read_sources(const std::string& assets);

}  // namespace sources
