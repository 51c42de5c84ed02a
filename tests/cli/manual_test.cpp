// The documentation follows the program: every command that `zarvelin-cli --help` lists has its
// entry in the manual page and in docs/cli.md.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli_runner.h"

namespace zv::testing {
namespace {

namespace fs = std::filesystem;

std::string readText(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

/// The command names of the help text: the first word of each line indented by two blanks under
/// "Commands:", up to the next heading.
std::vector<std::string> helpCommands(const std::string& help) {
  std::vector<std::string> commands;
  std::istringstream lines(help);
  std::string line;
  bool inCommands = false;
  while (std::getline(lines, line)) {
    if (line == "Commands:") {
      inCommands = true;
    } else if (!line.empty() && line[0] != ' ') {
      inCommands = false;
    } else if (inCommands && line.size() > 2 && line.compare(0, 2, "  ") == 0 && line[2] != ' ') {
      commands.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
  }
  return commands;
}

TEST(Manual, EveryCommandOfTheHelpIsDocumented) {
  const CliResult help = runCli({"--help"});
  ASSERT_EQ(help.exitCode, 0);
  const std::vector<std::string> commands = helpCommands(help.out);
  ASSERT_GE(commands.size(), 10u) << help.out;
  const fs::path top = fs::path(ZV_SAMPLE_DATA_DIR).parent_path();
  const std::string manual = readText(top / "packaging" / "man" / "zarvelin-cli.1");
  const std::string guide = readText(top / "docs" / "cli.md");
  ASSERT_FALSE(manual.empty());
  for (const std::string& command : commands) {
    // A minus in a manual page is written "\-".
    std::string escaped;
    for (char c : command)
      escaped += c == '-' ? std::string("\\-") : std::string(1, c);
    EXPECT_NE(manual.find(".BI " + escaped + " "), std::string::npos)
        << command << " has no entry in packaging/man/zarvelin-cli.1";
    EXPECT_NE(guide.find("`" + command), std::string::npos)
        << command << " has no entry in docs/cli.md";
  }
}

}  // namespace
}  // namespace zv::testing
