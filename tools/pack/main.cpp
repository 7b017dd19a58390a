// pack ASSETS CACHE OUTPUT: makes the data file from the text sources. The same sources give the same bytes.
#include <flatbuffers/flatbuffers.h>
#include <zlib.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>

#include "arena_generated.h"
#include "engine/data/data_file.h"
#include "engine/files/paths.h"
#include "engine/files/sandbox.h"
#include "tools/pack/fonts.h"
#include "tools/pack/images.h"
#include "tools/pack/music.h"
#include "tools/pack/synth.h"
#include "tools/sources/sources.h"

namespace pack {
namespace {

using sources::Json;
namespace data = arena::data;

constexpr int kDensity = 2;      // atlas pixels to a sprite pixel: sharp at twice the size
constexpr int kPageSide = 1024;  // atlas pixels
constexpr int kEmPixels = 40;    // of the distance fields

class Packer {
 public:
  Packer(std::string assets, std::string cache)
      : assets_(std::move(assets)), cache_(std::move(cache)), sources_(sources::read_sources(assets_)) {
    std::filesystem::create_directories(cache_);
  }

  std::vector<std::uint8_t> build() {
    const auto sprites = build_sprites();
    const auto fonts = build_fonts();
    const auto sounds = build_sounds();
    const auto objects = build_objects();
    const auto rooms = build_rooms();
    std::vector<int> starters;
    for (const auto& object : sources_.starters) starters.push_back(object_number(object));
    const auto files = build_files();
    // What nobody asks for is left out.
    const std::string edition_name = sources_.requirements.value("edition", "");
    const auto edition = edition_name.empty() ? 0 : builder_.CreateString(edition_name);
    const auto feature_names = sources_.requirements.value("features", std::vector<std::string>());
    const auto features = feature_names.empty() ? 0 : builder_.CreateVectorOfStrings(feature_names);
    builder_.Finish(data::CreateFile(builder_, kDensity, number("rooms", sources_.first_room), builder_.CreateVector(sprites),
                                     builder_.CreateVector(pages_), builder_.CreateVector(fonts), builder_.CreateVector(sounds),
                                     builder_.CreateVector(rooms), builder_.CreateVector(starters), builder_.CreateVector(objects), files,
                                     edition, features));
    std::vector<std::uint8_t> bytes = data::header_for(builder_.GetBufferPointer(), builder_.GetSize());
    bytes.insert(bytes.end(), builder_.GetBufferPointer(), builder_.GetBufferPointer() + builder_.GetSize());
    return bytes;
  }

 private:
  // The number of an asset; -1 for the empty name.
  int number(const char* family, const std::string& name) const {
    if (name.empty()) return -1;
    const auto found = sources_.index.at(family).find(name);
    if (found == sources_.index.at(family).end()) throw std::runtime_error("there is no '" + name + "' under " + family);
    return found->get<int>();
  }
  int object_number(const std::string& name) const {
    if (name.empty()) return -1;
    int place = 0;
    for (const auto& object : sources_.index.at("objects")) {
      if (object == name) return place;
      ++place;
    }
    throw std::runtime_error("there is no object '" + name + "'");
  }

  void add_page(const Image& page, bool is_field) {
    std::vector<std::uint8_t> pixels = page.pixels;
    for (std::size_t i = 0; i < pixels.size() && !is_field; i += 4) {
      for (std::size_t part = 0; part < 3; ++part)
        pixels[i + part] = static_cast<std::uint8_t>((pixels[i + part] * pixels[i + 3] + 127) / 255);
    }
    uLongf packed_size = compressBound(pixels.size());
    std::vector<std::uint8_t> packed(packed_size);
    if (compress2(packed.data(), &packed_size, pixels.data(), pixels.size(), 9) != Z_OK)
      throw std::runtime_error("deflating a page failed");
    pages_.push_back(data::CreatePage(builder_, page.width, page.height, builder_.CreateVector(packed.data(), packed_size), is_field));
  }

