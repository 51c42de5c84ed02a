#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class ConvertTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-convert-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string out(const std::string& name) { return (dir_ / name).string(); }
  int convert(const std::vector<std::string>& args) {
    std::vector<std::string> full{"convert"};
    full.insert(full.end(), args.begin(), args.end());
    auto result = runCli(full);
    EXPECT_EQ(result.err, "") << args[0];
    return result.exitCode;
  }
  const std::string sheet_ = std::string(ZV_TEST_DATA_DIR) + "/sheets/ember.chr";
  fs::path dir_;
};

TEST_F(ConvertTest, TextAndBinaryRoundTripsAreByteIdentical) {
  ASSERT_EQ(convert({sheet_, out("t1.chr"), "--text"}), 0);
  ASSERT_EQ(convert({out("t1.chr"), out("b1.chr"), "--binary"}), 0);
  ASSERT_EQ(convert({out("b1.chr"), out("b2.chr")}), 0);  // keeps the form it was read in
  ASSERT_EQ(convert({out("b1.chr"), out("t2.chr"), "--text"}), 0);
  ASSERT_EQ(convert({out("t2.chr"), out("b3.chr"), "--binary"}), 0);

  std::string text = readFile(out("t1.chr"));
  std::string binary = readFile(out("b1.chr"));
  EXPECT_EQ(text.rfind("\"Character Sheet file v. 1\"", 0), 0u);
  EXPECT_EQ(binary.substr(0, 4), std::string("\x37\x57\x03\x05", 4));
  EXPECT_EQ(readFile(out("t2.chr")), text);
  EXPECT_EQ(readFile(out("b2.chr")), binary);
  EXPECT_EQ(readFile(out("b3.chr")), binary);
}

TEST_F(ConvertTest, TemplatesStayText) {
  ASSERT_EQ(convert({sheet_, out("hero.cst"), "--text"}), 0);
  ASSERT_EQ(convert({out("hero.cst"), out("again.cst"), "--binary"}), 0);
  EXPECT_EQ(readFile(out("again.cst")).rfind("\"Character Sheet file v. 1\"", 0), 0u);
}

TEST_F(ConvertTest, FailuresLeaveNoOutput) {
  std::ofstream(out("junk.chr")) << "junk";
  auto junk = runCli({"convert", out("junk.chr"), out("never.chr")});
  EXPECT_EQ(junk.exitCode, 1);
  EXPECT_FALSE(fs::exists(out("never.chr")));

  auto unwritable = runCli({"convert", sheet_, out("no/such/dir/x.chr")});
  EXPECT_EQ(unwritable.exitCode, 1);
  EXPECT_EQ(unwritable.err, "[Error] Error writing file " + out("no/such/dir/x.chr") + "\n");

  EXPECT_EQ(runCli({"convert", sheet_}).exitCode, 2);
}

TEST(DumpCommand, ListsItemsAndVariablesAsJson) {
  auto result = runCli({"dump", std::string(ZV_TEST_DATA_DIR) + "/sheets/ember.chr"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  const std::string& json = result.out;
  // Totals worked out by hand from the formulas: Climb 3*2, Swim 1*3 (out of the total),
  // Lore 4*4; Pack 2 with its members 1 and 4 counted apart, Cloak 3.
  const char* expected[] = {
      "{\"gameSystem\":\"Emberfall\",\"fileType\":1,\"level\":1,\"lists\":[",
      "{\"name\":\"Skills\",\"total\":22,\"items\":[",
      "{\"name\":\"Climb\",\"level\":\"3\",\"value\":3,\"cost\":6,\"totalCost\":6}",
      // Swim stands outside the total.
      "{\"name\":\"Swim\",\"level\":\"1\",\"value\":1,\"cost\":3,\"totalCost\":3,\"inTotal\":0}",
      "{\"name\":\"Lore\",\"level\":\"4\",\"value\":4,\"cost\":16,\"totalCost\":16}",
      "{\"name\":\"Gear\",\"total\":10,\"items\":[",
      "\"name\":\"Pack\"",
      "\"childCost\":5,\"children\":[{\"name\":\"Rope\"",
      "\"GearCost\":10",
      "\"SkillPoints\":22",
      "\"Spent\":36",
      "\"Grit\":2",
  };
  size_t from = 0;
  for (const char* part : expected) {
    size_t at = json.find(part, from);
    EXPECT_NE(at, std::string::npos) << part << "\n" << json;
    if (at != std::string::npos && part[0] != '"') from = at;
  }
  EXPECT_EQ(json.back(), '\n');
}

}  // namespace
}  // namespace zv
