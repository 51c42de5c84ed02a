// The evaluator's operator rules: integer and real arithmetic, how texts and numbers mix,
// comparisons, conditionals and unary operators.

#include "expr_test_support.h"

namespace zv::testing {
namespace {

struct Case {
  const char* text;
  const char* expected;
};

class OperatorTest : public ExprTest {
 protected:
  void check(std::initializer_list<Case> cases) {
    for (const Case& c : cases)
      EXPECT_EQ(eval(c.text), c.expected) << c.text;
  }
};

TEST_F(OperatorTest, IntegerAndRealArithmetic) {
  check({
      {"7 / 2", "float 3.5"},
      {"6 / 3", "float 2"},
      {"7 mod 2", "int 1"},
      {"1 / 0", "float 0"},
      {"1.5 / 0.0", "float 0"},
      {"7 mod 0", "int 0"},
      {"7 mod 0.0", "float 0"},
      {"-7 mod 3", "int -1"},
      {"7 mod -3", "int 1"},
      {"7.5 mod 2", "float 1.5"},
      {"-7.5 mod 2", "float -1.5"},
      {"2 + 3", "int 5"},
      {"2 - 3.5", "float -1.5"},
      {"2.5 * 2", "float 5"},
      {"3 * 4", "int 12"},
  });
}

TEST_F(OperatorTest, IntegersWrapAroundAt32Bits) {
  check({
      {"2147483647 + 1", "int -2147483648"},
      {"65536 * 65536", "int 0"},
      {"0 - 2147483647 - 2", "int 2147483647"},
      {"(0 - 2147483647 - 1) mod -1", "int 0"},
      {"-(0 - 2147483647 - 1)", "int -2147483648"},
      {"2147483648", "int -2147483648"},
      {"4294967297", "int 1"},
  });
}

TEST_F(OperatorTest, Power) {
  check({
      {"2 ^ -1", "float 0.5"},
      {"2 ^ 31", "float 2147483648"},
      {"2 ^ 30", "int 1073741824"},
      {"0 ^ 0", "int 1"},
      {"(-2) ^ 3", "int -8"},
      {"2 ^ 10", "int 1024"},
      {"1 ^ 2000000000", "int 1"},
      {"(-1) ^ 2000000001", "int -1"},
      {"4 ^ 0.5", "float 2"},
      {"2.0 ^ 0", "float 1"},
      {"(-2) ^ -2", "float 0.25"},
      // The large or negative-exponent branch clamps every negative result to -1e38.
      {"(-2) ^ 31", "float -99999999999999997748809823456034029568"},
      {"(-2) ^ -1", "float -99999999999999997748809823456034029568"},
      {"(-3) ^ -1", "float -99999999999999997748809823456034029568"},
      {"(-2.0) ^ -1", "float -0.5"},
      {"0 ^ -1", "float 99999999999999997748809823456034029568"},
  });
}

TEST_F(OperatorTest, TextsAndNumbersMix) {
  check({
      {"\"5\" + 3", "float 8"},
      {"\"x\" + 3", "int 4"},
      {"\"\" + 3", "int 3"},
      {"\"12x\" + 0", "int 12"},
      {"\"abc\" * 2", "int 2"},
      {"\" 12\" + 0", "int 1"},
      {"\"3\" + 4", "float 7"},
      {"3 + \"4\"", "float 7"},
      {"\"3\" * \"4\"", "float 12"},
      {"\"3\" + 4.5", "float 7.5"},
      {"\"abc\" + 4.5", "float 5.5"},
      {"\"6\" / \"3\"", "float 2"},
      {"7 / \"2\"", "float 3.5"},
      {"\"2\xBD\" * 2", "float 5"},
      {"\"a\" + \"b\"", "int 0"},
      {"\"1\" + \"b\"", "int 0"},
      {"\"abc\" / 2", "float 0.5"},
  });
}

TEST_F(OperatorTest, Comparisons) {
  check({
      {"\"abc\" = \"ABC\"", "int 1"},
      {"\"10\" = 10", "int 1"},
      {"\"x\" = 10", "int 0"},
      {"\"x\" = 1.5", "int 0"},
      {"\"x\" = 1.0", "int 1"},
      {"\"10\" < \"9\"", "int 1"},
      {"\"10\" < 9", "int 0"},
      {"\"5\" = \"5.0\"", "int 0"},
      {"\"5\" = 5.0", "int 1"},
      {"\"5.0\" = 5", "int 1"},
      {"\"\" = 0", "int 0"},
      {"\"x\" > 5", "int 1"},
      {"\"abc\" <> \"ABD\"", "int 1"},
      {"\"b\" >= \"A\"", "int 1"},
      {"1 != 2", "int 1"},
      {"1 <> 1", "int 0"},
      {"2 <= 2", "int 1"},
      {"2.5 > 2", "int 1"},
      {"1.5 = 1.5", "int 1"},
  });
}

TEST_F(OperatorTest, LogicalOperators) {
  check({
      {"\"a\" and \"b\"", "int 0"},
      {"\"a\" and 1", "int 1"},
      {"\"a\" or \"b\"", "int 0"},
      {"0 or 0.5", "int 1"},
      {"2 and 3", "int 1"},
      {"0 and 3", "int 0"},
      {"0.0 or 0", "int 0"},
      {"not \"\"", "int 1"},
      {"not 0.0", "int 1"},
      {"not \"abc\"", "int 0"},
      {"!5", "int 0"},
      {"!0", "int 1"},
      {"NOT 0", "int 1"},
      {"7 MOD 2", "int 1"},
  });
}

TEST_F(OperatorTest, UnaryOperators) {
  check({
      {"-\"2.5\"", "int -2"},
      {"-\"abc\"", "int -1"},
      {"- 2.5", "float -2.5"},
      {"+5", "int 5"},
      {"--3", "int 3"},
      {"2 - -3", "int 5"},
      {"2 * -3", "int -6"},
  });
}

TEST_F(OperatorTest, ConditionalChoosesWithoutShortCircuit) {
  check({
      {"1 ? 2 : 3", "int 2"},
      {"0 ? 2 : 3", "int 3"},
      {"\"abc\" ? 1 : 2", "int 1"},
      {"\"0\" ? 1 : 2", "int 2"},
      {"0.0 ? 1 : 2", "int 2"},
      {"0.5 ? 1 : 2", "int 1"},
  });
}

TEST_F(OperatorTest, LiteralForms) {
  check({
      {"5%", "float 0.05"},
      {"1\xBD", "float 1.5"},
      {"1\xBD%", "float 0.015"},
      {"12.5%", "float 12.5"},
      {"1.2.3", "float 1.2"},
      {"3\xD7"
       "4",
       "int 12"},
      {"\xBE + \xBC", "float 1"},
      {".5 + .5", "float 1"},
      {"5. / 2", "float 2.5"},
      {"'single'", "string \"single\""},
      {"\"a\\nb\"", "string \"a\r\nb\""},
  });
}

TEST_F(OperatorTest, ATextEndsAtANulByte) {
  EXPECT_EQ(eval(std::string_view("\"ab\0\x07"
                                  "cd\" + 1",
                                  12)),
            "int 2");
  EXPECT_EQ(eval(std::string_view("'ab\0cd'", 7)), "string \"ab\"");
}

TEST_F(OperatorTest, StringsAreCopiedNotShared) {
  // A text pushed twice is two values; the first operation must not disturb the second.
  define("s", "\"word\"");
  EXPECT_EQ(eval("s = s"), "int 1");
  EXPECT_EQ(eval("s"), "string \"word\"");
  EXPECT_EQ(eval("s + 1"), "int 2");
}

TEST_F(OperatorTest, ArraysAndVariablesAsOperands) {
  ASSERT_NE(defineArray(table_, "t[]", "1, 2, 3"), nullptr);
  EXPECT_EQ(eval("t + 5"), "int 5");
  EXPECT_EQ(eval("t"), "array");
  EXPECT_EQ(eval("-t"), "int 0");
}

}  // namespace
}  // namespace zv::testing
