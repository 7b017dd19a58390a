#pragma once
// Bytes that scripts write and read as numbers and texts, the lowest byte first on every system. Handles are those of other containers:
// small numbers, given again; a stale one is reported.
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/arrays_structs/containers.h"
#include "runtime/session/pooled_bytes.h"
#include "runtime/values/value.h"

namespace arena::buffers {

inline constexpr double kLargest = 1 << 28;  // bytes

enum class Kind : std::uint8_t { kFixed, kGrow, kWrap, kFast };
enum class Type : std::uint8_t { kU8, kS8, kU16, kS16, kU32, kS32, kInt64, kF16, kF32, kF64, kBool, kText, kBareText };
inline constexpr std::int32_t kTypes = 13;

struct Buffer {
  std::uint64_t position = 0;
  std::uint32_t alignment = 1;
  Kind kind = Kind::kFixed;
  PooledBytes content;

  std::string_view view() const { return content.view(); }
  std::size_t size() const { return content.bytes.size(); }
  static constexpr auto fields() {
    return std::tuple(field("position", &Buffer::position), field("alignment", &Buffer::alignment), field("kind", &Buffer::kind),
                      field("content", &Buffer::content));
  }
  static void* operator new(std::size_t bytes) { return allocate_block(bytes); }
  static void operator delete(void* block, std::size_t bytes) { free_block(block, bytes); }
};

ContainerTable<Buffer>& all();
// A new one that grows and holds these bytes; its handle.
std::int32_t make_buffer(std::string_view bytes, Kind kind = Kind::kGrow, std::uint32_t alignment = 1);

// The bytes of a value of that type; false with a sentence in `problem` for what the type cannot hold.
bool encode(Type type, const RValue& value, std::string& into, std::string& problem);
// The value at the beginning of the bytes, and how many it takes; false when they do not suffice.
bool decode(Type type, std::string_view bytes, RValue& into, std::size_t& taken);
// How many bytes a number of the type takes; 0 of a text.
std::size_t bytes_of(Type type);

std::uint16_t half_of(double number);  // the nearest one, halves to the even one
double of_half(std::uint16_t bits);

}  // namespace arena::buffers
