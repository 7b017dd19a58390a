#pragma once
// The tagged value: every variable, argument, result, array element and struct member of a script is one RValue.
//
//   byte 0          8         12        16
//        | payload  | flags   | kind    |      kind: low 24 bits; the high 8 bits are not part of it
//
// Always true: a value of a heap-owning kind (string, array, object) holds one reference of what it points to; strings and arrays
// count theirs, objects belong to the collector. Copying a value copies the reference, destroying it gives the reference back.
#include <cstdint>

namespace arena {

class WBObjectBase;
struct ArrayRecord;

enum Kind : std::uint32_t {
  kNumber = 0,
  kString = 1,
  kArray = 2,
  kPointer = 3,
  kVec3 = 4,
  kUndefined = 5,
  kObject = 6,  // instances, structs and method closures
  kInt32 = 7,
  kVec4 = 8,
  kVec44 = 9,
  kInt64 = 10,
  kAccessor = 11,
  kNull = 12,
  kBool = 13,
  kIterator = 14,
  kRef = 15,
  kUnset = 0xFFFFFF,  // a variable slot never written
};

inline constexpr std::uint32_t kKindMask = 0xFFFFFF;
inline constexpr std::uint32_t kOwnsHeapMask = 0x46;  // kinds 1, 2 and 6
inline constexpr std::uint32_t kFlagOwnsPointer = 8;  // on a pointer value: it owns the pointed-to OwnedObject
inline constexpr std::int32_t kNoIndex = INT32_MIN;   // "the whole variable" where an array index may stand
inline constexpr double kNoone = -4;                  // no instance

// Shared text. `size` counts the bytes before the terminating zero; a negative size marks text that the record does not own.
struct StringRecord {
  const char* text;
  std::int32_t count;
  std::int32_t size;
  std::int32_t length() const { return size < 0 ? -size - 1 : size; }
};

// What a pointer value can own. No heap object of scripts: those belong to the collector.
class OwnedObject {
 public:
  OwnedObject() = default;
  OwnedObject(const OwnedObject&) = delete;
  OwnedObject& operator=(const OwnedObject&) = delete;
  virtual ~OwnedObject() = default;
};

struct RValue {
  union {
    double real;
    std::int32_t i32;
    std::int64_t i64;
    void* pointer;
    StringRecord* string;
    ArrayRecord* array;
    WBObjectBase* object;
  };
  std::uint32_t flags;
  std::uint32_t kind_bits;

  RValue() noexcept : i64(0), flags(0), kind_bits(kUndefined) {}
  RValue(double number) noexcept : real(number), flags(0), kind_bits(kNumber) {}
  RValue(const RValue& source) noexcept : i64(source.i64), flags(source.flags), kind_bits(source.kind_bits) {
    if (counts_references()) add_reference();
  }
  RValue(RValue&& source) noexcept : i64(source.i64), flags(source.flags), kind_bits(source.kind_bits) { source.forget(); }
  ~RValue() {
    if (counts_references()) drop_reference();
  }
  // Plain assignment is for native locals and results: it counts references but tells the collector nothing. Slots that outlive the
  // native stack are written with assign() (arrays_structs/slots.h).
  RValue& operator=(const RValue& source) noexcept {
    RValue copy(source);
    swap(copy);
    return *this;
  }
  // What stood here is released at once; the source reads undefined.
  RValue& operator=(RValue&& source) noexcept {
    RValue taken(static_cast<RValue&&>(source));
    swap(taken);
    return *this;
  }

  static RValue of_bool(bool value) { return with_kind(kBool, value ? 1.0 : 0.0); }
  static RValue of_int32(std::int32_t value) {
    RValue result;
    result.i64 = 0;
    result.i32 = value;
    result.kind_bits = kInt32;
    return result;
  }
  static RValue of_int64(std::int64_t value) { return with_bits(kInt64, value); }
  static RValue of_ref(std::int32_t type, std::int32_t index) {
    return with_bits(kRef, static_cast<std::int64_t>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(type)) << 32 |
                                                     static_cast<std::uint32_t>(index)));
  }
  static RValue of_pointer(void* pointer) {
    RValue result;
    result.pointer = pointer;
    result.kind_bits = kPointer;
    return result;
  }
  // The one value that destroys the object: when it is released, overwritten or destroyed itself. It hands the object on only by a move;
  // its copies point at the same object without owning it.
  static RValue of_owned(OwnedObject* owned) {
    RValue result = of_pointer(owned);
    result.flags = kFlagOwnsPointer;
    return result;
  }
  static RValue of_object(WBObjectBase* object) {
    RValue result;
    result.object = object;
    result.kind_bits = kObject;
    return result;
  }
  // Adds a reference: the array goes on belonging to the collector. Defined beside the array record.
  static RValue of_array(ArrayRecord* array);
  static RValue of_kind(std::uint32_t kind) { return with_bits(kind, 0); }
  static RValue unset() { return with_bits(kUnset, 0); }
  static RValue null() { return with_bits(kNull, 0); }

  std::uint32_t kind() const { return kind_bits & kKindMask; }
  bool is_number() const { return kind() == kNumber; }
  bool is_undefined() const { return kind() == kUndefined; }
  bool is_unset() const { return kind() == kUnset; }
  bool is_array() const { return kind() == kArray; }
  bool is_string() const { return kind() == kString; }
  bool is_object() const { return kind() == kObject && object != nullptr; }
  bool is_numeric() const { return kind() == kNumber || kind() == kBool; }
  bool owns_heap() const { return (kOwnsHeapMask >> (kind_bits & 31) & 1) != 0; }
  // Its bits are all there is to it: it may be copied and overwritten without further ado.
  bool is_plain() const { return ((kOwnsHeapMask | 1u << kPointer) >> (kind_bits & 31) & 1) == 0; }
  std::int32_t ref_type() const { return static_cast<std::int32_t>(static_cast<std::uint64_t>(i64) >> 32); }

  void swap(RValue& with) noexcept {
    const std::int64_t payload = i64;
    const std::uint32_t their_flags = with.flags, their_kind = with.kind_bits;
    i64 = with.i64;
    with.i64 = payload;
    with.flags = flags;
    with.kind_bits = kind_bits;
    flags = their_flags;
    kind_bits = their_kind;
  }
  // Gives up the payload without releasing it: for memory that is moved or was already released.
  void forget() noexcept {
    i64 = 0;
    flags = 0;
    kind_bits = kUndefined;
  }

 private:
  static RValue with_kind(std::uint32_t kind, double payload) {
    RValue result(payload);
    result.kind_bits = kind;
    return result;
  }
  static RValue with_bits(std::uint32_t kind, std::int64_t payload) {
    RValue result;
    result.i64 = payload;
    result.kind_bits = kind;
    return result;
  }
  bool counts_references() const { return (0xEu >> (kind_bits & 31) & 1) != 0; }  // strings, arrays, and pointers for those that own
  void add_reference() noexcept;
  void drop_reference() noexcept;
};
static_assert(sizeof(RValue) == 16);

// Drops what the value owns. A string value is left without a payload, and so is a pointer that owned; everything else keeps its bits.
void release(RValue& value);

// "number", "string", ... as messages and typeof() spell it; "unknown" for kinds that do not exist.
const char* type_name(const RValue& value);

}  // namespace arena
