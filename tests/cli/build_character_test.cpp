// A Hollowmark warden built headless from the template by zarvelin-cli add, as a user picks items:
// the items that others bring with them, a choice answered from an answers file, an adjustment
// as an item comes and goes, the totals worked out by hand; and zarvelin-cli delete taking a
// parent with the items it brought.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

const std::string kData = ZV_SAMPLE_DATA_DIR;

void expectInOrder(const std::string& json, const std::vector<std::string>& parts) {
  std::size_t from = 0;
  for (const std::string& part : parts) {
    const std::size_t at = json.find(part, from);
    EXPECT_NE(at, std::string::npos) << part << "\n" << json;
    if (at != std::string::npos) from = at + part.size();
  }
}

class BuildCharacter : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-build-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    sheet_ = (dir_ / "Tamsin Reed.chr").string();
  }
  void TearDown() override { fs::remove_all(dir_); }

  zv::testing::CliResult run(std::vector<std::string> args) {
    args.insert(args.begin(), {"--data-dir", kData, "--seed", "5"});
    return zv::testing::runCli(args);
  }

  /// zarvelin-cli add, which must succeed; questions answered from `answers` when given.
  void add(const std::vector<std::string>& words, const std::string& answers = "",
           const std::string& expectedErr = "") {
    std::vector<std::string> args;
    if (!answers.empty()) args = {"--answers", answers};
    args.push_back("add");
    args.insert(args.end(), words.begin(), words.end());
    auto result = run(args);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, expectedErr);
  }

  std::string dump() {
    auto result = run({"dump", sheet_});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return result.out;
  }

  /// The warden of the test: the oath, the purse, the tinker's roll (Whetstone and Saw chosen)
  /// and the spear at rank 2.
  void buildWarden() {
    add({kData + "/hollowmark.cst", "Traits", "Warden's Oath", "-o", sheet_});
    add({sheet_, "Traits", "Warden's Purse"});
    const std::string answers = (dir_ / "answers.txt").string();
    std::ofstream(answers) << "Whetstone;Saw\n";
    add({sheet_, "Gear", "Tinker's Roll"}, answers,
        "[Tinker's tools] Choose 2 items. Click an item in the list to choose it.\n");
    add({sheet_, "Skills", "Spear", "--level", "2"});
  }

  fs::path dir_;
  std::string sheet_;
};

TEST_F(BuildCharacter, AWardenBuiltItemByItem) {
  buildWarden();
  // Traits: the oath 4 and the purse 3: 7. Skills: the oath brought Lamplighting and Watchfulness
  // at rank 1 free (outside the total) and Bell-ringing at rank 2, paid: 2 x 2 = 4; Spear 2 at 3
  // a rank: 6; 10 in all. Gear: the template's Pack 3, the roll holds what was chosen, charged:
  // Whetstone 0.5 + Saw 2 = 2.5; 5.5 in all. Spent: attributes 0 + 7 + 10 = 17 of 100. Coin:
  // Purse 40 + the Stipend of 10 that the purse's adjustment gave - 5.5 = 44.5.
  expectInOrder(dump(), {
                            R"("gameSystem":"Hollowmark","fileType":1)",
                            R"({"name":"Traits","total":7,)",
                            R"("name":"Warden's Oath","level":"","value":0,"cost":4,)"
                            R"("totalCost":4,"autoID":1})",
                            R"("name":"Warden's Purse","level":"","value":0,"cost":3,)"
                            R"("totalCost":3})",
                            R"({"name":"Skills","total":10,)",
                            R"("name":"Lamplighting","level":"1","value":1,"cost":2,)"
                            R"("totalCost":2,"inTotal":0,"autoParent":1})",
                            R"("name":"Watchfulness","level":"1","value":1,"cost":2,)"
                            R"("totalCost":2,"inTotal":0,"autoParent":1})",
                            R"("name":"Bell-ringing","level":"2","value":2,"cost":4,)"
                            R"("totalCost":4,"autoParent":1})",
                            R"("name":"Spear","level":"2","value":2,"cost":6,"totalCost":6})",
                            R"({"name":"Gear","total":5.5,)",
                            R"("name":"Tinker's Roll","level":"","value":0,"cost":2.5,)"
                            R"("totalCost":2.5,"autoID":2,"childCost":2.5,"children":[)",
                            R"("name":"Whetstone",)",
                            R"("name":"Saw",)",
                            R"("CoinLeft":44.5,)",
                            R"("Left":83,)",
                            R"("Spent":17,)",
                        });
}

TEST_F(BuildCharacter, DeletingAParentTakesWhatItBrought) {
  buildWarden();
  auto oath = run({"delete", sheet_, "Traits", "Warden's Oath"});
  ASSERT_EQ(oath.exitCode, 0) << oath.err;
  auto purse = run({"delete", sheet_, "Traits", "warden's purse"});
  ASSERT_EQ(purse.exitCode, 0) << purse.err;
  // The three skills went with the oath; the spear stays: 6. The stipend went with the purse:
  // coin 40 - 5.5 = 34.5. Spent 6 of 100.
  const std::string json = dump();
  expectInOrder(json, {
                          R"({"name":"Traits","total":0,"items":[]})",
                          R"({"name":"Skills","total":6,"items":[{"name":"Spear",)",
                          R"("totalCost":6}]})",
                          R"("CoinLeft":34.5,)",
                          R"("Spent":6,)",
                      });
  EXPECT_EQ(json.find("Lamplighting"), std::string::npos);
  EXPECT_EQ(json.find("Bell-ringing"), std::string::npos);
  // The file before the last save stays as its backup.
  EXPECT_TRUE(fs::exists(dir_ / "Tamsin Reed.bak"));
}

TEST_F(BuildCharacter, ACancelledChoiceSavesNothing) {
  add({kData + "/hollowmark.cst", "Traits", "Warden's Oath", "-o", sheet_});
  const auto before = fs::last_write_time(sheet_);
  const std::string answers = (dir_ / "cancel.txt").string();
  std::ofstream(answers) << "Cancel\n";
  auto result = run({"--answers", answers, "add", sheet_, "Gear", "Tinker's Roll"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "[Tinker's tools] Choose 2 items. Click an item in the list to choose it.\n"
            "zarvelin-cli: the add was cancelled; nothing was saved\n");
  EXPECT_EQ(fs::last_write_time(sheet_), before);
}

struct BadAdd {
  std::vector<std::string> args;
  const char* err;
  int exitCode;
};

TEST_F(BuildCharacter, BadArgumentsGetAClearMessage) {
  const std::string tmpl = kData + "/hollowmark.cst";
  const BadAdd cases[] = {
      {{"add", tmpl, "Nope", "Spear"}, "[Error] List Nope not found.\n", 1},
      {{"add", tmpl, "Skills", "Nothing"},
       "[Error] Item 'Nothing' not found in category 'Skills'.\n",
       1},
      {{"add", tmpl, "Skills", "Spear", "--category", "Nope"},
       "[Error] Category 'Nope' doesn't exist (specified for list 'Skills').\n",
       1},
      {{"delete", tmpl, "Skills", "Spear"}, "[Error] Item Skills:Spear not found.\n", 1},
  };
  for (const BadAdd& c : cases) {
    auto result = run(c.args);
    EXPECT_EQ(result.exitCode, c.exitCode) << c.err;
    EXPECT_EQ(result.err, c.err);
  }
  auto usage = run({"add", tmpl, "Skills"});
  EXPECT_EQ(usage.exitCode, 2);
  EXPECT_NE(usage.err.find("add takes a sheet, a list and an item"), std::string::npos);
}

}  // namespace
}  // namespace zv
