#pragma once
// Runs zarvelin-cli as a separate process and captures what it prints.

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zv::testing {

struct CliResult {
  int exitCode = -1;
  std::string out;
  std::string err;
};

inline std::string shellQuote(const std::string& word) {
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

inline CliResult runCli(const std::vector<std::string>& args) {
  namespace fs = std::filesystem;
  static int counter = 0;
  fs::path errFile = fs::temp_directory_path() /
                     ("zv-cli-err-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
  std::string command = shellQuote(ZV_CLI_PATH);
  for (const std::string& a : args)
    command += " " + shellQuote(a);
  command += " 2>" + shellQuote(errFile.string());
  CliResult result;
  if (FILE* pipe = ::popen(command.c_str(), "r")) {
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
      result.out.append(buffer, n);
    int status = ::pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::ifstream err(errFile, std::ios::binary);
  std::stringstream text;
  text << err.rdbuf();
  result.err = text.str();
  fs::remove(errFile);
  return result;
}

}  // namespace zv::testing
