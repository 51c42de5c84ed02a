#pragma once
// The program's command line: an optional "/p" (print and exit), then a path, or several.

#include <functional>
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

/// The files a start names, as a file manager passes them (one word of argv each): when the
/// words after an optional "/p", joined by single spaces, name a file that `exists` (a path with
/// blanks given unquoted), that one file; otherwise each of those words is a file of its own.
/// Each entry carries the "/p" of the start. No words give no entry; "/p" alone gives one entry
/// without a path.
std::vector<CommandLine> splitCommandLine(const std::vector<std::string>& words,
                                          const std::function<bool(const std::string&)>& exists);

}  // namespace zv
