// The standard built-ins reached from formulas, through the compiler and the evaluator.

#include <gtest/gtest.h>

#include <array>

#include "builtin_test_support.h"

namespace zv::testing {
namespace {

class BuiltinFormulasTest : public BuiltinTest {
 protected:
  BuiltinFormulasTest() {
    for (int id = 0; id < kIds; ++id) {
      saved_[static_cast<std::size_t>(id)] = registeredBuiltin(id);
      registerBuiltin(id, standardBuiltin(id));
    }
  }
  ~BuiltinFormulasTest() override {
    for (int id = 0; id < kIds; ++id)
      registerBuiltin(id, saved_[static_cast<std::size_t>(id)]);
  }

  static constexpr int kIds = 75;
  std::array<BuiltinFunction, kIds> saved_{};
};

TEST_F(BuiltinFormulasTest, Evaluates) {
  ASSERT_NE(defineArray(table_, "k[]", "10, \"a\", 20, \"b\", 30, \"c\""), nullptr);
  ASSERT_NE(defineArray(table_, "parts[0]", ""), nullptr);
  const std::pair<std::string_view, std::string> cases[] = {
      {"round(2.5) + dround(2.5)", "int 5"},
      {"ceil(2.0005)", "int 2"},
      {"substr(\"abc\", 2, 99)", "string \"bc\""},
      {"concat(\"\", \"-\", \"x\")", "string \"x\""},
      {"format(\"%+d\", 3)", "string \"+3\""},
      {"format(\"%n\", 1234567)", "string \"1,234,567\""},
      {"format(\"%d\")", "string \"d\""},
      {"dupstr(\"ab\", 40000)", "error -39: Number too large"},
      {"rand(0)", "int 1"},
      {"lookup(k, 99)", "string \"c\""},
      {"max(1, 2.0, 2)", "int 2"},
      {"split(\"x;y;z\", \";\", parts)", "int 3"},
      {"parts[2]", "string \"y\""},
      {"sizeof(k) + index(k, \"B\")", "int 10"},
      {"toupper(\"hello world\", 1)", "string \"Hello World\""},
      {"putmap(\"m\", \"k\", 42) + getmap(\"m\", \"K\")", "int 42"},
      {"sizeof(3)", "error -6: Variable of wrong type for indexing or array undefined"},
  };
  for (const auto& [formula, expected] : cases)
    EXPECT_EQ(eval(formula), expected) << formula;
}

}  // namespace
}  // namespace zv::testing
