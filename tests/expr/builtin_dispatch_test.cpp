// How compiled code reaches the built-in functions: the table, argument counts and order, the
// current item, errors, and what an unregistered built-in gives.

#include <string>
#include <vector>

#include "core/item.h"
#include "expr/builtin_call.h"
#include "expr/builtin_table.h"
#include "expr/opcodes.h"
#include "expr_test_support.h"

namespace zv::testing {
namespace {

constexpr int kItemInfo = 24;     // one argument
constexpr int kSetVariable = 57;  // two arguments
constexpr int kConcat = 20;       // any number
constexpr int kCountItems = 18;   // four arguments
constexpr int kEval = 23;         // one argument

struct Recorder {
  std::vector<std::string> calls;
  Item* lastItem = nullptr;
};
Recorder* recorder = nullptr;

/// Records its arguments and gives their count times ten.
int recordArguments(BuiltinCall& call) {
  std::string line;
  for (const Value& v : call.args)
    line += describe(v) + ";";
  recorder->calls.push_back(line);
  recorder->lastItem = call.item;
  call.result.setInteger(static_cast<std::int32_t>(call.args.size()) * 10);
  return 0;
}

int timesTen(BuiltinCall& call) {
  recorder->lastItem = call.item;
  call.result.setInteger(integerOf(call.args[0]) * 10);
  return 0;
}

/// Evaluates its text argument in the same table, as eval does.
int evaluateText(BuiltinCall& call) {
  if (!call.args[0].isString()) {
    call.result = call.args[0];
    return 0;
  }
  return parseExp(&call.table, call.args[0].text(), call.result) == 0 ? 0 : lastErrorCode();
}

int failing(BuiltinCall& call) {
  setError(kExprOddAssociative, "pairs");
  (void)call;
  return kExprOddAssociative;
}

class BuiltinDispatchTest : public ExprTest {
 protected:
  BuiltinDispatchTest() {
    recorder = &record_;
    for (int id : {kItemInfo, kSetVariable, kConcat, kCountItems, kEval}) {
      saved_.push_back({id, registeredBuiltin(id)});
    }
  }
  ~BuiltinDispatchTest() override {
    for (auto [id, fn] : saved_)
      registerBuiltin(id, fn);
    recorder = nullptr;
  }
  Recorder record_;
  std::vector<std::pair<int, BuiltinFunction>> saved_;
};

TEST_F(BuiltinDispatchTest, TableIsSortedAndComplete) {
  auto table = builtinTable();
  EXPECT_EQ(table.size(), 74u);  // ids 0 to 74, of which 19 names no function
  std::vector<bool> seen(75, false);
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (i > 0) {
      EXPECT_LT(compareIgnoringCase(table[i - 1].name, table[i].name), 0) << table[i].name;
    }
    ASSERT_LT(table[i].id, 75);
    EXPECT_FALSE(seen[table[i].id]) << table[i].name;
    seen[table[i].id] = true;
    EXPECT_EQ(findBuiltin(toUpper(table[i].name)), &table[i]);
  }
  EXPECT_FALSE(seen[19]);
  EXPECT_EQ(findBuiltin("nosuch"), nullptr);
  struct Row {
    const char* name;
    int id;
    int token;
  };
  const Row rows[] = {
      {"integer", 0, kOpBuiltin1},        {"substr", 12, kOpBuiltin3},
      {"strindex", 16, kOpBuiltin2},      {"countitems", 18, kOpBuiltin4},
      {"format", 11, kOpBuiltinN},        {"setelement", 55, kOpBuiltin3},
      {"listoptions", 37, kOpBuiltin3},   {"variteminfo", 74, kOpBuiltin2},
      {"replaceString", 35, kOpBuiltin3}, {"optvalue", 30, kOpBuiltinN},
  };
  for (const Row& r : rows) {
    const BuiltinInfo* info = findBuiltin(r.name);
    ASSERT_NE(info, nullptr) << r.name;
    EXPECT_EQ(info->id, r.id) << r.name;
    EXPECT_EQ(info->token, r.token) << r.name;
  }
}

TEST_F(BuiltinDispatchTest, ArgumentsArriveInSourceOrder) {
  registerBuiltin(kConcat, &recordArguments);
  registerBuiltin(kCountItems, &recordArguments);
  EXPECT_EQ(eval("concat(1, \"two\", 3.5)"), "int 30");
  EXPECT_EQ(eval("countitems(\"L\", 0, 1 + 1, \"cost\")"), "int 40");
  EXPECT_EQ(eval("1 + concat(4)"), "int 11");
  EXPECT_EQ(record_.calls,
            (std::vector<std::string>{"int 1;string \"two\";float 3.5;",
                                      "string \"L\";int 0;int 2;string \"cost\";", "int 4;"}));
}

TEST_F(BuiltinDispatchTest, EmptyParenthesesCountAsOneArgument) {
  registerBuiltin(kConcat, &recordArguments);
  EXPECT_EQ(eval("concat()"), "error -5: Stack underflow or missing argument");
  // The call takes the value before it as its one argument, and the sum then misses one.
  EXPECT_EQ(eval("7 + concat()"), "error -5: Stack underflow or missing argument");
  EXPECT_EQ(record_.calls, (std::vector<std::string>{"int 7;"}));
}

TEST_F(BuiltinDispatchTest, FixedSizeBuiltinsNeedNoParentheses) {
  registerBuiltin(kItemInfo, &timesTen);
  EXPECT_EQ(eval("iteminfo 2 + 1"), "int 21");
  EXPECT_EQ(eval("iteminfo(2) ^ 2"), "int 400");
  EXPECT_EQ(eval("-iteminfo 3"), "int -30");
  EXPECT_EQ(eval("ITEMINFO(1)"), "int 10");
}

TEST_F(BuiltinDispatchTest, WrongCountsShowAtRunTime) {
  EXPECT_EQ(eval("substr(\"abc\", 2)"), "error -5: Stack underflow or missing argument");
  registerBuiltin(kItemInfo, &timesTen);
  EXPECT_EQ(eval("iteminfo(1, 2)"), "error -8: Expression incomplete");
}

TEST_F(BuiltinDispatchTest, BothBranchesOfAConditionalRun) {
  registerBuiltin(kSetVariable, &recordArguments);
  EXPECT_EQ(eval("1 ? 5 : setvariable(\"flag\", 7)"), "int 5");
  EXPECT_EQ(eval("0 and setvariable(\"other\", 1)"), "int 0");
  EXPECT_EQ(record_.calls.size(), 2u);
}

TEST_F(BuiltinDispatchTest, ErrorsOfABuiltinStopTheEvaluation) {
  registerBuiltin(kSetVariable, &failing);
  EXPECT_EQ(eval("1 + setvariable(1, 2)"),
            "error -34: Odd number of elements in associative array: pairs");
}

TEST_F(BuiltinDispatchTest, NestingIsBounded) {
  registerBuiltin(kEval, &evaluateText);
  EXPECT_EQ(eval("eval(\"eval('2 * 3') + 1\")"), "int 7");
  // The self-reference hides in a text, so the definition passes; running it nests without end.
  ASSERT_NE(defineFunction(table_, "f(x)", "eval(\"f(x)\")"), nullptr);
  EXPECT_EQ(eval("f(1)"), "error -9: Expression too complicated");
  EXPECT_EQ(eval("1 + 1"), "int 2");  // and the engine is usable afterwards
}

TEST_F(BuiltinDispatchTest, UnregisteredBuiltinGivesZero) {
  registerBuiltin(kItemInfo, nullptr);
  EXPECT_EQ(eval("iteminfo(\"cost\") + 1"), "int 1");
}

TEST_F(BuiltinDispatchTest, TheCurrentItemReachesTheBuiltin) {
  registerBuiltin(kItemInfo, &timesTen);
  Item sword(ItemKind::Item, "Sword");
  Item shield(ItemKind::Item, "Shield");
  Value out;
  ASSERT_EQ(parseExpInContext(&table_, &sword, nullptr, "iteminfo(1)", out), 0);
  EXPECT_EQ(record_.lastItem, &sword);
  EXPECT_EQ(table_.currentItem, nullptr);  // restored after the call
  EXPECT_EQ(parseExpInContext(nullptr, &sword, nullptr, "1", out), -1);

  // A variable's code runs in the context of its owner item, which wins over the table's.
  table_.currentItem = &sword;
  ASSERT_NE(defineVariable(table_, "owned", "iteminfo(2)", nullptr, nullptr, &shield), nullptr);
  EXPECT_EQ(record_.lastItem, &shield);
  ASSERT_EQ(parseExp(&table_, "iteminfo(3)", out), 0);
  EXPECT_EQ(record_.lastItem, &sword);
  table_.currentItem = nullptr;
}

}  // namespace
}  // namespace zv::testing
