#include <gtest/gtest.h>

#include "builtin_test_support.h"

namespace zv::testing {
namespace {

class VariableBuiltinsTest : public BuiltinTest {
 protected:
  /// The described value of a variable, or "missing".
  std::string valueOf(std::string_view name) {
    Symbol* symbol = table_.find(name);
    if (symbol == nullptr) return "missing";
    if (!symbol->isVariable()) return "not a variable";
    return describe(symbol->value);
  }
};

TEST_F(VariableBuiltinsTest, SetvariableFindsOrCreates) {
  EXPECT_EQ(run("setvariable", {S("q"), I(5)}), "int 1");
  EXPECT_EQ(valueOf("q"), "int 5");
  EXPECT_EQ(eval("q + 1"), "int 6");
  EXPECT_EQ(run("setvariable", {S("Q"), S("five")}), "int 1");
  EXPECT_EQ(valueOf("q"), "string \"five\"");

  define("used", "2");
  define("user", "used * 10");
  EXPECT_EQ(run("setvariable", {S("used"), I(3)}), "int 1");
  EXPECT_EQ(valueOf("user"), "int 30");  // the change reaches the variables that use it
}

TEST_F(VariableBuiltinsTest, SetvariableRefusesOtherKinds) {
  makeArray("arr", {I(1)});
  EXPECT_EQ(run("setvariable", {S("arr"), I(5)}), "int 0");
  EXPECT_EQ(run("setvariable", {S("sqrt"), I(5)}), "int 0");  // a reserved name
  EXPECT_EQ(valueOf("sqrt"), "missing");
}

TEST_F(VariableBuiltinsTest, SplitFillsTheNamedVariables) {
  struct Case {
    std::vector<Value> args;
    std::string result;
    std::vector<std::pair<std::string, std::string>> variables;
  };
  const Case cases[] = {
      {{S("a,b,c"), S(","), S("p1"), S("p2")},
       "int 2",
       {{"p1", "string \"a\""}, {"p2", "string \"b\""}}},
      {{S("a"), S(","), S("q1"), S("q2")},
       "int 2",
       {{"q1", "string \"a\""}, {"q2", "string \"\""}}},
      {{S("oneANDtwoandthree"), S("and"), S("w1"), S("w2"), S("w3")},
       "int 3",
       {{"w1", "string \"one\""}, {"w2", "string \"two\""}, {"w3", "string \"three\""}}},
      {{S("k=1;; v=22"), S("/[;= ]+/"), S("r1"), S("r2"), S("r3")},
       "int 3",
       {{"r1", "string \"k\""}, {"r2", "string \"1\""}, {"r3", "string \"v\""}}},
      {{S("x y"), S(" "), S("n1"), I(4), S("n2")},
       "int 1",
       {{"n1", "string \"x\""}, {"n2", "missing"}}},
      {{S("abc"), S("/z*/"), S("e1"), S("e2"), S("e3"), S("e4")},
       "int 4",
       {{"e1", "string \"a\""},
        {"e2", "string \"b\""},
        {"e3", "string \"c\""},
        {"e4", "string \"\""}}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(run("split", c.args), c.result) << describe(c.args[0]);
    for (const auto& [name, expected] : c.variables)
      EXPECT_EQ(valueOf(name), expected) << name;
  }
}

TEST_F(VariableBuiltinsTest, SplitRebuildsAnArray) {
  Symbol& parts = makeArray("parts", {S("old"), S("older"), S("oldest"), S("gone")});
  EXPECT_EQ(run("split", {S("x;y;z"), S(";"), Value::arrayRef(&parts)}), "int 3");
  ASSERT_EQ(parts.elements.size(), 3u);
  EXPECT_EQ(describe(parts.elements[1]), "string \"y\"");
  EXPECT_EQ(run("split", {S("a;"), S(";"), Value::arrayRef(&parts)}), "int 2");
  EXPECT_EQ(describe(parts.elements[1]), "string \"\"");
  EXPECT_EQ(run("split", {S(""), S(";"), Value::arrayRef(&parts)}), "int 0");
  EXPECT_EQ(run("split", {S("1a22b3"), S("/[a-z]/"), Value::arrayRef(&parts)}), "int 3");
  EXPECT_EQ(describe(parts.elements[1]), "string \"22\"");
}

TEST_F(VariableBuiltinsTest, SplitFailures) {
  EXPECT_EQ(run("split", {S("a"), S(",")}), "error -5");
  EXPECT_EQ(run("split", {S("a(b"), S("/(/"), S("v")}), "error -18");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Error in split regular expression pattern: unmatched ()");
  makeArray("arr", {});
  EXPECT_EQ(run("split", {S("a,b"), S(","), S("ok"), S("arr")}), "error -18");
  EXPECT_EQ(valueOf("ok"), "string \"a\"");
}

}  // namespace
}  // namespace zv::testing
