#pragma once
// Reading the packaged data file. Nothing of it is used before all of it was verified.
//
//   byte 0       8           12        16                24
//        | magic | version   | crc32   | payload bytes   | payload: the verified buffer ...
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace arena {
struct ObjectDefinition;
}

namespace arena::data {

struct File;

inline constexpr char kMagic[9] = "ARENADAT";
inline constexpr std::uint32_t kVersion = 1;
inline constexpr std::size_t kHeaderBytes = 24;

// An opened file. `content` stays valid as long as this lives.
struct DataFile {
  std::vector<std::uint8_t> bytes;
  const File* content = nullptr;
  // Of its payload: the checksum in the header, which was verified.
  std::uint32_t hash() const;
};

// Opens and verifies. On failure the result is empty and `problem` one sentence that names the file and what is wrong with it.
std::unique_ptr<DataFile> open_data_file(const std::string& path, std::string& problem);
// The same for bytes in memory; `name` is what the sentence calls them.
std::unique_ptr<DataFile> read_data(std::vector<std::uint8_t> bytes, const std::string& name, std::string& problem);
// The header that belongs before a payload.
std::vector<std::uint8_t> header_for(const std::uint8_t* payload, std::size_t bytes);

// One sentence when this build of the program has not what the file asks for (engine/licence/licence.h); "" when it has.
std::string missing_in_build(const DataFile& file);

// Hands objects (`extra` ones behind those of the file), rooms and sprites to the world. Problems between data and code, one line each,
// in both directions.
std::vector<std::string> install_in_world(const DataFile& file, const std::vector<ObjectDefinition>& extra);

}  // namespace arena::data
