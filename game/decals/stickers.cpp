#include "game/decals/stickers.h"

namespace game {
namespace {
const Variable stamps{"stamps"};
constexpr int kDestroyed = -1;

Value or_else(const Value& given, const Value& otherwise) { return is_undefined(given) ? otherwise : given; }
}  // namespace
}  // namespace game

CONSTRUCTOR(Stickers, Value capacity) { self[stamps] = stamps_create(capacity); }

STATIC_METHOD(void, Stickers, Add, Value sprite, Value frame, Value at_x, Value at_y, Value xscale, Value yscale, Value angle, Value colour,
              Value opacity) {
  if (self[stamps] == kDestroyed) return;
  stamps_add(self[stamps], sprite, or_else(frame, 0), at_x, at_y, or_else(xscale, 1), or_else(yscale, 1), or_else(angle, 0),
             or_else(colour, c_white), or_else(opacity, 1));
}

STATIC_METHOD(void, Stickers, DrawCamera) {
  if (self[stamps] != kDestroyed) stamps_draw(self[stamps]);
}

STATIC_METHOD(void, Stickers, Clear) {
  if (self[stamps] != kDestroyed) stamps_clear(self[stamps]);
}

STATIC_METHOD(Real, Stickers, Count) { return self[stamps] == kDestroyed ? 0 : stamps_count(self[stamps]); }
STATIC_METHOD(Value, Stickers, At, Value index) { return stamps_get(self[stamps], index); }

STATIC_METHOD(void, Stickers, Destroy) {
  if (self[stamps] == kDestroyed) return;
  stamps_destroy(self[stamps]);
  self[stamps] = kDestroyed;
}
