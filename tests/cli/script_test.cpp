// zarvelin-cli script end to end: the sample scripts of Hollowmark on copies of the sample
// characters, compared by dump afterwards; a run that stops writes nothing; messages name the
// script and the line. Costs of Muster a Recruit, worked out from the data: Lamplighting and
// Watchfulness at rank 1 for 2 Marks each (Maren has Spear, so it isn't taught); Lantern 5, Lamp
// Oil ½, Tinderbox 1, Warden's Whistle 1 and a second-hand Oilskin Cloak 6 / 1½ = 4 shillings,
// 11½ in all, which leaves Maren's purse at 0; the sergeant is an Old warden bond of 3 Marks.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

const fs::path kData = ZV_SAMPLE_DATA_DIR;

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void expectInOrder(const std::string& json, const std::vector<std::string>& parts) {
  std::size_t from = 0;
  for (const std::string& part : parts) {
    const std::size_t at = json.find(part, from);
    EXPECT_NE(at, std::string::npos) << part << "\n" << json;
    if (at != std::string::npos) from = at + part.size();
  }
}

/// A data directory of its own: the sample's template, data sheets, scripts and characters,
/// and any script a test writes.
class ScriptCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-cli-script-" + std::to_string(::getpid()));
    fs::remove_all(dir_);
    fs::create_directories(dir_ / "characters");
    for (const auto& entry : fs::directory_iterator(kData)) {
      if (entry.is_regular_file()) fs::copy_file(entry.path(), dir_ / entry.path().filename());
    }
    for (const char* name : {"Maren Vell", "Ossel Brack", "Ines Calloway"}) {
      fs::copy_file(kData / "characters" / (std::string(name) + ".chr"), sheet(name));
    }
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string sheet(const std::string& name) const {
    return (dir_ / "characters" / (name + ".chr")).string();
  }
  void writeScript(const std::string& name, const std::string& body) {
    std::ofstream(dir_ / name, std::ios::binary)
        << "\"Conversion script v. 1\"\r\ngamesystem Hollowmark Hollowmark\r\n"
        << body;
  }
  zv::testing::CliResult run(std::vector<std::string> args) {
    args.insert(args.begin(), {"--data-dir", dir_.string(), "--seed", "7"});
    return runCli(args);
  }
  std::string dump(const std::string& path) {
    auto result = run({"dump", path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return result.out;
  }

  fs::path dir_;
};

TEST_F(ScriptCommand, MusterARecruitIssuesTheHallsStart) {
  auto result = run({"script", "muster-recruit.scp", sheet("Maren Vell")});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(fs::exists(dir_ / "characters" / "Maren Vell.bak"));
  expectInOrder(dump(sheet("Maren Vell")),
                {
                    R"({"name":"Skills","total":29,)",
                    R"("name":"Spear","level":"2")",
                    R"("name":"Lamplighting","level":"1","value":1,"cost":2,"totalCost":2})",
                    R"("name":"Watchfulness","level":"1","value":1,"cost":2,"totalCost":2})",
                    R"({"name":"Gear","total":40,)",
                    R"("name":"Lantern","level":"","value":0,"cost":5,"totalCost":5})",
                    R"("name":"Lamp Oil, flask",)",
                    R"("name":"Tinderbox",)",
                    R"("name":"Warden's Whistle",)",
                    R"("name":"Oilskin Cloak","level":"","value":0,"cost":6,"totalCost":4})",
                    R"({"name":"Bonds","total":8,)",
                    R"("name":"Sergeant Brannock","level":"","value":0,"cost":3,"totalCost":3})",
                    R"("CoinLeft":0,)",
                    R"("Left":16,)",
                    R"("MusteredSkills":2,)",
                    R"("Spent":84,)",
                });
}

TEST_F(ScriptCommand, AMusterThatStopsWritesNothing) {
  ASSERT_EQ(run({"script", "muster-recruit.scp", sheet("Maren Vell")}).exitCode, 0);
  const std::string mustered = readFile(sheet("Maren Vell"));
  std::ofstream(dir_ / "answers.txt") << "Cancel\n";
  auto again = run({"--answers", (dir_ / "answers.txt").string(), "script", "muster-recruit.scp",
                    sheet("Maren Vell")});
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_EQ(again.err, "[Warning] Maren Vell already keeps the watch. Muster again?\n");
  EXPECT_EQ(readFile(sheet("Maren Vell")), mustered);
}

TEST_F(ScriptCommand, AuditTheMarksFindsNoBreachInTheSamplesAndChangesNothing) {
  const std::string before = readFile(sheet("Ines Calloway"));
  auto result = run({"script", "audit-marks.scp", sheet("Maren Vell"), sheet("Ossel Brack"),
                     sheet("Ines Calloway")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(readFile(sheet("Ines Calloway")), before);
  EXPECT_FALSE(fs::exists(dir_ / "characters" / "Ines Calloway.bak"));
}

TEST_F(ScriptCommand, AuditTheMarksWarnsOfEachBreach) {
  // A mail shirt of 40 shillings breaks Ossel's purse (79 shillings of gear for 40); twelve
  // ranks of Swimming break the ranks.
  ASSERT_EQ(run({"add", sheet("Ossel Brack"), "Gear", "Mail Shirt"}).exitCode, 0);
  writeScript("overtrain.scp", "add Skills.Swimming = 12;\r\n");
  ASSERT_EQ(run({"script", "overtrain.scp", sheet("Ossel Brack")}).exitCode, 0);
  auto result = run({"script", "audit-marks.scp", sheet("Ossel Brack")});
  EXPECT_EQ(result.exitCode, 0);
  // Twelve ranks of Swimming at 2 Marks also spend more Marks than the budget holds.
  EXPECT_EQ(result.err,
            "[Warning] Breach 1: 104 Marks spent of a budget of 100.\n"
            "[Warning] Breach 2: the gear costs 79 shillings, more than purse and stipend hold.\n"
            "[Warning] Breach 3: Swimming stands at rank 12, above rank 6.\n");
  std::ofstream(dir_ / "answers.txt") << "Cancel\n";
  auto stopped = run({"--answers", (dir_ / "answers.txt").string(), "script", "audit-marks.scp",
                      sheet("Ossel Brack")});
  EXPECT_EQ(stopped.exitCode, 1);
  EXPECT_EQ(stopped.err, "[Warning] Breach 1: 104 Marks spent of a budget of 100.\n");
}

TEST_F(ScriptCommand, AnErrorNamesTheScriptAndTheLineAndWritesNothing) {
  writeScript("broken.scp", "add Skills.Swimming = 2;\r\nset bogus = 1;\r\n");
  const std::string before = readFile(sheet("Maren Vell"));
  auto result = run({"script", "broken.scp", sheet("Maren Vell")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "[Script Error] Set may be used only within list or foreach\\n\\nFile: broken.scp, "
            "line: 4\\nLast Item Added: Swimming\n");
  EXPECT_EQ(readFile(sheet("Maren Vell")), before);
}

TEST_F(ScriptCommand, EachSheetRunsOnItsOwnAndTheExitSaysWhetherAllCompleted) {
  writeScript("pick.scp", "if ($+inlist(Skills, Spear)) exit; endif\r\nadd Skills.Swimming;\r\n");
  auto result = run({"script", "pick.scp", sheet("Maren Vell"), sheet("Ines Calloway")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(dump(sheet("Maren Vell")).find("Swimming"), std::string::npos);
  EXPECT_NE(dump(sheet("Ines Calloway")).find(R"("name":"Swimming")"), std::string::npos);
}

TEST_F(ScriptCommand, WithoutASheetTheScriptRunsOnAnEmptySheetOfItsGameSystem) {
  writeScript("sums.scp", "x = 2 + 2;\r\nif (x <> 4) fail \"arithmetic\"; endif\r\n");
  auto result = run({"script", "sums.scp"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  writeScript("lists.scp", "n = $+listCount(Skills);\r\n");
  auto lists = run({"script", "lists.scp"});
  EXPECT_EQ(lists.exitCode, 1);
  EXPECT_EQ(lists.err,
            "[Script Error] 'Skills' is not a list name.\\n\\nFile: lists.scp, line: 3\n");
}

TEST_F(ScriptCommand, ScriptsAreNamedByTheirBareName) {
  auto missing = run({"script", "nothere.scp", sheet("Maren Vell")});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "[Error] Conversion script nothere.scp doesn't exist\n");
  auto path = run({"script", (dir_ / "audit-marks.scp").string()});
  EXPECT_EQ(path.exitCode, 2);
  auto none = run({"script"});
  EXPECT_EQ(none.exitCode, 2);
  writeScript("other.scp", "");
  std::ofstream(dir_ / "other.scp", std::ios::binary)
      << "\"Conversion script v. 1\"\r\ngamesystem Tiny Tiny\r\n";
  auto other = run({"script", "other.scp", sheet("Maren Vell")});
  EXPECT_EQ(other.exitCode, 1);
  EXPECT_EQ(other.err,
            "[Error] You have attempted to convert this Hollowmark character sheet to Hollowmark "
            "using a Tiny to Tiny conversion script.\\n\\nMake sure you select a destination "
            "template that uses the Tiny game system, or select another conversion script.\n");
}

}  // namespace
}  // namespace zv
