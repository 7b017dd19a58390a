#include "engine/data/data_file.h"

#include <cstring>
#include <fstream>
#include <set>

#include "arena_generated.h"
#include "engine/files/paths.h"
#include "engine/files/sandbox.h"
#include "engine/files/zipped.h"

namespace arena::data {
namespace {

template <class T>
void put(std::vector<std::uint8_t>& out, T number) {
  for (std::size_t i = 0; i < sizeof(T); ++i) out.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}
template <class T>
T get(const std::uint8_t* at) {
  T number = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) number = static_cast<T>(number | static_cast<T>(at[i]) << (8 * i));
  return number;
}

constexpr int kLargestPage = 8192;                 // pixels a side: every device has that
constexpr std::int64_t kMostPagePixels = 1 << 28;  // of all pages: 1 GiB
constexpr int kMostAssets = 10000;                 // largest index of anything
constexpr int kLargestRoom = 1 << 20;              // pixels a side
constexpr float kLargestSprite = 1 << 16;          // pixels a side
constexpr float kFarthest = 1 << 24;               // pixels: beyond it a float no longer tells them apart
constexpr std::uint64_t kLargestPayload = FLATBUFFERS_MAX_BUFFER_SIZE - 1;

bool is_within(float number, float most) { return number >= -most && number <= most; }  // NaN is not

// Checks what the verifier cannot know. It stops at the first thing found wrong: what comes later may lean on it.
class MeaningCheck {
 public:
  explicit MeaningCheck(const File& file) : file_(file) {}

  // What is wrong; "" when nothing is.
  std::string run() {
    try {
      check_all();
    } catch (const Finding& finding) {
      return finding.what;
    }
    return "";
  }

 private:
  struct Finding {
    std::string what;
  };

  void check_all() {
    check(file_.density() > 0 && file_.density() <= 16, "the density is out of range");
    pages();
    sprites();
    fonts();
    sounds();
    objects();
    rooms();
    starters();
    packed_files();
    check(file_.rooms()->size() > 0, "there is no room");
    check(has_room(file_.first_room()), "the first room does not exist");
  }

  static void check(bool holds, const std::string& otherwise) {
    if (!holds) throw Finding{otherwise};
  }
  template <class Asset>
  void index_of(const Asset& asset, const char* kind, std::set<int>& seen) {
    const std::string named = std::string(kind) + " '" + asset.name()->str() + "'";
    check(asset.index() >= 0 && asset.index() < kMostAssets, named + " has an index out of range");
    check(seen.insert(asset.index()).second, named + " has the index of another " + kind);
  }
  bool inside_page(std::int64_t page, std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) const {
    if (page < 0 || page >= file_.pages()->size() || x < 0 || y < 0 || width < 0 || height < 0) return false;
    const Page* on = file_.pages()->Get(static_cast<unsigned>(page));
    return x + width <= on->width() && y + height <= on->height();
  }
  bool has_sprite(int index) const { return index == -1 || sprites_.contains(index); }
  bool has_object(int index) const { return index >= 0 && index < static_cast<std::int64_t>(file_.objects()->size()); }
  bool has_room(int index) const { return rooms_.contains(index); }

