// The dependency graph: what a change recalculates, in which order, how often callbacks run,
// and the guards against loops.

#include <map>
#include <string>
#include <vector>

#include "expr_test_support.h"

namespace zv::testing {
namespace {

/// Records every callback: which symbol, with which value.
struct CallLog {
  std::vector<std::string> calls;
  std::map<std::string, int> counts;
  static void record(Symbol& symbol, void* data) {
    auto* log = static_cast<CallLog*>(data);
    log->calls.push_back(symbol.name + "=" + describe(symbol.value));
    ++log->counts[symbol.name];
  }
};

class PropagationTest : public ExprTest {
 protected:
  Symbol& watched(std::string_view name, std::string_view expression) {
    Symbol* symbol = defineVariable(table_, name, expression, &CallLog::record, &log_);
    EXPECT_NE(symbol, nullptr) << name;
    return *symbol;
  }
  CallLog log_;
};

TEST_F(PropagationTest, AChainIsRecalculatedOnceEach) {
  Symbol& a = watched("a", "1");
  watched("b", "a + 1");
  watched("c", "b * 10");
  log_.calls.clear();
  ASSERT_EQ(setExpression(table_, a, "5"), 0);
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"a=int 5", "b=int 6", "c=int 60"}));
  log_.calls.clear();
  ASSERT_EQ(setValue(table_, a, Value(2.5)), 0);
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"a=float 2.5", "b=float 3.5", "c=float 35"}));
  EXPECT_TRUE(a.constant());
  EXPECT_FALSE(a.hasCode());
}

TEST_F(PropagationTest, DependentsInDefinitionOrder) {
  Symbol& base = watched("base", "1");
  watched("first", "base + 1");
  watched("second", "base + 2");
  watched("third", "base + 3");
  log_.calls.clear();
  setExpression(table_, base, "10");
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"base=int 10", "first=int 11", "second=int 12",
                                                  "third=int 13"}));
  EXPECT_EQ(base.dependents.size(), 3u);
}

TEST_F(PropagationTest, ADiamondRefreshesInputsFirst) {
  // d uses b and c, both of which use a. The walk reaches d through b, refreshes c for it
  // (without marking c valid), and evaluates c again in its own turn.
  Symbol& a = watched("a", "1");
  watched("b", "a + 1");
  watched("c", "a + 2");
  Symbol& d = watched("d", "b + c");
  log_.calls.clear();
  log_.counts.clear();
  setExpression(table_, a, "10");
  EXPECT_EQ(describe(d.value), "int 23");
  EXPECT_EQ(log_.calls,
            (std::vector<std::string>{"a=int 10", "b=int 11", "c=int 12", "d=int 23", "c=int 12"}));
  EXPECT_EQ(log_.counts["d"], 1);
  EXPECT_EQ(log_.counts["c"], 2);
  for (const char* name : {"a", "b", "c", "d"})
    EXPECT_TRUE(table_.find(name)->valid()) << name;
}

TEST_F(PropagationTest, FunctionsPassChangesToTheirCallers) {
  Symbol& k = watched("k", "3");
  ASSERT_NE(defineFunction(table_, "times(x)", "x * k"), nullptr);
  Symbol& user = watched("user", "times(2) + 1");
  EXPECT_EQ(describe(user.value), "int 7");
  log_.calls.clear();
  setExpression(table_, k, "5");
  EXPECT_EQ(describe(user.value), "int 11");
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"k=int 5", "user=int 11"}));
  // Redefining the function (after deleting it) recalculates its callers as well.
  ASSERT_TRUE(deleteSymbol(table_, *table_.find("times")));
  EXPECT_EQ(describe(user.value), "int 1");
}

TEST_F(PropagationTest, ArraysPassChangesOn) {
  ASSERT_NE(defineArray(table_, "costs[]", "5, 10"), nullptr);
  Symbol& user = watched("user", "costs[2] * 2");
  EXPECT_EQ(describe(user.value), "int 20");
  Symbol* costs = table_.find("costs");
  EXPECT_TRUE(deleteSymbol(table_, *costs));
  EXPECT_EQ(describe(user.value), "int 0");
  ASSERT_NE(defineArray(table_, "costs[]", "7, 8"), nullptr);
  EXPECT_EQ(describe(user.value), "int 16");
}

TEST_F(PropagationTest, BaseChangesRecalculateAndReadThrough) {
  Symbol& strength = watched("strength", "0");
  Symbol& bonus = watched("bonus", "strength * 2");
  EXPECT_EQ(describe(bonus.value), "float 0");
  log_.calls.clear();
  ASSERT_EQ(setBaseValue(table_, strength, 4.0), 0);
  EXPECT_EQ(describe(bonus.value), "float 8");
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"strength=int 0", "bonus=float 8"}));
}

