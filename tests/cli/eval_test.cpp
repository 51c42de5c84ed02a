#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

class EvalCommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-eval-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string settings(bool fractions) {
    fs::path p = dir_ / (fractions ? "on.ini" : "off.ini");
    std::ofstream(p, std::ios::binary)
        << "[Preferences]\r\nUseFractions=" << (fractions ? "1" : "0") << "\r\n";
    return p.string();
  }
  fs::path dir_;
};

TEST_F(EvalCommandTest, PrintsTheValueAsShown) {
  struct Case {
    const char* expression;
    bool fractions;
    const char* out;
  };
  const Case cases[] = {
      {"7 / 2", false, "3.5\n"},
      {"7 / 2", true, "3\xC2\xBD\n"},
      {"2\xC2\xBD + 1", true, "3\xC2\xBD\n"},
      {"2 ^ 30", false, "1073741824\n"},
      {"-5 mod 3", false, "-2\n"},
      {"\"Sword\" = \"SWORD\"", false, "1\n"},
      {"'text as is'", false, "text as is\n"},
      {"{ local i, s; while (i < 4) i := i + 1; s := s + i; endwhile return s; }", false, "10\n"},
      {"1 / 3", false, "0.3333333\n"},
  };
  for (const Case& c : cases) {
    auto result = runCli({"--settings", settings(c.fractions), "eval", c.expression});
    EXPECT_EQ(result.exitCode, 0) << c.expression << result.err;
    EXPECT_EQ(result.out, c.out) << c.expression;
    EXPECT_EQ(result.err, "") << c.expression;
  }
}

TEST_F(EvalCommandTest, OneRowOfEachBuiltInFamily) {
  struct Case {
    const char* expression;
    const char* out;
  };
  const Case cases[] = {
      {"2 + 3 * 4", "14\n"},                                        // precedence
      {"\"5\" * 2", "10\n"},                                        // a text as a number
      {"round(2.5) + round(-2.5) * 10", "-27\n"},                   // numbers
      {"concat(\"a\", \"-\", \"x\")", "a-x\n"},                     // texts
      {"format(\"%+d %n\", 3, 1234567)", "+3 1,234,567\n"},         // format
      {"sortelements(Mods, 0) + Mods[1]", "6\n"},                   // arrays (3 elements, then 3)
      {"putmap(\"m\", \"k\", 42) + getmap(\"m\", \"k\")", "42\n"},  // maps
      {"rolldice(\"3:4d6\")", "17\n"},                              // the die roller, seeded
      {"rolldice(3, 4, 6) > 2", "1\n"},                             //
      {"configparam(\"UseMetric\")", "0\n"},                        // game system parameters
      {"listiteminfo(\"Skills\", 2, \"name\")", "Axe\n"},           // items of a list
      {"optvalue(\"Skills\", \"Sword\", \"Sty\")", "Slash, 5\n"},  // a text option: label and value
      {"dialogfieldvalue(\"Main\", \"Race\")", "Elf\n"},           // dialog fields
  };
  const std::string sheet = std::string(ZV_TEST_DATA_DIR) + "/sheets/arcana.chr";
  for (const Case& c : cases) {
    auto result = runCli(
        {"--settings", settings(false), "--seed", "1", "eval", "--sheet", sheet, c.expression});
    EXPECT_EQ(result.exitCode, 0) << c.expression << result.err;
    EXPECT_EQ(result.out, c.out) << c.expression;
  }
}

