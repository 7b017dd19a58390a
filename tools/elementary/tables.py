#!/usr/bin/env python3
"""Prints runtime/values/elementary_tables.h: the constants of the runtime's own elementary functions, worked out to 300 bits.

Needs mpmath. Run it again only when an algorithm in elementary.cpp changes:
    tools/elementary/tables.py > runtime/values/elementary_tables.h
"""
from mpmath import atan, cos, exp, floor, ldexp, log, mp, mpf, nint, pi, sin, sqrt, chebyfit

mp.prec = 1400  # the digits of 2/pi need them


def real(value):
    """A double as a C++ literal, exact."""
    value = float(value)
    return "0" if value == 0 else value.hex() if value != int(value) or abs(value) > 9e15 else str(int(value))


def cut(value, bits):
    """The value with so many bits after the point of its leading one, the rest dropped."""
    value = mpf(value)
    if value == 0:
        return value
    scale = bits - 1 - int(floor(log(abs(value), 2)))
    return ldexp(nint(ldexp(value, scale)), -scale)


def on_grid(value, bits):
    return ldexp(nint(ldexp(value, bits)), -bits)


def rows(name, kind, values, columns=4):
    print(f"inline constexpr {kind} {name}[] = {{")
    for start in range(0, len(values), columns):
        print("    " + ", ".join(values[start:start + columns]) + ",")
    print("};")


def pair(high, low):
    return "{" + real(high) + ", " + real(low) + "}"


print("""#pragma once
// Written by tools/elementary/tables.py; do not edit.
#include <cstdint>

namespace arena::elementary {

struct Pair {
  double high, low;  // what is meant is their sum
};
""")

print("// 2^(j / 128) as high * (1 + low).")
powers = []
for j in range(128):
    exact = mpf(2) ** (mpf(j) / 128)
    high = mpf(float(exact))
    powers.append(pair(high, exact / high - 1))
rows("kPowersOfTwo", "Pair", powers, 2)

print("// ln 2 / 128; the high part times 18 bits is exact.")
step = log(2) / 128
high = cut(step, 34)
print(f"inline constexpr Pair kExpStep = {pair(high, step - high)};")
print(f"inline constexpr double kExpStepsPerUnit = {real(1 / step)};")

print("// The logarithm's parts, from 0.6875 on: 128 intervals, a short reciprocal of each and its negated logarithm. High parts are")
print("// multiples of 2^-42.")
inverses, logs = [], []
for j in range(128):
    first = mpf(11) / 16 + mpf(j) / 256 if j < 80 else 1 + mpf(j - 80) / 128
    width = mpf(1) / (256 if j < 80 else 128)
    inverse = mpf(1) if j in (79, 80) else on_grid(1 / (first + width / 2), 10)
    inverses.append(real(inverse))
    exact = -log(inverse)
    high = on_grid(exact, 42)
    logs.append(pair(high, exact - high))
rows("kReciprocals", "double", inverses, 8)
rows("kLogarithms", "Pair", logs, 2)
high = on_grid(log(2), 42)
print(f"inline constexpr Pair kLn2 = {pair(high, log(2) - high)};")

print("// pi / 2 in four parts, three of 33 bits.")
parts, rest = [], pi / 2
for _ in range(3):
    part = cut(rest, 33)
    parts.append(part)
    rest -= part
parts.append(rest)
rows("kHalfPiParts", "double", [real(part) for part in parts])
print(f"inline constexpr Pair kHalfPi = {pair(float(pi / 2), pi / 2 - mpf(float(pi / 2)))};")
print(f"inline constexpr Pair kWholePi = {pair(float(pi), pi - mpf(float(pi)))};")
print(f"inline constexpr double kTwoOverPi = {real(2 / pi)};")
print("// The bits of 2 / pi after the point, 64 a word, behind a word of zeros.")
words, rest = ["0"], 2 / pi
for _ in range(20):
    rest = ldexp(rest, 64)
    words.append(f"0x{int(floor(rest)):016X}u")
    rest -= floor(rest)
rows("kTwoOverPiBits", "std::uint64_t", words)

print("// atan(j / 64).")
rows("kArcTangents", "Pair", [pair(float(atan(mpf(j) / 64)), atan(mpf(j) / 64) - mpf(float(atan(mpf(j) / 64)))) for j in range(65)], 2)

# Polynomials of z = x * x, fitted over [0, (pi / 4)^2] and a little more.
mp.prec = 300
far = (pi / 4) ** 2 * mpf("1.001")


def fit(name, function, terms, what):
    coefficients, error = chebyfit(function, [mpf("1e-30"), far], terms, error=True)
    print(f"// {what}, off by at most {float(error):.1e}.")
    rows(name, "double", [real(c) for c in reversed(coefficients)])


fit("kSine", lambda z: (sin(sqrt(z)) / sqrt(z) - 1) / z, 7, "(sin x / x - 1) / z")
fit("kCosine", lambda z: (cos(sqrt(z)) - 1 + z / 2) / (z * z), 6, "(cos x - 1 + z / 2) / z^2")
print("\n}  // namespace arena::elementary")
