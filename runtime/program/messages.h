#pragma once
// Every message that the runtime reports, once, with the kinds of its placeholders. A wrong count of placeholders does not compile.
//
// Messages that nothing in this runtime can raise are listed at the end of this file with the reason.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace arena {

inline constexpr std::size_t kLongestMessage = 1024;  // bytes; longer messages are cut between characters

// %s takes a Text, %d a 32-bit integer, %p the serial number of a heap object.
using Text = std::string_view;
struct Serial {
  std::uint32_t number;
};

template <class... Parameters>
struct Message {
  const char* format;
  consteval Message(const char* text) : format(text) {
    const char expected[] = {letter<Parameters>()..., 0};
    std::size_t found = 0;
    for (const char* at = text; *at != 0; ++at) {
      if (*at != '%') continue;
      ++at;
      if (found >= sizeof...(Parameters) || *at != expected[found++]) throw "the placeholders do not fit the parameters";
    }
    if (found != sizeof...(Parameters)) throw "too few placeholders";
  }
  template <class P>
  static constexpr char letter() {
    if (std::is_same_v<P, Text>) return 's';
    if (std::is_same_v<P, Serial>) return 'p';
    return 'd';
  }
};

struct MessageArgument {
  enum { kText, kInteger, kSerial } type;
  Text text;
  std::int64_t integer = 0;
  MessageArgument(Text value) : type(kText), text(value) {}
  MessageArgument(std::int32_t value) : type(kInteger), integer(value) {}
  MessageArgument(Serial value) : type(kSerial), integer(value.number) {}
};

// The text with its placeholders filled in, cut to the longest message.
std::string format_message(const char* format, const MessageArgument* arguments, std::size_t count);

template <class... Parameters>
std::string format_message(const Message<Parameters...>& message, std::type_identity_t<Parameters>... values) {
  const MessageArgument arguments[sizeof...(Parameters) + 1] = {MessageArgument(values)..., MessageArgument(0)};
  return format_message(message.format, arguments, sizeof...(Parameters));
}