TEST_F(PropagationTest, RedefiningAPlaceholderRecalculatesUsers) {
  Symbol& total = watched("total", "part1 + part2");
  EXPECT_EQ(describe(total.value), "float 0");
  log_.calls.clear();
  watched("part1", "2");
  watched("part2", "3");
  EXPECT_EQ(describe(total.value), "int 5");
  EXPECT_EQ(log_.calls, (std::vector<std::string>{"part1=int 2", "total=float 2", "part2=int 3",
                                                  "total=int 5"}));
}

struct Reentrant {
  SymbolTable* table = nullptr;
  int calls = 0;
  static void setAgain(Symbol& symbol, void* data) {
    auto* self = static_cast<Reentrant*>(data);
    ++self->calls;
    setValue(*self->table, symbol, Value(self->calls));
  }
};

TEST_F(PropagationTest, ACallbackThatChangesItsOwnSymbolStops) {
  Reentrant reentrant;
  reentrant.table = &table_;
  Symbol* x = defineVariable(table_, "x", "0");
  ASSERT_NE(x, nullptr);
  setCallback(*x, &Reentrant::setAgain, &reentrant);
  ASSERT_EQ(setValue(table_, *x, Value(100)), 0);
  // The inCallback flag keeps the callback from running inside itself.
  EXPECT_EQ(reentrant.calls, 1);
  EXPECT_EQ(describe(x->value), "int 1");
  EXPECT_EQ(x->recursionCount, 0);
  EXPECT_FALSE(x->has(Symbol::kInCallback));
}

struct Chain {
  SymbolTable* table = nullptr;
  Symbol* other = nullptr;
  int calls = 0;
  static void poke(Symbol&, void* data) {
    auto* self = static_cast<Chain*>(data);
    ++self->calls;
    setValue(*self->table, *self->other, Value(self->calls));
  }
};

TEST_F(PropagationTest, RecursionCountBoundsMutualCallbacks) {
  // Two variables whose callbacks set each other: propagation nests until the count guard.
  Symbol* p = defineVariable(table_, "p", "0");
  Symbol* q = defineVariable(table_, "q", "0");
  Chain toQ{&table_, q, 0};
  Chain toP{&table_, p, 0};
  setCallback(*p, &Chain::poke, &toQ);
  setCallback(*q, &Chain::poke, &toP);
  ASSERT_EQ(setValue(table_, *p, Value(50)), 0);
  EXPECT_LE(toQ.calls + toP.calls, 8);
  EXPECT_GE(toQ.calls, 1);
  EXPECT_EQ(p->recursionCount, 0);
  EXPECT_EQ(q->recursionCount, 0);
}

TEST_F(PropagationTest, EvaluationErrorsOtherThanMinusOneDoNotStopTheWalk) {
  Symbol& a = watched("a", "1");
  ASSERT_NE(defineFunction(table_, "g(x)", "x"), nullptr);
  Symbol& broken = watched("broken", "a + g(1)");
  Symbol& fine = watched("fine", "a + 2");
  EXPECT_EQ(describe(broken.value), "int 2");
  // Redefined with three parameters, g now finds too few values on the caller's stack.
  ASSERT_TRUE(deleteSymbol(table_, *table_.find("g")));
  EXPECT_EQ(describe(broken.value), "int 1");
  ASSERT_NE(defineFunction(table_, "g(x, y, z)", "x"), nullptr);
  ASSERT_EQ(setExpression(table_, a, "5"), 0);
  EXPECT_EQ(describe(broken.value), "int 1");  // its evaluation failed and left it as it was
  EXPECT_EQ(describe(fine.value), "int 7");
}

TEST_F(PropagationTest, CycleThroughBaseReferencesEnds) {
  // &name is exempt from the recursion check, so a and b may refer to each other that way.
  Symbol& a = define("a", "&b + 1");
  Symbol& b = define("b", "a * 2");
  EXPECT_EQ(describe(b.value), "float 2");
  ASSERT_EQ(setBaseValue(table_, b, 3.0), 0);
  EXPECT_EQ(describe(a.value), "float 4");
  EXPECT_EQ(describe(b.value), "float 8");
}

TEST_F(PropagationTest, DependentsListsFollowRedefinitions) {
  Symbol& a = define("a", "1");
  Symbol& user = define("user", "a + a");
  EXPECT_EQ(a.dependents, (std::vector<Symbol*>{&user, &user}));
  ASSERT_EQ(setExpression(table_, user, "a * 3"), 0);
  EXPECT_EQ(a.dependents, (std::vector<Symbol*>{&user}));
  ASSERT_EQ(setExpression(table_, user, "7"), 0);
  EXPECT_TRUE(a.dependents.empty());
  EXPECT_TRUE(deleteSymbol(table_, a));
  EXPECT_EQ(table_.find("a"), nullptr);
}

}  // namespace
}  // namespace zv::testing
