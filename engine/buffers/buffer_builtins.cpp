// Buffers as scripts call them.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>
#include <cmath>

#include "engine/buffers/buffer_arguments.h"
#include "engine/files/file_arguments.h"
#include "engine/files/game_files.h"
#include "engine/formats/base64.h"
#include "engine/formats/compression.h"
#include "engine/formats/hashes.h"
#include "runtime/builtins/buffers.h"
#include "runtime/builtins/implement.h"
#include "runtime/input/outside.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"

namespace arena::buffers {
namespace {

const RefKind refs{ref_type::kBuffer, "buffer"};

void report(const std::string& what) { report_error(messages::kFormat, current_builtin_name(), what); }

std::string shown(double number) { return std::to_string(saturate_int64(number)); }

void report_place(const Buffer& buffer, double at) {
  report("byte " + shown(at) + " lies outside of the buffer, which has " + std::to_string(buffer.size()));
}

// Whether there can be a buffer of that size.
bool check_size(double size) {
  if (size >= 0 && size <= kLargest) return true;
  report("a buffer has 0 to " + shown(kLargest) + " bytes, not " + shown(size));
  return false;
}

std::uint64_t aligned(std::uint64_t place, std::uint32_t alignment) { return (place + alignment - 1) / alignment * alignment; }

// Writes bytes at a place by the buffer's kind; false after a report.
bool put(Buffer& buffer, std::uint64_t at, std::string_view bytes) {
  PooledText& content = buffer.content.bytes;
  if (buffer.kind == Kind::kWrap && !content.empty()) {
    for (const char each : bytes) content[static_cast<std::size_t>(at++ % content.size())] = each;
    return true;
  }
  const std::uint64_t end = at + bytes.size();
  if (end > content.size()) {
    if (buffer.kind != Kind::kGrow || static_cast<double>(end) > kLargest) return report_place(buffer, static_cast<double>(end) - 1), false;
    content.resize(static_cast<std::size_t>(end));
  }
  std::copy(bytes.begin(), bytes.end(), content.begin() + static_cast<std::ptrdiff_t>(at));
  return true;
}

// The bytes from a place on, as far as a value of the type may need them: round the end of one that wraps.
std::string_view bytes_from(const Buffer& buffer, std::uint64_t at, std::string& turned) {
  const std::string_view all_bytes = buffer.view();
  if (buffer.kind != Kind::kWrap || all_bytes.empty()) return all_bytes.substr(std::min(static_cast<std::size_t>(at), all_bytes.size()));
  const std::size_t place = static_cast<std::size_t>(at % all_bytes.size());
  turned = std::string(all_bytes.substr(place)) + std::string(all_bytes.substr(0, place));
  return turned;
}

bool get(const Buffer& buffer, std::uint64_t at, Type type, RValue& into, std::size_t& taken) {
  std::string turned;
  if (decode(type, bytes_from(buffer, at, turned), into, taken)) return true;
  report_place(buffer, static_cast<double>(type == Type::kText ? buffer.size() : at + bytes_of(type) - 1));
  return false;
}

bool check_type(const Buffer& buffer, std::int32_t type) {
  if (type < 0 || type >= kTypes)
    return report(std::to_string(type) + " is no type of values; there are 0 to " + std::to_string(kTypes - 1)), false;
  const bool is_byte = type == static_cast<int>(Type::kU8) || type == static_cast<int>(Type::kS8);
  if (buffer.kind == Kind::kFast && !is_byte) return report("a buffer for single bytes holds types 0 and 1 alone"), false;
  return true;
}

bool check_place(const Buffer& buffer, double at) {
  if (at >= 0 && at <= kLargest && (at <= static_cast<double>(buffer.size()) || buffer.kind == Kind::kGrow || buffer.kind == Kind::kWrap))
    return true;
  report_place(buffer, at);
  return false;
}

bool encoded(std::int32_t type, const RValue& value, std::string& into) {
  std::string problem;
  if (encode(static_cast<Type>(type), value, into, problem)) return true;
  report(problem);
  return false;
}

std::int32_t create(double size, std::int32_t kind, std::int32_t alignment) {
  if (!check_size(size)) return -1;
  const bool is_power = alignment > 0 && (alignment & (alignment - 1)) == 0;
  if (kind < 0 || kind > 3) return report(std::to_string(kind) + " is no kind of buffer; there are 0 to 3"), -1;
  if (!is_power || alignment > 1024 || (kind == 3 && alignment != 1))
    return report(kind == 3 ? "a buffer for single bytes has the alignment 1" : "an alignment is 1, 2, 4 and so on up to 1024"), -1;
  const std::int32_t handle = make_buffer("", static_cast<Kind>(kind), static_cast<std::uint32_t>(alignment));
  all().find(handle)->content.bytes.resize(static_cast<std::size_t>(size));
  return handle;
}
void destroy(BufferArgument a) { all().destroy(a.handle); }
bool exists(std::int32_t handle) { return all().find(handle) != nullptr; }
double get_size(BufferArgument a) { return static_cast<double>(a.buffer->size()); }
std::int32_t get_kind(BufferArgument a) { return static_cast<std::int32_t>(a.buffer->kind); }
std::int32_t get_alignment(BufferArgument a) { return static_cast<std::int32_t>(a.buffer->alignment); }
double get_position(BufferArgument a) { return static_cast<double>(a.buffer->position); }
void resize(BufferArgument a, double size) {
  if (!check_size(size)) return;
  a.buffer->content.bytes.resize(static_cast<std::size_t>(size));
  a.buffer->position = std::min<std::uint64_t>(a.buffer->position, a.buffer->size());
}
void set_position(BufferArgument a, double position, std::int32_t from) {
  if (from < 0 || from > 2) return report(std::to_string(from) + " is no place to count from; there are 0 to 2");
  const double base = from == 0 ? 0 : from == 1 ? get_position(a) : get_size(a);
  if (check_place(*a.buffer, base + position)) a.buffer->position = static_cast<std::uint64_t>(base + position);
}

void write(BufferArgument a, std::int32_t type, const RValue& value) {
  std::string bytes;
  if (!check_type(*a.buffer, type) || !encoded(type, value, bytes)) return;
  const std::uint64_t at = aligned(a.buffer->position, a.buffer->alignment);
  if (put(*a.buffer, at, bytes)) a.buffer->position = at + bytes.size();
}
RValue read(BufferArgument a, std::int32_t type) {
  RValue value;
  std::size_t taken = 0;
  if (!check_type(*a.buffer, type)) return value;
  const std::uint64_t at = aligned(a.buffer->position, a.buffer->alignment);
  if (get(*a.buffer, at, static_cast<Type>(type), value, taken)) a.buffer->position = at + taken;
  return value;
}
void poke(BufferArgument a, double at, std::int32_t type, const RValue& value) {
  std::string bytes;
  if (check_place(*a.buffer, at) && check_type(*a.buffer, type) && encoded(type, value, bytes))
    put(*a.buffer, static_cast<std::uint64_t>(at), bytes);
}
RValue peek(BufferArgument a, double at, std::int32_t type) {
  RValue value;
  std::size_t taken = 0;
  if (check_place(*a.buffer, at) && check_type(*a.buffer, type))
    get(*a.buffer, static_cast<std::uint64_t>(at), static_cast<Type>(type), value, taken);
  return value;
}
void fill(BufferArgument a, double at, std::int32_t type, const RValue& value, double size) {
  std::string bytes;
  if (!check_place(*a.buffer, at) || !check_type(*a.buffer, type) || !encoded(type, value, bytes) || bytes.empty()) return;
  const double left = get_size(a) - at, wanted = size < 0 ? std::max(left, 0.0) : size;
  if (!check_size(at + wanted)) return;
  const std::uint64_t end = static_cast<std::uint64_t>(at + wanted);
  for (std::uint64_t place = static_cast<std::uint64_t>(at); place + bytes.size() <= end;) {
    if (!put(*a.buffer, place, bytes)) return;
    place = aligned(place + bytes.size(), a.buffer->alignment);
  }
}
void copy(BufferArgument from, double at, double size, BufferArgument to, double to_at) {
  std::string_view source;
  if (!range_of(*from.buffer, at, size, source) || !check_place(*to.buffer, to_at)) return;
  put(*to.buffer, static_cast<std::uint64_t>(to_at), std::string(source));
}
std::int32_t slice(BufferArgument a, double at, double size) {
  std::string_view source;
  return range_of(*a.buffer, at, size, source) ? make_buffer(std::string(source), a.buffer->kind, a.buffer->alignment) : -1;
}
bool equals(BufferArgument a, BufferArgument b) { return a.buffer->view() == b.buffer->view(); }

template <std::string (*make)(std::string_view)>
std::string of_range(BufferArgument a, double at, double size) {
  std::string_view source;
  return range_of(*a.buffer, at, size, source) ? make(source) : "";
}
std::string as_it_is(std::string_view bytes) { return std::string(bytes); }
double crc32(BufferArgument a, double at, double size) {
  std::string_view source;
  return range_of(*a.buffer, at, size, source) ? formats::crc32_of(source) : 0;
}
std::int32_t from_text(std::string_view text) { return make_buffer(text); }
std::int32_t from_base64(std::string_view text) {
  std::string problem;
  const std::optional<std::string> bytes = formats::from_base64(text, problem);
  if (!bytes) report(problem);
  return bytes ? make_buffer(*bytes) : -1;
}
// Another version of zlib may make other bytes of the same ones: what this one makes is an answer from outside.
std::int32_t compress(BufferArgument a, double at, double size) {
  std::string_view source;
  if (!range_of(*a.buffer, at, size, source)) return -1;
  return make_buffer(answer_from_outside([&] { return formats::compressed(source); }));
}
std::int32_t decompress(BufferArgument a) {
  std::string problem;
  const std::optional<std::string> bytes = formats::decompressed(a.buffer->view(), static_cast<std::size_t>(kLargest), problem);
  if (!bytes) report(problem);
  return bytes ? make_buffer(*bytes) : -1;
}

std::int32_t load(FileName name) {
  const std::optional<std::string> bytes = files::read_file(name.name);
  return bytes ? make_buffer(*bytes) : -1;
}
bool save(BufferArgument a, FileName name, double at, double size) {
  std::string_view source;
  return range_of(*a.buffer, at, size, source) && files::save_file(name.name, std::string(source));
}
double load_async(FileName name) { return files::begin_load(name.name); }
double save_async(BufferArgument a, FileName name, double at, double size) {
  std::string_view source;
  return range_of(*a.buffer, at, size, source) ? files::begin_save(name.name, std::string(source)) : -1;
}

template <std::string (*make)(std::string_view)>
std::string of_text(std::string_view text) {
  return make(text);
}
double text_crc32(std::string_view text) { return formats::crc32_of(text); }
std::string text_from_base64(std::string_view text) {
  std::string problem;
  const std::optional<std::string> bytes = formats::from_base64(text, problem);
  if (!bytes) report(problem);
  return bytes.value_or("");
}

constexpr Implementation kRows[] = {
    implement<script::buffer_create, create>,
    implement<script::buffer_destroy, destroy>,
    implement<script::buffer_exists, exists>,
    implement<script::buffer_get_size, get_size>,
    implement<script::buffer_get_kind, get_kind>,
    implement<script::buffer_get_alignment, get_alignment>,
    implement<script::buffer_get_position, get_position>,
    implement<script::buffer_set_position, set_position>,
    implement<script::buffer_resize, resize>,
    implement<script::buffer_read, read>,
    implement<script::buffer_write, write>,
    implement<script::buffer_peek, peek>,
    implement<script::buffer_poke, poke>,
    implement<script::buffer_fill, fill>,
    implement<script::buffer_copy, copy>,
    implement<script::buffer_slice, slice>,
    implement<script::buffer_equals, equals>,
    implement<script::buffer_text, of_range<as_it_is>>,
    implement<script::buffer_base64, of_range<formats::base64>>,
    implement<script::buffer_md5, of_range<formats::md5>>,
    implement<script::buffer_sha1, of_range<formats::sha1>>,
    implement<script::buffer_sha256, of_range<formats::sha256>>,
    implement<script::buffer_crc32, crc32>,
    implement<script::buffer_from_text, from_text>,
    implement<script::buffer_from_base64, from_base64>,
    implement<script::buffer_compress, compress>,
    implement<script::buffer_decompress, decompress>,
    implement<script::buffer_load, load>,
    implement<script::buffer_save, save>,
    implement<script::buffer_load_async, load_async>,
    implement<script::buffer_save_async, save_async>,
    implement<script::string_base64_encode, of_text<formats::base64>>,
    implement<script::string_base64_decode, text_from_base64>,
    implement<script::string_md5, of_text<formats::md5>>,
    implement<script::string_sha1, of_text<formats::sha1>>,
    implement<script::string_sha256, of_text<formats::sha256>>,
    implement<script::string_crc32, text_crc32>,
};
const BuiltinTable table(
    "Buffers and hashes",
    "By handle: buffers live until they are destroyed. Places begin at 0; numbers stand in them with the lowest byte first.", kRows);

}  // namespace

BufferArgument check_buffer(const CallContext& call, int at) {
  BufferArgument argument{nullptr, -1};
  if (!is_number_like(argument_at(call, at))) {
    report_argument_type(call, at, "buffer");
    return argument;
  }
  argument.handle = to_int32(argument_at(call, at));
  argument.buffer = all().find(argument.handle);
  if (argument.buffer == nullptr) report_invalid_resource(at + 1, "buffer", argument.handle, -1);
  return argument;
}

bool range_of(const Buffer& buffer, double at, double size, std::string_view& into) {
  const double all_bytes = static_cast<double>(buffer.size()), wanted = size < 0 ? all_bytes - at : size;
  if (!(at >= 0 && at <= all_bytes && wanted >= 0 && at + wanted <= all_bytes)) {
    report_place(buffer, at >= 0 && at <= all_bytes ? at + wanted - 1 : at);
    return false;
  }
  into = buffer.view().substr(static_cast<std::size_t>(at), static_cast<std::size_t>(wanted));
  return true;
}

}  // namespace arena::buffers