  // One sprite while it is packed: its trimmed frames, and where each stands.
  struct Sprite {
    std::string name;
    Json json;
    double width, height;
    std::vector<Box> boxes;       // atlas pixels inside the frame
    std::vector<Image> pictures;  // whole frames
    std::size_t first_image;
  };

  Sprite read_sprite(const std::string& name, const Json& json, std::vector<Image>& images) const {
    Sprite sprite{name, json, json.at("size").at(0), json.at("size").at(1), {}, {}, images.size()};
    const int frames = json.value("frames", 1);
    const int width = static_cast<int>(std::lround(sprite.width * kDensity)),
              height = static_cast<int>(std::lround(sprite.height * kDensity));
    const Image strip = render_svg(assets_ + "/sprites/" + json.at("svg").get<std::string>(), width * frames, height, cache_);
    for (int frame = 0; frame < frames; ++frame) {
      sprite.pictures.push_back(crop(strip, frame * width, 0, width, height));
      Box box = visible_box(sprite.pictures.back());
      if (json.value("whole", false)) box = {0, 0, width, height};
      if (box.width == 0) box = {0, 0, 1, 1};
      sprite.boxes.push_back(box);
      images.push_back(crop(sprite.pictures.back(), box.x, box.y, box.width, box.height));
    }
    return sprite;
  }

  // One bit a sprite pixel: set where the first frame is more than half opaque.
  static std::vector<std::uint8_t> precise_mask(const Sprite& sprite, double left, double top, double right, double bottom) {
    const int columns = static_cast<int>(right - left), rows = static_cast<int>(bottom - top), stride = (columns + 7) / 8;
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(stride * rows));
    for (int y = 0; y < rows; ++y) {
      for (int x = 0; x < columns; ++x) {
        const std::uint8_t* pixel = sprite.pictures[0].at((static_cast<int>(left) + x) * kDensity, (static_cast<int>(top) + y) * kDensity);
        if (pixel[3] > 127) bits[static_cast<std::size_t>(y * stride + x / 8)] |= static_cast<std::uint8_t>(1 << (x % 8));
      }
    }
    return bits;
  }

  flatbuffers::Offset<data::Sprite> write_sprite(const Sprite& sprite, const std::vector<Placed>& places) {
    std::vector<data::Frame> frames;
    for (std::size_t i = 0; i < sprite.boxes.size(); ++i) {
      const Placed& place = places[sprite.first_image + i];
      const Box& box = sprite.boxes[i];
      frames.emplace_back(place.page, place.x, place.y, box.width, box.height, static_cast<float>(box.x) / kDensity,
                          static_cast<float>(box.y) / kDensity);
    }
    const Json origin = sprite.json.value("origin", Json::array({sprite.width / 2, sprite.height / 2}));
    const Json box = sprite.json.value("mask_box", Json::array({0, 0, sprite.width, sprite.height}));
    const std::map<std::string, data::Mask> kinds{{"rectangle", data::Mask_Rectangle},
                                                  {"rotated", data::Mask_RotatedRectangle},
                                                  {"ellipse", data::Mask_Ellipse},
                                                  {"precise", data::Mask_Precise}};
    const data::Mask mask = kinds.at(sprite.json.value("mask", std::string("rectangle")));
    const auto precise =
        mask == data::Mask_Precise ? builder_.CreateVector(precise_mask(sprite, box.at(0), box.at(1), box.at(2), box.at(3))) : 0;
    return data::CreateSprite(builder_, builder_.CreateString(sprite.name), number("sprites", sprite.name),
                              static_cast<float>(sprite.width), static_cast<float>(sprite.height), origin.at(0), origin.at(1),
                              sprite.json.value("fps", 0.0f), mask, box.at(0), box.at(1), box.at(2), box.at(3), precise,
                              builder_.CreateVectorOfStructs(frames));
  }

