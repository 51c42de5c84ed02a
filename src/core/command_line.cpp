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

}  // namespace zv
