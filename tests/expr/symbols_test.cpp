// Symbol tables and definitions: variables, bases, arrays, functions, placeholders, deletion,
// references and literal texts.

#include <string>
#include <vector>

#include "expr/evaluator.h"
#include "expr_test_support.h"

namespace zv::testing {
namespace {

class SymbolsTest : public ExprTest {};

TEST_F(SymbolsTest, TableKeepsNamesSortedIgnoringCase) {
  for (const char* name : {"zeta", "Alpha", "beta", "GAMMA", "delta"}) {
    ASSERT_NE(table_.add(name), nullptr) << name;
  }
  EXPECT_EQ(table_.add("ALPHA"), nullptr);
  ASSERT_EQ(table_.size(), 5u);
  std::vector<std::string> order;
  for (std::size_t i = 0; i < table_.size(); ++i)
    order.push_back(table_.at(i).name);
  EXPECT_EQ(order, (std::vector<std::string>{"Alpha", "beta", "delta", "GAMMA", "zeta"}));
  std::size_t position = 99;
  EXPECT_TRUE(table_.findSlot("Gamma", position));
  EXPECT_EQ(position, 3u);
  EXPECT_FALSE(table_.findSlot("epsilon", position));
  EXPECT_EQ(position, 3u);
}

TEST_F(SymbolsTest, NestedTableIsSearchedFirst) {
  SymbolTable inner;
  define("shared", "1");
  ASSERT_NE(defineVariable(inner, "shared", "2"), nullptr);
  ASSERT_NE(defineVariable(inner, "onlyInner", "3"), nullptr);
  table_.nestedTable = &inner;
  EXPECT_EQ(eval("shared * 10 + onlyinner"), "int 23");
  table_.nestedTable = nullptr;
  EXPECT_EQ(eval("shared"), "int 1");
}

TEST_F(SymbolsTest, LongNamesAreKeptToSixtyFourBytes) {
  std::string name(70, 'q');
  name[0] = 'A';
  define(name, "42");
  EXPECT_EQ(table_.find(name.substr(0, 64))->name.size(), 64u);
  EXPECT_EQ(eval(name), "int 42");
  EXPECT_EQ(eval(name.substr(0, 64)), "int 42");
}

TEST_F(SymbolsTest, ConstantExpressionsKeepNoCode) {
  Symbol& a = define("a", "2 * 3");
  EXPECT_TRUE(a.constant());
  EXPECT_FALSE(a.hasCode());
  EXPECT_EQ(describe(a.value), "int 6");
  Symbol& b = define("b", "a + 1");
  EXPECT_FALSE(b.constant());
  EXPECT_TRUE(b.hasCode());
  EXPECT_EQ(describe(b.value), "int 7");
}

TEST_F(SymbolsTest, BaseValues) {
  Symbol& x = define("x", "0");
  EXPECT_EQ(setBaseValue(table_, x, 3.0), 0);
  EXPECT_TRUE(x.hasBase());
  EXPECT_EQ(eval("x"), "float 3");
  EXPECT_EQ(eval("&x"), "float 3");
  EXPECT_EQ(setExpression(table_, x, "5"), 0);
  EXPECT_EQ(eval("x"), "int 5");
  EXPECT_EQ(eval("~x"), "int 2");
  EXPECT_EQ(eval("&x"), "float 3");
  define("r", "7.5");
  setBaseValue(table_, *table_.find("r"), 2.0);
  EXPECT_EQ(eval("~r"), "float 5.5");
  define("s", "\"text\"");
  setBaseValue(table_, *table_.find("s"), 4.7);
  EXPECT_EQ(eval("~s"), "int 4");
  EXPECT_DOUBLE_EQ(getBaseValue(table_.find("s")), 4.7);
  EXPECT_DOUBLE_EQ(getBaseValue(nullptr), 0.0);
}

TEST_F(SymbolsTest, SelfBaseReferenceIsAllowed) {
  Symbol& a = define("a", "&a + 1");
  EXPECT_EQ(describe(a.value), "float 1");
  EXPECT_EQ(setBaseValue(table_, a, 2.0), 0);
  EXPECT_EQ(describe(a.value), "float 3");
}

TEST_F(SymbolsTest, ForwardReferenceMakesAPlaceholder) {
  Symbol& c = define("c", "a + 1");
  EXPECT_EQ(describe(c.value), "float 1");
  Symbol* a = table_.find("a");
  ASSERT_NE(a, nullptr);
  EXPECT_TRUE(a->undefined());
  EXPECT_EQ(define("a", "5").undefined(), false);
  EXPECT_EQ(describe(c.value), "int 6");
}

TEST_F(SymbolsTest, Redefinition) {
  define("x", "1");
  EXPECT_EQ(defineVariable(table_, "x", "2"), nullptr);
  EXPECT_EQ(lastErrorCode(), -2);
  EXPECT_EQ(expressionErrorText(), "Variable redefined x");
  EXPECT_EQ(defineVariable(table_, "X", "2"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Variable redefined X");
}

TEST_F(SymbolsTest, FailedDefinitionStaysInTheTable) {
  EXPECT_EQ(defineVariable(table_, "v", "1 +"), nullptr);
  EXPECT_EQ(lastErrorCode(), -5);
  Symbol* v = table_.find("v");
  ASSERT_NE(v, nullptr);
  EXPECT_FALSE(v->undefined());
  EXPECT_EQ(defineVariable(table_, "v", "2"), nullptr);
  EXPECT_EQ(lastErrorCode(), -2);
  EXPECT_EQ(setExpression(table_, *v, "2"), 0);
  EXPECT_EQ(eval("v"), "int 2");
}

TEST_F(SymbolsTest, Recursion) {
  define("b", "a");
  EXPECT_EQ(defineVariable(table_, "a", "b"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Variable recursively defined");
  define("c", "1");
  define("d", "c + 1");
  define("e", "d * 2");
  Symbol* c = table_.find("c");
  EXPECT_EQ(setExpression(table_, *c, "e"), -1);
  EXPECT_EQ(lastErrorCode(), -4);
  EXPECT_EQ(eval("e"), "int 4");  // the old definition of c stands

  // A direct self-reference fails without an error code of its own.
  EXPECT_EQ(defineVariable(table_, "self", "self + 1"), nullptr);
  EXPECT_GT(lastErrorCode(), 0);
  EXPECT_FALSE(table_.find("self")->hasCode());
  EXPECT_EQ(defineVariable(table_, "self2", "~self2 + 1"), nullptr);
}

TEST_F(SymbolsTest, DeletingAVariable) {
  define("a", "5");
  Symbol& c = define("c", "a + 1");
  EXPECT_EQ(describe(c.value), "int 6");
  Symbol* a = table_.find("a");
  EXPECT_TRUE(deleteSymbol(table_, *a));
  ASSERT_EQ(table_.find("a"), a);  // kept as a placeholder for c
  EXPECT_TRUE(a->undefined());
  EXPECT_EQ(describe(c.value), "float 1");
  define("a", "7");
  EXPECT_EQ(describe(c.value), "int 8");

  Symbol& lonely = define("lonely", "3");
  EXPECT_TRUE(deleteSymbol(table_, lonely));
  EXPECT_EQ(table_.find("lonely"), nullptr);

  Symbol& based = define("based", "3");
  setBaseValue(table_, based, 1.0);
  EXPECT_TRUE(deleteSymbol(table_, based));
  EXPECT_EQ(table_.find("based"), &based);
  EXPECT_TRUE(based.undefined());
}

TEST_F(SymbolsTest, DeletingASymbolOfAnotherTable) {
  SymbolTable other;
  Symbol* stranger = defineVariable(other, "a", "1");
  define("a", "2");
  EXPECT_FALSE(deleteSymbol(table_, *stranger));
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Variable found in slot is different from one being deleted: a.");
  EXPECT_FALSE(deleteSymbol(table_, *defineVariable(other, "b", "1")));
}

TEST_F(SymbolsTest, DeletingAFunctionLeavesOneThatReturnsZero) {
  ASSERT_NE(defineFunction(table_, "f(x)", "x * 10"), nullptr);
  Symbol& g = define("g", "f(2) + 1");
  EXPECT_EQ(describe(g.value), "int 21");
  Symbol* f = table_.find("f");
  EXPECT_TRUE(deleteSymbol(table_, *f));
  EXPECT_EQ(describe(g.value), "int 1");
  EXPECT_TRUE(f->isFunction());
  EXPECT_EQ(f->parameterCount, 1);
  EXPECT_TRUE(f->undefined());
  ASSERT_NE(defineFunction(table_, "f(x)", "x * 100"), nullptr);
  EXPECT_EQ(describe(g.value), "int 201");
}

TEST_F(SymbolsTest, Functions) {
  ASSERT_NE(defineFunction(table_, "sq(x)", "x * x"), nullptr);
  ASSERT_NE(defineFunction(table_, "add2(a, b)", "a + b"), nullptr);
  ASSERT_NE(defineFunction(table_, "none()", "42"), nullptr);
  EXPECT_EQ(eval("sq(4)"), "int 16");
  EXPECT_EQ(eval("sq(1, 2)"), "int 1");
  EXPECT_EQ(eval("0 + add2(5)"), "int 5");
  EXPECT_EQ(eval("add2(5)"), "error -5: Stack underflow or missing argument");
  EXPECT_EQ(eval("add2(2, 3) * sq(2)"), "int 20");
  EXPECT_EQ(eval("sq(sq(2) + 1)"), "int 25");
  EXPECT_EQ(table_.find("sq")->parameterCount, 1);
  EXPECT_EQ(table_.find("add2")->parameterCount, 2);
}

TEST_F(SymbolsTest, FunctionHeaderErrors) {
  struct Case {
    const char* header;
    int code;
    const char* text;
  };
  const Case cases[] = {
      {"(x)", -17, "Function name expected"},
      {"f(1)", -16, "Symbol expected for argument"},
      {"f(x, X)", -13, "Duplicate argument: X"},
      {"f(x", -15, "Incomplete function definition"},
      {"f(x y)", -14, "Comma or parenthesis expected in function definition"},
      {"f(x = 1)", -14, "Comma or parenthesis expected in function definition"},
      {"abs(x)", -33, "Name is a reserved word: abs"},
      {"while(x)", -33, "Name is a reserved word: while"},
      {"f(a,b,c,d,e,f,g,h,i,j,k)", -14, "Comma or parenthesis expected in function definition"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(defineFunction(table_, c.header, "1"), nullptr) << c.header;
    EXPECT_EQ(lastErrorCode(), c.code) << c.header;
    EXPECT_EQ(expressionErrorText(), c.text) << c.header;
  }
  EXPECT_NE(defineFunction(table_, "ten(a,b,c,d,e,f,g,h,i,j)", "j"), nullptr);
}

TEST_F(SymbolsTest, FunctionsNeverRecurse) {
  EXPECT_EQ(defineFunction(table_, "f(x)", "f(x) + 1"), nullptr);
  EXPECT_EQ(table_.find("f"), nullptr);
}

TEST_F(SymbolsTest, ForwardReferencedFunctionIsRefused) {
  define("user", "later + 1");
  EXPECT_EQ(defineFunction(table_, "later(x)", "x"), nullptr);
  EXPECT_EQ(expressionErrorText(), "Variable redefined later");
}

TEST_F(SymbolsTest, Arrays) {
  ASSERT_NE(defineArray(table_, "t[]", "10, 20, 30"), nullptr);
  struct Case {
    const char* text;
    const char* expected;
  };
  const Case cases[] = {
      {"t[0]", "int 10"},     {"t[1000]", "int 30"}, {"t[-5]", "int 10"},    {"t[2]", "int 20"},
      {"t[\"2\"]", "int 20"}, {"t[2.9]", "int 20"},  {"t[1+1]*2", "int 40"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.text), c.expected) << c.text;

  Symbol* mixed = defineArray(table_, "m[]", "-5, +2.5, 'x', \"a\\nb\"");
  ASSERT_NE(mixed, nullptr);
  ASSERT_EQ(mixed->elements.size(), 4u);
  EXPECT_EQ(describe(mixed->elements[0]), "int -5");
  EXPECT_EQ(describe(mixed->elements[1]), "float 2.5");
  EXPECT_EQ(describe(mixed->elements[2]), "string \"x\"");
  EXPECT_EQ(describe(mixed->elements[3]), "string \"a\r\nb\"");

  Symbol* sized = defineArray(table_, "s[3]", "1, 2");
  ASSERT_NE(sized, nullptr);
  EXPECT_EQ(sized->elements.size(), 3u);
  EXPECT_EQ(eval("s[3]"), "int 0");
  Symbol* empty = defineArray(table_, "e[0]", "1, 2, 3");
  ASSERT_NE(empty, nullptr);
  EXPECT_TRUE(empty->elements.empty());
  EXPECT_EQ(eval("e[1]"), "int 0");

  Symbol* big = defineArray(table_, "big[]", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20");
  ASSERT_NE(big, nullptr);
  EXPECT_EQ(big->elements.size(), 20u);
  EXPECT_EQ(eval("big[17]"), "int 17");
}

TEST_F(SymbolsTest, ArrayErrors) {
  struct Case {
    const char* header;
    const char* body;
    int code;
    const char* text;
  };
  const Case cases[] = {
      {"t2[2]", "1, 2, 3", -11, "Error in array definition"},
      {"t3[]", "1, foo", -31, "Error in array t3, element 2"},
      {"t4[]", "1, 2 3", -31, "Error in array t4, element 3"},
      {"t5[]", "-'x'", -31, "Error in array t5, element 1"},
      {"and[]", "1", -33, "Name is a reserved word: and"},
      {"5[]", "1", -33, "Name is a reserved word: 5"},
      {"t6(3)", "1", -11, "Error in array definition"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(defineArray(table_, c.header, c.body), nullptr) << c.header;
    EXPECT_EQ(lastErrorCode(), c.code) << c.header;
    EXPECT_EQ(expressionErrorText(), c.text) << c.header;
  }
  EXPECT_EQ(table_.find("t3"), nullptr);  // a failure deletes the array
  define("v", "3");
  EXPECT_EQ(eval("v[1]"), "error -6: Variable of wrong type for indexing or array undefined");
}

TEST_F(SymbolsTest, ArrayOperations) {
  Symbol* a = defineArray(table_, "a[]", "1, 2");
  ASSERT_NE(a, nullptr);
  sizeArray(*a, 3);
  EXPECT_EQ(a->elements.size(), 3u);
  EXPECT_EQ(describe(a->elements[0]), "int 0");
  EXPECT_TRUE(setArrayElement(*a, 2, Value("z")));
  EXPECT_FALSE(setArrayElement(*a, 3, Value(1)));
  EXPECT_EQ(eval("a[3]"), "string \"z\"");
  clearArray(*a);
  EXPECT_TRUE(a->elements.empty());
}

TEST_F(SymbolsTest, CallbacksAndOwnerApplyToVariablesOnly) {
  Symbol* array = defineArray(table_, "arr[]", "1");
  ASSERT_NE(array, nullptr);
  ASSERT_NE(defineFunction(table_, "fn(x)", "x"), nullptr);
  Symbol& variable = define("var", "1");
  auto callback = [](Symbol&, void*) {};
  for (Symbol* s : {array, table_.find("fn")}) {
    EXPECT_EQ(setCallback(*s, callback, nullptr), -1);
    EXPECT_EQ(setOwnerItem(*s, nullptr), -1);
    Value out;
    EXPECT_EQ(getValue(*s, out), -1);
  }
  int data = 7;
  EXPECT_EQ(setCallback(variable, callback, &data), 0);
  SymbolCallback got = nullptr;
  void* gotData = nullptr;
  EXPECT_EQ(getCallback(variable, got, gotData), 0);
  EXPECT_EQ(got, static_cast<SymbolCallback>(callback));
  EXPECT_EQ(gotData, &data);
  Value out;
  EXPECT_EQ(getValue(variable, out), 0);
  EXPECT_EQ(describe(out), "int 1");
}

TEST_F(SymbolsTest, NextReferenceWalksTheCode) {
  define("p", "1");
  define("q", "2");
  ASSERT_NE(defineArray(table_, "arr[]", "5"), nullptr);
  ASSERT_NE(defineFunction(table_, "fn(x)", "x"), nullptr);
  Symbol& user = define("user", "p + fn(q) + arr[1] + &p + ~q");
  std::vector<std::string> names;
  Symbol* referenced = nullptr;
  for (long at = nextReference(user, 0, referenced); at >= 0;
       at = nextReference(user, at, referenced)) {
    names.push_back(referenced->name);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"p", "q", "fn", "arr", "p", "q"}));
}

TEST_F(SymbolsTest, LiteralTexts) {
  struct Case {
    const char* text;
    bool literal;
  };
  const Case cases[] = {
      {"5", true},       {"-5", true},      {" 2.5 ", true},  {"'abc'", true},
      {"\"abc\"", true}, {"-'abc'", false}, {"5 + 1", false}, {"x", false},
      {"", false},       {"-", false},      {"1\xBD", true},  {"\"abc", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(isLiteralText(c.text), c.literal) << c.text;
}

TEST_F(SymbolsTest, ReadingFlag) {
  EXPECT_FALSE(isReading());
  setReading(true);
  EXPECT_TRUE(isReading());
  setReading(false);
  EXPECT_FALSE(isReading());
}

TEST_F(SymbolsTest, ClearingATableUnlinksReferencesIntoOthers) {
  SymbolTable globals;
  Symbol* level = defineVariable(globals, "level", "3");
  ASSERT_NE(level, nullptr);
  {
    SymbolTable sheet;
    sheet.nestedTable = &globals;
    ASSERT_NE(defineVariable(sheet, "twice", "level * 2"), nullptr);
    EXPECT_EQ(level->dependents.size(), 1u);
  }
  EXPECT_TRUE(level->dependents.empty());
  EXPECT_EQ(setExpression(globals, *level, "4"), 0);
}

}  // namespace
}  // namespace zv::testing