  std::vector<flatbuffers::Offset<data::Sprite>> build_sprites() {
    std::vector<Image> images;
    std::vector<Sprite> sprites;
    for (const auto& [name, json] : sources_.sprites.items()) sprites.push_back(read_sprite(name, json, images));
    Atlas atlas(kPageSide);
    const std::vector<Placed> places = atlas.place(images);
    for (const Image& page : atlas.pages()) add_page(page, false);
    std::vector<flatbuffers::Offset<data::Sprite>> written;
    for (const Sprite& sprite : sprites) written.push_back(write_sprite(sprite, places));
    return written;
  }

  std::vector<flatbuffers::Offset<data::Font>> build_fonts() {
    std::vector<flatbuffers::Offset<data::Font>> written;
    for (const auto& [name, json] : sources_.fonts.items()) {
      const PackedFont font =
          pack_font(json.at("file"), kEmPixels, {{0x20, 0x7E}, {0xA0, 0x17F}, {0x391, 0x3C9}, {0x400, 0x45F}, {0x2013, 0x2026}});
      std::vector<Image> images;
      for (const PackedGlyph& glyph : font.glyphs) {
        if (glyph.field.width > 0) images.push_back(glyph.field);
      }
      Atlas atlas(512);
      const std::vector<Placed> places = atlas.place(images);
      const int first_page = static_cast<int>(pages_.size());
      for (const Image& page : atlas.pages()) add_page(page, true);
      std::vector<data::Glyph> glyphs;
      std::size_t next = 0;
      for (const PackedGlyph& glyph : font.glyphs) {
        const bool blank = glyph.field.width == 0;
        const Placed place = blank ? Placed{} : places[next++];
        glyphs.emplace_back(glyph.code, first_page + place.page, place.x, place.y, glyph.field.width, glyph.field.height,
                            static_cast<float>(glyph.left), static_cast<float>(glyph.top), static_cast<float>(glyph.advance));
      }
      written.push_back(data::CreateFont(builder_, builder_.CreateString(name), number("fonts", name), json.at("size"),
                                         static_cast<float>(font.line_height), static_cast<float>(font.field_range), kEmPixels,
                                         builder_.CreateVectorOfStructs(glyphs)));
    }
    return written;
  }

  std::vector<flatbuffers::Offset<data::Sound>> build_sounds() {
    std::vector<flatbuffers::Offset<data::Sound>> written;
    for (const auto& [name, json] : sources_.sounds.items()) {
      const bool is_music = json.contains("abc");
      const std::vector<std::int16_t> samples =
          is_music ? render_music(assets_ + "/" + json.at("abc").get<std::string>(), json.at("peak"), cache_) : synthesize(json);
      written.push_back(data::CreateSound(builder_, builder_.CreateString(name), number("sounds", name),
                                          is_music ? kMusicRate : kSampleRate, builder_.CreateVector(samples)));
    }
    return written;
  }

  std::vector<flatbuffers::Offset<data::Object>> build_objects() {
    std::vector<flatbuffers::Offset<data::Object>> written;
    for (const auto& object : sources_.index.at("objects")) {
      const std::string name = object.get<std::string>();
      const Json json = sources_.objects.value(name, Json::object());
      std::vector<flatbuffers::Offset<flatbuffers::String>> events;
      for (const auto& event : json.value("events", Json::array())) events.push_back(builder_.CreateString(event.get<std::string>()));
      written.push_back(data::CreateObject(builder_, builder_.CreateString(name), object_number(json.value("parent", "")),
                                           number("sprites", json.value("sprite", "")), number("sprites", json.value("mask", "")),
                                           json.value("visible", true), json.value("solid", false), json.value("persistent", false),
                                           builder_.CreateVector(events)));
    }
    for (const auto& [name, json] : sources_.objects.items()) object_number(name);
    return written;
  }

