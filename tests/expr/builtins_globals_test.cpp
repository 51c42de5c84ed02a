#include <gtest/gtest.h>

#include "builtin_test_support.h"
#include "core/fileinfo.h"
#include "core/game_system.h"

namespace zv {
namespace {

using testing::BuiltinTest;
using testing::I;
using testing::S;

class GlobalsTest : public BuiltinTest {
 protected:
  void SetUp() override {
    sheet_.gameSystem = &system_;
    table_.owner = &sheet_;
  }
  GameSystem system_{"Tallow"};
  FileInfo sheet_;
};

TEST_F(GlobalsTest, SharedThroughTheGameSystem) {
  EXPECT_EQ(run("getglobal", {S("Renown")}), run("getglobal", {S("renown")}));
  EXPECT_EQ(run("getglobal", {S("Renown")}), "int 0");
  EXPECT_EQ(run("setglobal", {S("Renown"), I(5)}), "int 1");
  EXPECT_EQ(run("getglobal", {S("RENOWN")}), "int 5");
  ASSERT_TRUE(system_.symbols);
  EXPECT_EQ(system_.master.symbols, system_.symbols);

  // Another sheet of the same game system sees the value; its own table stays apart.
  SymbolTable other;
  FileInfo otherSheet;
  otherSheet.gameSystem = &system_;
  other.owner = &otherSheet;
  Value out;
  ASSERT_EQ(parseExp(&other, "getglobal(\"Renown\") * 2", out), 0);
  EXPECT_EQ(testing::describe(out), "int 10");
  EXPECT_EQ(other.find("Renown"), nullptr);
}

TEST_F(GlobalsTest, NoGameSystemGivesZero) {
  sheet_.gameSystem = nullptr;
  EXPECT_EQ(run("setglobal", {S("Renown"), I(5)}), "int 0");
  EXPECT_EQ(run("getglobal", {S("Renown")}), "int 0");
  table_.owner = nullptr;
  EXPECT_EQ(run("getglobal", {S("Renown")}), "int 0");
}

TEST_F(GlobalsTest, FromFormulasInOrder) {
  EXPECT_EQ(eval("setglobal(\"Oath\", \"kept\") + 0"), "int 1");
  EXPECT_EQ(eval("concat(getglobal(\"Oath\"), \"!\")"), "string \"kept!\"");
}

}  // namespace
}  // namespace zv
