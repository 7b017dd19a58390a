#pragma once
// State of the game: what a frame may change. A struct of state names its fields once, in order of declaration,
//
//   struct GameClock {
//     std::int64_t frame = 0;
//     static constexpr auto fields() { return std::tuple(field("frame", &GameClock::frame)); }
//   };
//   const StatePart<GameClock> part{PartLevel::kWorld, "clock"};
//
// and hash, description, snapshot, restore and restart follow from that. A field that is not named does not compile. derived(...) names
// what follows from the rest, or what scripts cannot tell: kept by snapshots, but not hashed. What a part leads to beyond its fields it
// shows in visit_content(StateVisitor&); where a copy of it would not do, it has a struct State with save(State&) and load(const State&);
// where a restart is more, or less, than a fresh one, it has restart();
// where something follows from the memory, too, after_load(). save(State&, const State* earlier) may share with an earlier one.
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "runtime/memory/held_bytes.h"
#include "runtime/session/session.h"
#include "runtime/session/state_visitor.h"

namespace arena {

template <class Owner, class Type>
struct StateField {
  using MemberType = Type;
  static constexpr bool kIsDerived = false;
  const char* name;
  Type Owner::*member;
};
template <class Owner, class Type>
struct DerivedField {
  using MemberType = Type;
  static constexpr bool kIsDerived = true;
  const char* name;
  Type Owner::*member;
};
template <class Owner, class Type>
constexpr StateField<Owner, Type> field(const char* name, Type Owner::*member) {
  return {name, member};
}
template <class Owner, class Type>
constexpr DerivedField<Owner, Type> derived(const char* name, Type Owner::*member) {
  return {name, member};
}

template <class T>
void visit_state(StateVisitor& visitor, T& state);

namespace detail {

template <class T>
concept HasFields = requires {
  T::fields();
};
template <class T>
concept HasContent = requires(T& state, StateVisitor& visitor) {
  state.visit_content(visitor);
};
template <class T>
concept HasRestart = requires(T& state) {
  state.restart();
};
template <class T>
concept HasOwnState = requires {
  typename T::State;
};
// Where only a base is state of the game, the base names the fields.
template <class T>
struct ShownOf {
  using Type = T;
};
template <HasOwnState T>
requires std::is_base_of_v<typename T::State, T>
struct ShownOf<T> {
  using Type = typename T::State;
};
template <class T>
concept Sequence = requires(T& all) {
  all.begin();
  typename T::value_type;
};
template <class T>
concept Map = requires {
  typename T::mapped_type;
};
template <class T>
concept Optional = requires(T& state) {
  state.has_value();
  *state;
};

struct Anything {
  template <class T>
  operator T() const;
};
template <class T, class... Given>
concept TakesBraces = requires {
  T{std::declval<Given>()...};
};
template <class T, class... Given>
constexpr std::size_t count_members() {
  if constexpr (TakesBraces<T, Given..., Anything>) {
    return count_members<T, Given..., Anything>();
  } else {
    return sizeof...(Given);
  }
}

// Where the named fields, in their order, would end if there were no others. What stands on a base says where its own begin.
template <class T, class... Fields>
constexpr std::size_t end_of(const std::tuple<Fields...>&) {
  std::size_t end = 0;
  if constexpr (requires { T::kFieldsBegin; }) end = T::kFieldsBegin;
  const auto add = [&](std::size_t size, std::size_t alignment) { end = (end + alignment - 1) / alignment * alignment + size; };
  (add(sizeof(typename Fields::MemberType), alignof(typename Fields::MemberType)), ...);
  return end;
}
// Whether the fields are all that the struct has: they fill it up and, where that can be told, are as many as it takes to initialise one.
template <class T>
constexpr bool names_all_fields() {
  constexpr auto fields = T::fields();
  constexpr std::size_t count = std::tuple_size_v<decltype(fields)>;
  if constexpr (count == 0) {
    return std::is_empty_v<T>;
  } else {
    if ((end_of<T>(fields) + alignof(T) - 1) / alignof(T) * alignof(T) != sizeof(T)) return false;
    if constexpr (std::is_aggregate_v<T>) return count_members<T>() == count;
    return true;
  }
}

template <class Each, class T>
void visit_field(StateVisitor& visitor, const Each& each, T& state) {
  if constexpr (!Each::kIsDerived) {
    visitor.name(each.name);
    visit_state(visitor, state.*each.member);
  }
}

// What a saved state holds beyond its own bytes, about.
template <class T>
void count_behind(const T& state, HeldBytes& into) {
  if constexpr (requires { state.count_held(into); }) {
    state.count_held(into);
  } else if constexpr (HasFields<T>) {
    std::apply([&](const auto&... each) { (count_behind(state.*each.member, into), ...); }, T::fields());
  } else if constexpr (Map<const T>) {
    constexpr std::size_t kNode = 4 * sizeof(void*);
    into.add(state.size() * (kNode + sizeof(typename T::value_type)));
    for (const auto& [key, each] : state) {
      count_behind(key, into);
      count_behind(each, into);
    }
  } else if constexpr (Sequence<const T>) {
    if constexpr (requires { state.capacity(); }) {
      into.add(state.capacity() * sizeof(typename T::value_type));
    } else {
      into.add(state.size() * sizeof(typename T::value_type));
    }
    if constexpr (!std::is_trivially_copyable_v<typename T::value_type>) {
      for (const auto& each : state) count_behind(each, into);
    }
  } else if constexpr (Optional<const T>) {
    if (state.has_value()) count_behind(*state, into);
  }
}

template <class All>
void visit_sequence(StateVisitor& visitor, All& all) {
  if constexpr (requires { all.emplace_back(); }) {
    if (visitor.adds_element()) all.emplace_back();
  }
  visitor.count(all.size());
  for (auto& each : all) visit_state(visitor, each);
}

template <class All>
void visit_map(StateVisitor& visitor, All& all) {
  visitor.count(all.size());
  for (auto& [key, each] : all) {
    auto shown = key;
    visitor.begin_key();
    visit_state(visitor, shown);
    visitor.end_key();
    visit_state(visitor, each);
  }
}

template <class Scalar>
void visit_scalar(StateVisitor& visitor, Scalar& scalar) {
  if constexpr (std::is_floating_point_v<Scalar>) {
    const double before = static_cast<double>(scalar);
    double real = before;
    visitor.real(real);
    if (real != before) scalar = static_cast<Scalar>(real);
  } else {
    const std::uint64_t before = static_cast<std::uint64_t>(scalar);
    std::uint64_t bits = before;
    visitor.number(bits);
    if (bits != before) scalar = static_cast<Scalar>(bits);
  }
}

}  // namespace detail

template <class T>
void visit_state(StateVisitor& visitor, T& state) {
  if constexpr (std::is_same_v<T, RValue>) {
    visitor.value(state);
  } else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>) {
    detail::visit_scalar(visitor, state);
  } else if constexpr (std::is_same_v<T, std::string>) {
    visitor.own_text(state);
  } else if constexpr (std::is_pointer_v<T>) {
    visitor.object(state);
  } else if constexpr (detail::HasFields<T>) {
    static_assert(detail::names_all_fields<typename detail::ShownOf<T>::Type>(),
                  "fields() does not name every field, in order of declaration");
    std::apply([&](const auto&... each) { (detail::visit_field(visitor, each, state), ...); }, T::fields());
    if constexpr (detail::HasContent<T>) state.visit_content(visitor);
  } else if constexpr (detail::Map<T>) {
    detail::visit_map(visitor, state);
  } else if constexpr (detail::Sequence<T>) {
    detail::visit_sequence(visitor, state);
  } else if constexpr (detail::Optional<T>) {
    visitor.count(state.has_value() ? 1 : 0);
    if (state.has_value()) visit_state(visitor, *state);
  } else {  // a pair
    visit_state(visitor, state.first);
    visit_state(visitor, state.second);
  }
}

