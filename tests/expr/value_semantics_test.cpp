// Values as the engine uses them: conversion to text, ordering, the display text, the
// non-changing conversions, and copies.

#include "expr_test_support.h"

namespace zv::testing {
namespace {

class ValueSemanticsTest : public ExprTest {};

TEST_F(ValueSemanticsTest, ForceString) {
  struct Case {
    Value value;
    bool fractions;
    const char* text;
  };
  const Case cases[] = {
      {Value(42), false, "42"},
      {Value(-7), true, "-7"},
      {Value(2.5), true, "2\xBD"},
      {Value(2.5), false, "2.5"},
      {Value(0.1), true, "0.1"},
      {Value(1234567.0), false, "1234567"},
      {Value(-0.25), true, "-\xBC"},
      {Value("as is"), false, "as is"},
      {Value(1.0 / 3), false, "0.3333333"},
  };
  for (const Case& c : cases) {
    engineContext_->preferences.useFractions = c.fractions;
    Value v = c.value;
    ASSERT_TRUE(forceString(v)) << c.text;
    ASSERT_TRUE(v.isString());
    EXPECT_EQ(v.text(), c.text);
  }
  Value array = Value::arrayRef(nullptr);
  EXPECT_FALSE(forceString(array));
  EXPECT_TRUE(array.isArrayRef());
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0], "[Error] Error in forceString");
}

TEST_F(ValueSemanticsTest, CompareValues) {
  Symbol* some = table_.add("some");
  struct Case {
    Value a;
    Value b;
    int sign;
  };
  const Case cases[] = {
      {Value("ABC"), Value("abc"), 0},
      {Value("abc"), Value("abd"), -1},
      {Value("b"), Value("A"), 1},
      {Value(3), Value(5), -1},
      {Value(5), Value(5), 0},
      {Value(2.5), Value(1.5), 1},
      {Value("10"), Value(10), 0},
      {Value("abc"), Value(0), 0},
      {Value("2\xBD"), Value(2.5), -1},
      {Value(2), Value(2.0), 0},
      {Value("12.5x"), Value(12.5), 0},
      {Value::arrayRef(some), Value::arrayRef(some), 1},
      {Value::localRef(1), Value::localRef(1), 1},
  };
  auto sign = [](int v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); };
  for (const Case& c : cases) {
    EXPECT_EQ(sign(compareValues(c.a, c.b)), c.sign) << describe(c.a) << " vs " << describe(c.b);
  }
}

TEST_F(ValueSemanticsTest, TextAndNumberViews) {
  engineContext_->preferences.useFractions = true;
  EXPECT_EQ(valueToText(Value(12)), "12");
  EXPECT_EQ(valueToText(Value("x y")), "x y");
  EXPECT_EQ(valueToText(Value(3.75)), "3\xBE");
  EXPECT_EQ(valueToText(Value(0.0)), "0");

  Value text("12.5abc");
  EXPECT_DOUBLE_EQ(valueToDouble(text), 12.5);
  EXPECT_EQ(valueToInteger(text), 12);
  EXPECT_EQ(text.text(), "12.5abc");  // unchanged
  EXPECT_DOUBLE_EQ(valueToDouble(Value("2\xBD")), 2.0);
  EXPECT_DOUBLE_EQ(valueToDouble(Value("abc")), 0.0);
  EXPECT_EQ(valueToInteger(Value("abc")), 1);
  EXPECT_EQ(valueToInteger(Value("")), 0);
  EXPECT_EQ(valueToInteger(Value(3e9)), 2147483647);
  EXPECT_EQ(valueToInteger(Value(-3e9)), -2147483647 - 1);
  EXPECT_EQ(valueToInteger(Value(-2.9)), -2);
}

TEST_F(ValueSemanticsTest, CopiesOwnTheirTextAndFreeingClears) {
  Value original("shared?");
  Value copy = original;
  copy.text()[0] = 'S';
  EXPECT_EQ(original.text(), "shared?");
  freeValue(copy);
  EXPECT_TRUE(copy.isInteger());
  EXPECT_EQ(copy.integer(), 0);
  Value number(2.5);
  freeValue(number);
  EXPECT_TRUE(number.isFloat());

  Value moved = std::move(original);
  EXPECT_EQ(moved.text(), "shared?");

  Value local = Value::localRef(3);
  EXPECT_EQ(local.kind(), ValueKind::LocalRef);
  EXPECT_EQ(local.localSlot(), 3);
  EXPECT_EQ(integerOf(local), 0);
  EXPECT_DOUBLE_EQ(floatOf(local), 0.0);
}

TEST_F(ValueSemanticsTest, DisplayOfEvaluatedNumbersFollowsTheFractionPreference) {
  engineContext_->preferences.useFractions = true;
  Value out;
  ASSERT_EQ(parseExp(&table_, "5 / 2", out), 0);
  EXPECT_EQ(valueToText(out), "2\xBD");
  engineContext_->preferences.useFractions = false;
  EXPECT_EQ(valueToText(out), "2.5");
}

}  // namespace
}  // namespace zv::testing
