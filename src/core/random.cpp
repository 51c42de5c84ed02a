#include "core/random.h"

#include <chrono>

namespace zv {

namespace {

// The generator's state: the process-wide random source.
std::uint32_t state = 1;

}  // namespace

int randomNumber() {
  state = state * 214013u + 2531011u;
  return static_cast<int>((state >> 16) & 0x7FFFu);
}

void seedRandom(std::uint64_t seed) {
  state = static_cast<std::uint32_t>(seed);
}

std::uint64_t seedFromClock() {
  return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

std::uint32_t randomBelow(std::uint32_t bound) {
  if (bound == 0) return 0;
  if (bound <= static_cast<std::uint32_t>(kRandomMax) + 1) {
    return static_cast<std::uint32_t>(randomNumber()) % bound;
  }
  std::uint64_t wide = 0;
  for (int i = 0; i < 3; ++i)
    wide = (wide << 15) | static_cast<std::uint64_t>(randomNumber());
  return static_cast<std::uint32_t>(wide % bound);
}

}  // namespace zv
