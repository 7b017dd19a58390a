#include "game/decals/stickers.h"

namespace game {
namespace {
const Variable stickers{"stickers"};
constexpr int kDestroyed = -1;

Value or_else(const Value& given, const Value& otherwise) { return is_undefined(given) ? otherwise : given; }
}  // namespace
}  // namespace game

CONSTRUCTOR(Stickers, Value capacity) { self[stickers] = stickers_create(capacity); }

STATIC_METHOD(void, Stickers, Add, Value sprite, Value frame, Value at_x, Value at_y, Value xscale, Value yscale, Value angle, Value colour,
              Value opacity) {
  if (self[stickers] == kDestroyed) return;
  stickers_add(self[stickers], sprite, or_else(frame, 0), at_x, at_y, or_else(xscale, 1), or_else(yscale, 1), or_else(angle, 0),
               or_else(colour, c_white), or_else(opacity, 1));
}

STATIC_METHOD(void, Stickers, DrawCamera) {
  if (self[stickers] != kDestroyed) stickers_draw(self[stickers]);
}

STATIC_METHOD(void, Stickers, Clear) {
  if (self[stickers] != kDestroyed) stickers_clear(self[stickers]);
}

STATIC_METHOD(Real, Stickers, Count) { return self[stickers] == kDestroyed ? 0 : stickers_count(self[stickers]); }
STATIC_METHOD(Value, Stickers, At, Value index) { return stickers_get(self[stickers], index); }

STATIC_METHOD(void, Stickers, Destroy) {
  if (self[stickers] == kDestroyed) return;
  stickers_destroy(self[stickers]);
  self[stickers] = kDestroyed;
}
