#include "engine/formats/compression.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace arena::formats {
namespace {

constexpr std::size_t kPiece = 64 << 10;       // bytes that zlib gives at once
constexpr std::size_t kMostAtOnce = 1u << 30;  // bytes that it is given at once

const unsigned char* read_only(std::string_view bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

// What zlib made of some bytes is behind `into`. The result is its last word.
template <class Step>
int run(z_stream& stream, std::string_view bytes, std::string& into, std::size_t most, Step step) {
  int outcome = Z_OK;
  std::size_t given = 0;
  do {
    if (stream.avail_in == 0 && given < bytes.size()) {
      const std::size_t next = std::min(kMostAtOnce, bytes.size() - given);
      stream.next_in = const_cast<unsigned char*>(read_only(bytes.substr(given)));  // zlib only reads it
      stream.avail_in = static_cast<uInt>(next);
      given += next;
    }
    const std::size_t before = into.size();
    into.resize(before + kPiece);
    stream.next_out = reinterpret_cast<unsigned char*>(into.data()) + before;
    stream.avail_out = static_cast<uInt>(kPiece);
    outcome = step(&stream, given == bytes.size() ? Z_FINISH : Z_NO_FLUSH);
    into.resize(before + kPiece - stream.avail_out);
    if (outcome == Z_BUF_ERROR && (stream.avail_in > 0 || given < bytes.size() || stream.avail_out == 0)) outcome = Z_OK;
  } while (outcome == Z_OK && into.size() <= most);
  return outcome;
}

}  // namespace

std::string compressed(std::string_view bytes) {
  z_stream stream{};
  if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) throw std::bad_alloc();
  std::string into;
  run(stream, bytes, into, into.max_size(), deflate);
  deflateEnd(&stream);
  return into;
}

std::optional<std::string> decompressed(std::string_view bytes, std::size_t most, std::string& problem) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
  std::string into;
  const int outcome = run(stream, bytes, into, most, inflate);
  const std::size_t at = stream.total_in;
  inflateEnd(&stream);
  if (into.size() > most) {
    problem = "the data would become more than " + std::to_string(most) + " bytes";
  } else if (outcome == Z_STREAM_END && at == bytes.size()) {
    return into;
  } else if (outcome == Z_BUF_ERROR) {
    problem = "the data is cut off behind byte " + std::to_string(at);
  } else {
    problem = "the data is damaged at byte " + std::to_string(at);
  }
  return std::nullopt;
}

}  // namespace arena::formats
