#pragma once
// The one random source of the process. Dice, the die roller, the built-in `rand` and every
// random choice draw from it, so seeding it once makes a whole run reproducible. It is the
// classic linear congruential generator: the 32-bit state becomes state * 214013 + 2531011, and
// a draw is bits 16 to 30 of the new state.

#include <cstdint>

namespace zv {

/// The largest value randomNumber gives.
inline constexpr int kRandomMax = 32767;

/// The next draw, from 0 to 32767.
int randomNumber();

/// Restarts the generator: the state becomes the low 32 bits of `seed`.
void seedRandom(std::uint64_t seed);

/// A seed from the clock, for the seeding at start-up.
std::uint64_t seedFromClock();

/// A uniform draw from 0 to bound - 1 (0 when bound is 0). A bound up to 32768 takes one draw,
/// modulo the bound, as a die does; a larger one combines three draws.
std::uint32_t randomBelow(std::uint32_t bound);

}  // namespace zv
