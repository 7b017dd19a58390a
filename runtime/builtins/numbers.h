#pragma once
// Numbers, angles and distances. What loops call most is compiled into scripts by script/intrinsics.h; those rows stand in `checked`, for
// calls with values that may be no numbers.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(angle_difference, Number(Degrees, Degrees), "to, from",
        "The way from the second angle to the first, the short way round: above -180, at most 180.");
BUILTIN(arccos, Radians(Number), "x", "The angle whose cosine this is.");
BUILTIN(arcsin, Radians(Number), "x", "The angle whose sine this is.");
BUILTIN(arctan, Radians(Number), "x", "The angle whose tangent this is.");
BUILTIN(arctan2, Radians(Number, Number), "y, x", "The angle of the point, y upwards.");
BUILTIN(darctan2, Degrees(Number, Number), "y, x", "The angle of the point, y upwards.");
BUILTIN(dcos, Number(Degrees), "x", "The cosine.");
BUILTIN(dot_product, Number(Number, Number, Number, Number), "x1, y1, x2, y2", "The product of two vectors.");
BUILTIN(dsin, Number(Degrees), "x", "The sine.");
BUILTIN(dtan, Number(Degrees), "x", "The tangent.");
BUILTIN(frac, Number(Number), "x", "What follows the point, with the number's sign.");
BUILTIN(ln, Number(Number), "x", "The natural logarithm.");
BUILTIN(log10, Number(Number), "x", "The logarithm to base 10.");
BUILTIN(log2, Number(Number), "x", "The logarithm to base 2.");
BUILTIN(logn, Number(Number, Number), "base, x", "The logarithm to any base.");
BUILTIN(mean, Number(Rest<Any>), "values", "The mean of the values; 0 of none.");
BUILTIN(mod, Number(Number, Number), "x, y", "The remainder, with the sign of x.");
BUILTIN(radtodeg, Degrees(Radians), "x", "Radians as degrees.");
BUILTIN(round, Number(Number), "x", "The nearest whole number, halves to the even one.");
BUILTIN(sqr, Number(Number), "x", "The square.");

namespace checked {

BUILTIN(abs, Number(Number), "x", "The number without its sign.");
BUILTIN(ceil, Number(Number), "x", "The whole number at or above.");
BUILTIN(clamp, Number(Number, Number, Number), "x, low, high", "The number kept between two others.");
BUILTIN(cos, Number(Radians), "x", "The cosine.");
BUILTIN(degtorad, Radians(Degrees), "x", "Degrees as radians.");
BUILTIN(exp, Number(Number), "x", "The power of e.");
BUILTIN(floor, Number(Number), "x", "The whole number at or below.");
BUILTIN(lengthdir_x, Number(Number, Degrees), "length, direction", "How far right a step in a direction goes.");
BUILTIN(lengthdir_y, Number(Number, Degrees), "length, direction", "How far down a step in a direction goes.");
BUILTIN(lerp, Number(Number, Number, Number), "from, to, amount",
        "What lies between two numbers: the first at amount 0, the second at 1, beyond them outside.");
BUILTIN(max, Number(Rest<Any>), "values", "The greatest of the values; 0 of none.");
BUILTIN(min, Number(Rest<Any>), "values", "The least of the values; 0 of none.");
BUILTIN(point_direction, Degrees(Number, Number, Number, Number), "x1, y1, x2, y2",
        "The direction from the first point to the second, y downwards: from 0 to below 360.");
BUILTIN(point_distance, Number(Number, Number, Number, Number), "x1, y1, x2, y2", "How far the points are apart.");
BUILTIN(power, Number(Number, Number), "base, exponent", "The base raised to the exponent.");
BUILTIN(sign, Number(Number), "x", "1 above zero, -1 below, else 0.");
BUILTIN(sin, Number(Radians), "x", "The sine.");
BUILTIN(sqrt, Number(Number), "x", "The square root.");
BUILTIN(tan, Number(Radians), "x", "The tangent.");

}  // namespace checked
}  // namespace arena::script