// A kind of part that holds state of the game.
template <class T>
class StatePart : PartKind {
  template <class Of>
  struct Own {
    using Type = Of;
  };
  template <detail::HasOwnState Of>
  struct Own<Of> {
    using Type = typename Of::State;
  };
  struct Saved final : SavedPart {
    using Type = typename Own<T>::Type;
    Type state = Type();
    void count_held(HeldBytes& into) const override {
      into.add(sizeof *this);
      detail::count_behind(state, into);
    }
  };
  struct Holding final : SessionPart {
    T held = T();
    void restart() override {
      if constexpr (detail::HasRestart<T>) {
        held.restart();
      } else {
        held = T();
      }
    }
    void visit(StateVisitor& visitor) override { visit_state(visitor, held); }
    std::unique_ptr<SavedPart> save(std::unique_ptr<SavedPart> reused, const SavedPart* earlier) const override {
      std::unique_ptr<SavedPart> made = reused != nullptr ? std::move(reused) : std::make_unique<Saved>();
      Saved& into = static_cast<Saved&>(*made);
      const auto* const before = earlier != nullptr ? &static_cast<const Saved*>(earlier)->state : nullptr;
      if constexpr (requires { held.save(into.state, before); }) {
        held.save(into.state, before);
      } else if constexpr (detail::HasOwnState<T>) {
        held.save(into.state);
      } else {
        into.state = held;
      }
      return made;
    }
    void load(const SavedPart& saved) override {
      const auto& from = static_cast<const Saved&>(saved).state;
      if constexpr (detail::HasOwnState<T>) {
        held.load(from);
      } else {
        held = from;
      }
    }
    void after_load() override {
      if constexpr (requires { held.after_load(); }) held.after_load();
    }
  };

 public:
  StatePart(PartLevel of, const char* called) : PartKind(of, called, [] { return std::unique_ptr<SessionPart>(new Holding); }) {}
  T& operator()() const { return static_cast<Holding&>(session().part(*this)).held; }
};

}  // namespace arena
