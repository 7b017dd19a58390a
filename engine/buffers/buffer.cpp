#include "engine/buffers/buffer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>

#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/arguments.h"

namespace arena::buffers {
namespace {

const StatePart<ContainerTable<Buffer>> part{PartLevel::kServices, "buffers"};

struct NumberType {
  std::size_t bytes;
  std::int64_t low, high;
};
// By type, as far as they are whole numbers.
constexpr NumberType kWhole[] = {{1, 0, 255},        {1, -128, 127},     {2, 0, 65535},
                                 {2, -32768, 32767}, {4, 0, 4294967295}, {4, INT32_MIN, INT32_MAX}};

void put(std::string& into, std::uint64_t bits, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) into += static_cast<char>(bits >> (8 * i) & 255);
}
std::uint64_t get(std::string_view bytes, std::size_t count) {
  std::uint64_t bits = 0;
  for (std::size_t i = count; i-- > 0;) bits = bits << 8 | static_cast<unsigned char>(bytes[i]);
  return bits;
}

bool encode_whole(const RValue& value, const NumberType& type, std::string& into) {
  const double number = to_real(value);
  if (!(number >= static_cast<double>(type.low) && number <= static_cast<double>(type.high)) || number != std::floor(number)) return false;
  put(into, static_cast<std::uint64_t>(static_cast<std::int64_t>(number)), type.bytes);
  return true;
}

bool encode_int64(const RValue& value, std::string& into) {
  constexpr double kBeyond = 9223372036854775808.0;
  const double number = value.kind() == kInt64 ? 0 : to_real(value);
  if (!(number >= -kBeyond && number < kBeyond) || number != std::floor(number)) return false;
  put(into, static_cast<std::uint64_t>(value.kind() == kInt64 ? value.i64 : static_cast<std::int64_t>(number)), 8);
  return true;
}

}  // namespace

ContainerTable<Buffer>& all() { return part(); }

std::int32_t make_buffer(std::string_view bytes, Kind kind, std::uint32_t alignment) {
  const std::int32_t handle = all().create();
  Buffer& made = *all().find(handle);
  made.content.bytes = bytes;
  made.kind = kind;
  made.alignment = alignment;
  return handle;
}

std::size_t bytes_of(Type type) {
  switch (type) {
    case Type::kInt64:
    case Type::kF64: return 8;
    case Type::kF16: return 2;
    case Type::kF32: return 4;
    case Type::kBool: return 1;
    case Type::kText:
    case Type::kBareText: return 0;
    default: return kWhole[static_cast<std::size_t>(type)].bytes;
  }
}

bool encode(Type type, const RValue& value, std::string& into, std::string& problem) {
  const bool is_text = type == Type::kText || type == Type::kBareText;
  if (is_text ? !value.is_string() : !is_number_like(value)) {
    problem = std::string("a ") + type_name(value) + (is_text ? " is no text" : " is no number");
    return false;
  }
  bool fits = true;
  switch (type) {
    case Type::kInt64: fits = encode_int64(value, into); break;
    case Type::kF16: put(into, half_of(to_real(value)), 2); break;
    case Type::kF32: put(into, std::bit_cast<std::uint32_t>(static_cast<float>(to_real(value))), 4); break;
    case Type::kF64: put(into, std::bit_cast<std::uint64_t>(to_real(value)), 8); break;
    case Type::kBool: into += to_bool(value) ? '\1' : '\0'; break;
    case Type::kText:
      fits = text_of(value).find('\0') == std::string_view::npos;
      into.append(text_of(value)).append(1, '\0');
      break;
    case Type::kBareText: into += text_of(value); break;
    default: fits = encode_whole(value, kWhole[static_cast<std::size_t>(type)], into);
  }
  if (!fits) problem = type == Type::kText ? "the text has a zero inside" : "the number is none of this type";
  return fits;
}

bool decode(Type type, std::string_view bytes, RValue& into, std::size_t& taken) {
  if (type == Type::kText || type == Type::kBareText) {
    const std::size_t end = type == Type::kText ? bytes.find('\0') : bytes.size();
    if (end == std::string_view::npos) return false;
    taken = type == Type::kText ? end + 1 : end;
    into = make_string(bytes.substr(0, end));
    return true;
  }
  taken = bytes_of(type);
  if (bytes.size() < taken) return false;
  const std::uint64_t bits = get(bytes, taken);
  switch (type) {
    case Type::kS8: into = RValue(static_cast<double>(static_cast<std::int8_t>(bits))); break;
    case Type::kS16: into = RValue(static_cast<double>(static_cast<std::int16_t>(bits))); break;
    case Type::kS32: into = RValue(static_cast<double>(static_cast<std::int32_t>(bits))); break;
    case Type::kInt64: into = RValue::of_int64(static_cast<std::int64_t>(bits)); break;
    case Type::kF16: into = RValue(of_half(static_cast<std::uint16_t>(bits))); break;
    case Type::kF32: into = RValue(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))); break;
    case Type::kF64: into = RValue(std::bit_cast<double>(bits)); break;
    case Type::kBool: into = RValue::of_bool(bits != 0); break;
    default: into = RValue(static_cast<double>(bits));
  }
  return true;
}

// 1 bit of sign, 5 of exponent, 10 of fraction.
std::uint16_t half_of(double number) {
  const std::uint16_t sign = std::signbit(number) ? 0x8000 : 0;
  const double size = std::fabs(number);
  if (std::isnan(number)) return 0x7E00;
  if (size >= 65520) return sign | 0x7C00;  // what is nearer to what comes behind the largest one
  int exponent = 0;
  std::frexp(size, &exponent);
  const int step = std::max(exponent - 11, -24);  // the last bit stands for two to this
  const double steps = std::ldexp(size, -step);
  double whole = std::floor(steps);
  const double left = steps - whole;
  if (left > 0.5 || (left == 0.5 && std::fmod(whole, 2) == 1)) whole += 1;
  // A fraction that is rounded up to a full one carries into the exponent.
  const int biased = step + 24;
  const int bits = static_cast<int>(whole) + (size < std::ldexp(1, -14) ? 0 : biased * 1024);
  return static_cast<std::uint16_t>(sign | bits);
}

double of_half(std::uint16_t bits) {
  const int exponent = bits >> 10 & 31, fraction = bits & 1023;
  const double sign = (bits & 0x8000) != 0 ? -1 : 1;
  if (exponent == 31) return fraction != 0 ? NAN : sign * INFINITY;
  return sign * (exponent == 0 ? std::ldexp(fraction, -24) : std::ldexp(fraction + 1024, exponent - 25));
}

}  // namespace arena::buffers
