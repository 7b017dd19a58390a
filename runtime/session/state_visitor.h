#pragma once
// Who looks at the whole state of a game: the hash, the description, the probes of tests. Every part shows its fields in one order, by one
// function (state.h).
#include <cstdint>
#include <string>
#include <string_view>

namespace arena {

class WBObjectBase;
struct RValue;

// Scalars come by reference, so that a probe can change what it sees.
class StateVisitor {
 public:
  virtual ~StateVisitor() = default;
  // What follows belongs to this: a part of the session, or one of those that a part is made of (an object type).
  virtual void group(std::string_view name) = 0;
  // What follows is called so in what holds it.
  virtual void name(std::string_view) {}
  virtual void number(std::uint64_t& bits) = 0;
  // How many elements of a list, map or optional follow.
  virtual void count(std::uint64_t elements) = 0;
  virtual void real(double& value) = 0;
  virtual void text(std::string_view text) = 0;
  virtual void own_text(std::string& mine) { text(mine); }
  // The machine's time so far, microseconds: no two runs have the same.
  virtual void clock(std::int64_t& microseconds) = 0;
  virtual void instance_id(std::int32_t id) = 0;
  // A value, and an object of the heap with all that it leads to. Null is allowed.
  virtual void value(RValue& value) = 0;
  virtual void object(WBObjectBase* object) = 0;
  // The variables that an object holds, as part of what is shown now.
  virtual void variables(WBObjectBase& of) = 0;
  // What is shown between these two is the key of a map: it cannot be changed.
  virtual void begin_key() {}
  virtual void end_key() {}
  // Whether a list that is shown is to have one element more.
  virtual bool adds_element() { return false; }
};

}  // namespace arena
