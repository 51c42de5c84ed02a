#include "core/random.h"

#include <gtest/gtest.h>

#include <set>

namespace zv {
namespace {

TEST(RandomTest, SeedOneGivesTheClassicSequence) {
  seedRandom(1);
  const int expected[] = {41, 18467, 6334, 26500, 19169, 15724, 11478, 29358};
  for (int value : expected)
    EXPECT_EQ(randomNumber(), value);
}

TEST(RandomTest, ReseedingRepeatsTheSequence) {
  seedRandom(12345);
  int first = randomNumber(), second = randomNumber();
  seedRandom(12345);
  EXPECT_EQ(randomNumber(), first);
  EXPECT_EQ(randomNumber(), second);
}

TEST(RandomTest, SeedKeepsItsLow32Bits) {
  seedRandom(0x100000001ull);
  int high = randomNumber();
  seedRandom(1);
  EXPECT_EQ(randomNumber(), high);
}

TEST(RandomTest, DrawsBelowASmallBoundAreTheDieFormula) {
  seedRandom(1);
  EXPECT_EQ(randomBelow(6), 41u % 6);
  EXPECT_EQ(randomBelow(100), 18467u % 100);
  EXPECT_EQ(randomBelow(32768), 6334u);
  EXPECT_EQ(randomBelow(0), 0u);
}

TEST(RandomTest, DrawsStayInRangeAndCoverIt) {
  struct Case {
    std::uint32_t bound;
    bool coverAll;
  };
  for (Case c : {Case{1, true}, Case{6, true}, Case{32769, false}, Case{4000000000u, false}}) {
    seedRandom(99);
    std::set<std::uint32_t> seen;
    for (int i = 0; i < 2000; ++i) {
      std::uint32_t draw = randomBelow(c.bound);
      ASSERT_LT(draw, c.bound);
      seen.insert(draw);
    }
    if (c.coverAll)
      EXPECT_EQ(seen.size(), c.bound);
    else
      EXPECT_GT(seen.size(), 1900u) << c.bound;
  }
}

TEST(RandomTest, LargeBoundsReachAboveOneDraw) {
  seedRandom(5);
  std::uint32_t highest = 0;
  for (int i = 0; i < 1000; ++i)
    highest = std::max(highest, randomBelow(1u << 30));
  EXPECT_GT(highest, 1u << 29);
}

}  // namespace
}  // namespace zv
