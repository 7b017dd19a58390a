#include "engine/host/state_hash.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/names.h"
#include "runtime/session/session.h"
#include "runtime/session/state_visitor.h"
#include "runtime/values/bit_cast.h"
#include "runtime/values/number_text.h"
#include "runtime/values/strings.h"

namespace arena::host {
namespace {

constexpr std::uint64_t kBeginning = 0xCBF29CE484222325u;

void mix(std::uint64_t& hash, std::uint64_t bits) {
  hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
  hash ^= hash >> 29;
}

// Eight bytes at a time, on every machine the same.
void mix_text(std::uint64_t& hash, std::string_view text) {
  static_assert(std::endian::native == std::endian::little);
  mix(hash, text.size());
  for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(text.size(), 8))) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, text.data(), std::min(text.size(), sizeof bits));
    mix(hash, bits);
  }
}

// Follows the values of what is shown, in one order, whatever is made of it.
class StateWalk : public StateVisitor {
 public:
  void whole_session() {
    session().visit(*this);
    leave_group();
  }

  void group(std::string_view name) override {
    leave_group();
    begin_group(name);
    group_ = name;
    met_in_group_ = 0;
  }
  void value(RValue& value) override { plain(value); }
  void object(WBObjectBase* object) override {
    if (object != nullptr) enter(object);
  }
  void variables(WBObjectBase& of) override {
    ARENA_ASSERT(of.object_kind != ObjectKind::kArray);
    PropertyObject& object = static_cast<PropertyObject&>(of);
    if (object.is_dictionary()) {
      for (const std::int32_t id : object.variable_ids()) {
        variable(id);
        plain(*object.find_variable(id));
      }
      return;
    }
    const std::vector<std::int32_t>& ids = object.shape->ids;
    for (std::size_t i = 0; i < ids.size(); ++i) {
      variable(ids[i]);
      plain(object.row[i]);
    }
  }

 protected:
  virtual void begin_group(std::string_view) {}
  virtual void end_group() {}
  // A container, the how manieth that the group met. Other groups may come and go without changing it.
  virtual void met(std::string_view group, std::uint64_t number) = 0;
  // What stands in such a container follows.
  virtual void begin_content(std::string_view /*group*/, std::size_t /*number*/) {}
  virtual void variable(std::int32_t id) = 0;
  virtual void kind(const RValue& value) = 0;

 private:
  void leave_group() {
    // The content of all containers that were met, in that order.
    for (std::size_t i = 0; i < waiting_.size(); ++i) {
      begin_content(group_, i);
      content(*waiting_[i]);
    }
    waiting_.clear();
    if (!group_.empty()) end_group();
  }
  void whole(std::uint64_t bits) { number(bits); }
  void plain(const RValue& value) {
    kind(value);
    double shown = value.real;
    switch (value.kind()) {
      case kNumber:
      case kBool: real(shown); break;
      case kString: text(text_of(value)); break;
      case kArray:
        if (value.array != nullptr) enter(value.array->owner);
        break;
      case kObject:
        if (value.object != nullptr) enter(value.object);
        break;
      case kPointer: break;  // an address is no state
      default: whole(static_cast<std::uint64_t>(value.i64)); break;
    }
  }
  // A container counts once; meeting it again enters its place, so that cycles end and shared parts show. Its content comes later, for
  // containers may stand in one another deeper than the native stack reaches.
  void enter(WBObjectBase* object) {
    const auto [place, is_new] = seen_.emplace(object, Place{group_, met_in_group_});
    met(place->second.group, place->second.number);
    if (!is_new) return;
    ++met_in_group_;
    waiting_.push_back(object);
  }
  void content(WBObjectBase& object) {
    if (object.object_kind == ObjectKind::kArray) {
      const ArrayRecord& array = static_cast<GCArrayThing&>(object).record;
      for (std::int32_t i = 0; i < array.length; ++i) plain(array.elements[i]);
      return;
    }
    if (object.object_kind == ObjectKind::kInstance) {
      instance_id(static_cast<CInstance&>(object).id);
      return;
    }
    if (object.object_kind == ObjectKind::kMethod) {
      const MethodClosure& closure = static_cast<MethodClosure&>(object);
      text(function_name_of(closure));
      plain(closure.bound_self);
    }
    if (PropertyObject* const prototype = static_cast<PropertyObject&>(object).prototype) enter(prototype);
    variables(object);
  }

  struct Place {
    std::string_view group;
    std::uint64_t number;
  };
  std::unordered_map<const WBObjectBase*, Place> seen_;
  std::vector<WBObjectBase*> waiting_;
  std::string_view group_;  // "": none yet
  std::uint64_t met_in_group_ = 0;
};

class Hasher final : public StateWalk {
 public:
  std::vector<StateFigure> figures;  // of groups that showed anything

