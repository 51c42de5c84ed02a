// Control flow, variables and subroutines: script text, the boxes it shows and the variables it
// leaves, worked out by hand from the language's rules. Every run is a menu run of "t.scp" on a
// blank sheet, so a message ends in "\n\nFile: t.scp, line: n".

#include <map>

#include "script_support.h"

namespace zv::script {
namespace {

using testing::ScriptTest;

struct FlowCase {
  std::string body;
  std::string boxes;                        ///< the boxes, one line each
  std::map<std::string, std::string> vars;  ///< variables and their values afterwards
  bool completed = true;
  std::vector<std::string> answers = {};
};

class ScriptFlow : public ScriptTest {
 protected:
  void check(const FlowCase& c) {
    SCOPED_TRACE(c.body);
    for (const std::string& a : c.answers)
      answer(a);
    const bool completed = run(c.body);
    EXPECT_EQ(completed, c.completed);
    EXPECT_EQ(lines(), c.boxes);
    for (const auto& [name, value] : c.vars)
      EXPECT_EQ(variable(name), value) << name;
  }
};

// One fixture per case: each starts from a fresh context and subroutine list.
#define FLOW_CASE(NAME, ...)     \
  TEST_F(ScriptFlow, NAME) {     \
    check(FlowCase __VA_ARGS__); \
  }

FLOW_CASE(IfAndForDisagreeOnTruth, {"a = 0; b = 0; c = 0; d = 0;\n"
                                    "if (0.5) a = 1; endif\nif (\"0\") d = 1; endif\n"
                                    "for (i = 0.5; i; i = 0) b = b + 1; endfor\n"
                                    "for (s = \"0\"; s; s = \"\") c = c + 1; endfor",
                                    "",
                                    {{"a", "0"}, {"d", "0"}, {"b", "1"}, {"c", "1"}}})

FLOW_CASE(ForCountsUpAndLeavesItsVariableBehindTheEnd,
          {"var s;\nfor (i = 1; i <= 4; i = i + 1) s = s + i; endfor",
           "",
           {{"s", "10"}, {"i", "5"}}})

FLOW_CASE(ForWithAnEmptyStep, {"i = 0;\nfor (i = 0; i < 3; ) i = i + 1; endfor", "", {{"i", "3"}}})

FLOW_CASE(ForStepNamesAnotherVariable,
          {"for (i = 0; i < 10; j = j + 1) endfor",
           "[Script Error] The same variable name must be used in the initialization and "
           "increment parts of the for\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(ForHeadWithoutItsSemicolons,
          {"x = 1;\nfor (i = 0, i < 3) endfor",
           "[Script Error] Expected semicolon for for\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(WhileWithoutEndwhileKeepsItsOddWording,
          {"n = 0;\nwhile (n < 3) n = n + 1;",
           "[Script Error] Missing endwhile (for started on line 2)\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(ForWithoutEndfor,
          {"for (i = 0; i < 3; i = i + 1)\nx = 1;\n",
           "[Script Error] Missing endfor (for started on line 1)\\n\\nFile: t.scp, line: 3\n",
           {},
           false})

FLOW_CASE(IfElseifElseTakesTheFirstTrueBranch,
          {"x = 2;\nif (x = 1) r = 1; elseif (x = 2) r = 2; elseif (x > 0) r = 3; else r = 4; "
           "endif\n"
           "if (x = 5) q = 1; else q = 9; endif",
           "",
           {{"r", "2"}, {"q", "9"}}})

FLOW_CASE(AMissingEndifBehindAFalseBranch,
          {"if (0)\nx = 1;\n",
           "[Script Error] Missing endif on if starting at line 1\\n\\nFile: t.scp, line: 3\n",
           {},
           false})

FLOW_CASE(TheEndOfTextClosesATrueBranchSilently, {"if (1)\nx = 1;\n", "", {{"x", "1"}}})

FLOW_CASE(AnEndInsideARunningBranch,
          {"if (1)\nx = 1; end\nendif",
           "[Script Error] Missing endif on if starting at line 1\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(SwitchRunsTheFirstMatchingGroupOnly,
          {"x = 2; r = 0;\nswitch (x)\n1 ~ r = 1; end\n2, 3 ~ r = 2; end\n2 ~ r = 3; end\n"
           "default ~ r = 9; end\nendswitch",
           "",
           {{"r", "2"}}})

FLOW_CASE(SwitchDefaultWhenNoCaseMatches,
          {"x = \"b\"; r = 0;\nswitch (x) \"a\" ~ r = 1; end default ~ r = 9; end endswitch",
           "",
           {{"r", "9"}}})

FLOW_CASE(NoCaseMayFollowTheDefault,
          {"switch (1)\ndefault ~ end\n4 ~ end\nendswitch",
           "[Script Error] Found case after switch default\\n\\nFile: t.scp, line: 3\n",
           {},
           false})

FLOW_CASE(SwitchCaseWithoutTilde,
          {"switch (1) 1 ; end endswitch",
           "[Script Error] Comma missing after switch case.\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(SwitchEndInPlaceOfACase,
          {"switch (1) end endswitch",
           "[Script Error] Missing ~ after switch case.\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(ASubroutineReturnsAValue,
          {"sub sum2(a, b) { return a + b; }\nx = sum2(3, 4);", "", {{"x", "7"}}})

FLOW_CASE(ASubroutineMayNotBeEnteredAgain,
          {"sub f(n) { x = f(n); }\ncall f(1);",
           "[Script Error] Recursive subroutine call: f.\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(CallingAnUndefinedSubroutine,
          {"x = 1;\ncall g(1);",
           "[Script Error] Subroutine g undefined.\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(TooManyArguments,
          {"sub h(a) { }\ncall h(1, 2);",
           "[Script Error] Too many parameters found for h.\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(
    TooFewArguments,
    {"sub h(a) { }\nh();",
     "[Script Error] Incorrect number of parameters in call to h.\\n\\nFile: t.scp, line: 2\n",
     {},
     false})

FLOW_CASE(ASubroutineDefinedTwice,
          {"sub h() { }\nsub h() { }",
           "[Script Error] Subroutine h redefined\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(LocalsOnlyInsideSubroutines,
          {"local y = 1;",
           "[Script Error] Local definitions may not appear outside subroutines.\\n\\nFile: "
           "t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(AVarKeepsItsFormulaAndALocalItsValue,
          {"b = 1;\nvar a = b + 1;\nb = 5;\nsub s1() { local c = b + 1; b = 10; r = c; }\n"
           "call s1();",
           "",
           {{"a", "11"}, {"b", "10"}, {"r", "6"}}})

FLOW_CASE(ArgumentsAreLocalsOfTheCall,
          {"a = 100;\nsub f(a) { a = a + 1; r = a; }\ncall f(1);", "", {{"a", "100"}, {"r", "2"}}})

FLOW_CASE(ASubroutineInABranchNotTaken,
          {"if (0) sub f() { } endif",
           "[Script Error] Subroutine may not be define here.\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(ReturnAtTheTopEndsTheRunWithoutAWord, {"x = 1; return; x = 2;", "", {{"x", "1"}}, false})

FLOW_CASE(ExitEndsTheRunWithoutAWord, {"x = 1;\nexit;\nx = 2;", "", {{"x", "1"}}, false})

FLOW_CASE(FailShowsItsExpandedMessage, {"n = 3;\nfail \"Stopped after $$n\";\nn = 4;",
                                        "[Error] Stopped after 3\n",
                                        {{"n", "3"}},
                                        false})

FLOW_CASE(WarnGoesOnWithOk,
          {"warn \"Careful\"; x = 1;", "[Warning] Careful\n", {{"x", "1"}}, true, {"OK"}})

FLOW_CASE(WarnStopsWithCancel,
          {"warn \"Careful\"; x = 1;", "[Warning] Careful\n", {{"x", "(none)"}}, false, {"Cancel"}})

FLOW_CASE(AStrayEndDoesNothing, {"x = 1; end x = 2;", "", {{"x", "2"}}})

FLOW_CASE(
    AMisplacedEndif,
    {"endif", "[Script Error] Misplaced endif/else/elseif\\n\\nFile: t.scp, line: 1\n", {}, false})

FLOW_CASE(AHeaderWordInTheBody,
          {"x = 1; title \"t\";",
           "[Script Error] Unknown command: title\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(ScriptmodeOnlyAtTheOutermostLevel,
          {"if (1) scriptmode; endif",
           "[Script Error] scriptmode command may appear only at outermost level of "
           "script.\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(ACommentBeforeTheSemicolonJoinsTheExpression,
          {"x = 1 + 1 # two\n;",
           "[Script Error] Error in assignment expression (may be missing semicolon): 1 + 1 # "
           "two\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(AKeywordIsNoVariableName,
          {"number = 1;",
           "[Script Error] Unknown command: number\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(AnAssignmentWithoutEquals,
          {"x;",
           "[Script Error] Illegal command or '=' expected for assignment\\n\\nFile: t.scp, line: "
           "1\n",
           {},
           false})

FLOW_CASE(AnAssignmentWithoutValue,
          {"x = ;",
           "[Script Error] Expression missing for assignment\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

FLOW_CASE(AnAssignmentToABadName,
          {"2x = 1;",
           "[Script Error] Bad command or illegal symbol for assignment\\n\\nFile: t.scp, line: "
           "1\n",
           {},
           false})

FLOW_CASE(VarDefinesSeveralNamesAndArrays,
          {"var a, b, c;\narray v[3] = 10, 20, 30;\nx = v[1] + v[2] + a;\nvar w[2];",
           "",
           {{"x", "30"}}})

FLOW_CASE(AnArrayOverAVariable,
          {"x = 1;\narray x[2] = 1, 2;",
           "[Script Error] Redefined x as an array\\n\\nFile: t.scp, line: 2\n",
           {},
           false})

FLOW_CASE(FuncInBothForms,
          {"func twice(v) = v * 2;\nfunc thrice(v) { return v * 3; }\nx = twice(4) + thrice(1);",
           "",
           {{"x", "11"}}})

FLOW_CASE(ContextNeedsAnIndicator,
          {"context (elsewhere) endcontext",
           "[Script Error] context() requires source or destination indicator\\n\\nFile: t.scp, "
           "line: 1\n",
           {},
           false})

FLOW_CASE(ContextWithoutEnd,
          {"context (dest)\nx = 1;",
           "[Script Error] Missing endcontext (context started on line 1)\\n\\nFile: t.scp, line: "
           "2\n",
           {},
           false})

FLOW_CASE(AnErrorInAnUntakenBranchIsStillFound,
          {"if (0) x = if; endif",
           "[Script Error] Keyword \"if\" found; expecting semicolon\\n\\nFile: t.scp, line: 1\n",
           {},
           false})

TEST_F(ScriptFlow, EachStatementsMessagesWhereTheirConditionsPickThem) {
  const std::pair<const char*, const char*> cases[] = {
      {"sub (a) { }", "Expected subroutine name"},
      {"sub f(a, 2) { }", "Illegal parameter name: parameter 2"},
      {"sub f(a b) { }", "Expected comma after parameter 1"},
      {"sub f(a) x = 1;", "Expected { for subroutine definition."},
      {"sub f(a) { x = 1;", "Missing } at end of subroutine definition"},
      {"sub f(a) { }\ncall f;", "Missing parameters in call to f."},
      {"call 'f'(1);", "Expected subroutine name"},
      {"call g(1);", "Subroutine g undefined."},
      {"call (1);", "Expected subroutine name"},
      {"sub f(a) { }\ncall f(;", "Missing ) in subroutine call."},
      {"sub f(a) { }\ncall f(1 +);", "Error in argument expression: 1 +"},
      {"sub f() { return 1 +; }\ncall f();", "Error in return expression: 1 +"},
      {"if (1 +) endif", "Error in if expression: 1 +"},
      {"for (i = 1 +; i; ) endfor", "Unable to initialize i to 1 +"},
      {"for (= 1; 1; ) endfor", "Expected variable name in for assignment"},
      {"for (i = 0; i +; ) endfor", "Unable to evaluate control expression: i +"},
      {"for (i = 0; i < 2; i = i +) endfor", "Unable to evaluate increment expression: i +"},
      {"while (1 +) endwhile", "Unable to evaluate control expression: 1 +"},
      {"switch (1 +) endswitch", "Unable to evaluate switch expression: 1 +"},
      {"switch (1) 2 + ~ end endswitch", "Unable to evaluate switch case: 2 +"},
      {"switch (1) default end endswitch", "Missing ~ after switch default"},
      {"local x, y;", "Local definitions may not appear outside subroutines."},
      {"sub f() { local a = 1; local a = 2; }\ncall f();",
       "Local variable named a already exists."},
      {"if 1 endif", "Missing '('"},
      {"if (1\n) endif", "Missing ')' on if/for"},
      {"foreach (Nothing) endforeach", "Can't find list window Nothing"},
      {"foreach (*Nothing) endforeach", "Can't find data list Nothing"},
      {"item (Nothing, 1) enditem", "Can't find list window Nothing"},
      {"x = \"a\";\nitem (Nothing", "Missing ')' on if/for"},
      {"}", "Unknown command: }"},
      {"include \"x;", "Premature end found scanning for statement end"},
      {"fail \"unended;", "Premature end found scanning for statement end"},
  };
  for (const auto& [body, message] : cases) {
    SCOPED_TRACE(body);
    freshRun();
    EXPECT_FALSE(run(body));
    const std::string line = firstLine();
    EXPECT_EQ(line.substr(0, line.find("\\n\\nFile:")), std::string("[Script Error] ") + message);
  }
}

TEST_F(ScriptFlow, AScriptErrorIsCutTo511Bytes) {
  EXPECT_FALSE(run("call " + std::string(600, 'g') + "(1);"));
  EXPECT_EQ(firstLine().size(), std::string("[Script Error] ").size() + 511);
  EXPECT_EQ(firstLine().substr(0, 26), "[Script Error] Subroutine ");
}

TEST_F(ScriptFlow, ContextSwitchesWhereVariablesAreDefined) {
  ASSERT_TRUE(run("context (destination) sheetvar = 7; endcontext\nscriptvar = 8;")) << lines();
  EXPECT_EQ(valueToText(blankSheet().symbols->findHere("sheetvar")->value), "7");
  EXPECT_EQ(blankSheet().symbols->findHere("scriptvar"), nullptr);
  EXPECT_EQ(variable("scriptvar"), "8");
}

TEST_F(ScriptFlow, VariablesLastBetweenMenuRunsAndSoDoSubroutines) {
  ASSERT_TRUE(run("count = 1;\nsub bump() { count = count + 1; }")) << lines();
  ASSERT_TRUE(run("call bump(); call bump();")) << lines();
  EXPECT_EQ(variable("count"), "3");
}

TEST_F(ScriptFlow, CancelStopsAWalkAtItsPoll) {
  FileInfo& sheet = blankSheet();
  ListInfo& list = *sheet.addList();
  list.name = "Things";
  for (const char* name : {"Rope", "Lamp", "Salt", "Oil"}) {
    list.appendItem(std::make_unique<Item>(ItemKind::Item, name));
  }
  // The third poll interrupts: the poll before Salt, while Lamp is still current and the
  // reader stands behind the endforeach of its pass.
  host().setInterruptAfterPolls(2);
  EXPECT_FALSE(run(sheet, "foreach (Things)\nendforeach"));
  EXPECT_EQ(lines(),
            "[Script Error] Conversion canceled.\\n\\nFile: t.scp, line: 2\\nCurrent Item: Lamp\n");
}

TEST_F(ScriptFlow, AnEndlessLoopEndsAtTheStepBudget) {
  host().setInterruptAfterPolls(1000);
  EXPECT_FALSE(run("while (1) endwhile"));
  EXPECT_EQ(lines(), "[Script Error] Conversion canceled.\\n\\nFile: t.scp, line: 1\n");
}

TEST_F(ScriptFlow, ASecondRunIsRefusedWhileOneIsUnderWay) {
  environment.runDepth = 1;
  EXPECT_FALSE(run("x = 1;"));
  EXPECT_EQ(lines(), "[Script in Progress] A script is already in progress.\n");
  EXPECT_TRUE(lastOutcome.errorReported);
}

TEST_F(ScriptFlow, DeepNestingStopsWithAMessage) {
  std::string body;
  for (int i = 0; i < 400; ++i)
    body += "if (1) ";
  EXPECT_FALSE(run(body));
  EXPECT_EQ(firstLine().rfind("[Script Error] Statements nested too deeply (more than 200 "
                              "levels).",
                              0),
            0u)
      << lines();
}

TEST_F(ScriptFlow, IncludeRunsAFileInPlaceAndItsSubroutinesStay) {
  writeFile("helpers.inc", "sub double(v) { return v * 2; }\r\nincluded = 1;\r\n");
  ASSERT_TRUE(run("include \"helpers.inc\";\nx = double(21);")) << lines();
  EXPECT_EQ(variable("x"), "42");
  EXPECT_EQ(variable("included"), "1");
  EXPECT_FALSE(run("include nothere.inc;"));
  EXPECT_EQ(firstLine(),
            "[Script Error] Can't open include file nothere.inc\\n\\nFile: t.scp, "
            "line: 1");
}

TEST_F(ScriptFlow, AnErrorInAnIncludedFileNamesThatFile) {
  writeFile("bad.inc", "x = 1;\r\nendif\r\n");
  EXPECT_FALSE(run("include bad.inc;"));
  EXPECT_EQ(lines(), "[Script Error] Misplaced endif/else/elseif\\n\\nFile: bad.inc, line: 2\n");
}

TEST_F(ScriptFlow, ExecReplacesTheScriptAndUnwindsSubroutines) {
  writeFile("first.scp",
            "\"Conversion script v. 1\" gamesystem Tiny Tiny\r\n"
            "sub go() { exec second.scp; context (dest) never = 1; endcontext }\r\n"
            "call go();\r\ncontext (dest) never = 2; endcontext\r\n");
  writeFile("second.scp",
            "\"Conversion script v. 1\" gamesystem Tiny Tiny\r\n"
            "context (dest) after = isOnNew + 1; endcontext\r\n");
  ASSERT_TRUE(runScriptOnSheet(environment, blankSheet(), "first.scp")) << lines();
  EXPECT_EQ(valueToText(blankSheet().symbols->findHere("after")->value), "1");
  EXPECT_EQ(blankSheet().symbols->findHere("never"), nullptr);
}

TEST_F(ScriptFlow, AScriptThatExecsItselfEndsAtTheStepBudget) {
  writeFile("again.scp", "\"Conversion script v. 1\" gamesystem Tiny Tiny\r\nexec again.scp;\r\n");
  host().setInterruptAfterPolls(50);
  EXPECT_FALSE(runScriptOnSheet(environment, blankSheet(), "again.scp"));
  EXPECT_EQ(lines(), "[Script Error] Conversion canceled.\\n\\nFile: again.scp, line: 2\n");
}

TEST_F(ScriptFlow, ExecOfAScriptOfAnotherGameSystem) {
  writeFile("big.scp", "\"Conversion script v. 1\" gamesystem Tiny Big\r\nafter = 1;\r\n");
  EXPECT_FALSE(run("exec big.scp;"));
  EXPECT_EQ(lines(),
            "[Script Error] You have attempted to exec a Tiny script on a Tiny character "
            "sheet.\\n\\nFile: t.scp, line: 1\n");
}

TEST_F(ScriptFlow, UserCanceledStopsTheNextStatement) {
  host().setInterruptAfterPolls(1);
  EXPECT_FALSE(run("sub f() { }\ncall f();\ncall f();"));
  EXPECT_EQ(lines(), "[Script Error] Conversion canceled.\\n\\nFile: t.scp, line: 3\n");
}

}  // namespace
}  // namespace zv::script
