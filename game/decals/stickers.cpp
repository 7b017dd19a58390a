#include "game/decals/stickers.h"

namespace arena::game {
namespace {
const Variable stamps{"stamps"};
const Builtin stamps_create{"stamps_create"}, stamps_add{"stamps_add"}, stamps_clear{"stamps_clear"}, stamps_count{"stamps_count"};
const Builtin stamps_get{"stamps_get"}, stamps_draw{"stamps_draw"}, stamps_destroy{"stamps_destroy"};
constexpr int kDestroyed = -1;

Value or_else(const Value& given, const Value& otherwise) { return is_undefined(given) ? otherwise : given; }
}  // namespace
}  // namespace arena::game

CONSTRUCTOR(Stickers, Value capacity) { self[stamps] = stamps_create(capacity); }

STATIC_METHOD(Stickers, Add, Value sprite, Value frame, Value at_x, Value at_y, Value xscale, Value yscale, Value angle, Value colour,
              Value opacity) {
  if (self[stamps] == kDestroyed) return undefined;
  stamps_add(self[stamps], sprite, or_else(frame, 0), at_x, at_y, or_else(xscale, 1), or_else(yscale, 1), or_else(angle, 0),
             or_else(colour, c_white), or_else(opacity, 1));
  return undefined;
}

STATIC_METHOD(Stickers, DrawCamera) {
  if (self[stamps] != kDestroyed) stamps_draw(self[stamps]);
  return undefined;
}

STATIC_METHOD(Stickers, Clear) {
  if (self[stamps] != kDestroyed) stamps_clear(self[stamps]);
  return undefined;
}

STATIC_METHOD(Stickers, Count) { return self[stamps] == kDestroyed ? Value(0) : stamps_count(self[stamps]); }
STATIC_METHOD(Stickers, At, Value index) { return stamps_get(self[stamps], index); }

STATIC_METHOD(Stickers, Destroy) {
  if (self[stamps] == kDestroyed) return undefined;
  stamps_destroy(self[stamps]);
  self[stamps] = kDestroyed;
  return undefined;
}
