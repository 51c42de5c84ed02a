// Every message of the macro processor, with its exact text and the base file line it names, and
// what a failure does to the input.

#include <gtest/gtest.h>

#include <ostream>

#include "formats/macro_fixture.h"

namespace zv {
namespace {

using testing::macroBox;
using testing::MacroHarness;
using testing::tinyEvaluator;

struct MessageCase {
  const char* label;
  std::string input;
  std::string message;
  int line;
};

void PrintTo(const MessageCase& c, std::ostream* os) {
  *os << c.label;
}

const std::string kPair = "$$macro Pair(a, b) {{<$(a)|$(b)>}}\n";

std::string argList(int count, const char* prefix) {
  std::string out;
  for (int i = 1; i <= count; ++i) {
    if (i > 1) out += ",";
    out += prefix + std::to_string(i);
  }
  return out;
}

std::string nestedIfs(int count) {
  std::string body;
  for (int i = 0; i < count; ++i)
    body += "$$if(1)";
  body += "x";
  for (int i = 0; i < count; ++i)
    body += "$$endif";
  return "$$macro M() {{" + body + "}}\n$$M()";
}

const std::string kScan = "$$macro S(v) {{";
const std::string kScanCall = "}}\n$$S(1)";
const std::string kExp = "$$macro E() {{";
const std::string kExpCall = "}}\n$$E()";

const MessageCase kCases[] = {
    // 62
    {"premature_end_in_body", "$$macro M() {{abc}", "Premature end in macro 'M' (line 1)", 1},
    {"premature_end_after_dollars", "x\n$$", "Premature end in macro '(unknown)' (line 2)", 2},
    {"premature_end_in_definition_head", "$$macro M(a,", "Premature end in macro 'M' (line 1)", 1},
    {"premature_end_in_arguments", kPair + "$$Pair(1, 2", "Premature end in macro 'Pair' (line 2)",
     2},
    {"premature_end_in_quoted_argument", kPair + "$$Pair(\"ab",
     "Premature end in macro 'Pair' (line 2)", 2},
    {"premature_end_in_if", "$$macro M() {{$$if(1}}\n$$M()", "Premature end in macro 'M' (line 2)",
     2},
    {"premature_end_in_error", "$$macro M() {{$$error(x}}\n$$M()",
     "Premature end in macro 'M' (line 2)", 2},
    // 63
    {"duplicate_definition", "$$macro M() {{}}\n$$macro m() {{}}",
     "Duplicate definition of macro 'm' (line 2)", 2},
    // 64
    {"definition_without_parenthesis", "$$macro M x", "Macro syntax error in 'M' (line 1)", 1},
    {"definition_bad_argument_list", "$$macro M(a b) {{}}", "Macro syntax error in 'M' (line 1)",
     1},
    {"definition_without_name", "$$macro (a) {{}}", "Macro syntax error in '' (line 1)", 1},
    {"junk_after_quoted_argument", kPair + "$$Pair(\"a\"b)",
     "Macro syntax error in 'Pair' (line 2)", 2},
    {"junk_after_quoted_tab_argument", kPair + "$$Pair\t\"a\" b",
     "Macro syntax error in 'Pair' (line 2)", 2},
    {"argtype_without_parenthesis", "$$argtype x", "Macro syntax error in 'argtype' (line 1)", 1},
    // 65
    {"empty_directive_in_body", "$$macro M() {{$$ x}}\n$$M()",
     "Macro argument syntax error in 'M' (line 2)", 2},
    {"ifdef_without_parenthesis", "$$macro M() {{$$ifdef x}}\n$$M()",
     "Macro argument syntax error in 'M' (line 2)", 2},
    {"ifdef_unclosed", "$$macro M() {{$$ifdef(x y)}}\n$$M()",
     "Macro argument syntax error in 'M' (line 2)", 2},
    {"if_without_parenthesis", "$$macro M() {{$$if 1}}\n$$M()",
     "Macro argument syntax error in 'M' (line 2)", 2},
    {"error_without_parenthesis", "$$macro M() {{$$error x}}\n$$M()",
     "Macro argument syntax error in 'M' (line 2)", 2},
    // 66
    {"unknown_value_at_top_level", "$(NOPE)\n",
     "Unknown macro argument in 'Main File': NOPE (line 1)", 1},
    {"unknown_value_in_body", "$$macro M() {{$(zz)}}\n$$M()",
     "Unknown macro argument in 'M': zz (line 2)", 2},
    {"unknown_value_in_ifdef", "$$macro M() {{$$ifdef(zz)$$endif}}\n$$M()",
     "Unknown macro argument in 'M': zz (line 2)", 2},
    {"unknown_value_in_ifnull", "$$macro M() {{$$ifnull(zz)$$endif}}\n$$M()",
     "Unknown macro argument in 'M': zz (line 2)", 2},
    // 67
    {"undefined_macro", "$$Nope(1)", "Undefined macro: 'Nope' (line 1)", 1},
    {"condition_at_top_level", "$$if(1)", "Undefined macro: 'if' (line 1)", 1},
    {"undefined_macro_in_body", "$$macro M() {{$$Nope()}}\n\n$$M()",
     "Undefined macro: 'Nope' (line 3)", 3},
    // 68
    {"too_many_arguments", kPair + "$$Pair(1,2,3)",
     "Incorrect number of arguments for macro 'Pair' (line 2)", 2},
    {"thirty_first_declared_argument", "$$macro M(" + argList(31, "a") + ") {{}}",
     "Incorrect number of arguments for macro 'M' (line 1)", 1},
    {"thirty_first_call_argument",
     "$$macro M(" + argList(30, "a") + ") {{}}\n$$M(" + argList(31, "v") + ")",
     "Incorrect number of arguments for macro 'M' (line 2)", 2},
    {"thirty_first_tab_argument",
     "$$macro M(" + argList(30, "a") + ") {{}}\n$$M\t" + std::string(30, '\t') + "x",
     "Incorrect number of arguments for macro 'M' (line 2)", 2},
    // 69
    {"expression_too_long", "$$macro M() {{$$if(" + std::string(512, '1') + ")$$endif}}\n$$M()",
     "Macro argument too long in 'M' (line 2)", 2},
    // 70 to 73
    {"eleventh_nested_if", nestedIfs(11), "Maximum $$if nesting level exceeded in 'M' (line 2)", 2},
    {"endif_missing", "$$macro M() {{$$if(1)x}}\n$$M()", "$$Endif missing in macro 'M' (line 2)",
     2},
    {"endif_without_if", "$$macro M() {{x$$endif}}\n$$M()",
     "$$Endif found without matching $if... in 'M' (line 2)", 2},
    {"else_without_if", "$$macro M() {{$$else}}\n$$M()",
     "$$Else found without matching $$if... in 'M' (line 2)", 2},
    {"elseif_without_if", "$$macro M() {{$$elseif(1)}}\n$$M()",
     "$$Else found without matching $$if... in 'M' (line 2)", 2},
    // 74
    {"missing_braces", "$$macro Bad(a) x", "Missing opening {{ for body of macro 'Bad' (line 1)",
     1},
    {"single_opening_brace", "$$macro Bad(a)\n{x}}",
     "Missing opening {{ for body of macro 'Bad' (line 2)", 2},
    // 77
    {"include_not_found", "$$include nofile.inc",
     "Unable to open include file 'nofile.inc' (line 1)", 1},
    // Inline messages of reading and expansion.
    {"definition_in_body", "$$macro M() {{$$macro N}}\n$$M()",
     "$$macro may not be nested inside a macro", 2},
    {"call_without_parenthesis", "$$macro Pair(a) {{}}\n$$Pair x",
     "Macro invocation Pair must be followed by '(' or tab (line 2)", 2},
    {"argument_reference_undeclared", kPair + "$$Pair($(zz))",
     "Undeclared value in macro argument list: zz", 2},
    {"argument_inner_reference_undeclared", kPair + "$$Pair(a$(zz))",
     "Undeclared value in macro argument list: zz", 2},
    {"argument_reference_unclosed", kPair + "$$Pair($(zz x)",
     "Missing ')' in macro argument list after zz", 2},
    {"simple_recursion", kPair + "$$define A $(A)\n$$Pair($(A))",
     "Too many levels of simple macro recursion: $(A)", 3},
    {"self_referencing_define", "$$define A x$(A)\n$(A)",
     "Too many levels of macro nesting while expanding A (called from A)", 2},
    {"empty_reference_name", "$$macro M() {{$()}}\n$$M()", "No define name found: M, line 2", 2},
    {"unclosed_reference", "$$macro M() {{$(ab}}\n$$M()", "')' missing in M after $(ab), line 2",
     2},
    {"unclosed_top_level_reference", "$(ab x", "')' missing in Main File after $(ab), line 1", 1},
    {"bad_if_expression", "$$macro M() {{$$if(bad)$$endif}}\n$$M()", "Bad expression in $$if: bad",
     2},
    {"bad_elseif_expression", "$$macro M() {{$$if(0)$$elseif(bad x)$$endif}}\n$$M()",
     "Bad expression in $$elseif: bad x", 2},
    {"body_too_large", "$$macro M() {{" + std::string(32000, 'x') + "}}", "Insufficient memory.",
     1},
    {"output_too_large",
     "$$define L " + argList(700, "") + "\n$$repeat($(L), x, \",\")" + std::string(300, 'y') +
         "$$endrepeat",
     "Insufficient memory.", 2},
    // $$argdesc and $$macrodesc.
    {"argdesc_without_comma", "$$macro M(a) {{$$argdesc(a) x}}",
     "Missing comma for $$argdesc in macro M.", 1},
    {"argdesc_without_parentheses", "$$macro M(a) {{$$argdesc a}}",
     "Missing parentheses for $$argdesc in macro M.", 1},
    {"argdesc_unclosed", "$$macro M(a) {{$$argdesc(a, text",
     "Missing parentheses for $$argdesc in macro M.", 1},
    {"argdesc_unknown_type", "$$macro M(a) {{$$argdesc(a:zz, d)}}",
     "Unknown argument type zz in macro M", 1},
    {"macrodesc_without_parenthesis", "$$macro M() {{$$macrodesc x}}",
     "Missing closing paren in $$macrodesc in macro M", 1},
    {"macrodesc_unclosed", "$$macro M() {{$$macrodesc(x",
     "Missing closing paren in $$macrodesc in macro M", 1},
    // $$scan.
    {"scan_without_parenthesis", kScan + "$$scan x" + kScanCall,
     "Missing '(' in $$scan: x (line 2, macro S)", 2},
    {"scan_without_comma", kScan + "$$scan(v \"x\")" + kScanCall, "Missing ',' in $$scan", 2},
    {"scan_bad_format", kScan + "$$scan(v, x)" + kScanCall,
     "Error reading format in $$scan: v (line 2, macro S)", 2},
    {"scan_empty_argument", kScan + "$$scan(v, \"x\", )" + kScanCall,
     "Error reading arg list in $$scan (line 2, macro S)", 2},
    {"scan_comma_after_argument", kScan + "$$scan(v, \"x\", a b)" + kScanCall,
     "Missing comma after a in $$scan (line 2, macro S)", 2},
    {"scan_comma_after_format", kScan + "$$scan(v, \"x\" a)" + kScanCall,
     "Missing comma after x in $$scan (line 2, macro S)", 2},
    {"scan_undeclared", kScan + "$$scan(zz, \"x\", a)" + kScanCall,
     "Undeclared value in $$scan: zz (line 2, macro S)", 2},
    {"scan_format_error", kScan + "$$scan(v, \"(x\", a)" + kScanCall,
     "Error in $$scan format: unmatched () (line 2, macro S)", 2},
    // $$error and $$exp.
    {"error_directive",
     "$$macro Chk(v) {{$$ifnull(v)$$error(value missing)$$endif[$(v)]}}\n$$Chk()",
     "value missing (Chk, line 2)", 2},
    {"exp_without_parenthesis", kExp + "$$exp \"1\"" + kExpCall,
     "Missing '(' in $$exp (line 2, macro E)", 2},
    {"exp_unclosed", kExp + "$$exp(\"1\" x)" + kExpCall, "Missing '(' in $$exp (line 2, macro E)",
     2},
    {"exp_without_string", kExp + "$$exp(1)" + kExpCall,
     "Error reading string in $$exp (line 2, macro E)", 2},
    {"exp_bad_expression", kExp + "$$exp(\"bad\")" + kExpCall,
     "Error in expression in $$exp: bad (line 2, macro E)", 2},
    // $$repeat.
    {"repeat_without_parenthesis", "$$repeat x",
     "$$repeat requires a variable reference $(varname) or string as the first argument.", 1},
    {"repeat_bad_source", "$$repeat(x, i, \",\")",
     "$$repeat requires a variable reference $(varname) or string as the first argument.", 1},
    {"repeat_dollar_without_reference", "$$repeat($x, i, \",\")",
     "$$repeat requires string or $(varname) reference as first argument.", 1},
    {"repeat_unclosed_reference", "$$repeat($(x, i, \",\")",
     "$$repeat requires string or $(varname) reference as first argument.", 1},
    {"repeat_without_comma", "$$repeat(\"a\" i, \",\")",
     "Comma missing after first argument of $$repeat.", 1},
    {"repeat_undefined_source", "$$repeat($(zz), i, \",\")x$$endrepeat",
     "The argument for $$repeat zz is not defined.", 1},
    {"repeat_unterminated_string", "$$repeat(\"abc", "Unable to get string value for $$repeat", 1},
    {"repeat_without_argument", "$$repeat(\"a\", , \",\")", "Unable to get argument for $$repeat.",
     1},
    {"repeat_pattern_not_string", "$$repeat(\"a\", i, x)", "Unable to get pattern for $$repeat", 1},
    {"repeat_junk_after_pattern", "$$repeat(\"a\", i, \",\" x)",
     "Unable to get pattern for $$repeat", 1},
    {"repeat_separator_not_string", "$$repeat(\"a\", i, \",\", x)",
     "Unable to get separator for $$repeat", 1},
    {"repeat_unclosed_separator", "$$repeat(\"a\", i, \",\", \";\" x",
     "Unable to get separator for $$repeat", 1},
    {"repeat_without_end", "$$repeat(\"a\", x, \",\") $(x)\n", "Missing $$endrepeat after $$repeat",
     2},
    {"repeat_bad_pattern", "$$repeat(\"a\", x, \"(\")$$endrepeat",
     "Error in $$repeat pattern: unmatched ()", 1},
    // $$argtype.
    {"argtype_reserved_name", "$$argtype(cat, choose, \"T\", \"P\", \"a|b\")",
     "Type name cat is reserved and not allowed in $$argtype(cat)", 1},
    {"argtype_unknown_class", "$$argtype(Foo, combo, \"T\", \"P\")",
     "Unknown argument class (combo) for argtype Foo", 1},
    {"argtype_comma_after_name", "$$argtype(Foo choose", "Expected , after $$argtype(Foo", 1},
    {"argtype_comma_after_class", "$$argtype(Foo, choose \"T\"",
     "Expected , after class for $$argtype(Foo", 1},
    {"argtype_comma_after_title", "$$argtype(Foo, choose, \"T\" \"P\"",
     "Expected , after title for $$argtype(Foo", 1},
    {"argtype_comma_after_prompt", "$$argtype(Foo, choose, \"T\", \"P\")",
     "Expected , after prompt for $$argtype($s", 1},
    {"argtype_choose_unclosed", "$$argtype(Foo, choose, \"T\", \"P\", \"a\" x)",
     "Missing ) in definition of Foo argtype.", 1},
    {"argtype_list_after_terminator", "$$argtype(Foo, list, \"T\", \"P\", \";\" x)",
     "Missing , or ) after terminator for $$argtype(Foo", 1},
    {"argtype_list_after_value_list", "$$argtype(Foo, duplist, \"T\", \"P\", \";\", \"a\" x)",
     "Missing ) after value list for $$argtype(Foo)", 1},
    {"argtype_bad_choices", "$$argtype(Foo, choose, \"T\", \"P\", \"a|?choose:x\")",
     "Bad format in choices for $$argtype(Foo)", 1},
};

class MacroMessageTest : public ::testing::TestWithParam<MessageCase> {};

TEST_P(MacroMessageTest, ShowsOneBoxAndEndsTheInput) {
  const MessageCase& c = GetParam();
  MacroHarness harness;
  harness.context.setExpressionEvaluator(tinyEvaluator);
  testing::MacroRun run = harness.run(c.input);
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0], macroBox(c.message, c.line));
  EXPECT_TRUE(harness.context.failed());
  EXPECT_EQ(harness.context.macroNextChar(), kEndOfFile);  // and it stays at the end
}

