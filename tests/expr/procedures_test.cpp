// Procedures in braces: locals, assignment, return, if and while, and their errors.

#include "expr_test_support.h"

namespace zv::testing {
namespace {

class ProcedureTest : public ExprTest {};

TEST_F(ProcedureTest, Results) {
  struct Case {
    const char* text;
    const char* expected;
  };
  const Case cases[] = {
      {"{ local a; a := 2; return a * 3; }", "int 6"},
      {"{ local a; a = 2; return a * 3; }", "int 6"},
      {"{ local a; return a + 1; }", "int 1"},
      {"{ return 5; }", "int 5"},
      {"{ local i, s; while (i < 5) i := i + 1; s := s + i; endwhile return s; }", "int 15"},
      {"{ local x; x := 2; if (x = 1) return 10; elseif (x = 2) return 20; else return 30; "
       "endif return 0; }",
       "int 20"},
      {"{ local x; x := 9; if (x = 1) return 10; elseif (x = 2) return 20; else return 30; "
       "endif return 0; }",
       "int 30"},
      {"{ local x; x := 1; if (x = 1) return 10; elseif (x = 2) return 20; else return 30; "
       "endif return 0; }",
       "int 10"},
      {"{ local x; if (x) x := 1; endif return x; }", "int 0"},
      {"{ local x; if ((x + 1) * 2 = 2) x := 7; endif return x; }", "int 7"},
      {"{ return 1; return 2; } junk", "int 1"},
      {"{ local s; s := \"a\"; return s; }", "string \"a\""},
      {"{ local n, f; n := 5; f := 1; while (n > 1) f := f * n; n := n - 1; endwhile ; "
       "return f; }",
       "int 120"},
      {"{ local i, j, c; while (i < 3) i := i + 1; j := 0; while (j < 4) j := j + 1; "
       "if (j mod 2) c := c + 1; endif endwhile endwhile return c; }",
       "int 6"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.text), c.expected) << c.text;
}

TEST_F(ProcedureTest, Errors) {
  struct Case {
    const char* text;
    const char* expected;
  };
  const Case cases[] = {
      {"{ if x = 1 return 1; endif return 0; }", "error -23: Parenthesis missing around if"},
      {"{ if (1 return 1; endif return 0; }", "error -23: Parenthesis missing around if"},
      {"{ local a; a := 1; }",
       "error -22: No return in procedure: must be last statement before }"},
      {"{ local a; if (1) return 1; endif }",
       "error -22: No return in procedure: must be last statement before }"},
      {"{ local a, A; return 1; }", "error -27: Local variable 'A' redefined"},
      {"{ b := 1; return b; }", "error -28: Local variable 'b' undefined"},
      {"{ local a; a 1; return a; }", "error -29: Assignment missing"},
      {"{ local a a; return 1; }", "error -25: Semicolon missing"},
      {"{ local a; return a }", "error -25: Semicolon missing"},
      {"{ local and; return 1; }", "error -33: Name is a reserved word: and"},
      {"{ local min; return 1; }", "error -33: Name is a reserved word: min"},
      {"{ local 5; return 1; }", "error -21: Illegal symbol for local variable name: 5"},
      {"{ while x < 1 endwhile return 1; }",
       "error -32: Missing parenthesis around while expression"},
      {"{ 5; return 1; }", "error -24: Unrecognized statement: 5"},
      {"{ local a; return ; }", "error -30: Empty expression"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.text), c.expected) << c.text;
}

TEST_F(ProcedureTest, ParametersAreNotAssignable) {
  EXPECT_EQ(defineFunction(table_, "f(x)", "{ x := 1; return x; }"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Local variable 'x' undefined");
  EXPECT_EQ(defineFunction(table_, "g(x)", "{ local x; return 1; }"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Local variable 'x' redefined");
}

TEST_F(ProcedureTest, FunctionBodiesMayBeProcedures) {
  ASSERT_NE(defineFunction(table_, "twice(x)", "{ local y; y := x * 2; return y + 1; }"), nullptr);
  EXPECT_EQ(eval("twice(3)"), "int 7");
  EXPECT_EQ(eval("twice(twice(1))"), "int 7");
}

TEST_F(ProcedureTest, InterruptAtLoopsAsksAndAborts) {
  host_.setInterruptAfterPolls(3);
  host_.addAnswer("Yes");
  EXPECT_EQ(eval("{ local i; while (1) i := i + 1; endwhile return i; }"),
            "error -35: User interrupt in Expression");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Warning] The application was interrupted while evaluating \"Expression.\" Do you "
            "wish to abort the evaluation?\\n\\nAborting evaluation can cause incorrect character "
            "sheet values and unpredictable behavior.");
}

TEST_F(ProcedureTest, InterruptAnsweredNoGoesOn) {
  host_.setInterruptAfterPolls(0);
  for (int i = 0; i < 20; ++i)
    host_.addAnswer("No");
  EXPECT_EQ(eval("{ local i; while (i < 3) i := i + 1; endwhile return i; }"), "int 3");
  EXPECT_FALSE(host_.transcript().empty());
}

}  // namespace
}  // namespace zv::testing
