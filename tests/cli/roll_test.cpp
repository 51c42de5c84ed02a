#include <gtest/gtest.h>

#include "cli_runner.h"

namespace zv {
namespace {

using zv::testing::runCli;

TEST(RollCommandTest, ResultsAndFailures) {
  struct Case {
    std::vector<std::string> args;
    int exitCode;
    const char* out;
    const char* err;
  };
  const Case cases[] = {
      {{"--seed", "1", "roll", "3d6"}, 0, "17\n", ""},
      {{"--seed", "1", "roll", "5p52"}, 0, "4D,7S,JH,6D,7C\n", ""},
      {{"--seed", "1", "roll", "3", "d", "6"}, 0, "17\n", ""},  // words joined, blanks ignored
      {{"roll", "2+3x4"}, 0, "20\n", ""},
      {{"roll", "0*3d6"}, 0, "\n", ""},
      {{"roll", "32768"}, 1, "", "[Number Too Large] Die values cannot be greater than 32767.\n"},
      {{"roll", "6c5"},
       1,
       "",
       "[Inconsistent Values] The choose specification 6c5 is illegal. The number to choose is "
       "greater than the range.\n"},
      {{"roll"}, 2, "", nullptr},
  };
  for (const Case& c : cases) {
    auto result = runCli(c.args);
    EXPECT_EQ(result.exitCode, c.exitCode) << c.args.back();
    EXPECT_EQ(result.out, c.out) << c.args.back();
    if (c.err != nullptr) {
      EXPECT_EQ(result.err, c.err) << c.args.back();
    }
  }
  EXPECT_NE(runCli({"--help"}).out.find("roll DICE"), std::string::npos);
}

}  // namespace
}  // namespace zv