namespace messages {

using Int = std::int32_t;

// Conversions
inline constexpr Message<Text> kNotANumberText{"unable to convert string \"%s\" to number"};
inline constexpr Message<Text> kNotAnIntegerText{"unable to convert string \"%s\" to integer"};
inline constexpr Message<Text> kNotAnInt64Text{"unable to convert string \"%s\" to int64"};
inline constexpr Message<Text> kNotABoolText{"unable to convert string \"%s\" to bool"};
inline constexpr Message<Text> kRealWrongType{"REAL argument incorrect type %s"};
inline constexpr Message<> kRealUnset{"REAL argument is unset"};
inline constexpr Message<> kInt32Array{"I32 argument is array"};
inline constexpr Message<> kInt32Undefined{"I32 argument is undefined"};
inline constexpr Message<> kInt32Unset{"I32 argument is unset"};
inline constexpr Message<Int> kInt32WrongType{"I32 argument incorrect type %d"};
inline constexpr Message<> kInt64Array{"INT64 argument is array"};
inline constexpr Message<> kInt64Undefined{"I64 argument is undefined"};
inline constexpr Message<> kInt64Unset{"I64 argument is unset"};
inline constexpr Message<Int> kInt64WrongType{"I64 argument incorrect type %d"};
inline constexpr Message<> kBoolArray{"bool argument is array"};
inline constexpr Message<> kBoolUnset{"bool argument is unset"};
inline constexpr Message<Int> kBoolWrongType{"bool argument incorrect type %d"};
inline constexpr Message<> kPointerUndefined{"PTR argument is undefined"};
inline constexpr Message<> kPointerUnset{"PTR argument is unset"};
inline constexpr Message<Int> kPointerWrongType{"PTR argument incorrect type %d"};
inline constexpr Message<> kTextUnset{"STRING argument is unset"};
inline constexpr Message<> kArrayUnset{"ARRAY argument is unset"};

// Operators and comparison
inline constexpr Message<> kNumberToString{"unable to add a number to string"};
inline constexpr Message<Int> kTextTooLong{"a text cannot be longer than %d bytes"};
inline constexpr Message<Text, Text, Int, Text, Int> kOperatorTypes{"invalid type for %s lhs=%s (type=%d), rhs=%s (type=%d)"};
inline constexpr Message<> kDivideByZero{"divide by zero"};
inline constexpr Message<> kModByZero{"unable to mod by 0"};
inline constexpr Message<> kIllegalArrayUse{"Illegal array use"};
inline constexpr Message<> kCompareUnset{"Cannot compare unset variables"};

// Arrays, structs, methods
inline constexpr Message<> kImmutableArray{"Unable to write to immutable array"};
inline constexpr Message<> kIndexNotArray{"trying to index a variable which is not an array"};
inline constexpr Message<> kInlineIndexNotArray{"trying to index variable that is not an array"};
inline constexpr Message<Int, Int> kIndexOutOfBounds{"index out of bounds request %d maximum size is %d"};
inline constexpr Message<> kIndexNegative{"Array index must be positive"};
inline constexpr Message<> kGetProperty{"Unable to get property"};
inline constexpr Message<> kSetProperty{"Unable to set property"};
inline constexpr Message<> kPropertyNullSelf{"Dynamically bound property called with NULL self"};
inline constexpr Message<Text> kStringAsStruct{"Unable to use string \"%s\" as struct"};
inline constexpr Message<> kEmptyName{"variable_struct_set: illegal to use empty names"};
inline constexpr Message<> kInternalName{"illegal to use internal names (names that start with @@)"};
inline constexpr Message<> kConstructorDirect{"calling a constructor directly - constructors should only be called using new"};
inline constexpr Message<> kStoreOnThread{"You are copying a struct/array to another struct/array or a data structure on a thread"};

// Variables
inline constexpr Message<Int, Text> kNoInstanceNamed{"Unable to find any instance for object index '%d' name '%s'"};
inline constexpr Message<Int> kNoInstance{"Unable to find instance for object index %d"};
inline constexpr Message<Text, Serial> kNoVariable{"Unable to get variable %s from object %p\n"};
inline constexpr Message<Int, Int, Int, Int, Int, Int> kVariableIndex{"Variable Index [%d] out of range [%d] - %d.%d(%d,%d)"};
inline constexpr Message<Text, Text, Int, Int> kInstanceUnset{"Variable %s.%s(%d, %d) not set before reading it."};
inline constexpr Message<Text, Int> kLocalUnset{"local variable %s(%d) not set before reading it."};
inline constexpr Message<Text, Int> kGlobalUnset{"global variable name '%s' index (%d) not set before reading it."};
inline constexpr Message<Text> kReadOnlyBuiltin{"unable to set built in variable %s\n"};
inline constexpr Message<Text, Text, Text> kManagedReadOnly{"Writing to variable '%s' in managed object '%s' which is read-only. %s"};
inline constexpr Message<Text, Text, Text> kManagedReference{
    "Writing reference to unmanaged object '%s' to variable '%s' in managed object '%s'."};

// Calls
inline constexpr Message<Int> kInvalidFunction{"attempting to call invalid function with script index %d"};
inline constexpr Message<> kNotAMethod{"argument is not a method, unable to call"};
inline constexpr Message<Int> kTooDeep{"calls are nested more than %d deep"};

// Memory
inline constexpr Message<> kOutOfMemory{"out of memory"};

// Arguments of built-in functions
inline constexpr Message<Text, Int, Text, Text> kArgumentType{"%s argument %d incorrect type (%s) expecting a %s"};
inline constexpr Message<Text, Int, Text> kArgumentBool{"%s argument %d incorrect type (%s) expecting a Boolean (WBGB)"};
inline constexpr Message<Text, Int, Text> kArgumentFloat{"%s argument %d incorrect type (%s) expecting a Number (WBGF)"};
inline constexpr Message<Text, Int, Text> kArgumentInt32{"%s argument %d incorrect type (%s) expecting a Number (WBGI32)"};
inline constexpr Message<Text, Int, Text> kArgumentUint32{"%s argument %d incorrect type (%s) expecting a Number (WBGU32)"};
inline constexpr Message<Text, Int, Text> kArgumentReal{"%s argument %d incorrect type (%s) expecting a Number (WBGR)"};
inline constexpr Message<Text, Int, Text> kArgumentNumber{"%s argument %d incorrect type (%s) expecting a Number"};
inline constexpr Message<Text, Int, Text> kArgumentPointer{"%s argument %d incorrect type (%s) expecting a Pointer"};
inline constexpr Message<Text, Int, Text> kArgumentNumberOrPointer{"%s argument %d incorrect type (%s) expecting a Number or Pointer"};
inline constexpr Message<Text, Int, Text> kArgumentString{"%s argument %d incorrect type (%s) expecting a String (WBGS)"};
inline constexpr Message<Text, Int, Text> kArgumentStruct{"%s argument %d incorrect type (%s) needs to be a struct"};
inline constexpr Message<Text, Int> kArgumentInstance{"%s argument %d cannot be an instance"};
inline constexpr Message<Text, Int> kArgumentArray{"%s :: argument %d is not an array"};
inline constexpr Message<Text, Int> kArgumentImmutable{"%s :: argument %d cannot be an immutable array"};
inline constexpr Message<Text, Int> kArgumentCallable{"%s :: argument %d is neither a method or a function"};
inline constexpr Message<Text, Int, Text, Int, Int> kArgumentResource{"%s argument %d invalid reference to (%s) - requested %d max is %d"};
inline constexpr Message<Text, Int, Text, Int> kArgumentHandle{"%s argument %d invalid reference to (%s) - requested %d"};
inline constexpr Message<Text> kInstanceContext{"%s() must be called in an instance context"};

// Gamepads and actions
inline constexpr Message<Text> kThresholds{"%s: thresholds must be 0 < release <= press <= 1 and 0 <= inner < outer <= 1"};
inline constexpr Message<Text> kCurve{"%s: the exponent of a curve must be from 0.1 to 10"};
inline constexpr Message<Text, Int, Text> kNoInput{"%s argument %d names no input: \"%s\""};
inline constexpr Message<Text, Int, Text> kNoDirection{"%s argument %d names no direction: \"%s\""};
inline constexpr Message<Text, Int, Int> kActionName{"%s argument %d: the name of an action has 1 to %d bytes and no tab or line end"};
inline constexpr Message<Text, Int> kTooManyActions{"%s: a player has at most %d inputs for actions"};

// Files and formats
inline constexpr Message<Text, Int, Text, Text> kFileName{"%s argument %d is no name that a game may use: '%s' (%s)"};
inline constexpr Message<Text, Int, Text, Int, Text> kNotOpenFor{"%s argument %d: %s %d is not open for %s"};
inline constexpr Message<Text, Text> kFormat{"%s: %s"};

// Instances
inline constexpr Message<Int> kWorldFull{"cannot create another instance: the world holds %d already"};

// Rooms
inline constexpr Message<Int> kRoomsFull{"cannot make another room: there are %d already"};

// Iteration over instances
inline constexpr Message<> kWithGlobal{"Cannot use global in with statement"};
inline constexpr Message<> kWithLocal{"Cannot use local in with statement"};
inline constexpr Message<> kWithInvalid{"invalid with reference"};

// No script raises these, each for the reason given:
//   kIllegalArrayUse      a strict comparison: C++ callers of compare() may ask for one, no script operator does
//   kPropertyNullSelf     a body that runs without any self: only a host that calls a script with none gets there
//   kInlineIndexNotArray  raised by `value[i]` in compiled code; the console's elements use the other wording
//   kPointerUndefined, kPointerUnset, kPointerWrongType   to_pointer() is for hosts; built-ins check their arguments first

}  // namespace messages
}  // namespace arena