  void number(std::uint64_t& bits) override { add(bits); }
  void count(std::uint64_t elements) override { add(elements); }
  void real(double& value) override { add(bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }
  void text(std::string_view text) override {
    begin_adding();
    mix_text(figures.back().hash, text);
  }
  void clock(std::int64_t& microseconds) override { add(static_cast<std::uint64_t>(microseconds)); }
  void instance_id(std::int32_t id) override { add(static_cast<std::uint64_t>(id)); }

 private:
  void begin_group(std::string_view name) override {
    figures.push_back({std::string(name), kBeginning});
    is_empty_ = true;
  }
  void end_group() override {
    if (is_empty_) figures.pop_back();
  }
  void met(std::string_view group, std::uint64_t number) override {
    if (group.data() != met_group_.data() || group.size() != met_group_.size()) {
      met_group_ = group;
      met_group_hash_ = hash_of_text(group);
    }
    add(met_group_hash_);
    add(number);
  }
  void variable(std::int32_t id) override {
    const auto place = static_cast<std::size_t>(id);
    if (place >= name_hashes_.size()) name_hashes_.resize(place + 1);
    if (name_hashes_[place] == 0) name_hashes_[place] = hash_of_text(variable_name(id));
    add(name_hashes_[place]);
  }
  void kind(const RValue& value) override { add(value.kind()); }
  static std::uint64_t hash_of_text(std::string_view text) {
    std::uint64_t hash = 0;
    mix_text(hash, text);
    return hash;
  }
  void add(std::uint64_t bits) {
    begin_adding();
    mix(figures.back().hash, bits);
  }
  void begin_adding() {
    ARENA_ASSERT(!figures.empty());  // a group was begun
    is_empty_ = false;
  }
  bool is_empty_ = true;
  std::string_view met_group_;  // the last one, and its hash
  std::uint64_t met_group_hash_ = 0;
  std::vector<std::uint64_t> name_hashes_;  // by id; 0: not made yet
};

constexpr std::string_view kGroupMark = "-- ", kInstanceMark = "instance ";
const std::string kContentMark = "in ";

class Describer final : public StateWalk {
 public:
  Describer() {
    for (const CInstance* instance : world().all()) {
      if (instance->is_alive) places_.emplace(instance->id, places_.size());
    }
  }
  std::string lines;

  void name(std::string_view name) override { (lines += name) += ": "; }
  void number(std::uint64_t& bits) override { lines += std::to_string(bits) + '\n'; }
  void count(std::uint64_t elements) override { number(elements); }
  void real(double& value) override {
    if (places_.contains(value)) {
      instance_id(saturate_int32(value));
    } else {
      lines += real_to_exact_text(value) + '\n';
    }
  }
  void text(std::string_view text) override {
    for (const char c : text) c == '\n' ? lines += "\\n" : lines += c;  // a value is a line
    lines += '\n';
  }
  void clock(std::int64_t&) override {}
  void instance_id(std::int32_t instance) override {
    const auto found = places_.find(instance);
    lines += found != places_.end() ? std::string(kInstanceMark) + std::to_string(found->second) + '\n' : "dead\n";
  }

 private:
  void begin_group(std::string_view name) override { ((lines += kGroupMark) += name) += '\n'; }
  void met(std::string_view group, std::uint64_t number) override { lines += container(group, number) + '\n'; }
  void begin_content(std::string_view group, std::size_t number) override { lines += kContentMark + container(group, number) + '\n'; }
  void variable(std::int32_t id) override { name(variable_name(id)); }
  void kind(const RValue& value) override {
    if (!value.is_number()) (lines += type_name(value)) += ' ';
    if (value.kind() == kPointer) lines += '\n';
  }
  static std::string container(std::string_view group, std::uint64_t number) { return std::string(group) + " #" + std::to_string(number); }
  std::unordered_map<double, std::size_t> places_;  // of the living, by id
};

}  // namespace

std::vector<StateFigure> state_figures() {
  Hasher hasher;
  hasher.whole_session();
  return std::move(hasher.figures);
}

std::uint64_t hash_of(const std::vector<StateFigure>& figures) {
  std::uint64_t hash = kBeginning;
  for (const StateFigure& figure : figures) mix(hash, figure.hash);
  return hash;
}

std::uint64_t state_hash() { return hash_of(state_figures()); }

std::string describe_state() {
  Describer describer;
  describer.whole_session();
  return describer.lines;
}

std::string first_difference(std::string_view here, std::string_view there) {
  const auto take_line = [](std::string_view& from) {
    const std::string_view line = from.substr(0, from.find('\n'));
    from.remove_prefix(std::min(from.size(), line.size() + 1));
    return line;
  };
  std::string_view group, holder;
  while (!here.empty() || !there.empty()) {
    const std::string_view line = take_line(here), other = take_line(there);
    if (line != other) {
      std::string found(group);
      if (!holder.empty()) (found += ", ") += holder;
      return found + ": " + std::string(line) + " here, " + std::string(other) + " there";
    }
    if (line.starts_with(kGroupMark)) {
      group = line.substr(kGroupMark.size());
      holder = {};
    }
    if (line.starts_with(kInstanceMark) || line.starts_with(kContentMark)) holder = line;
  }
  return {};
}

}  // namespace arena::host