INSTANTIATE_TEST_SUITE_P(Cases, MacroMessageTest, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(MacroFailure, TextBeforeTheFailureStaysAndTheRestIsNotRead) {
  MacroHarness harness;
  testing::MacroRun run = harness.run("a\n$$Nope()\nb");
  EXPECT_EQ(run.output, "a\n");
  EXPECT_EQ(run.boxes.size(), 1u);
}

TEST(MacroFailure, TheFailingExpansionIsGivenUp) {
  MacroHarness harness;
  testing::MacroRun run = harness.run("x$$macro M() {{abc$(zz)def}}\n$$M()tail");
  EXPECT_EQ(run.output, "x");
  EXPECT_EQ(run.boxes.size(), 1u);
}

TEST(MacroFailure, TheMessageNamesTheLineOfTheBaseFile) {
  MacroHarness harness;
  testing::MacroRun run = harness.run("a\r\nb\r\n$$macro M() {{\n\n$(zz)\n}}\r\n\r\n$$M()");
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0], macroBox("Unknown macro argument in 'M': zz (line 8)", 8));
}

std::string macroChain(int levels) {
  // M1 calls M2 ... calls M<levels>, whose body is "end".
  std::string text = "$$macro M" + std::to_string(levels) + "() {{end}}\n";
  for (int i = levels - 1; i >= 1; --i) {
    text += "$$macro M" + std::to_string(i) + "() {{$$M" + std::to_string(i + 1) + "()}}\n";
  }
  return text + "$$M1()";
}

