#include <gtest/gtest.h>

#include "builtin_test_support.h"
#include "core/random.h"

namespace zv::testing {
namespace {

class NumberBuiltinsTest : public BuiltinTest {};

TEST_F(NumberBuiltinsTest, RoundingAndConversions) {
  const BuiltinCase cases[] = {
      {"round", {F(2.5)}, "int 3"},
      {"round", {F(-2.5)}, "int -3"},
      {"round", {F(2.49)}, "int 2"},
      {"round", {S("2.5")}, "int 3"},
      {"round", {I(7)}, "int 7"},
      {"round", {F(0.49999999999999994)}, "int 1"},  // |x| + 0.5 is 1.0 in doubles
      {"round", {F(5e9 + 0.5)}, "float 5000000001"},
      {"round", {F(-3e9)}, "float -3000000000"},
      {"dround", {F(2.5)}, "int 2"},
      {"dround", {F(2.6)}, "int 3"},
      {"dround", {F(-2.6)}, "int -3"},
      {"dround", {F(2.5000005)}, "int 2"},
      {"dround", {F(2.500002)}, "int 3"},
      {"ceil", {F(2.0005)}, "int 2"},
      {"ceil", {F(3.0004)}, "int 3"},
      {"ceil", {F(2.1)}, "int 3"},
      {"ceil", {F(2.0011)}, "int 3"},
      {"ceil", {F(-2.1)}, "int -3"},
      {"ceil", {I(5)}, "int 5"},
      {"ceil", {S("1.5")}, "int 2"},
      {"integer", {F(3.7)}, "int 3"},
      {"integer", {F(-3.7)}, "int -3"},
      {"integer", {F(3000000000.0)}, "float 3000000000"},
      {"integer", {F(-2147483647.5)}, "float -2147483647"},
      {"integer", {F(2147483646.9)}, "int 2147483646"},
      {"integer", {S("12abc")}, "int 12"},
      {"integer", {S("abc")}, "int 1"},
      {"float", {S("abc")}, "float 1"},
      {"float", {S("")}, "float 0"},
      {"float", {I(3)}, "float 3"},
      {"float", {S("2\xBD")}, "float 2.5"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.name << "(" << describe(c.args[0]) << ")";
  }
}

TEST_F(NumberBuiltinsTest, RootsLogarithmsAndMagnitudes) {
  const BuiltinCase cases[] = {
      {"sqrt", {I(-16)}, "float 4"},
      {"sqrt", {F(2.25)}, "float 1.5"},
      {"log", {I(0)}, "float 0"},
      {"log", {I(1)}, "float 0"},
      {"log", {F(-1.0)}, "float 0"},
      {"log10", {I(-100)}, "float 2"},
      {"log10", {F(0.0)}, "float 0"},
      {"log10", {S("1000")}, "float 3"},
      {"abs", {I(-3)}, "int 3"},
      {"abs", {F(-2.5)}, "float 2.5"},
      {"abs", {I(-2147483647 - 1)}, "float 2147483648"},
      {"abs", {S("-4")}, "float 4"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.name << "(" << describe(c.args[0]) << ")";
  }
}

TEST_F(NumberBuiltinsTest, ExtremesKeepTheRightmostOfTies) {
  const BuiltinCase cases[] = {
      {"max", {I(3), I(7), I(5)}, "int 7"},
      {"min", {I(3), I(7), I(5)}, "int 3"},
      {"min", {I(2), F(2.0)}, "float 2"},
      {"max", {F(2.0), I(2)}, "int 2"},
      {"max", {I(1), S("abc")}, "int 1"},  // "abc" counts as 0 against a number
      {"max", {S("abc"), S("ABC")}, "string \"ABC\""},
      {"min", {S("b"), S("A"), S("a")}, "string \"a\""},
      {"max", {F(1.5)}, "float 1.5"},
      {"min", {}, "error -5"},
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.name << " of " << c.args.size();
  }
}

TEST_F(NumberBuiltinsTest, RandDrawsFromOneToN) {
  EXPECT_EQ(run("rand", {I(0)}), "int 1");
  EXPECT_EQ(run("rand", {I(1)}), "int 1");
  seedRandom(1);
  EXPECT_EQ(run("rand", {I(6)}), "int 6");     // 41 % 6 + 1
  EXPECT_EQ(run("rand", {I(100)}), "int 68");  // 18467 % 100 + 1
  for (std::int32_t bound : {-3, 6, 40000, 2147483647}) {
    std::int32_t magnitude = bound < 0 ? -bound : bound;
    for (int i = 0; i < 200; ++i) {
      Value result;
      std::vector<Value> args{I(bound)};
      BuiltinCall call{table_, nullptr, args, result};
      ASSERT_EQ(builtinRand(call), 0);
      ASSERT_TRUE(result.isInteger());
      ASSERT_GE(result.integer(), 1);
      ASSERT_LE(result.integer(), magnitude);
    }
  }
}

TEST_F(NumberBuiltinsTest, RolldiceKeepsTheBestDice) {
  const BuiltinCase cases[] = {
      {"rolldice", {I(3), I(3), I(1)}, "int 3"},
      {"rolldice", {I(2), I(3), I(1)}, "int 2"},
      {"rolldice", {I(5), I(3), I(1)}, "int 3"},  // keeping more than rolled keeps them all
      {"rolldice", {I(1), I(0), I(6)}, "int 0"},
      {"rolldice", {I(1), I(2), I(0)}, "int 0"},
      {"rolldice", {I(0), I(2), I(6)}, "int 0"},
      {"rolldice", {I(1), I(2)}, "error -5"},
      {"rolldice", {I(1), I(2), I(3), I(4)}, "error -5"},
      {"rolldice", {S("3d6")}, "int 0"},  // the dice text needs the die roller
  };
  for (const BuiltinCase& c : cases) {
    EXPECT_EQ(run(c.name, c.args), c.expected) << c.args.size() << " arguments";
  }
  // Seed 7 rolls 62, 23, 16, 41, 22 on d100: the best two are 62 and 41, the best three add 23.
  seedRandom(7);
  EXPECT_EQ(run("rolldice", {I(2), I(5), I(100)}), "int 103");
  seedRandom(7);
  EXPECT_EQ(run("rolldice", {I(3), I(5), I(100)}), "int 126");
  seedRandom(7);
  EXPECT_EQ(run("rolldice", {S("2"), F(5.9), S("100")}), "int 103");  // integer arguments
}

}  // namespace
}  // namespace zv::testing
