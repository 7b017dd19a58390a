// A faint flash that fades out over a tenth of a second: the dash's trail. It is not drawn before its first Step gave it its alpha.
#include "game/names.h"

namespace game {
namespace {
const Variable timer{"timer"};
}
}  // namespace game

EVENT(oFader, Create_0) { self[timer] = 0.1; }

EVENT(oFader, Step_0) {
  self[timer] -= global[dt_steady];
  self[image_alpha] = self[timer];
  self[visible] = true;
  if (self[timer] <= 0) instance_destroy();
}
