// The macro processor's output for texts that expand without a message: the main loop, defines,
// definitions, both call forms, arguments, references, conditions, $$scan, $$exp and $$repeat.

#include <gtest/gtest.h>

#include <ostream>

#include "formats/macro_fixture.h"

namespace zv {
namespace {

using testing::MacroHarness;
using testing::tinyEvaluator;

struct ExpandCase {
  const char* label;
  std::string input;
  std::string expected;
};

void PrintTo(const ExpandCase& c, std::ostream* os) {
  *os << c.label;
}

const std::string kPair = "$$macro Pair(a, b) {{<$(a)|$(b)>}}\n";

const ExpandCase kCases[] = {
    // The main loop.
    {"dollar_other_passes", "cost $5 and $x\n", "cost $5 and $x\n"},
    {"dollar_at_end", "a$", "a$"},
    {"dollar_before_line_end", "a$\r\nb", "a$\r\nb"},
    {"plain_text", "item \"x\" end\r\n", "item \"x\" end\r\n"},
    // Defines.
    {"define_and_reference", "$$define CAT Skills\ncat $(CAT)\n", "cat Skills\n"},
    {"define_joined_lines", "$$define LONG one \\\r\ntwo\r\n[$(LONG)]\r\n", "[one two]\r\n"},
    {"define_joined_bare_lf", "$$define LONG a\\\nb\n[$(LONG)]", "[ab]"},
    {"define_backslash_stays", "$$define P a\\tb\n$(P)", "a\\tb"},
    {"define_replaced", "$$define A 1\n$$define a 2\n$(A)", "2"},
    {"define_blanks_skipped", "$$define  A \t  v w \n[$(A)]", "[v w ]"},
    {"define_name_cut_at_31",
     "$$define ABCDEFGHIJKLMNOPQRSTUVWXYZ012345 v\n$(ABCDEFGHIJKLMNOPQRSTUVWXYZ01234)", "v"},
    {"define_empty_value", "$$define E\n[$(E)]", "[]"},
    {"reference_value_expanded", "$$define A [$(B)]\n$$define B b\n$(A)", "[b]"},
    {"reference_value_with_call", kPair + "$$define A $$Pair(1,2)\n$(A)", "<1|2>"},
    // Definitions.
    {"line_breaks_after_definition_dropped", "$$macro B() {{\r\n\r\nab}}\r\n\r\nX$$B()", "Xab"},
    {"inner_line_end_kept", "$$macro Pair(a, b) {{\n<$(a)|$(b)>\n}}\n$$Pair(x, y)\n", "<x|y>\n\n"},
    {"single_brace_in_body", "$$macro B() {{a}b}}\n$$B()", "a}b"},
    {"third_brace_after_body", "$$macro B() {{a}}}\n$$B()", "}\na"},
    {"dollar_in_body", "$$macro M() {{a$b $}}\n$$M()", "a$b $"},
    {"definition_spans_lines", "$$macro M(a,\n  b)\n{{[$(b)]}}\n$$M(1,2)", "[2]"},
    {"description_directives_removed",
     "$$macro M(a) {{$$macrodesc(Adds) \n$$argdesc(a, The a)\r\n$$hideMacro(x) [$(a)]}}\n"
     "$$M(1)",
     "[1]"},
    {"underscore_names", "$$macro M(my_arg) {{[$(my_arg)]}}\n$$M(v)", "[v]"},
    // Calls and arguments.
    {"bracket_call", kPair + "$$Pair(x, y)", "<x|y>"},
    {"bracket_call_space_before_paren", kPair + "$$Pair  (x,y)", "<x|y>"},
    {"call_ignores_case", kPair + "$$PAIR(x,y)", "<x|y>"},
    {"tab_call", kPair + "$$Pair\tx\ty\nnext", "<x|y>\nnext"},
    {"tab_call_blanks_skipped", kPair + "$$Pair\t  x  \t y \r\n", "<x|y>\r\n"},
    {"tab_call_at_end", kPair + "$$Pair\tx", "<x|>"},
    {"fewer_arguments_are_empty", kPair + "$$Pair(1)", "<1|>"},
    {"no_arguments", kPair + "$$Pair()", "<|>"},
    {"trailing_empty_arguments_dropped", kPair + "$$Pair(1,2,,)", "<1|2>"},
    {"empty_first_argument", kPair + "$$Pair(,2)", "<|2>"},
    {"raw_argument_keeps_trailing_blank", kPair + "$$Pair(x , y)", "<x |y>"},
    {"arguments_across_lines", kPair + "$$Pair(1,\r\n   2\r\n)", "<1|2\r\n>"},
    {"quoted_argument_with_comma", "$$macro Q(a) {{x$(a)x \"x$(a)x\"}}\n$$Q(\"p, q\")",
     "x\"p, q\"x \"xp, qx\""},
    {"quoted_argument_keeps_escapes", kPair + "$$Pair(\"a\\\"b\", y)", "<\"a\\\"b\"|y>"},
    {"reference_at_argument_start", kPair + "$$define D dv\n$$Pair($(D)x, y)", "<dvx|y>"},
    {"simple_expansion_drops_quotes", kPair + "$$define D \"q\"\n$$Pair(a$(D)b, y)", "<aqb|y>"},
    {"simple_expansion_repeats", kPair + "$$define D $(E)\n$$define E e\n$$Pair(a$(D), y)",
     "<ae|y>"},
    {"call_in_body", "$$macro In(v) {{<$(v)>}}\n$$macro Out(a) {{[$$In($(a))]}}\n$$Out(z)",
     "[<z>]"},
    {"tab_call_in_body_keeps_line_end",
     "$$macro In(v) {{<$(v)>}}\n$$macro Out(a) {{$$In\t$(a)\n.}}\n$$Out(z)", "<z>\n."},
    {"argument_from_caller_frame",
     "$$macro In(v) {{<$(v)>}}\n$$macro Out(a) {{$$In(x$(a)y)}}\n$$Out(z)", "<xzy>"},
    {"arguments_shadow_defines", "$$define a def\n$$macro M(a) {{$(a)}}\n$$M(arg)", "arg"},
    {"defines_seen_in_body", "$$define d def\n$$macro M(a) {{$(d)}}\n$$M(arg)", "def"},
    {"inner_frame_does_not_see_outer_args",
     "$$define v def\n$$macro In() {{$(v)}}\n$$macro Out(v) {{$$In()}}\n$$Out(arg)", "def"},
    {"quoted_value_outside_and_inside_quotes",
     "$$define V \"w\"\n$$macro M() {{$(V) \"$(V)\"}}\n$$M()", "\"w\" \"w\""},
    {"escaped_quote_does_not_flip", "$$define V \"w\"\n$$macro M() {{\\\"$(V)}}\n$$M()",
     "\\\"\"w\""},
    {"top_level_reference_has_no_quoted_state", "$$define V \"w\"\n\"$(V)\"", "\"\"w\"\""},
    {"empty_value_gives_nothing", "$$macro M(a) {{[$(a)]}}\n$$M()", "[]"},
    // Conditions.
    {"ifdef_missing_argument",
     "$$macro Opt(a, b) {{$$ifdef(b)[$(b)]$$else[none]$$endif}}\n"
     "$$Opt(1)$$Opt(1,2)",
     "[none][2]"},
    {"ifnull", "$$macro N(a, b) {{$$ifnull( b )null$$else$(b)$$endif}}\n$$N(1) $$N(1,x)", "null x"},
    {"false_branch_has_no_errors",
     "$$macro F() {{$$if(0)$(nope)$$Nope(1)$$ifdef(zz)$$endif$$bad words$$endif ok}}\n$$F()",
     " ok"},
    {"false_branch_define_consumed",
     "$$define d old\n$$macro F() {{$$if(0)$$define d new\n$$endif$(d)}}\n$$F()", "old"},
    {"true_branch_define", "$$macro F() {{$$if(1)$$define d new\n$$endif}}\n$$F()$(d)", "new"},
    {"elseif_chain",
     "$$macro C(n) {{$$if(n)one$$elseif(0)no$$elseif(1)two$$elseif(1)three$$else"
     "other$$endif}}\n$$C(0)",
     "two"},
    {"elseif_after_taken_branch_not_evaluated",
     "$$macro C() {{$$if(1)one$$elseif(bad)x$$else two$$endif}}\n$$C()", "one"},
    {"else_in_false_enclosing",
     "$$macro C() {{$$if(0)$$if(0)a$$else b$$endif$$else c$$endif}}\n$$C()", " c"},
    {"ten_nested_ifs",
     "$$macro M() {{$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)$$if(1)x"
     "$$endif$$endif$$endif$$endif$$endif$$endif$$endif$$endif$$endif$$endif}}\n$$M()",
     "x"},
    {"if_expression_with_parentheses_and_quotes",
     "$$macro M() {{$$if((1))a$$endif$$if('1)')b$$endif$$if(')')c$$endif}}\n$$M()", "ab"},
    {"if_negative_is_false", "$$macro M() {{$$if(-1)a$$else b$$endif}}\n$$M()", " b"},
    {"conditions_belong_to_their_frame",
     "$$macro In() {{$$if(1)in$$endif}}\n$$macro Out() {{$$if(0)$$In()$$else$$In()$$endif}}\n"
     "$$Out()",
     "in"},
    // $$scan.
    {"scan",
     "$$macro Dice(d) {{$$scan(d, \"([0-9]+)d([0-9]+)\", num, sides)[$(num)|$(sides)]}}\n"
     "$$Dice(3d6)",
     "[3|6]"},
    {"scan_starts_at_first_nonempty_group",
     "$$macro S(v) {{$$scan(v, \"(a)?(b)(c)\", x, y)[$(x)|$(y)]}}\n$$S(zbc)", "[b|c]"},
    {"scan_no_match_gives_empty", "$$macro S(v) {{$$scan(v, 'q(.)', x)[$(x)]}}\n$$S(abc)", "[]"},
    {"scan_groups_beyond_nine_are_empty",
     "$$macro S(v) {{$$scan(v, \"(.)(.)\", x, y, z)[$(x)$(y)$(z)]}}\n$$S(ab)", "[ab]"},
    {"scan_strips_quotes", "$$define q \"ab\"\n$$macro S() {{$$scan(q, \"(.*)\", x)[$(x)]}}\n$$S()",
     "[ab]"},
    {"scan_keeps_two_quotes",
     "$$define q \"\"\n$$macro S() {{$$scan(q, \"(.+)\", x)[$(x)]}}\n$$S()", "[\"\"]"},
    {"scan_in_false_branch_defines_nothing",
     "$$define x old\n$$macro S(v) {{$$if(0)$$scan(v, \"(.*)\", x)$$endif$(x)}}\n$$S(new)", "old"},
    {"scan_format_escapes", "$$macro S(v) {{$$scan(v, \"a\\.(.)\", x)[$(x)]}}\n$$S(xa.b)", "[b]"},
    // $$error in a false branch, $$exp.
    {"error_in_false_branch", "$$macro M() {{$$if(0)$$error(no)$$endif ok}}\n$$M()", " ok"},
    {"exp_text", "$$macro E() {{[$$exp(\"'hi'\")]}}\n$$E()", "[hi]"},
    {"exp_in_false_branch", "$$macro E() {{[$$if(0)$$exp(\"bad\")$$endif]}}\n$$E()", "[]"},
    // $$repeat.
    {"repeat_separator_between", "$$repeat(\"a,b,c\", x, \",\", \";\") $(x) $$endrepeat",
     " a ; b ; c "},
    {"repeat_without_separator", "$$repeat('a b', w, ' ')[$(w)]$$endrepeat", "[a][b]"},
    {"repeat_empty_value_one_piece", "$$repeat(\"\", w, \",\")[$(w)]$$endrepeat", "[]"},
    {"repeat_trailing_separator_gives_empty_piece",
     "$$repeat(\"a,\", w, \",\", \"+\")[$(w)]$$endrepeat", "[a]+[]"},
    {"repeat_nested",
     "$$repeat(\"1,2\", i, \",\")$$repeat(\"a;b\", j, \";\")$(i)$(j) $$endrepeat$$endrepeat",
     "1a 1b 2a 2b "},
    {"repeat_sees_outer_frame",
     "$$macro Row(pre, items) {{$$repeat($(items), it, \";\", \"+\")$(pre)$(it)$$endrepeat}}\n"
     "$$Row(x, a;b)",
     "xa+xb"},
    {"repeat_pattern_from_define",
     "$$define SEP ,\n$$repeat(\"a,b\", x, \"$(SEP)\", \"-\")$(x)$$endrepeat", "a-b"},
    {"repeat_escaped_reference_not_expanded",
     "$$define SEP ,\n$$repeat(\"a$SEPb\", x, \"\\$(SEP)\", \"-\")$(x)$$endrepeat", "a-b"},
    {"repeat_empty_match_moves_on", "$$repeat(\"axb\", x, \"x*\", \"-\")$(x)$$endrepeat", "a-b"},
    {"repeat_regex_pieces", "$$repeat(\"a1b22c\", x, \"[0-9]+\", \".\")$(x)$$endrepeat", "a.b.c"},
    {"repeat_in_false_branch_dropped",
     "$$macro M() {{$$if(0)$$repeat(\"a,b\", x, \",\")$(x)$$endrepeat$$endif.}}\n$$M()", "."},
    {"repeat_quoted_value_trap",
     "$$macro Row(items) {{$$repeat($(items), it, \",\", \"+\")[$(it)]$$endrepeat}}\n"
     "$$Row(\"a,b\")",
     "[\"a]+[b\"]"},
    {"repeat_in_quoted_stretch_strips",
     "$$define L \"a,b\"\n$$macro Row() {{\"$$repeat($(L), it, \",\", \"+\")$(it)$$endrepeat}}\n"
     "$$Row()",
     "\"a+b"},
    {"repeat_words_ignore_case",
     "$$REPEAT(\"1,2\", i, \",\")[$$Repeat(\"a\", j, \",\")$(j)$$EndRepeat]$$ENDREPEAT", "[a][a]"},
    {"repeat_separator_escapes", "$$repeat(\"a,b\", x, \",\", \"\\n\")$(x)$$endrepeat", "a\nb"},
};

class MacroExpandTest : public ::testing::TestWithParam<ExpandCase> {};

TEST_P(MacroExpandTest, ExpandsWithoutMessages) {
  const ExpandCase& c = GetParam();
  MacroHarness harness;
  harness.context.setExpressionEvaluator(tinyEvaluator);
  testing::MacroRun run = harness.run(c.input);
  EXPECT_EQ(run.output, c.expected);
  EXPECT_TRUE(run.boxes.empty()) << run.boxes.front();
  EXPECT_FALSE(harness.context.failed());
}

INSTANTIATE_TEST_SUITE_P(Cases, MacroExpandTest, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.label); });