  // All that stands in the folder files, as it is; nothing where there is none.
  flatbuffers::Offset<flatbuffers::Vector<flatbuffers::Offset<data::PackedFile>>> build_files() {
    const std::filesystem::path folder = arena::files::path_of(assets_ + "/files");
    std::map<std::string, std::filesystem::path> found;  // by name, so that they stand in the same order everywhere
    if (std::filesystem::is_directory(folder)) {
      for (const auto& each : std::filesystem::recursive_directory_iterator(folder)) {
        if (each.is_regular_file()) found[arena::files::utf8_of(each.path().lexically_relative(folder).generic_u8string())] = each.path();
      }
    }
    std::vector<flatbuffers::Offset<data::PackedFile>> written;
    for (const auto& [name, path] : found) {
      if (const std::string_view flaw = arena::files::flaw_of_name(name); !flaw.empty())
        throw std::runtime_error("files/" + name + " has no name that scripts may use: " + std::string(flaw));
      std::ifstream stream(path, std::ios::binary);
      const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
      if (!stream) throw std::runtime_error("files/" + name + " cannot be read");
      const auto name_written = builder_.CreateString(name);
      written.push_back(data::CreatePackedFile(builder_, name_written, builder_.CreateVector(bytes)));
    }
    return written.empty() ? 0 : builder_.CreateVector(written);
  }

  static data::Fill fill_named(const std::string& name) {
    const std::map<std::string, data::Fill> fills{
        {"stretched", data::Fill_Stretched}, {"tiled", data::Fill_Tiled}, {"edges", data::Fill_Edges}};
    return fills.at(name);
  }

  std::vector<flatbuffers::Offset<data::Room>> build_rooms() {
    std::vector<flatbuffers::Offset<data::Room>> written;
    for (const auto& [name, json] : sources_.rooms.items()) {
      std::map<std::string, int> layer_numbers;
      std::vector<flatbuffers::Offset<data::Layer>> layers;
      for (const auto& layer : json.at("layers")) {
        const std::string layer_name = layer.at("name");
        layer_numbers[layer_name] = static_cast<int>(layers.size());
        std::optional<data::Area> area;
        if (layer.contains("area")) {
          const Json& sides = layer.at("area");
          area.emplace(sides.at(0), sides.at(1), sides.at(2), sides.at(3));
        }
        layers.push_back(data::CreateLayer(builder_, builder_.CreateString(layer_name), layer.at("depth"),
                                           number("sprites", layer.value("sprite", "")), fill_named(layer.value("fill", "stretched")),
                                           layer.value("color", 0xFFFFFFu), area ? &*area : nullptr));
      }
      std::vector<data::Placement> instances;
      for (const auto& placed : json.at("instances")) {
        instances.emplace_back(object_number(placed.at("object")), layer_numbers.at(placed.at("layer")), placed.value("x", 0.0f),
                               placed.value("y", 0.0f), placed.value("angle", 0.0f));
      }
      written.push_back(data::CreateRoom(builder_, builder_.CreateString(name), number("rooms", name), json.at("size").at(0),
                                         json.at("size").at(1), json.at("view").at(0), json.at("view").at(1), json.value("color", 0u),
                                         builder_.CreateVector(layers), builder_.CreateVectorOfStructs(instances),
                                         json.value("persistent", false)));
    }
    return written;
  }

  std::string assets_, cache_;
  sources::Sources sources_;
  flatbuffers::FlatBufferBuilder builder_;
  std::vector<flatbuffers::Offset<data::Page>> pages_;
};

}  // namespace
}  // namespace pack

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: pack ASSETS CACHE OUTPUT\n";
    return 2;
  }
  try {
    const std::vector<std::uint8_t> bytes = pack::Packer(argv[1], argv[2]).build();
    const std::string fresh = std::string(argv[3]) + ".new";
    std::ofstream stream(fresh, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw std::runtime_error(fresh + ": cannot be written");
    std::filesystem::rename(fresh, argv[3]);
  } catch (const std::exception& error) {
    std::cerr << "pack: " << error.what() << "\n";
    return 1;
  }
}
