#include "filter/file/filter_scan.h"

#include <algorithm>

#include "core/text.h"
#include "filter/file/filter_loader.h"

namespace zv {

namespace {

/// The text behind a column-one "@word" and its blanks, without the line end; empty when the
/// line isn't that command.
bool commandArgument(std::string_view line, std::string_view word, std::string& out) {
  if (line.size() < word.size() + 1 || line.front() != '@') return false;
  if (!equalsIgnoringCase(line.substr(1, word.size()), word)) return false;
  std::string_view rest = line.substr(1 + word.size());
  if (!rest.empty() && rest.front() != ' ' && rest.front() != '\t' && rest.front() != '\r' &&
      rest.front() != '\n') {
    return false;
  }
  out = trim(rest);
  return true;
}

}  // namespace

FilterSummary scanFilterText(std::string_view text) {
  FilterSummary summary;
  bool haveSystem = false;
  bool haveDescription = false;
  std::size_t pos = 0;
  while (pos < text.size() && !(haveSystem && haveDescription)) {
    std::size_t end = text.find('\n', pos);
    end = end == std::string_view::npos ? text.size() : end + 1;
    end = std::min(end, pos + kFilterScanLineLength);
    std::string_view line = text.substr(pos, end - pos);
    pos = end;
    std::string argument;
    if (!haveSystem && commandArgument(line, "gamesystem", argument)) {
      summary.gameSystem = truncateToCapacity(argument, 24);
      haveSystem = true;
    } else if (!haveDescription && commandArgument(line, "description", argument)) {
      summary.description = argument;
      haveDescription = true;
    }
  }
  summary.isFilter = haveSystem || haveDescription;
  return summary;
}

FilterSummary scanFilterFile(const std::filesystem::path& path) {
  std::string bytes;
  if (!readWholeFile(path, bytes)) return {};
  return scanFilterText(bytes);
}

std::vector<AvailableFilter> filtersForGameSystem(const std::filesystem::path& dataDir,
                                                  std::string_view gameSystem) {
  std::vector<AvailableFilter> found;
  std::error_code error;
  for (std::filesystem::directory_iterator it(dataDir, error), end; !error && it != end;
       it.increment(error)) {
    if (!it->is_regular_file(error)) continue;
    const std::string name = it->path().filename().string();
    if (!endsWithIgnoringCase(name, ".flt")) continue;
    FilterSummary summary = scanFilterFile(it->path());
    if (!summary.isFilter) continue;
    if (!summary.gameSystem.empty() && !equalsIgnoringCase(summary.gameSystem, gameSystem)) {
      continue;
    }
    found.push_back({name, std::move(summary)});
  }
  std::sort(found.begin(), found.end(), [](const AvailableFilter& a, const AvailableFilter& b) {
    return compareIgnoringCase(a.fileName, b.fileName) < 0;
  });
  return found;
}

}  // namespace zv
