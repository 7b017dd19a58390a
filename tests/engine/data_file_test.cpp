// A missing, cut off, foreign or damaged data file: one clear line, never a crash. And packing gives the same bytes again.
#include "engine/data/data_file.h"

#include <flatbuffers/flatbuffers.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "arena_generated.h"
#include "runtime/instances_loop/random.h"
#include "runtime/memory/block_pool.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

std::vector<std::uint8_t> packed() {
  std::ifstream stream(data_file_path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string problem_with(std::vector<std::uint8_t> bytes) {
  std::string problem;
  const auto file = data::read_data(std::move(bytes), "x.dat", problem);
  EXPECT_EQ(file == nullptr, !problem.empty());
  EXPECT_EQ(problem.find('\n'), std::string::npos) << "one line";
  return problem;
}

// The header made right again for a changed payload: damage that no checksum finds.
std::vector<std::uint8_t> resealed(std::vector<std::uint8_t> bytes) {
  const std::vector<std::uint8_t> header = data::header_for(bytes.data() + data::kHeaderBytes, bytes.size() - data::kHeaderBytes);
  std::copy(header.begin(), header.end(), bytes.begin());
  return bytes;
}

TEST(DataFile, EveryKindOfDamageHasItsLine) {
  const std::vector<std::uint8_t> good = packed();
  ASSERT_EQ(problem_with(good), "");
  EXPECT_EQ(problem_with({}), "x.dat: the data file is empty");
  EXPECT_EQ(problem_with({'P', 'K', 3, 4, 0, 0, 0, 0, 0}), "x.dat: this is not a data file of this game");
  EXPECT_EQ(problem_with({good.begin(), good.begin() + 12}), "x.dat: the data file is cut off inside its header");
  EXPECT_EQ(problem_with({good.begin(), good.end() - 100}).find("x.dat: the data file is cut off: 100 of "), 0u);
  std::vector<std::uint8_t> longer = good;
  longer.push_back(0);
  EXPECT_EQ(problem_with(longer), "x.dat: the data file is damaged: 1 bytes too many");
  std::vector<std::uint8_t> flipped = good;
  flipped[flipped.size() / 2] ^= 1;
  EXPECT_EQ(problem_with(flipped), "x.dat: the data file is damaged: its checksum does not fit");
  std::vector<std::uint8_t> newer = good;
  newer[8] = 9;
  EXPECT_EQ(problem_with(newer), "x.dat: the data file has version 9, this program reads version 1");
  std::string problem;
  EXPECT_EQ(data::open_data_file("/nowhere/arena.dat", problem), nullptr);
  EXPECT_EQ(problem, "/nowhere/arena.dat: the data file cannot be opened");
  EXPECT_EQ(data::open_data_file(temporary_path("."), problem), nullptr);
  EXPECT_EQ(problem, temporary_path(".") + ": the data file cannot be read: this is a folder");
  EXPECT_EQ(data::open_data_file("a\nb", problem), nullptr);
  EXPECT_EQ(problem, "a?b: the data file cannot be opened");
  const std::string large = temporary_path("large.dat");  // two gigabytes, nearly all of them a hole
  std::vector<std::uint8_t> header = data::header_for(good.data(), 0);
  header[21] = 1;  // it promises even more
  constexpr std::streamoff end = data::kHeaderBytes + (std::streamoff{1} << 31);
  std::ofstream stream(large, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(header.data()), data::kHeaderBytes).seekp(end).put(0);
  stream.close();
  ASSERT_EQ(std::filesystem::file_size(large), std::uintmax_t{end + 1});
  EXPECT_EQ(data::open_data_file(large, problem), nullptr);
  EXPECT_EQ(problem, large + ": this is not a data file of this game: it is too large");
  std::filesystem::remove(large);
}

std::vector<std::uint8_t> repacked(const data::FileT& file) {
  flatbuffers::FlatBufferBuilder builder;
  builder.Finish(data::File::Pack(builder, &file));
  std::vector<std::uint8_t> bytes = data::header_for(builder.GetBufferPointer(), builder.GetSize());
  bytes.insert(bytes.end(), builder.GetBufferPointer(), builder.GetBufferPointer() + builder.GetSize());
  return bytes;
}

// Nearly all of the tables: of pixels and samples, whose bytes can be any, a few stay.
TEST(DataFile, HostileBytesNeverCrash) {
  const std::vector<std::uint8_t> whole = packed();
  const std::unique_ptr<data::FileT> file(data::GetFile(whole.data() + data::kHeaderBytes)->UnPack());
  for (const auto& page : file->pages) page->pixels.resize(16);
  for (const auto& sound : file->sounds) sound->samples.resize(16);
  const std::vector<std::uint8_t> good = repacked(*file);
  ASSERT_EQ(problem_with(good), "");
  ASSERT_LT(good.size(), whole.size() / 10);
  RandomGenerator random(7);
  int refused = 0;
  constexpr int kRounds = kStressBuild ? 1000 : 10000;
  for (int round = 0; round < kRounds; ++round) {
    std::vector<std::uint8_t> bytes = good;
    for (std::int64_t change = random.integer(1, 4); change > 0; --change) {
      const std::int64_t at = random.integer(data::kHeaderBytes, static_cast<std::int64_t>(bytes.size()) - 1);
      bytes[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(random.integer(0, 255));
    }
    refused += problem_with(resealed(bytes)).empty() ? 0 : 1;
  }
  EXPECT_GT(refused, kRounds / 10);
}

TEST(DataFile, MeaningIsChecked) {
  struct Case {
    const char* label;
    std::function<void(data::FileT&)> damage;
    const char* message;
  };
  const std::vector<Case> cases = {
      {"parent", [](data::FileT& file) { file.objects[7]->parent = 99; }, "object 'oEnemy' has an unknown parent"},
      {"sprite", [](data::FileT& file) { file.objects[7]->sprite = 3; }, "object 'oEnemy' has an unknown sprite"},
      {"room size", [](data::FileT& file) { file.rooms[0]->width = 0; }, "room 'rPrepare' has an impossible size"},
      {"placement", [](data::FileT& file) { file.rooms[0]->instances[0].mutate_object(500); }, "room 'rPrepare' places an unknown object"},
      {"starter", [](data::FileT& file) { file.starters[0] = 99; }, "a run begins with an unknown object"},
      {"first room", [](data::FileT& file) { file.first_room = 77; }, "the first room does not exist"},
      {"frame", [](data::FileT& file) { file.sprites[0]->frames[0].mutate_x(100000); }, "sprite 'sprPlayer' has a frame outside its page"},
      {"mask", [](data::FileT& file) { file.sprites[0]->right = 1e9f; }, "sprite 'sprPlayer' has a mask outside itself"},
      {"mask without an edge",
       [](data::FileT& file) {
         file.sprites[0]->right = NAN;
         file.sprites[0]->mask = data::Mask_Precise;
       },
       "sprite 'sprPlayer' has a mask outside itself"},
      {"double index", [](data::FileT& file) { file.sprites[1]->index = file.sprites[0]->index; },
       "sprite 'sprEnemy' has the index of another sprite"},
      {"frame far out", [](data::FileT& file) { file.sprites[0]->frames[0].mutate_x(2147483647); },
       "sprite 'sprPlayer' has a frame outside its page"},
      {"frame of no page", [](data::FileT& file) { file.pages.clear(); }, "sprite 'sprPlayer' has a frame outside its page"},
      {"vast mask",
       [](data::FileT& file) {
         file.sprites[0]->width = file.sprites[0]->right = 1e30f;
         file.sprites[0]->mask = data::Mask_Precise;
       },
       "sprite 'sprPlayer' is too large"},
      {"origin", [](data::FileT& file) { file.sprites[0]->origin_x = NAN; }, "sprite 'sprPlayer' has an impossible origin"},
      {"speed", [](data::FileT& file) { file.sprites[0]->frames_per_second = INFINITY; }, "sprite 'sprPlayer' has an impossible speed"},
      {"place", [](data::FileT& file) { file.rooms[0]->instances[0].mutate_x(NAN); },
       "room 'rPrepare' places an object at an impossible place"},
      {"depth", [](data::FileT& file) { file.rooms[0]->layers[0]->depth = NAN; }, "room 'rPrepare' has a layer at an impossible depth"},
      {"glyph", [](data::FileT& file) { file.fonts[0]->glyphs[0].mutate_advance(INFINITY); },
       "font 'fntSmall' has a glyph at an impossible place"},
      {"two findings",
       [](data::FileT& file) {
         file.rooms[0]->width = 0;
         file.sounds[0]->rate = 0;
       },
       "sound 'sndStart' has an impossible rate"},
      {"pages",
       [](data::FileT& file) {
         for (int i = 0; i < 5; ++i) {
           file.pages.push_back(std::make_unique<data::PageT>());
           file.pages.back()->width = file.pages.back()->height = 8192;
         }
       },
       "the atlas pages are too large together"},
      {"rate", [](data::FileT& file) { file.sounds[0]->rate = 0; }, "sound 'sndStart' has an impossible rate"},
      {"page", [](data::FileT& file) { file.pages[0]->width = -5; }, "an atlas page has an impossible size"},
  };
  const std::vector<std::uint8_t> good = packed();
  for (const Case& each : cases) {
    std::unique_ptr<data::FileT> file(data::GetFile(good.data() + data::kHeaderBytes)->UnPack());
    each.damage(*file);
    EXPECT_EQ(problem_with(repacked(*file)), std::string("x.dat: the data file is damaged: ") + each.message) << each.label;
  }
}

TEST(DataFile, TheProgramSaysItInOneLineAndEndsWithStatusOne) {
  const std::string lines = temporary_path("lines");
  EXPECT_EQ(run_program("--headless --data /nowhere/x.dat", lines), 1);
  std::ifstream stream(lines);
  std::string line, more;
  std::getline(stream, line);
  EXPECT_EQ(line, "arena: /nowhere/x.dat: the data file cannot be opened");
  EXPECT_FALSE(std::getline(stream, more)) << more;
  EXPECT_EQ(run_program("--wrong"), 2);
}

#ifndef _WIN32  // the packer runs where the program is built
TEST(DataFile, PackingAgainGivesTheSameBytes) {
  if (kStressBuild) GTEST_SKIP() << "the packer is the same in every build";
  const std::string again = temporary_path("again.dat"), cache = temporary_path("cache");
  std::filesystem::remove_all(cache);
  ASSERT_EQ(std::system((ARENA_BINARY "/pack " ARENA_SOURCE "/assets " + cache + " " + again).c_str()), 0);
  std::ifstream stream(again, std::ios::binary);
  const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  EXPECT_TRUE(bytes == packed());
}
#endif

}  // namespace
}  // namespace arena::test