  void pages() {
    std::int64_t pixels = 0;
    for (const Page* page : *file_.pages()) {
      check(page->width() > 0 && page->height() > 0 && page->width() <= kLargestPage && page->height() <= kLargestPage,
            "an atlas page has an impossible size");
      pixels += std::int64_t{page->width()} * page->height();
      check(pixels <= kMostPagePixels, "the atlas pages are too large together");
    }
  }
  void sprites() {
    for (const Sprite* sprite : *file_.sprites()) {
      index_of(*sprite, "sprite", sprites_);
      const std::string named = "sprite '" + sprite->name()->str() + "'";
      check(sprite->width() > 0 && sprite->height() > 0, named + " has no size");
      check(sprite->width() <= kLargestSprite && sprite->height() <= kLargestSprite, named + " is too large");
      check(is_within(sprite->origin_x(), kFarthest) && is_within(sprite->origin_y(), kFarthest), named + " has an impossible origin");
      check(sprite->frames_per_second() >= 0 && sprite->frames_per_second() <= 1000, named + " has an impossible speed");
      check(sprite->frames()->size() > 0, named + " has no frame");
      check(sprite->left() >= 0 && sprite->top() >= 0 && sprite->right() <= sprite->width() && sprite->bottom() <= sprite->height() &&
                sprite->left() <= sprite->right() && sprite->top() <= sprite->bottom(),
            named + " has a mask outside itself");
      check(sprite->mask() <= Mask_MAX, named + " has an unknown kind of mask");
      if (sprite->mask() == Mask_Precise) {
        const std::size_t stride = (static_cast<std::size_t>(sprite->right() - sprite->left()) + 7) / 8;
        const std::size_t rows = static_cast<std::size_t>(sprite->bottom() - sprite->top());
        check(sprite->precise() != nullptr && sprite->precise()->size() == stride * rows, named + " has a mask of the wrong size");
      }
      for (const Frame* frame : *sprite->frames()) {
        check(inside_page(frame->page(), frame->x(), frame->y(), frame->width(), frame->height()), named + " has a frame outside its page");
        check(is_within(frame->left(), kFarthest) && is_within(frame->top(), kFarthest), named + " has a frame at an impossible place");
      }
    }
  }
  void fonts() {
    std::set<int> seen;
    for (const Font* font : *file_.fonts()) {
      index_of(*font, "font", seen);
      const std::string named = "font '" + font->name()->str() + "'";
      for (const float size : {font->size(), font->line_height(), font->em_pixels(), font->field_range()}) {
        check(size > 0 && size <= kLargestSprite, named + " has no size");
      }
      for (const Glyph* glyph : *font->glyphs()) {
        check(inside_page(glyph->page(), glyph->x(), glyph->y(), glyph->width(), glyph->height()), named + " has a glyph outside its page");
        check(is_within(glyph->left(), kLargestSprite) && is_within(glyph->top(), kLargestSprite) &&
                  is_within(glyph->advance(), kLargestSprite),
              named + " has a glyph at an impossible place");
      }
    }
  }
  void sounds() {
    std::set<int> seen;
    for (const Sound* sound : *file_.sounds()) {
      index_of(*sound, "sound", seen);
      check(sound->rate() >= 8000 && sound->rate() <= 192000, "sound '" + sound->name()->str() + "' has an impossible rate");
    }
  }
  void objects() {
    for (const Object* object : *file_.objects()) {
      const std::string named = "object '" + object->name()->str() + "'";
      check(object->parent() == -1 || has_object(object->parent()), named + " has an unknown parent");
      check(has_sprite(object->sprite()) && has_sprite(object->mask()), named + " has an unknown sprite");
    }
  }
  void rooms() {
    for (const Room* room : *file_.rooms()) {
      index_of(*room, "room", rooms_);
      const std::string named = "room '" + room->name()->str() + "'";
      check(room->width() > 0 && room->height() > 0 && room->width() <= kLargestRoom && room->height() <= kLargestRoom &&
                room->view_width() > 0 && room->view_height() > 0 && room->view_width() <= kLargestRoom &&
                room->view_height() <= kLargestRoom,
            named + " has an impossible size");
      for (const Layer* layer : *room->layers()) {
        check(has_sprite(layer->sprite()), named + " has a layer with an unknown sprite");
        check(layer->fill() <= Fill_MAX, named + " has a layer with an unknown fill");
        check(is_within(layer->depth(), kFarthest), named + " has a layer at an impossible depth");
        if (const Area* area = layer->area(); area != nullptr) {
          check(is_within(area->x(), kFarthest) && is_within(area->y(), kFarthest) && is_within(area->width(), kLargestRoom) &&
                    is_within(area->height(), kLargestRoom),
                named + " has a layer with an impossible area");
        }
      }
      for (const Placement* placed : *room->instances()) {
        check(has_object(placed->object()), named + " places an unknown object");
        check(placed->layer() >= 0 && placed->layer() < static_cast<int>(room->layers()->size()), named + " places an object on no layer");
        check(is_within(placed->x(), kFarthest) && is_within(placed->y(), kFarthest) && is_within(placed->angle(), kFarthest),
              named + " places an object at an impossible place");
      }
    }
  }

