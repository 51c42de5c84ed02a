#include <gtest/gtest.h>

#include "builtin_test_support.h"

namespace zv::testing {
namespace {

class TextBuiltinsTest : public BuiltinTest {
 protected:
  void expectAll(std::initializer_list<BuiltinCase> cases) {
    for (const BuiltinCase& c : cases) {
      std::string shown;
      for (const Value& arg : c.args)
        shown += describe(arg) + "; ";
      EXPECT_EQ(run(c.name, c.args), c.expected) << c.name << "(" << shown << ")";
    }
  }
};

TEST_F(TextBuiltinsTest, BytesLengthsAndParts) {
  expectAll({
      {"chrval", {I(65)}, "string \"A\""},
      {"chrval", {I(189)}, "string \"\xBD\""},
      {"chrval", {I(256 + 66)}, "string \"B\""},
      {"chrval", {I(0)}, "string \"\""},
      {"strlen", {S("\xBD")}, "int 1"},
      {"strlen", {S("")}, "int 0"},
      {"strlen", {I(-123)}, "int 4"},
      {"strlen", {F(0.5)}, "int 3"},  // "0.5" with fractions off
      {"substr", {S("abc"), I(2), I(99)}, "string \"bc\""},
      {"substr", {S("abc"), I(0), I(1)}, "string \"\""},
      {"substr", {S("abc"), I(4), I(1)}, "string \"\""},
      {"substr", {S("abcdef"), I(2), I(3)}, "string \"bcd\""},
      {"substr", {S("abc"), I(2), I(-1)}, "string \"\""},
      {"substr", {S("abc"), I(3), I(1)}, "string \"c\""},
      {"substr", {I(12345), S("2"), F(2.9)}, "string \"23\""},
      {"substr", {S("abc"), I(2)}, "error -5"},
  });
}

TEST_F(TextBuiltinsTest, LengthFollowsTheFractionPreference) {
  engineContext_->preferences.useFractions = true;
  EXPECT_EQ(run("strlen", {F(0.5)}), "int 1");
  EXPECT_EQ(run("concat", {S("a"), F(2.5)}), "string \"a2\xBD\"");
  engineContext_->preferences.useFractions = false;
  EXPECT_EQ(run("concat", {S("a"), F(2.5)}), "string \"a2.5\"");
}

TEST_F(TextBuiltinsTest, Strindex) {
  expectAll({
      {"strindex", {S("Hello World"), S("WORLD")}, "int 7"},
      {"strindex", {S("abc"), S("d")}, "int 0"},
      {"strindex", {S("ABC"), S("b")}, "int 2"},
      {"strindex", {S("a1b22"), S("/[0-9]+/")}, "int 2"},
      {"strindex", {S("ABC"), S("/b/")}, "int 0"},  // a pattern minds case
      {"strindex", {S("a/b"), S("/")}, "int 2"},    // one slash is searched for as it stands
      {"strindex", {S("xyz"), S("//")}, "int 1"},   // the empty pattern matches at once
      {"strindex", {S("x12"), I(12)}, "int 2"},
  });
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(TextBuiltinsTest, StrindexReportsABadPattern) {
  EXPECT_EQ(run("strindex", {S("abc"), S("/a(b/")}), "int 0");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Error in strindex regular expression pattern: unmatched ()");
}

TEST_F(TextBuiltinsTest, DupstrAndConcat) {
  expectAll({
      {"dupstr", {S("ab"), I(3)}, "string \"ababab\""},
      {"dupstr", {S("ab"), I(-2)}, "string \"\""},
      {"dupstr", {S("ab"), I(0)}, "string \"\""},
      {"dupstr", {S("ab"), I(40000)}, "error -39"},
      {"dupstr", {S("x"), I(65537)}, "error -39"},
      {"dupstr", {S(""), I(65537)}, "error -39"},
      {"dupstr", {I(7), I(2)}, "string \"77\""},
      {"concat", {S("ab"), S("cd")}, "string \"abcd\""},
      {"concat", {I(1), I(2)}, "string \"12\""},
      {"concat", {S(""), S("-"), S("x")}, "string \"x\""},
      {"concat", {S("a"), S("-"), S("x")}, "string \"a-x\""},
      {"concat", {S("a"), I(5), S("x")}, "string \"ax\""},
      {"concat", {I(0), S(", "), S("x")}, "string \"0, x\""},
      {"concat", {S("a")}, "error -5"},
      {"concat", {S("a"), S("b"), S("c"), S("d")}, "error -5"},
  });
  std::string longest;
  for (int i = 0; i < 32768; ++i)
    longest += "ab";
  EXPECT_EQ(run("dupstr", {S("ab"), I(32768)}), describe(Value(longest)));
  EXPECT_EQ(run("dupstr", {S("ab"), I(32769)}), "error -39");
}

TEST_F(TextBuiltinsTest, ConcatRefusesMoreThan32000Bytes) {
  std::string half(16000, 'a');
  EXPECT_EQ(run("concat", {S(half), S(half)}), describe(Value(half + half)));
  EXPECT_EQ(run("concat", {S(half), S(half + "b")}), "error -3");
  EXPECT_EQ(run("concat", {S(half), S("-"), S(half)}), "error -3");
}

TEST_F(TextBuiltinsTest, Case) {
  expectAll({
      {"tolower", {S("ABC \xC9t\xC9")}, "string \"abc \xE9t\xE9\""},
      {"toupper", {S("abc \xE9t\xE9")}, "string \"ABC \xC9T\xC9\""},
      {"toupper", {S("hello world"), I(1)}, "string \"Hello World\""},
      {"toupper", {S("o'neil mcDONALD-smith"), I(1)}, "string \"O'Neil McDONALD-Smith\""},
      {"toupper", {S("  \xE9t\xE9 2nd"), I(7)}, "string \"  \xC9t\xE9 2Nd\""},
      {"toupper", {S("hello world"), I(0)}, "string \"HELLO WORLD\""},
      {"toupper", {S("a"), I(1), I(1)}, "error -5"},
  });
}

TEST_F(TextBuiltinsTest, ReplaceString) {
  expectAll({
      {"replaceString", {S("Cat cat CAT"), S("cat"), S("dog")}, "string \"dog dog dog\""},
      {"replaceString", {S("aaa"), S("a"), S("aa")}, "string \"aaaaaa\""},
      {"replaceString", {S("abc"), S(""), S("x")}, "string \"abc\""},
      {"replaceString", {S("a\\1b"), S("a"), S("\\1")}, "string \"\\1\\1b\""},
      {"replaceString",
       {S("2024-01-05"), S("/([0-9]+)-([0-9]+)-([0-9]+)/"), S("\\3.\\2.\\1")},
       "string \"05.01.2024\""},
      {"replaceString", {S("aaa"), S("/^a/"), S("b")}, "string \"baa\""},
      {"replaceString", {S("aaa"), S("/a/"), S("b")}, "string \"bbb\""},
      {"replaceString", {S("Aa"), S("/a/"), S("b")}, "string \"Ab\""},
      {"replaceString", {S("x1y22"), S("/[0-9]+/"), S("<\\0>")}, "string \"x<1>y<22>\""},
      {"replaceString", {S("ab"), S("/x*/"), S("-")}, "string \"-a-b-\""},
      {"replaceString",
       {S("a//b"), S("//"), S("-")},
       "string \"a-b\""},  // too short to be a pattern
      {"replaceString", {S("a.b"), S("/\\./"), S("\\")}, "string \"a\\b\""},
  });
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(TextBuiltinsTest, ReplaceStringReportsABadPattern) {
  EXPECT_EQ(run("replaceString", {S("abc"), S("/a**/"), S("x")}), "string \"\"");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Illegal regular expression in replaceString: nested *?+");
}

TEST_F(TextBuiltinsTest, ReplaceToken) {
  expectAll({
      {"replaceToken", {S("x + X*2"), S("x"), S("7")}, "string \"7 + 7*2\""},
      {"replaceToken", {S("$n is $N"), S("$n"), S("Bob")}, "string \"Bob is Bob\""},
      {"replaceToken", {S("abc"), S("z"), I(5)}, "string \"abc\""},
      {"replaceToken", {S("level"), S("lev"), F(1.5)}, "string \"1.5el\""},
  });
  std::string big(20000, 'x');
  EXPECT_EQ(run("replaceToken", {S(big), S("x"), S("yy")}), describe(Value(big)));
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0], "[Error] Error in replaceToken -- temporary string too small");
}

TEST_F(TextBuiltinsTest, ArraysHaveNoTextForm) {
  Symbol& array = makeArray("t", {I(1)});
  EXPECT_EQ(run("strlen", {Value::arrayRef(&array)}), "error -6");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0], "[Error] Error in forceString");
}

}  // namespace
}  // namespace zv::testing
