#pragma once
// The program's command line: an optional "/p" (print and exit), then a path.

#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct CommandLine {
  bool printAndExit = false;
  std::string path;  ///< empty when no file was named
};

/// Parses the command line as one text. Leading blanks are skipped; "/p" counts only as a separate
/// first word (paths here begin with "/"); the rest of the line is the path, taken as it stands.
CommandLine parseCommandLine(std::string_view text);

/// The same for the words of argv (after the program name), joined by single spaces.
CommandLine parseCommandLine(const std::vector<std::string>& words);

}  // namespace zv
