#include "core/command_line.h"

#include "core/text.h"

namespace zv {

CommandLine parseCommandLine(std::string_view text) {
  CommandLine result;
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  std::string_view rest = text.substr(i);
  if (rest.size() >= 2 && rest[0] == '/' && (rest[1] == 'p' || rest[1] == 'P') &&
      (rest.size() == 2 || rest[2] == ' ' || rest[2] == '\t')) {
    result.printAndExit = true;
    rest.remove_prefix(2);
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t'))
      rest.remove_prefix(1);
  }
  result.path = std::string(rest);
  while (!result.path.empty() && (result.path.back() == '\r' || result.path.back() == '\n')) {
    result.path.pop_back();
  }
  return result;
}

CommandLine parseCommandLine(const std::vector<std::string>& words) {
  std::string joined;
  for (size_t i = 0; i < words.size(); ++i) {
    if (i > 0) joined += ' ';
    joined += words[i];
  }
  return parseCommandLine(joined);
}

std::vector<CommandLine> splitCommandLine(const std::vector<std::string>& words,
                                          const std::function<bool(const std::string&)>& exists) {
  if (words.empty()) return {};
  const CommandLine whole = parseCommandLine(words);
  if (whole.path.empty() || exists(whole.path)) return {whole};
  std::vector<CommandLine> files;
  // The words of the path: all of them, or those after a leading "/p".
  const std::size_t first = whole.printAndExit ? 1 : 0;
  for (std::size_t i = first; i < words.size(); ++i) {
    if (words[i].empty()) continue;
    files.push_back({whole.printAndExit, words[i]});
  }
  if (files.empty()) return {whole};
  return files;
}

}  // namespace zv
