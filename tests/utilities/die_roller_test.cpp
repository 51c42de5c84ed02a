// The die roller: the specification language with the random source seeded, its failures with
// their titles, card names, and the texts the roller window shows around a roll.

#include "utilities/die_roller.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/headless_host.h"
#include "core/random.h"

namespace zv {
namespace {

class DieRollerTest : public ::testing::Test {
 protected:
  DieRollerTest() : host_(nullptr), installed_(host_) {}

  /// The result of a specification rolled with the generator's state at 1, or the box shown.
  std::string roll(std::string_view dice, std::vector<DieRoll>* rolls = nullptr) {
    seedRandom(1);
    host_.clearTranscript();
    std::string result;
    if (!evaluateDiceText(dice, result, rolls)) {
      return host_.transcript().empty() ? "failed silently" : host_.transcript().back();
    }
    return result;
  }

  HeadlessHost host_;
  HostInstallation installed_;
};

// With state 1 the generator draws 41, 18467, 6334, 26500, 19169, 15724, 11478, 29358.
TEST_F(DieRollerTest, SpecificationsWithASeededSource) {
  struct Case {
    const char* dice;
    const char* result;
  };
  const Case cases[] = {
      {"3d6", "17"},                // 6, 6, 5
      {"3 d 6", "17"},              // blanks are taken out
      {"3D6+2", "19"},              // letters in either case
      {"2+3d6", "19"},              //
      {"2+3x4", "20"},              // left to right, no precedence
      {"3:4d6", "17"},              // 6, 6, 5, 5 keeping three
      {"3d6>10", "1"},              //
      {"10>=10", "1"},              //
      {"3<>3", "0"},                //
      {"3#4", "1"},                 //
      {"5=5", "1"},                 //
      {"5d6!5", "5"},               // 6, 6, 5, 5, 6: all at or above 5
      {"5d6~6", "3"},               // three sixes
      {"5u10", "2,10,8,7,9"},       // a deal on a shrinking array
      {"5p52", "4D,7S,JH,6D,7C"},   // the same with card names
      {"3c10", "20"},               // 2 + 10 + 8
      {"d00", "41"},                // 0 to 99
      {"d05", "1"},                 // size 5 after the zeros, offset kept: 0 to 4
      {"d1", "1"},                  // a coin: 0 or 1
      {"4dF", "2"},                 // +1, +1, 0, 0
      {"d", "6"},                   // one d6
      {"0d6", "6"},                 //
      {"12abc", "12"},              // stops at an unknown character
      {"3\td6", "3"},               // only blanks are taken out
      {"32767", "32767"},           //
      {"2*3", "3,3"},               // the rest evaluated on its own each time
      {"0*3d6", ""},                //
      {"d6;d6", "6; 6"},            //
      {"5u10+3", "2,10,8,7,9; 3"},  // a new term after a deal
      {"5u10;3", "2,10,8,7,9; 3"},  //
      {"3uF", "+,0,-"},             // the three faces of dF named
  };
  for (const Case& c : cases)
    EXPECT_EQ(roll(c.dice), c.result) << c.dice;
}

TEST_F(DieRollerTest, RepeatsKeepWhatCameBefore) {
  seedRandom(7);
  std::string result;
  ASSERT_TRUE(evaluateDiceText("3d6;6*1d4", result, nullptr));
  const std::size_t separator = result.find("; ");
  ASSERT_NE(separator, std::string::npos) << result;
  std::string rest = result.substr(separator + 2);
  EXPECT_EQ(std::count(rest.begin(), rest.end(), ','), 5) << result;
}

TEST_F(DieRollerTest, FailuresShowTheirBoxes) {
  struct Case {
    const char* dice;
    const char* box;
  };
  const Case cases[] = {
      {"32768", "[Number Too Large] Die values cannot be greater than 32767."},
      {"2d6!99999", "[Number Too Large] Die values cannot be greater than 32767."},
      {"5:4d6", "[Illegal Die Specification] Number of dice to total is greater than dice rolled."},
      {"2:1001d6", "[Too Many Dice] More than 1000 dice may not be rolled."},
      {"3:4x6",
       "[Illegal Die Specification] Die size missing after dice to total and dice to "
       "roll."},
      {"5c1001",
       "[Range Too Large] The choose specification 5c1001 is illegal. The limit on the range is "
       "1000."},
      {"6c5",
       "[Inconsistent Values] The choose specification 6c5 is illegal. The number to choose is "
       "greater than the range."},
      {"3d6;32768", "[Number Too Large] Die values cannot be greater than 32767."},
      {"2*3d6;5c1001",
       "[Range Too Large] The choose specification 5c1001 is illegal. The limit "
       "on the range is 1000."},
      {"32767*32767d6",
       "[Too Many Dice] More than 100000 dice may not be rolled in one "
       "specification."},
  };
  for (const Case& c : cases)
    EXPECT_EQ(roll(c.dice), c.box) << c.dice;
  std::string result;
  seedRandom(1);
  EXPECT_TRUE(evaluateDiceText("1001d6", result, nullptr)) << "the dice form has no limit of 1000";
}

TEST_F(DieRollerTest, ShownDiceAndSeparators) {
  std::vector<DieRoll> rolls;
  EXPECT_EQ(roll("3:4d6;d00", &rolls), "17; 69");
  const std::vector<DieRoll> expected = {{6, 0, 6, false}, {6, 0, 6, false},  {6, 0, 5, false},
                                         {6, 0, 5, false}, {-1, 0, 0, false}, {100, -1, 69, false}};
  EXPECT_EQ(rolls, expected);
}

TEST_F(DieRollerTest, CardNames) {
  struct Case {
    std::int32_t deck;
    std::int32_t value;
    const char* name;
  };
  const Case cases[] = {{52, 1, "2S"},  {52, 13, "AS"}, {52, 14, "2C"},  {52, 52, "AD"},
                        {32, 1, "7S"},  {32, 8, "AS"},  {32, 9, "7C"},   {54, 53, "J1"},
                        {54, 54, "J2"}, {53, 53, "J"},  {108, 60, "7S"}, {108, 108, "J2"}};
  for (const Case& c : cases) {
    EXPECT_EQ(drawName(c.value, DieSpec{c.deck, 0}, true), c.name) << c.deck << " " << c.value;
  }
  EXPECT_EQ(drawName(-1, DieSpec{3, -2}, false), "-");
  EXPECT_EQ(drawName(42, DieSpec{100, -1}, false), "42");
}

TEST_F(DieRollerTest, WindowTexts) {
  std::vector<DieRoll> rolls;
  EXPECT_EQ(roll("3d6", &rolls), "17");
  EXPECT_EQ(bodyText("17", rolls), "17 / 5 BODY");
  EXPECT_EQ(bodyText("41", {{100, -1, 41, false}}), "41");

  auto sound = [this](const char* dice, bool showRolls = true) {
    std::vector<DieRoll> shown;
    roll(dice, &shown);
    return soundFileName(shown, showRolls);
  };
  EXPECT_EQ(sound("d6"), "1die.wav");
  EXPECT_EQ(sound("2d6"), "2dice.wav");
  EXPECT_EQ(sound("3d6"), "3dice.wav");
  EXPECT_EQ(sound("5d6"), "severaldice.wav");
  EXPECT_EQ(sound("7d6"), "manyDice.wav");
  EXPECT_EQ(sound("3d1"), "coin.wav");
  EXPECT_EQ(sound("5p52"), "cards.wav");
  EXPECT_EQ(sound("7d6", false), "3dice.wav");

  EXPECT_EQ(dieImageName({6, 0, 4, false}), "d6~4");
  EXPECT_EQ(dieImageName({100, -1, 42, false}), "d100-1~42");
  EXPECT_EQ(dieImageName({3, -2, 1, false}), "dF~+");
  EXPECT_EQ(dieImageName({10, 2, 5, false}), "d10+2~5");
  EXPECT_EQ(dieImageName({52, 0, 9, true}), "10S");
  EXPECT_EQ(defaultQuickButtons().size(), 10u);
}

TEST_F(DieRollerTest, HistoryLists) {
  RollHistory history;
  for (int i = 0; i < 15; ++i)
    history.pushResult(std::to_string(i));
  history.pushResult("");
  ASSERT_EQ(history.results().size(), RollHistory::kMaxResults);
  EXPECT_EQ(history.results().front(), "14");

  for (int i = 0; i < 12; ++i)
    EXPECT_TRUE(history.remember("d" + std::to_string(i)));
  EXPECT_EQ(history.remembered().size(), RollHistory::kMaxRemembered);
  EXPECT_FALSE(history.remember("d5")) << "an exact match stays where it is";
  EXPECT_TRUE(history.remember("D5")) << "compared exactly";
  EXPECT_EQ(history.remembered().front(), "D5");
  history.forget(0);
  EXPECT_EQ(history.remembered().front(), "d11");
}

}  // namespace
}  // namespace zv
