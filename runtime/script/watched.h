#pragma once
// The game beside which this session stands, for what only looks and listens: debris, banners, a replay's time line. All of it can be read
// and nothing can be changed, so that a run is the same with and without whoever watches. Numbers, bools, references and texts come over as
// values of this session; what else a variable holds reads undefined, as does one that is not there. What was given holds until the
// game's next frame.
#include <vector>

#include "runtime/script/handles.h"

namespace arena::script {

class WatchedInstance {
 public:
  explicit WatchedInstance(const CInstance* instance) : instance_(instance) {}
  template <double CInstance::*field, void (*after)(CInstance&)>
  Real operator[](const InstanceField<field, after>&) const {
    return instance_->*field;
  }
  Real operator[](const InstanceIdName&) const { return instance_->id; }
  Value operator[](const Variable& name) const;

 private:
  const CInstance* instance_;
};

class WatchedGame {
 public:
  // False in a session that stands beside none: then nobody lives and every variable reads undefined.
  bool exists() const;
  // Those alive, children of the type included, in order of creation.
  std::vector<WatchedInstance> all(const ObjectName& object) const;
  // A global variable.
  Value operator[](const Variable& name) const;
  // How far the game has come, in seconds of its own clock.
  Real seconds() const;
};
inline constexpr WatchedGame watched{};

// For the host: from here on the current session watches that one, which outlives it; null: none.
void watch(const Session* game);

}  // namespace arena::script