  void packed_files() {
    if (file_.files() == nullptr) return;
    std::set<std::string> seen;
    for (const PackedFile* file : *file_.files()) {
      const std::string name = file->name()->str();
      check(files::flaw_of_name(name).empty() && seen.insert(name).second, "a packed file has an impossible name");
    }
  }
  void starters() {
    if (file_.starters() == nullptr) return;
    for (const int object : *file_.starters()) check(has_object(object), "a run begins with an unknown object");
  }

  const File& file_;
  std::set<int> sprites_, rooms_;
};

}  // namespace

std::vector<std::uint8_t> header_for(const std::uint8_t* payload, std::size_t bytes) {
  std::vector<std::uint8_t> header(kMagic, kMagic + 8);
  put<std::uint32_t>(header, kVersion);
  put<std::uint32_t>(header, files::crc32_of(0, payload, bytes));
  put<std::uint64_t>(header, bytes);
  return header;
}

std::unique_ptr<DataFile> read_data(std::vector<std::uint8_t> bytes, const std::string& name, std::string& problem) {
  const auto fail = [&](const std::string& what) {
    problem = files::on_one_line(name + ": " + what);
    return nullptr;
  };
  if (bytes.empty()) return fail("the data file is empty");
  if (bytes.size() < 8 || std::memcmp(bytes.data(), kMagic, 8) != 0) return fail("this is not a data file of this game");
  if (bytes.size() < kHeaderBytes) return fail("the data file is cut off inside its header");
  const std::uint32_t version = get<std::uint32_t>(&bytes[8]);
  if (version != kVersion) {
    return fail("the data file has version " + std::to_string(version) + ", this program reads version " + std::to_string(kVersion));
  }
  const std::uint64_t expected = get<std::uint64_t>(&bytes[16]);
  const std::size_t present = bytes.size() - kHeaderBytes;
  if (present < expected)
    return fail("the data file is cut off: " + std::to_string(expected - present) + " of " + std::to_string(expected) +
                " bytes are missing");
  if (expected > kLargestPayload) return fail("the data file is damaged: its size is impossible");
  if (present > expected) return fail("the data file is damaged: " + std::to_string(present - expected) + " bytes too many");
  const std::uint8_t* payload = bytes.data() + kHeaderBytes;
  if (files::crc32_of(0, payload, present) != get<std::uint32_t>(&bytes[12]))
    return fail("the data file is damaged: its checksum does not fit");
  flatbuffers::Verifier verifier(payload, present);
  if (!VerifyFileBuffer(verifier)) return fail("the data file is damaged: its structure is broken");
  const std::string wrong = MeaningCheck(*GetFile(payload)).run();
  if (!wrong.empty()) return fail("the data file is damaged: " + wrong);
  auto file = std::make_unique<DataFile>();
  file->bytes = std::move(bytes);
  file->content = GetFile(file->bytes.data() + kHeaderBytes);
  return file;
}

std::uint32_t DataFile::hash() const { return get<std::uint32_t>(&bytes[12]); }

std::unique_ptr<DataFile> open_data_file(const std::string& path, std::string& problem) {
  const auto fail = [&](const char* what) {
    problem = files::on_one_line(path + ": " + what);
    return nullptr;
  };
  // Asked before it is opened: opening a pipe waits for its other end, and a device may have no end.
  const std::filesystem::path file = files::path_of(path);
  std::error_code failure;
  const std::filesystem::file_status status = std::filesystem::status(file, failure);
  if (std::filesystem::is_directory(status)) return fail("the data file cannot be read: this is a folder");
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    return fail("the data file cannot be read: this is no ordinary file");
  }
  const std::uintmax_t size = std::filesystem::file_size(file, failure);
  std::ifstream stream(file, std::ios::binary);
  if (failure || !stream) return fail("the data file cannot be opened");
  if (size > kHeaderBytes + kLargestPayload) return fail("this is not a data file of this game: it is too large");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
  if (static_cast<std::uintmax_t>(stream.gcount()) != size) return fail("the data file cannot be read to its end");
  return read_data(std::move(bytes), path, problem);
}

}  // namespace arena::data