TEST_F(EvalCommandTest, FormulasOfAnItem) {
  struct Case {
    const char* item;
    const char* expression;
    const char* out;
  };
  const Case cases[] = {
      {"Skills:Sword", "@cost", "26\n"},
      {"Skills:Sword", "optvalue(\"Edge\") + optcount(\"\")", "5\n"},
      {"Skills:Sword", "opttextvalue(\"Style\")", "Slash, 5\n"},
      {"Skills:Sword", "listoptions(\"optname\", \"\", \",\")", "Edge,Style,Boost\n"},
      {"Skills:Sword", "itemcostfunction(5) + itemcheckexpression(25)", "10\n"},
      {"Skills:Sword", "incategory(\"melee\")", "1\n"},
      {"Skills:Lore", "checkrequirements(\"Skills\", 0, 0)", "1\n"},
      {"Skills:Lore", "checkrequirements(\"Skills\", 1, 0)", "0\n"},  // Ward excludes Lore
      {"Skills:Ward", "checkrequirements(\"Skills\", 0, 0)", "0\n"},
      {"Skills:3", "@name", "Lore\n"},
  };
  const std::string sheet = std::string(ZV_TEST_DATA_DIR) + "/sheets/arcana.chr";
  for (const Case& c : cases) {
    auto result = runCli(
        {"--settings", settings(false), "eval", "--sheet", sheet, "--item", c.item, c.expression});
    EXPECT_EQ(result.exitCode, 0) << c.expression << result.err;
    EXPECT_EQ(result.out, c.out) << c.expression;
  }
  auto missing = runCli({"eval", "--sheet", sheet, "--item", "Skills:Bow", "1"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "[Error] Item Skills:Bow not found.\n");
  EXPECT_EQ(runCli({"eval", "--item", "Skills:Bow", "1"}).exitCode, 2);
}

TEST_F(EvalCommandTest, ExpressionErrorsGoToStderr) {
  auto result = runCli({"--settings", settings(false), "eval", "1 +"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "[Error] Expression error: Stack underflow or missing argument (1 +)\n");

  result = runCli({"--settings", settings(false), "eval", "a # b"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "[Error] Expression error: Bad operator (a # b)\n");
}

TEST_F(EvalCommandTest, SeedMakesRandomResultsRepeatable) {
  const std::string rolls =
      R"(concat(concat(rand(1000), ",", rand(1000)), ",", rolldice(2, 3, 6)))";
  auto first = runCli({"--seed", "7", "eval", rolls});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  EXPECT_EQ(runCli({"--seed", "7", "eval", rolls}).out, first.out);
  EXPECT_NE(runCli({"--seed", "8", "eval", rolls}).out, first.out);
}

TEST_F(EvalCommandTest, Usage) {
  EXPECT_EQ(runCli({"eval"}).exitCode, 2);
  EXPECT_EQ(runCli({"eval", "1", "2"}).exitCode, 2);
  EXPECT_EQ(runCli({"eval", "1", "--sheet"}).exitCode, 2);
  EXPECT_NE(runCli({"--help"}).out.find("eval [--sheet FILE [--item LIST:NAME]] EXPR"),
            std::string::npos);
}

TEST_F(EvalCommandTest, AgainstASheet) {
  const std::string sheet = std::string(ZV_TEST_DATA_DIR) + "/sheets/ember.chr";
  struct Case {
    const char* expression;
    const char* out;
  };
  const Case cases[] = {
      {"Grit + Double(4)", "10\n"},    // a variable and a function of the sheet's define block
      {"Mods[2]", "2\n"},              // its array
      {"@gamesystem", "Emberfall\n"},  // a sheet attribute
      {"Lore", "4\n"},                 // an item's level variable
      {"SkillPoints", "22\n"},         // Climb 3*2 + Lore 4*4; Swim stays out of the total
      {"GearCost", "10\n"},            // Pack 2 + its members 1 + 4 apart + Cloak 3
      {"Spent", "36\n"},               // the dialog's formula field over both totals
  };
  for (const Case& c : cases) {
    auto result = runCli({"--settings", settings(false), "eval", "--sheet", sheet, c.expression});
    EXPECT_EQ(result.exitCode, 0) << c.expression << result.err;
    EXPECT_EQ(result.out, c.out) << c.expression;
  }

  auto missing = runCli({"eval", "--sheet", "/nonexistent/hero.chr", "1"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "[File Not Found] The file '/nonexistent/hero.chr' does not exist.\n");
  auto notSheet =
      runCli({"eval", "--sheet", std::string(ZV_TEST_DATA_DIR) + "/../CMakeLists.txt", "1"});
  EXPECT_EQ(notSheet.exitCode, 1);
  EXPECT_NE(notSheet.err.find("is not a character sheet file."), std::string::npos);
}

}  // namespace
}  // namespace zv