// The expression engine itself behind $$if, $$elseif and $$exp.
struct EngineCase {
  const char* label;
  std::string input;
  std::string expected;
};

void PrintTo(const EngineCase& c, std::ostream* os) {
  *os << c.label;
}

const EngineCase kEngineCases[] = {
    {"exp_sum", "$$macro E() {{[$$exp(\"2+3\")]}}\n$$E()", "[5]"},
    {"if_names_are_values",
     "$$macro Big(n) {{$$if(n>2)[big]$$else[small]$$endif}}\n$$Big(3)$$Big(1)", "[big][small]"},
    {"bad_expression_in_false_branch",
     "$$macro F() {{$$if(0)$$if(1 +* 2)[x]$$endif$$else[ok]$$endif}}\n$$F()", "[ok]"},
    {"exp_with_argument", "$$macro E(a, b) {{$$exp(\"a*b\")}}\n$$E(6, 7)", "42"},
    {"elseif_engine", "$$macro C(n) {{$$if(n>5)big$$elseif(n>2)mid$$else small$$endif}}\n$$C(4)",
     "mid"},
};

class MacroEngineTest : public ::testing::TestWithParam<EngineCase> {};

TEST_P(MacroEngineTest, EvaluatesThroughTheExpressionEngine) {
  const EngineCase& c = GetParam();
  MacroHarness harness;
  testing::MacroRun run = harness.run(c.input);
  EXPECT_EQ(run.output, c.expected);
  EXPECT_TRUE(run.boxes.empty()) << run.boxes.front();
}

INSTANTIATE_TEST_SUITE_P(Cases, MacroEngineTest, ::testing::ValuesIn(kEngineCases),
                         [](const auto& info) { return std::string(info.param.label); });

}  // namespace
}  // namespace zv
