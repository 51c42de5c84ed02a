#include <gtest/gtest.h>

#include "builtin_test_support.h"

namespace zv::testing {
namespace {

NumberMarks continentalMarks() {
  return NumberMarks{".", ","};
}

class FormatBuiltinTest : public BuiltinTest {
 protected:
  FormatBuiltinTest() { engineContext_->services.numberMarks = nullptr; }

  void expectAll(std::initializer_list<BuiltinCase> cases) {
    for (const BuiltinCase& c : cases) {
      EXPECT_EQ(run("format", c.args), c.expected) << describe(c.args[0]);
    }
  }
};

TEST_F(FormatBuiltinTest, TextAndPlainNumbers) {
  expectAll({
      {"", {S("%+d"), I(3)}, "string \"+3\""},
      {"", {S("%+d"), I(0)}, "string \"+0\""},
      {"", {S("%-d"), I(0)}, "string \"-0\""},
      {"", {S("%-d"), I(4)}, "string \"+4\""},
      {"", {S("%+d"), I(-4)}, "string \"-4\""},
      {"", {S("%d")}, "string \"d\""},
      {"", {S("%d and %d"), I(1)}, "string \"1 and d\""},
      {"", {S("%d"), F(2.5)}, "string \"2.5\""},
      {"", {S("%2d"), F(3.14159)}, "string \"3.14\""},
      {"", {S("%2d"), I(5)}, "string \"5.00\""},
      {"", {S("%+1s"), F(2.25)}, "string \"+2.2\""},  // fixed decimals round a tie to even
      {"", {S("%0d"), F(2.7)}, "string \"3\""},
      {"", {S("%5s"), S("ab")}, "string \"ab\""},
      {"", {S("%+3s"), S("12")}, "string \"12\""},  // a text is inserted as it stands
      {"", {S("[%s|%d]"), S("x"), I(-7)}, "string \"[x|-7]\""},
      {"", {S("%s"), I(1), I(2)}, "string \"1\""},
      {"", {I(42)}, "string \"42\""},
  });
}

TEST_F(FormatBuiltinTest, FractionsReachPlainNumbers) {
  engineContext_->preferences.useFractions = true;
  EXPECT_EQ(run("format", {S("%d"), F(2.5)}), "string \"2\xBD\"");
  EXPECT_EQ(run("format", {S("%1d"), F(2.5)}), "string \"2.5\"");
}

TEST_F(FormatBuiltinTest, OtherLettersAndPercentSigns) {
  expectAll({
      {"", {S("%q"), I(1)}, "string \"q\""},
      {"", {S("%+5q%d"), I(1)}, "string \"q1\""},  // no argument is used by "q"
      {"", {S("100%%"), I(1)}, "string \"100%\""},
      {"", {S("50% off")}, "string \"50% off\""},
      {"", {S("5%")}, "string \"5%\""},
      {"", {S("%+5")}, "string \"%+5\""},
  });
}

TEST_F(FormatBuiltinTest, BasesPadWithZeros) {
  expectAll({
      {"", {S("%x"), I(255)}, "string \"ff\""},
      {"", {S("%X"), I(255)}, "string \"FF\""},
      {"", {S("%o"), I(8)}, "string \"10\""},
      {"", {S("%b"), I(5)}, "string \"101\""},
      {"", {S("%8b"), I(5)}, "string \"00000101\""},
      {"", {S("%4X"), I(255)}, "string \"00FF\""},
      {"", {S("%1x"), I(255)}, "string \"ff\""},
      {"", {S("%x"), I(-1)}, "string \"ffffffff\""},
      {"", {S("%x"), S("26")}, "string \"1a\""},
      {"", {S("%x"), F(16.9)}, "string \"10\""},
  });
}

TEST_F(FormatBuiltinTest, LocaleMarks) {
  expectAll({
      {"", {S("%n"), I(1234567)}, "string \"1,234,567\""},
      {"", {S("%2n"), F(1234.567)}, "string \"1,234.57\""},
      {"", {S("%0n"), F(1234.5)}, "string \"1,235\""},
      {"", {S("%0n"), F(-2.5)}, "string \"-2\""},  // adding 0.5 and flooring
      {"", {S("%n"), F(1234.5)}, "string \"1,234.5\""},
      {"", {S("%+n"), I(1234)}, "string \"+1,234\""},
      {"", {S("%n"), I(-1234567)}, "string \"-1,234,567\""},
      {"", {S("%n"), I(999)}, "string \"999\""},
      {"", {S("%n"), F(0.125)}, "string \"0.125\""},
      {"", {S("%n"), S("12345.5")}, "string \"12,345.5\""},
      {"", {S("%3n"), I(1000)}, "string \"1,000.000\""},
  });
  engineContext_->services.numberMarks = continentalMarks;
  EXPECT_EQ(run("format", {S("%2n"), F(1234567.891)}), "string \"1.234.567,89\"");
  EXPECT_EQ(numberMarks().decimal, ",");
  engineContext_->services.numberMarks = nullptr;
  EXPECT_EQ(numberMarks().thousands, ",");
}

TEST_F(FormatBuiltinTest, ArraysCannotBeFormatted) {
  Symbol& array = makeArray("a", {I(1)});
  EXPECT_EQ(run("format", {Value::arrayRef(&array)}), "error -18");
  EXPECT_EQ(run("format", {S("%d"), Value::arrayRef(&array)}), "error -18");
  EXPECT_EQ(run("format", {S("%d")}), "string \"d\"");
  EXPECT_EQ(run("format", {}), "error -5");
}

}  // namespace
}  // namespace zv::testing
