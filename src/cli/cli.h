#pragma once
// zarvelin-cli: every operation a user may want in batch, headless.

#include <string>
#include <vector>

namespace zv::cli {

/// Runs the command line; returns the exit status (0 done, 1 failed, 2 bad usage).
int run(const std::vector<std::string>& args);

/// The text of --help.
std::string helpText();

}  // namespace zv::cli