TEST(MacroNesting, TenNestedCallsExpand) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(macroChain(10));
  EXPECT_EQ(run.output, "end");
  EXPECT_TRUE(run.boxes.empty());
}

TEST(MacroNesting, ElevenNestedCallsGiveTheNestingMessage) {
  MacroHarness harness;
  testing::MacroRun run = harness.run(macroChain(11));
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(run.boxes[0],
            macroBox("Too many levels of macro nesting while expanding M11 (called from M10)", 12));
}

TEST(MacroNesting, RepeatAtTheDepthLimitFails) {
  std::string text = "$$macro M10() {{$$repeat(\"a\", x, \",\")$(x)$$endrepeat}}\n";
  for (int i = 9; i >= 1; --i) {
    text += "$$macro M" + std::to_string(i) + "() {{$$M" + std::to_string(i + 1) + "()}}\n";
  }
  MacroHarness harness;
  testing::MacroRun run = harness.run(text + "$$M1()");
  ASSERT_EQ(run.boxes.size(), 1u);
  EXPECT_EQ(
      run.boxes[0],
      macroBox("Too many levels of macro nesting while expanding $$repeat (called from M10)", 11));
}

TEST(MacroNesting, SimpleExpansionAllowsTenLevels) {
  // Each pass of simple expansion replaces one level: D1 -> D2 -> ... -> D10 -> "v".
  std::string text = "$$macro P(a) {{[$(a)]}}\n";
  for (int i = 1; i < 10; ++i) {
    text += "$$define D" + std::to_string(i) + " $(D" + std::to_string(i + 1) + ")\n";
  }
  text += "$$define D10 v\n";
  MacroHarness harness;
  testing::MacroRun ten = harness.run(text + "$$P(x$(D1))");
  EXPECT_EQ(ten.output, "[xv]");
  EXPECT_TRUE(ten.boxes.empty());

  testing::MacroRun eleven = harness.run(text + "$$define D0 $(D1)\n$$P(x$(D0))");
  ASSERT_EQ(eleven.boxes.size(), 1u);
  EXPECT_EQ(eleven.boxes[0], macroBox("Too many levels of simple macro recursion: x$(D0)", 13));
}

}  // namespace
}  // namespace zv
